; Sheets of paper: border, zones and title block. Unit: millimetre on the sheet, the paper's lower left corner at the
; origin. The variables say what a set needs to know: the paper and the area where circuits may go.
; (site-draw-frame NAME) draws one into the current space.

(layer-define "FRAME" "#000000")
(layer-define "ZONES" "#606060")

; Landscape, then portrait (P): width, height, columns and rows of zones.
(setq GBL_site_frames
  '(("A4" draw-frame 297 210 4 2) ("A3" draw-frame 420 297 8 4) ("A2" draw-frame 594 420 12 8)
    ("A1" draw-frame 841 594 16 12) ("A0" draw-frame 1189 841 24 16)
    ("ANSI_A" draw-frame 279.4 215.9 4 2) ("ANSI_B" draw-frame 431.8 279.4 8 4) ("ANSI_C" draw-frame 558.8 431.8 8 4)
    ("ANSI_D" draw-frame 863.6 558.8 8 4) ("ANSI_E" draw-frame 1117.6 863.6 12 8)
    ("A4P" draw-frame 210 297 2 4) ("A3P" draw-frame 297 420 4 8) ("A2P" draw-frame 420 594 8 12)
    ("A1P" draw-frame 594 841 12 16) ("A0P" draw-frame 841 1189 16 24)
    ("ANSI_AP" draw-frame 215.9 279.4 2 4) ("ANSI_BP" draw-frame 279.4 431.8 4 8)
    ("ANSI_CP" draw-frame 431.8 558.8 4 8) ("ANSI_DP" draw-frame 558.8 863.6 4 8)
    ("ANSI_EP" draw-frame 863.6 1117.6 8 12)))

(setq binding 20.0 margin 10.0 zone-strip 5.0 title-height 24.0)

(defun frame-line (x1 y1 x2 y2 layer) (draw-line (list x1 y1) (list x2 y2) layer))
(defun frame-text (x y text height &optional justification)
  (draw-text (list x y) text height "ZONES" (or justification 'middle)))

; Letters down the side, numbers along the top: what cross references name.
(defun draw-zones (left bottom right top columns rows)
  (let ((width (/ (- right left) (float columns))) (height (/ (- top bottom) (float rows))))
    (dotimes (column columns)
      (let ((x (+ left (* column width))))
        (when (> column 0) (frame-line x top x (+ top zone-strip) "ZONES"))
        (frame-text (+ x (/ width 2.0)) (+ top (/ zone-strip 2.0)) (number->string (+ column 1)) 2.5)))
    (dotimes (row rows)
      (let ((y (- top (* row height))))
        (when (> row 0) (frame-line (- left zone-strip) y left y "ZONES"))
        (frame-text (- left (/ zone-strip 2.0)) (- y (/ height 2.0)) (substring "ABCDEFGHIJKLMNOPQRSTUVWX" row (+ row 1)) 2.5)))))

; Cells of the title block: tag, label, x, y, width, height of its text, all from the block's right lower corner.
(setq title-cells
  '(("CODE" "CODE" -90 12 30 2.5) ("DRAWN" "DRAWN" -90 0 30 2.5)
    ("DATE" "DATE" -60 12 30 2.5) ("REVISION" "REVISION" -60 0 30 2.5)
    ("SHEET" "SHEET" -30 12 30 3.5) ("SHEETS" "OF" -30 0 30 2.5)))

; Project and title are as wide as the sheet allows.
(defun wide-cells (room)
  (let ((width (min 90.0 (- room 90.0))))
    (list (list "PROJECT" "PROJECT" (- -90.0 width) 12 width 3.0) (list "TITLE" "TITLE" (- -90.0 width) 0 width 3.0))))

(defun draw-title-block (left bottom room)
  (mapc (lambda (cell)
          (let ((x (+ left (nth 2 cell))) (y (+ bottom (nth 3 cell))))
            (draw-polyline (list (list x y) (list (+ x (nth 4 cell)) y) (list (+ x (nth 4 cell)) (+ y 12)) (list x (+ y 12)))
                           "FRAME" T 0.25)
            (draw-text (list (+ x 1.5) (+ y 8.8)) (second cell) 1.8 "ZONES" 'left)
            (draw-attribute-definition (first cell) (list (+ x 1.5) (+ y 2.5)) "" (nth 5 cell) "FRAME" nil (first cell) 'left)))
        (append (wide-cells room) title-cells)))

(defun draw-frame (name width height columns rows)
  (let* ((left (+ binding zone-strip)) (bottom margin)
         (right (- width margin)) (top (- height margin zone-strip)))
    (define-block (string-append "ZFRAME_" name) '(0 0)
      (lambda ()
        (draw-polyline (list (list left bottom) (list right bottom) (list right top) (list left top)) "FRAME" T 0.7)
        (draw-polyline (list (list binding bottom) (list right bottom) (list right (+ top zone-strip))
                             (list binding (+ top zone-strip))) "ZONES" T)
        (draw-zones left bottom right top columns rows)
        (draw-title-block right bottom (- right left))))
    (insert-block (string-append "ZFRAME_" name) '(0 0) 1 0 "FRAME")
    (mapc 'set-variable '("PAPER_WIDTH" "PAPER_HEIGHT" "ZONE_COLUMNS" "ZONE_ROWS" "ZONE_LEFT" "ZONE_BOTTOM" "ZONE_RIGHT" "ZONE_TOP"
                          "AREA_LEFT" "AREA_BOTTOM" "AREA_RIGHT" "AREA_TOP")
          (list (float width) (float height) columns rows left bottom right top
                (+ left 3.0) (+ bottom title-height 3.0) (- right 3.0) (- top 3.0)))))

(defun site-draw-frame (name)
  (let ((frame (assoc name GBL_site_frames)))
    (unless frame (error "no frame of the name " name))
    (apply (cadr frame) (cons name (cddr frame)))))
