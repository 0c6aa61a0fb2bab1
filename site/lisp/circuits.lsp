; Placing a circuit as the parent product does: select, insert the template, build.

; The state of the drawing before the insertion, for a build: last entity, undo position.
(defun site-last-handle () (if (entity-last) (entity-handle (entity-last)) ""))

; Inserts a template at the point and builds the circuit in it. `args` is the list for zan_bv_build_circuit. A direct
; build that returns nil undoes the drawing to its former state; the value is the build's.
(defun site-insert-and-build (template args point)
  (let ((start (undo-count)) (before (site-last-handle)))
    (need-project)
    (setq site-current nil site-load nil site-saved-codes nil)
    (setq GBL_qn_bv_data (cons (car GBL_qn_bv_data) (cons (site-point point) (cddr GBL_qn_bv_data))))
    (next-circuit)
    (let ((entities (insert-drawing (or (find-file template) (error "the site has no template " template)) point
                                    (nth 2 GBL_qn_bv_data))))
      (unless (some 'marker? entities)
        (undo (- (undo-count) start))
        (error "template " template " holds no marker")))
    (let ((built (zan_bv_build_circuit args)))
      (if built
        (progn (fit-control-wires (entities-since before))
               (whiten-grounded-wires (entities-since before))
               (record-or-take-back template args before start))
        (undo (- (undo-count) start)))
      built)))

; Drawing, rows and saved configuration are all new or all old: where the rows cannot be written, the circuit goes out of
; the drawing, and the configuration that its build has saved is again what it was.
(defun record-or-take-back (template args before start)
  (let ((is-recorded nil))
    (unwind-protect
      (progn (record-circuit template args before) (setq is-recorded T))
      (unless is-recorded
        (setq site-rows-project nil)
        (undo (- (undo-count) start))
        (when GBL_qn_bv_saved_configuration (apply 'history-take-back GBL_qn_bv_saved_configuration))))))

(defun marker? (entity)
  (and (equal (entity-get entity 'kind) "block-reference")
       (string-ci=? (entity-get entity 'block) "ZAN_BV_MARKER_BLOCK")))

(defun site-point (point) (mapcar 'float (append point (if (nth 2 point) nil '(0.0)))))

; Builds a type that is named, at the point: directly and without a question, or with the configuration dialog when
; `asks` is true. The texts behind the history are the preset, component and wire fields of a rebuild, and may be empty; the
; parts that the preset names are those of the project's drawing `index`, else of the first.
(defun site-build (template workbook worksheet circuit type history point preset params wires &optional asks index)
  (site-insert-and-build template
    (append (list workbook worksheet circuit type history (if asks 0 1) (site-last-handle) (undo-count))
            (list preset params (or index "1") wires))
    point))

; Saves the choices of a configuration under another name, as a build of it writes them: the circuit is built and taken
; back. Nil when that fails.
(defun site-save-configuration (name template workbook worksheet circuit type history)
  (let ((start (undo-count)) (before (site-last-handle)) (saved nil))
    (setq site-current nil site-load nil)
    (unwind-protect
      (progn
        (insert-drawing (or (find-file template) (error "the site has no template " template)) '(0.0 0.0 0.0) 1.0)
        (setq saved (car (zan_bv_build_and_save
                           (list workbook worksheet circuit type history 1 before (undo-count) "" "" "" "") name))))
      (undo (- (undo-count) start)))
    saved))

; As the user does it: choose in the dialog, then place at the point. Nil when the user cancels.
(defun site-circuit (point)
  (let ((answer (zan_bv_select_circuit)))
    (when answer (site-place answer point))))

; Places the result of zan_bv_select_circuit, with its presets and the circuit that is taken over.
(defun site-place (answer point)
  (let ((site-presets (third answer)) (site-takes-over (nth 3 answer)))
    (site-insert-and-build (first answer) (append (second answer) (takeover-fields (nth 3 answer))) point)))

; The last four arguments of a build that takes over a circuit of the project: (flag drawing handle circuit params
; wires codes). Without the flag its parts, which are found by the drawing, are not taken over.
(defun takeover-fields (existing)
  (when existing
    (list (nth 6 existing) (nth 4 existing) (if (string=? (first existing) "1") (nth 1 existing) "")
          (nth 5 existing))))
