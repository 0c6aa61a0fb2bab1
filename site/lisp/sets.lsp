; What a set of many drawings asks of a site: numbers and texts for wires, and where wires go on.

(setq site-label-height 1.6)
; A circuit that is drawn smaller has smaller texts.
(defun drawn-scale () (nth 5 GBL_qn_bv_data))

; Called for each net of a circuit once it is drawn. number: what the drawing shows, "" where it shows none; needs: T
; when the net should have a number; place: the middle of its longest wire; level: T when that wire runs from left to
; right; used: the numbers of the circuit's nets. The answer is the net's number.
(defun site-label-net (number needs place level colour size used)
  (let ((text (string-append colour " " size)) (answer number))
    (when needs
      (setq answer (next-net-number used))
      (place-symbol "ZWIRENO" place (drawn-scale) (list (cons "WIRENO" answer)) (if level 0 90)))
    (unless (string=? size "")
      (layer-define "WIRE_SIZES" "#707070")
      (let ((beside (* 3.0 (drawn-scale))))
        (draw-text (if level (offset place 0 (- beside)) (offset place beside 0)) text
                   (* site-label-height (drawn-scale)) "WIRE_SIZES" 'centre (if level 0 90))))
    answer))

; The next number of the control scheme that no net has: P101-11, P101-12 ...
(defun next-net-number (used)
  (let* ((head (control-number "")) (digits 11) (number (string-append head "11")))
    (while (member number used)
      (setq digits (+ digits 1))
      (setq number (string-append head (number->string digits))))
    number))

; Called for each end of a wire that meets nothing. number: of its net, "" for none; degrees: the direction in which the
; wire leaves. The lines of a circuit come from the supply at its location; the host fills in XREF where each line is
; before and next. The line's name is its wire number without the circuit's.
(defun site-wire-goes-on (number point degrees colour size)
  (site-block "ZSUPPLY")
  (fill-attributes (insert-block "ZSUPPLY" point (drawn-scale) (- degrees 180) "SYMBOLS")
    (append (list (cons "TAG1" (supply-name)) (cons "X4TERM01" (line-name number colour))) (list-place))))

(defun supply-name ()
  (let ((location (list-text "SITE_LOC"))) (if (string=? location "") "SUPPLY" location)))
(defun line-name (number colour)
  (let ((head (string-length (control-number ""))))
    (cond ((string-ci=? colour "GRN") "PE")
          ((> (string-length number) head) (substring number head))
          (T "LINE"))))
