; Placing symbols: the block comes from blocks/NAME.json the first time, wires under it are cut, attributes are
; filled.

(setq pole-distance 10.0 lead 6.0)

(defun site-block (name)
  (unless (block-defined? name)
    (let ((file (find-file (string-append "blocks/" name ".json"))))
      (unless file (error "the site has no symbol " name))
      ; The file shows its symbol once; with that reference comes the block.
      (mapc 'entity-erase (insert-drawing file '(0 0)))))
  name)

; Fills attributes given as ((tag . text) ...); a tag that the symbol does not have is passed over.
(defun fill-attributes (symbol texts)
  (mapc (lambda (pair)
          (let ((attribute (entity-attribute symbol (car pair))))
            (when (and attribute (cdr pair)) (entity-set! attribute 'text (cdr pair)))))
        texts)
  symbol)

(defun place-symbol (name point scale texts &optional rotation)
  (site-block name)
  (let ((symbol (fill-attributes (insert-block name point scale (or rotation 0) "SYMBOLS") texts)))
    (when (entity-attribute symbol "FAMILY")
      (fill-attributes symbol (list-place))
      (fill-usual-part name symbol)
      (when (and (list-tag) (string=? name "ZCOIL")) (raise-coil-tag symbol point scale))
      (apply-presets symbol)
      (note-component symbol (site-text (cdr (assoc "PART TABLE" texts)))))
    symbol))

; Parts that every circuit takes alike, unless something else was chosen. Contacts are not parts of their own.
(setq site-usual-parts
  '(("ZSTOP" "Carrick" "PB22-01-R") ("ZSTART" "Carrick" "PB22-10-G") ("ZSELECT" "Carrick" "SS22-2P")
    ("ZLIGHT" "Carrick" "PL22-120") ("ZTERM" "Wexler" "TB-4") ("ZFUSE1" "Fusewell" "CC-5")))

; Where another voltage controls.
(setq site-metric-parts '(("ZLIGHT" "Carrick" "PL22-230")))

; A tag of a list is too wide for the circle of a coil.
(defun raise-coil-tag (symbol point scale)
  (entity-set! (entity-attribute symbol "TAG1") 'position (offset point 0 (* scale 4.8)))
  (entity-set! (entity-attribute symbol "DESC1") 'position (offset point 0 (* scale 8.0))))

(defun metric-code? () (string-ci=? GBL_qn_electcodestd "IEC"))

(defun fill-usual-part (name symbol)
  (let ((part (or (and (metric-code?) (assoc name site-metric-parts)) (assoc name site-usual-parts))) (catalogue (entity-attribute symbol "CAT")))
    (when (and part catalogue (string=? (entity-get catalogue 'text) ""))
      (fill-attributes symbol (list (cons "MFG" (second part)) (cons "CAT" (third part)))))))

; What the user fixed ahead of the build, as (label attribute value family): for components of that family, or of all.
; Of a circuit that is taken over, the label is the CODE whose components are meant.
(setq site-presets nil site-takes-over nil)
(defun apply-presets (symbol)
  (let ((family (entity-get (entity-attribute symbol "FAMILY") 'text)) (code (or (marker-code) "")))
    (mapc (lambda (preset)
            (when (if site-takes-over
                    (and (string-ci=? (first preset) code) (not (string=? (third preset) "")))
                    (member (nth 3 preset) (list "" family)))
              (fill-attributes symbol (list (cons (second preset) (third preset))))))
          site-presets)))

; A symbol in horizontal wires: each of its poles cuts the wire at its position.
(defun place-in-wires (name point scale poles half-width texts)
  (dotimes (pole poles)
    (let ((y (- (* scale pole pole-distance))) (x (* scale half-width)))
      (cut-wire (offset point (- x) y) (offset point x y))))
  (place-symbol name point scale texts))

(defun pole-name (name poles) (string-append name (number->string poles)))

; The number of the current circuit in the drawing; tags and wire numbers begin with it.
(defun circuit-number () (or (get-variable "SITE_CIRCUIT") 1))
(defun next-circuit () (set-variable "SITE_CIRCUIT" (+ 1 (or (get-variable "SITE_CIRCUIT") 0))))

; The tag that a list gives the circuit, nil for one that has a number only; and as tags of components have it.
(defun list-tag () (let ((tag (get-variable "SITE_TAG"))) (if (and tag (not (string=? tag ""))) tag nil)))
(defun short-tag () (string-join (string-split (list-tag) "-") ""))

; `motor` is the letter of one of several motors in a circuit.
(defun tag-before (letters &optional motor) ; CB1, CB1A; of P-101: CB-P101
  (string-append letters (if (list-tag) (string-append "-" (short-tag)) (number->string (circuit-number))) (or motor "")))
(defun tag-behind (letters &optional motor) ; 1M, 1MA; P101-M
  (string-append (if (list-tag) (string-append (short-tag) "-") (number->string (circuit-number))) letters (or motor "")))
(defun control-number (digits) ; 101; P101-01
  (if (list-tag) (string-append (short-tag) "-" digits) (string-append (number->string (circuit-number)) digits)))
(defun load-tag (letters &optional motor) ; MTR1; what the list names is the motor or load itself
  (if (list-tag) (string-append (list-tag) (or motor "")) (tag-before letters motor)))
(defun circuit-name () (or (list-tag) (number->string (circuit-number))))

; What the list says of the circuit beside its tag: texts of its components.
(defun list-text (variable) (or (get-variable variable) ""))
(defun list-place () (list (cons "INST" (list-text "SITE_INST")) (cons "LOC" (list-text "SITE_LOC"))))

; The first rating of a chosen part. The data of a placed component has no type before its ratings; a type is a
; word, a rating begins with a digit.
(defun part-rating (part sized)
  (let ((rating (find-if (lambda (text) (and (not (string=? text "")) (string-search (substring text 0 1) "0123456789")))
                         (mapcar 'site-text (list (nth 5 part) (nth 6 part))))))
    (or rating sized)))

; The number of auto-sizing, which names three poles, for two of them: CB-3P-15, CB-2P-15.
(defun pole-part (number poles)
  (let ((at (and (eql poles 2) (string-search "-3P-" number))))
    (if at (string-append (substring number 0 at) "-2P-" (substring number (+ at 4))) number)))

; Attributes of a component that carries a catalogue part: the chosen one, whatever its poles, else what auto-sizing
; proposes. `poles` is for families that differ by it.
(defun part-texts (data data2 table code &optional poles)
  (let ((part (data-part data table)))
    (list (cons "RATING1" (part-rating part (sized-rating data2 code)))
          (cons "MFG" (site-text (nth 1 part)))
          (cons "CAT" (if part (site-text (nth 2 part)) (pole-part (sized-part data2 code) poles)))
          (cons "ASSYCODE" (site-text (nth 3 part)))
          (cons "PART TABLE" table)))) ; no attribute: what the circuit's records need
