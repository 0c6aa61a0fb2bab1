; The sheet: border and title block.

(defun site-frame (left bottom right top title drawing-number)
  (layer-define "FRAME" "#000000")
  (draw-polyline (list (list left bottom) (list right bottom) (list right top) (list left top)) "FRAME" T 0.8)
  (let* ((x (- right 190)) (y (+ bottom 40)) (cell (lambda (a b c d) (draw-line (list a b) (list c d) "FRAME"))))
    (funcall cell x y right y)
    (funcall cell x bottom x y)
    (funcall cell x (+ bottom 24) right (+ bottom 24))
    (funcall cell x (+ bottom 12) right (+ bottom 12))
    (funcall cell (+ x 130) bottom (+ x 130) (+ bottom 24))
    (draw-text (list (+ x 4) (+ bottom 29)) title 5 "FRAME" 'left)
    (frame-cell (+ x 4) (+ bottom 20) "SITE" "SAMPLE SITE")
    (frame-cell (+ x 134) (+ bottom 20) "DRAWING" drawing-number)
    (frame-cell (+ x 4) (+ bottom 8) "CODE" GBL_qn_electcodestd)
    (frame-cell (+ x 134) (+ bottom 8) "SHEET" "1 OF 1"))
  T)

(defun frame-cell (x y name text)
  (draw-text (list x y) name 1.8 "FRAME" 'left)
  (draw-text (list x (- y 5)) text 3.0 "FRAME" 'left))

; What the current space holds, in a line.
(defun site-summary ()
  (let* ((entities (entities-in-space))
         (count (lambda (f) (length (remove-if-not f entities)))))
    (string-append
      (number->string (funcall count (lambda (e) (and (equal (entity-get e 'kind) "block-reference")
                                                      (entity-attribute e "FAMILY")))))
      " components, "
      (number->string (funcall count (lambda (e) (and (equal (entity-get e 'kind) "line")
                                                      (wire-layer? (entity-get e 'layer))))))
      " wires on the layers " (string-join (wire-layers) ", "))))
