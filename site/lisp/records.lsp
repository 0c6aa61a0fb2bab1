; The records of a placed circuit: entity data on its motor or load, and rows in the project's database.

(setq GBL_qn_bv_marker_data nil)

; 31 fields between ";". An empty field is written as a blank: a reader that splits at ";" would lose it. Of a motor or
; load that was not chosen, only `control` is written, which names the kind.
(defun params-text (data control)
  (let ((fields nil) (is-chosen (not (string=? (data-text data 0) ""))))
    (dotimes (index 31)
      (let ((text (cond (is-chosen (data-text data index)) ((= index 29) control) (T ""))))
        (setq fields (cons (if (string=? text "") " " text) fields))))
    (string-join (reverse fields) ";")))

; ("10AWG" "BLK_10AWG" "1")("8AWG" "GRN_8AWG" "3"). The grounding conductor is last: before the others it would hide
; them from the reader.
(defun wires-text (data)
  (let* ((wires (remove-if (lambda (row) (string=? (site-text (nth 0 row)) "")) (data-wires data)))
         (rows (append (remove-if 'ground-row? wires) (remove-if-not 'ground-row? wires))))
    (string-append "("
      (string-join
        (mapcar (lambda (row)
                  (let ((ground (ground-row? row)) (size (site-text (nth 0 row))))
                    (format nil "(~S ~S ~S)" size
                            (layer-name (site-text (nth 1 row)) size nil (if ground "GRN_@SIZE@" "BLK_@SIZE@"))
                            (if ground "3" "1"))))
                rows)
        "")
      ")")))

; Each motor keeps its data.
(defun record-control-entity (entity data control)
  (entity-data-set! entity "ORL_QN_BV_CIRCPARAMS" (params-text data control))
  (entity-data-set! entity "ORL_QN_BV_CIRCPARAMS2" (wires-text data)))

; A component of the current circuit remembers its marker's CODE, and the catalogue table of its part ("" for none),
; until the circuit is finished. In the drawing, so that an undo removes it with the component.
(defun note-component (symbol table)
  (entity-data-set! symbol "SITE_BUILD" (list (or (marker-code) "") table)))

; The end of a circuit, derived from the entities in the drawing after the previous ones. Of several motors, the first
; one represents the circuit: a build that takes the circuit over passes its data to the first motor. A circuit without
; motor or load, and a project without a database, have no records.
(defun record-circuit (template args before)
  (let* ((made (entities-since before))
         (components (remove-if-not (lambda (entity) (entity-data entity "SITE_BUILD")) made))
         (control (first-control (remove-if-not (lambda (entity) (entity-data entity "ORL_QN_BV_CIRCPARAMS")) made)))
         (codes (codes-text components)))
    (mapc (lambda (entity) (entity-data-set! entity "SITE_BUILD" nil)) components)
    (when (and site-project-database control)
      (claim-drawing-index)
      (remember-row control "BRENVOLT" '("DWGIX" "HDL" "CIRCUIT" "CODES" "CIRCUITKEY")
        (list (own-index) (handle-key control) (string-join (circuit-fields template args) ";") codes
              (string-append (own-index) "-" (entity-handle control))))
      (mapc 'record-component components)
      (site-sync-records))))

; By the letter of its CODE (MOTOR-A), not by the drawing: the dialog may have inserted another motor first, whose data
; would go to the first one when the circuit is taken over.
(defun first-control (controls)
  (let ((best (car controls)))
    (mapc (lambda (entity) (when (string<? (build-code entity) (build-code best)) (setq best entity))) (cdr controls))
    best))
(defun build-code (entity) (site-text (car (entity-data entity "SITE_BUILD"))))

; The entities after the one with this handle; all of the space for "" and for one that is gone.
(defun entities-since (handle)
  (let ((rest-entities (entities-in-space)) (found nil))
    (while (and rest-entities (not found))
      (when (string=? (entity-handle (car rest-entities)) handle) (setq found T))
      (setq rest-entities (cdr rest-entities)))
    (if found rest-entities (entities-in-space))))

(defun handle-key (entity) (string-append "h=" (entity-handle entity)))

; Nine fields: template and the first eight arguments of the build.
(defun circuit-fields (template args) (cons template (mapcar 'field-text (sublist args 0 8))))
(defun field-text (value)
  (let ((text (site-text value))) (if (string=? text "") " " text)))

; "a";"";"c": the fields as a later build takes them, where the empty ones count.
(defun quoted-fields (text)
  (string-append "\""
    (string-join (mapcar (lambda (field) (string-trim " " field)) (string-split text ";")) "\";\"")
    "\""))

; CODE[=HANDLE]=1,2;CODE=3: the presets of a build that takes the circuit over. A CODE is repeated for each component
; that its markers placed with a part of the catalogue, in the order of the worksheet's tables, so that the parts of
; all of them are found. Where none has a part, it occurs once, with its first component if there is one.
(defun codes-text (components)
  (string-join (apply 'append (mapcar (lambda (row) (code-texts row components)) site-saved-codes)) ";"))
(defun code-texts (row components)
  (let* ((own (remove-if-not
                (lambda (entity) (string-ci=? (car (entity-data entity "SITE_BUILD")) (car row))) components))
         (with-part (remove-if (lambda (entity) (string=? (cadr (entity-data entity "SITE_BUILD")) "")) own))
         (told (cond (with-part with-part) (own (list (car own))) (T (list nil)))))
    (mapcar (lambda (entity)
              (string-append (car row) (if entity (string-append "[=" (entity-handle entity) "]") "")
                             "=" (site-text (nth 2 row))))
            told)))

; The CODE of the marker whose form is running; nil outside a build.
(defun marker-code ()
  (let* ((handle (nth (or (car GBL_qn_bv_marker_data) 0) (cadr GBL_qn_bv_marker_data)))
         (marker (and handle (handle->entity handle))))
    (when (and marker (marker? marker)) (entity-get (entity-attribute marker "CODE") 'text))))

(defun record-component (entity)
  (let ((head (list (own-index) (handle-key entity))))
    (if (string=? (site-text (cdr (assoc "FAMILY" (entity-attributes entity)))) "TRMS")
      (remember-row entity "TERMS" '("DWGIX" "HDL" "PAR1_CHLD2") (append head '("1")))
      (remember-row entity "COMP" '("DWGIX" "HDL" "CNT" "PAR1_CHLD2") (append head '("1" "1"))))))
