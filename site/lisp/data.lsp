; Reading the data that the plug-in passes to forms: #data, #data2 and MISC1.
;
; #data is nil, or a list: first what the motor or load page says (type, load, units, voltage, phase, frequency,
; speed, current, multiplier, wire choices, ..., row code), then the wires ((size layer flag) ...), flag 3 for the
; grounding conductor, then one list per catalogue part: (table manufacturer catalogue-number assembly ...).

(defun site-text (value)
  (cond ((stringp value) value)
        ((numberp value) (number->string value))
        (T "")))

(defun data-text (data index) (site-text (nth index (car data))))
(defun data-wires (data) (cadr data))

(defun ground-row? (row) (member (site-text (nth 2 row)) '("3")))
(defun conductor-row (data index) (nth (- index 1) (remove-if 'ground-row? (data-wires data))))
(defun ground-row (data) (find-if 'ground-row? (data-wires data)))

; The part chosen from a catalogue table, nil for none. A page on which nothing was chosen gives empty texts.
(defun data-part (data table)
  (find-if (lambda (part)
             (and (stringp (car part)) (string-ci=? (car part) table)
                  (some (lambda (place) (not (string=? (site-text (nth place part)) ""))) '(1 2 3))))
           (nthcdr 2 data)))

; The result of auto-sizing for a component: (code description value rating default). A value of 0 means a kind of load
; that the tables do not size; the rating is then meaningless.
(defun sized (data2 code)
  (let ((row (assoc code data2))) (if (and row (plusp (nth 2 row))) row nil)))
; Without a leading "NEMA ", for which the lines have no room.
(defun sized-rating (data2 code)
  (let ((rating (site-text (nth 3 (sized data2 code)))))
    (if (eql 0 (string-search "NEMA " rating)) (substring rating 5) rating)))
(defun sized-part (data2 code) (site-text (nth 4 (sized data2 code))))

; "10 HP", or "" when no motor was chosen.
(defun data-power (data)
  (if (string=? (data-text data 1) "") "" (string-append (data-text data 1) " " (data-text data 2))))

; "460 V  3 PH  60 HZ  FLA 14 A"
(defun data-supply (data)
  (if (string=? (data-text data 3) "") ""
    (string-append (data-text data 3) " V  " (data-text data 4) " PH  " (data-text data 5) " HZ"
                   (if (string=? (data-text data 7) "") "" (string-append "  FLA " (data-text data 7) " A")))))

; The value of a setting KEY=value; of a text such as MISC1, nil when it is not there.
(defun setting (text key)
  (when text
    (let ((found (find-if (lambda (part) (eql 0 (string-search-ci (string-append key "=") part)))
                          (string-split text ";"))))
      (when found (substring found (+ 1 (string-length key)))))))
