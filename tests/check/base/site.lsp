; A small site: what the plug-in and the tool call, and the functions of its worksheets.
(setq GBL_qn_electcodestd "NEC"
      GBL_qn_bv_data (list "" nil 1.0 1.0 1.0 1.0 0))

(defun c:zan_find_file (name where) (find-file name))
(defun c:zan_bv_figure_mccdb_fnam () (site-database))
(defun zan_get_active_dwg_wiretype () (wire-layers))
(defun zan_get_activedrawing_wiretype_settings (layer) (wire-layer-settings layer))
(defun qn_mdb_proj_dbfnam (project) nil)
(defun qn_bv_save_codehdl (rows) T)

; Texts of what the plug-in hands over.
(defun text-of (value) (cond ((stringp value) value) ((numberp value) (number->string value)) (T "")))
(defun wire-row (data index) (nth index (cadr data)))
(defun rating-of (rows code) (text-of (nth 3 (assoc code rows))))

(defun wire-layer (layer)
  (unless (member layer (wire-layers)) (layer-define layer "#1a1a1a" 'continuous T))
  layer)
(defun size-layer (row)
  (wire-layer (string-append "BLK_" (if (string=? (text-of (nth 0 row)) "") "14AWG" (text-of (nth 0 row))))))

(defun part-block ()
  (unless (block-defined? "ZPART")
    (define-block "ZPART" '(0 0)
      (lambda ()
        (draw-line '(0 0) '(10 0))
        (draw-attribute-definition "FAMILY" '(0 0) "CB" 2 "0" T)
        (mapc (lambda (tag y) (draw-attribute-definition tag (list 0 y) "" 2)) '("TAG1" "RATING1" "CAT") '(3 6 9)))))
  "ZPART")

; Forms of the worksheets.
(defun draw_wire (xyz scl index length data misc1)
  (draw-line xyz (list (+ (car xyz) length) (cadr xyz)) (size-layer (wire-row data index)))
  T)
(defun draw_text (xyz scl text) (draw-text xyz text 3) T)
(defun draw_lit (xyz scl) (draw-text (list (car xyz) (- (cadr xyz) 8)) "LIT" 3) T)
(defun draw_part (xyz scl tag data2 code)
  (insert-block (part-block) xyz 1 0 "0"
    (list (cons "TAG1" tag) (cons "RATING1" (rating-of data2 code)) (cons "CAT" (text-of (nth 4 (assoc code data2))))))
  T)
(defun draw_nested (xyz scl file) (insert-drawing file xyz) 2)
(defun find_part (table maker number assembly) nil)
(defun find_motor (type phase voltage speed load units fla frequency multiplier) nil)
(defun find_wire (fla) nil)
(mapc 'vz-korvo-defun
      '(zan_get_active_dwg_wiretype zan_get_activedrawing_wiretype_settings draw_wire draw_text draw_lit draw_part draw_nested
        find_part find_motor find_wire))

; Building.
(defun last-handle () (if (entity-last) (entity-handle (entity-last)) ""))
(defun site-insert-and-build (template args point)
  (insert-drawing template point)
  (zan_bv_build_circuit args))
(defun site-build (template workbook worksheet circuit type history point preset params wires &optional asks)
  (let ((args (list workbook worksheet circuit type history (if asks 0 1) (last-handle) (undo-count)
                    preset params "1" wires)))
    (site-insert-and-build template args point)))
