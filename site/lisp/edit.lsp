; Edit wire size: the plug-in returns a size, which is applied here to the circuit in the drawing.

; Asks for a placed motor, load or device, or takes the given one, and for its wire size. Wires, grounding conductor,
; texts, the record of the circuit and the proposed ratings in its line are updated as one step. Returns a line that
; reports the changes, nil when the user cancels.
(defun site-edit-wire-size (&optional entity)
  (let ((answer (if (and entity (entity-data entity "ORL_QN_BV_CIRCPARAMS"))
                  (zan_bv_edit_wiresize entity)
                  (zan_bv_edit_wiresize))))
    (when answer
      (apply-wire-size (first (first answer)) (second (first answer)) (second answer) (zan_bv_wire_fields)))))

; `size` may carry the count of conductors per phase: "6AWG(2)". `fields` are those of the record as the lookup left
; them, nil to keep what the record has.
(defun apply-wire-size (entity size ratings &optional fields)
  (let* ((plain (car (string-split size "(")))
         (rows (recorded-wires entity))
         (layers (if rows (mapcar 'second rows) (layers-at entity)))
         (former (cond (rows (site-text (first (conductor-of rows))))
                       (T (layer-size (or (car (remove-if 'ground-layer? layers)) "")))))
         (ground (find-if 'ground-row? rows))
         (former-ground (if ground (site-text (first ground)) ""))
         (chosen-ground (if (and ground fields) (nth 28 fields) ""))
         (plain-ground (if (string=? chosen-ground "") former-ground chosen-ground))
         (grounds (ground-layers rows layers))
         (wires (circuit-wires entity (remove-if (lambda (layer) (member layer grounds)) layers)))
         (ground-wires (circuit-wires entity grounds))
         (made (mapcar (lambda (layer)
                         (cons layer (if (member layer grounds)
                                       (resized-layer layer former-ground plain-ground)
                                       (resized-layer layer former plain))))
                       layers)))
    (unless wires (error "no wire of the circuit was found at " (entity-name-of entity)))
    (mapc (lambda (wire) (rename-label wire (cdr (assoc (entity-get wire 'layer) made)) (entity-get entity 'scale)))
          (append wires ground-wires))
    (mapc (lambda (wire) (entity-set! wire 'layer (cdr (assoc (entity-get wire 'layer) made))))
          (append wires ground-wires))
    (when rows (record-wire-size entity rows plain plain-ground made))
    (when (and rows fields) (record-fields entity fields))
    (string-join
      (append (list (string-append (entity-name-of entity) ": " (shown-change former size)))
              (ground-change ground former-ground chosen-ground fields)
              (list (string-append (number->string (length wires)) " wires"))
              (apply-ratings (components-on wires entity) ratings))
      ", ")))

; A grounding conductor that no table has a size for keeps the one it has.
(defun ground-change (ground former chosen fields)
  (cond ((not ground) nil)
        ((not fields) (list (string-append "PE " (shown-size former))))
        ((string=? chosen "") (list (string-append "PE stays " (shown-size former) ", no size in the tables is enough")))
        ((string=? chosen former) (list (string-append "PE " (shown-size former))))
        (T (list (string-append "PE " (shown-change former chosen))))))
(defun shown-change (former size) (string-append (shown-size former) " -> " (shown-size size)))

; 3AWG as 3 AWG, 6AWG(2) as 6 AWG (2).
(defun shown-size (size)
  (let ((at 0) (end (string-length size)))
    (while (and (< at end) (string-search (substring size at (+ at 1)) "0123456789./")) (setq at (+ at 1)))
    (cond ((string=? size "") "no size")
          ((or (= at 0) (= at end)) size)
          (T (string-join (string-split (string-append (substring size 0 at) " " (substring size at)) "(") " (")))))
(defun entity-name-of (entity)
  (let ((tag (cdr (assoc "TAG1" (entity-attributes entity)))))
    (if (or (not tag) (string=? tag "")) (entity-handle entity) tag)))

; The wires of the record as (size layer flag), nil without one.
(defun recorded-wires (entity)
  (let ((text (car (entity-data entity "ORL_QN_BV_CIRCPARAMS2"))))
    (if text (veval-str+ (string-append "'" text)) nil)))
(defun conductor-of (rows) (car (remove-if 'ground-row? rows)))

(defun record-wire-size (entity rows size ground made)
  (entity-data-set! entity "ORL_QN_BV_CIRCPARAMS2"
    (string-append "("
      (string-join
        (mapcar (lambda (row)
                  (format nil "(~S ~S ~S)" (if (ground-row? row) ground size)
                          (or (cdr (assoc (second row) made)) (second row)) (third row)))
                rows)
        "")
      ")")))

; What the lookup owns of the record: voltage and phase, and everything from the current to the grounding conductor.
; The texts that show it follow.
(defun lookup-field? (index) (or (= index 3) (= index 4) (and (>= index 7) (<= index 28))))
(defun record-fields (entity fields)
  (let* ((old (mapcar (lambda (field) (string-trim " " field))
                      (string-split (car (entity-data entity "ORL_QN_BV_CIRCPARAMS")) ";")))
         (index -1)
         (new (mapcar (lambda (field) (setq index (+ index 1)) (if (lookup-field? index) (nth index fields) field))
                      old)))
    (entity-data-set! entity "ORL_QN_BV_CIRCPARAMS"
      (string-join (mapcar (lambda (field) (if (string=? field "") " " field)) new) ";"))
    (unless (string=? (data-supply (list old)) (data-supply (list new)))
      (mapc (lambda (part)
              (when (and (equal (entity-get part 'kind) "text")
                         (string=? (entity-get part 'text) (motor-line (list old))))
                (entity-set! part 'text (motor-line (list new)))))
            (circuit-entities (or (entity-circuit entity) "")))
      (when (entity-attribute entity "DESC2")
        (fill-attributes entity (list (cons "DESC2" (data-supply-line (list new) 3 " V"))))))))

; The text beside a wire, colour and size, as a set writes it.
(defun rename-label (wire layer scale)
  (let* ((beside (* 3.5 (or scale 1.0))) (from (entity-get wire 'from)) (to (entity-get wire 'to))
         (low (list (- (min (car from) (car to)) beside) (- (min (cadr from) (cadr to)) beside)))
         (high (list (+ (max (car from) (car to)) beside) (+ (max (cadr from) (cadr to)) beside))))
    (mapc (lambda (text)
            (when (and (equal (entity-get text 'kind) "text") (equal (entity-get text 'layer) "WIRE_SIZES")
                       (string=? (entity-get text 'text) (wire-label (entity-get wire 'layer))))
              (entity-set! text 'text (wire-label layer))))
          (entities-in-box low high))))
(defun wire-label (layer) (string-join (string-split layer "_") " "))
(defun ground-layer? (layer) (eql 0 (string-search-ci "GRN" layer)))
; By the record where there is one, whatever the firm's layers are called.
(defun ground-layers (rows layers)
  (let ((others (mapcar 'second (remove-if 'ground-row? rows))))
    (if rows
      (remove-if (lambda (layer) (member layer others)) (mapcar 'second (remove-if-not 'ground-row? rows)))
      (remove-if-not 'ground-layer? layers))))

; BLK_14AWG for another size. A layer that does not name the size is one that the user chose, and stays.
(defun resized-layer (layer former size)
  (let ((at (if (string=? former "") nil (string-search-ci former layer))))
    (if at
      (wire-layer (string-append (substring layer 0 at) size (substring layer (+ at (string-length former)))))
      layer)))
; The part of a wire layer's name after the colour.
(defun layer-size (layer) (let ((parts (string-split layer "_"))) (if (cdr parts) (cadr parts) "")))

; Wires

(defun lines-on (layers)
  (remove-if-not (lambda (entity) (and (equal (entity-get entity 'kind) "line")
                                       (member (entity-get entity 'layer) layers)))
                 (entities-in-space)))

; The area of the symbol, where its wires end: 40 to the right, 40 down.
(defun at-symbol? (point symbol)
  (let* ((scale (or (entity-get symbol 'scale) 1.0)) (position (entity-get symbol 'position))
         (x (- (car point) (car position))) (y (- (cadr point) (cadr position))))
    (and (> x (* scale -7)) (< x (* scale 41)) (> y (* scale -41)) (< y (* scale 7)))))
(defun wire-at-symbol? (wire symbol) (some (lambda (point) (at-symbol? point symbol)) (ends-of wire)))

; A device without a record: the wire layers that lead to it, without those of controls.
(defun layers-at (entity)
  (let ((found nil))
    (dolist (wire (lines-on (remove-if 'control-layer? (wire-layers))))
      (when (and (wire-at-symbol? wire entity) (not (member (entity-get wire 'layer) found)))
        (setq found (cons (entity-get wire 'layer) found))))
    found))

; The wires of these layers that lead to the motor or load: through symbols, which cut them, and over junctions. If
; they also reach another motor or load, the lines after the junctions are shared and keep their size.
(defun circuit-wires (entity layers)
  (let* ((lines (without-shared (lines-on layers) entity)) (all (connected-wires entity lines T)))
    (if (some (lambda (other) (some (lambda (wire) (wire-at-symbol? wire other)) all)) (other-controls entity))
      (connected-wires entity lines nil)
      all)))
(defun other-controls (entity)
  (remove-if-not
    (lambda (other) (and (entity-data other "ORL_QN_BV_CIRCPARAMS")
                         (not (string=? (entity-handle other) (entity-handle entity)))))
    (entities-in-space)))

; Without the lines on which a wire of another motor of the circuit ends: a feeder is not resized with one of its motors,
; also when it has the size of that motor's wires.
(defun without-shared (lines entity)
  (let ((points (apply 'append (mapcar (lambda (other)
                                         (apply 'append (mapcar 'ends-of
                                           (connected-wires other (lines-on (mapcar 'second (recorded-wires other))) nil))))
                                       (circuit-controls entity)))))
    (remove-if
      (lambda (line) (some (lambda (point) (on-segment? point (entity-get line 'from) (entity-get line 'to))) points))
      lines)))
(defun circuit-controls (entity)
  (let ((circuit (entity-circuit entity)))
    (when circuit (remove-if-not (lambda (other) (equal (entity-circuit other) circuit)) (other-controls entity)))))

(defun connected-wires (entity lines over-junctions)
  (let ((found nil)
        (rest-lines (remove-if (lambda (wire) (wire-at-symbol? wire entity)) lines))
        (front (remove-if-not (lambda (wire) (wire-at-symbol? wire entity)) lines))
        (scale (or (entity-get entity 'scale) 1.0)))
    (while front
      (let* ((wire (car front))
             (next (remove-if-not (lambda (other) (wires-meet? wire other scale over-junctions)) rest-lines)))
        (setq found (cons wire found)
              rest-lines (remove-if (lambda (other) (member other next)) rest-lines)
              front (append (cdr front) next))))
    found))

(defun wires-meet? (a b scale over-junctions)
  (or (some (lambda (p) (some (lambda (q) (ends-meet? p q a b scale)) (ends-of b))) (ends-of a))
      (and over-junctions (wires-touch? a b))))
; One point, or the two sides of a symbol in a straight line.
(defun ends-meet? (p q a b scale)
  (or (same-point? p q)
      (and (< (distance p q) (+ (* scale 2 lead) site-wire-tolerance))
           (or (and (level? a) (level? b) (< (abs (- (cadr p) (cadr q))) site-wire-tolerance))
               (and (upright? a) (upright? b) (< (abs (- (car p) (car q))) site-wire-tolerance))))))
(defun level? (wire) (same-number? (cadr (entity-get wire 'from)) (cadr (entity-get wire 'to))))
(defun upright? (wire) (same-number? (car (entity-get wire 'from)) (car (entity-get wire 'to))))
(defun same-number? (a b) (< (abs (- a b)) site-wire-tolerance))

; Ratings

; The components that cut the wires.
(defun components-on (wires entity)
  (remove-if-not
    (lambda (symbol)
      (and (equal (entity-get symbol 'kind) "block-reference")
           (not (string=? (entity-handle symbol) (entity-handle entity)))
           (entity-attribute symbol "FAMILY")
           (let ((side (offset (entity-get symbol 'position) (* -1 lead (or (entity-get symbol 'scale) 1.0)) 0)))
             (some (lambda (wire) (some (lambda (point) (same-point? point side)) (ends-of wire))) wires))))
    (entities-in-space)))

; Codes of auto-sizing by the family of a component.
(setq site-rating-codes '(("CB" "BREAKER") ("DS" "DISC") ("MS" "CONTACTOR") ("OL" "OVERLOAD")))

; The poles that the name of a symbol ends with; nil for none.
(defun block-poles (symbol)
  (let ((name (entity-get symbol 'block))) (string->number (substring name (- (string-length name) 1)))))

; A component without a chosen part takes the rating that is proposed now; one with a part keeps it, and a different
; proposal is reported.
(defun apply-ratings (components ratings)
  (remove-if 'null
    (mapcar (lambda (symbol)
              (let* ((texts (entity-attributes symbol))
                     (code (cadr (assoc (cdr (assoc "FAMILY" texts)) site-rating-codes)))
                     (row (and code (assoc code ratings)))
                     (now (site-text (cdr (assoc "RATING1" texts))))
                     (proposed (if code (sized-rating ratings code) "")))
                (cond ((equal (cdr (assoc "FAMILY" texts)) "FU") (fuse-proposal symbol now ratings))
                      ((or (string=? proposed "") (string=? proposed now)) nil)
                      ((string=? (site-text (cdr (assoc "MFG" texts))) "")
                       (fill-attributes symbol (list (cons "RATING1" proposed) (cons "CAT" (pole-part (site-text (nth 4 row)) (block-poles symbol)))))
                       (string-append (entity-name-of symbol) " " now " -> " proposed))
                      (T (string-append (entity-name-of symbol) " stays " now ", " proposed " is proposed")))))
            components)))

; The symbol does not say which kind of fuse it is: it keeps its rating, and unless that is proposed for one kind, the
; proposals of all kinds are reported.
(defun fuse-proposal (symbol now ratings)
  (let ((rows (remove-if-not (lambda (row) (and (eql 0 (string-search "FUSE" (site-text (first row)))) (plusp (nth 2 row))))
                             ratings)))
    (if (or (not rows) (some (lambda (row) (string=? now (site-text (nth 3 row)))) rows)) nil
      (string-append (entity-name-of symbol) " stays " now ", "
        (string-join (mapcar (lambda (row) (string-append (site-text (nth 3 row)) " (" (site-text (second row)) ")")) rows)
                     " or ")
        " is proposed"))))
