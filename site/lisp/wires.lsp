; Wire layers, wires and wire numbers. A wire is a line on a wire layer; a symbol that is placed on it cuts it.

(setq site-default-size "14AWG"
      site-control-layer "RED_14AWG"
      site-grounded-layer "WHT_14AWG"
      site-neutral-terminal '("TB3" "2")
      site-metric-control-layer "RED_1.5mm2"
      site-wire-tolerance 0.001
      site-wire-reach 1.0) ; farther from a point no wire counts as running through it

; The settings of a wire layer. The plug-in reads the number at position 24; the other places are this product's own.
(defun wire-settings (layer numbers)
  (append (list (cons 1 layer) (cons 2 "") (cons 3 "") (cons 4 ""))
          (mapcar (lambda (place) (cons 90 0)) '(4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22 23))
          (list (cons 290 numbers))))

(defun layer-colour (layer)
  (let ((found (assoc (string-upcase (substring layer 0 (min 3 (string-length layer))))
                      '(("BLK" . "#1a1a1a") ("RED" . "#c01818") ("GRN" . "#0a7a2a") ("BLU" . "#1440b0")
                        ("WHT" . "#808080")))))
    (if found (cdr found) "#1a1a1a")))

; Makes a layer a wire layer unless it is one. Grounding conductors carry no wire numbers.
(defun wire-layer (layer)
  (unless (member layer (wire-layers))
    (layer-define layer (layer-colour layer) 'continuous
                  (wire-settings layer (if (eql 0 (string-search-ci "GRN" layer)) 0 1))))
  layer)

; The layer format of MISC1 (_WIRETYPE=BLK_@SIZE@;) filled with a size.
(defun format-layer (misc1 size fallback)
  (let ((parts (string-split (or (setting misc1 "_WIRETYPE") fallback) "@")))
    (if (= 3 (length parts)) (string-append (first parts) size (third parts)) (first parts))))

; The layer of a wire: what the configuration says, else what the template's format gives for the wire's size, else for
; the site's size. Presets name a layer for each position even where they know no size, made with an empty one: such a
; layer says nothing.
(defun row-layer (row misc1 fallback)
  (wire-layer (layer-name (site-text (nth 1 row)) (site-text (nth 0 row)) misc1 fallback)))
(defun layer-name (layer size misc1 fallback)
  (cond ((string=? size "") (format-layer misc1 site-default-size fallback))
        ((member layer (list "" (format-layer misc1 "" fallback))) (format-layer misc1 size fallback))
        (T layer)))

(defun offset (point dx dy) (list (+ (car point) dx) (+ (cadr point) dy)))

; Templates bring control wires of the size of one code; under another code they get that one's.
(defun fit-control-wires (entities)
  (when (metric-code?)
    (mapc (lambda (entity)
            (when (and (equal (entity-get entity 'kind) "line") (string=? (entity-get entity 'layer) site-control-layer))
              (entity-set! entity 'layer (wire-layer site-metric-control-layer))))
          entities)))

(defun control-layer? (layer)
  (member layer (list site-control-layer site-grounded-layer site-metric-control-layer)))

; The grounded side of a control circuit is white: what the ground of its transformer or the neutral of its supply
; reaches without a device between them. A metric code has no such colour of its own.
(defun whiten-grounded-wires (entities)
  (unless (metric-code?)
    (let* ((points (grounded-points entities))
           (rest-wires (remove-if-not
                         (lambda (entity) (and (equal (entity-get entity 'kind) "line")
                                               (string=? (entity-get entity 'layer) site-control-layer)))
                         entities))
           (front (remove-if-not
                    (lambda (wire)
                      (some (lambda (end) (some (lambda (point) (same-point? end point)) points)) (ends-of wire)))
                    rest-wires)))
      (while front
        (setq rest-wires (remove-if (lambda (wire) (member wire front)) rest-wires))
        (mapc (lambda (wire) (entity-set! wire 'layer (wire-layer site-grounded-layer))) front)
        (setq front (remove-if-not (lambda (wire) (some (lambda (white) (wires-touch? wire white)) front)) rest-wires))))))
(defun grounded-points (entities)
  (mapcar (lambda (symbol) (entity-get symbol 'position))
    (remove-if-not
      (lambda (entity)
        (and (equal (entity-get entity 'kind) "block-reference")
             (or (string-ci=? (entity-get entity 'block) "ZGROUND")
                 (let ((texts (entity-attributes entity)))
                   (and (equal (first site-neutral-terminal) (cdr (assoc "TAGSTRIP" texts)))
                        (equal (second site-neutral-terminal) (cdr (assoc "TERM01" texts))))))))
      entities)))
; An end of one is on the other.
(defun wires-touch? (a b)
  (or (some (lambda (p) (on-segment? p (entity-get b 'from) (entity-get b 'to))) (ends-of a))
      (some (lambda (q) (on-segment? q (entity-get a 'from) (entity-get a 'to))) (ends-of b))))
(defun ends-of (wire) (list (entity-get wire 'from) (entity-get wire 'to)))

(defun draw-wire (from to layer) (draw-line from to layer))

; Cuts the wire through two points, so that a symbol can be placed between them; nothing when there is none.
(defun cut-wire (from to)
  (let ((wire (find-if (lambda (entity) (wire-through? entity from to))
                       (entities-in-box (offset from (- site-wire-reach) (- site-wire-reach))
                                        (offset from site-wire-reach site-wire-reach)))))
    (when wire
      (let* ((start (entity-get wire 'from)) (end (entity-get wire 'to)) (layer (entity-get wire 'layer))
             (forward (<= (distance start from) (distance start to)))
             (near (if forward from to)) (far (if forward to from)))
        (cond ((same-point? start near) (entity-set! wire 'from far))
              (T (entity-set! wire 'to near)
                 (unless (same-point? far end) (draw-wire far end layer))))))))

(defun wire-through? (entity from to)
  (and (equal (entity-get entity 'kind) "line")
       (wire-layer? (entity-get entity 'layer))
       (on-segment? from (entity-get entity 'from) (entity-get entity 'to))
       (on-segment? to (entity-get entity 'from) (entity-get entity 'to))))

(defun wire-layer? (layer) (member layer (wire-layers)))

(defun distance (a b)
  (sqrt (+ (expt (- (car a) (car b)) 2) (expt (- (cadr a) (cadr b)) 2))))
(defun same-point? (a b) (< (distance a b) site-wire-tolerance))
; A point is on a line when the distances to its ends add up to the line's length.
(defun on-segment? (point start end)
  (< (- (+ (distance start point) (distance point end)) (distance start end)) site-wire-tolerance))
