; What a placed circuit leaves behind: entity data on its motor or load, and rows in the project's database.

(setq site-control-entity nil ; the motor or load of the circuit at work
      site-control-params nil ; its 31 fields as a text
      site-control-wires nil  ; its wires as a text
      site-placed-components nil ; ((component . CODE) ...), the last one first
      GBL_qn_bv_marker_data nil)

; 31 fields between ";". An empty field is written as a blank: a reader that cuts at ";" would lose it. Of a motor or
; load that nobody chose, only `control` is told, which says what it is.
(defun params-text (data control)
  (let ((fields nil) (is-chosen (not (string=? (data-text data 0) ""))))
    (dotimes (index 31)
      (let ((text (cond (is-chosen (data-text data index)) ((= index 29) control) (T ""))))
        (setq fields (cons (if (string=? text "") " " text) fields))))
    (string-join (reverse fields) ";")))

; ("10AWG" "BLK_10AWG" "1")("8AWG" "GRN_8AWG" "3"). The grounding conductor stands last: ahead of the others it would
; hide them from the reader.
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

; Each motor keeps its data. Of several, the first one stands for the circuit: a build that takes the circuit over
; hands its data to the first motor.
(defun record-control-entity (entity data control)
  (let ((params (params-text data control)) (wires (wires-text data)))
    (unless site-control-entity
      (setq site-control-entity entity site-control-params params site-control-wires wires))
    (entity-data-set! entity "ORL_QN_BV_CIRCPARAMS" params)
    (entity-data-set! entity "ORL_QN_BV_CIRCPARAMS2" wires)))

; The rows of a finished circuit. A project without a database keeps no records.
(defun record-circuit (template args)
  (when (and site-project-database site-control-entity)
    (insert-row "BRENVOLT" '("DWGIX" "HDL" "CIRCUIT" "PARAMS" "WIRES" "CODES" "CIRCUITKEY")
      (list "1" (handle-key site-control-entity) (string-join (circuit-fields template args) ";")
            (quoted-fields site-control-params) site-control-wires (codes-text)
            (string-append "1-" (entity-handle site-control-entity))))
    (mapc 'record-component (reverse (mapcar 'car site-placed-components)))))

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

; CODE[=HANDLE]=1,2;CODE=3: the presets of a build that takes the circuit over. The handle is that of the first
; component which a marker of the CODE placed; a CODE without components has none.
(defun codes-text () (string-join (mapcar 'code-text site-saved-codes) ";"))
(defun code-text (row)
  (let ((part (find-if (lambda (placed) (string-ci=? (or (cdr placed) "") (car row))) (reverse site-placed-components))))
    (string-append (car row) (if part (string-append "[=" (entity-handle (car part)) "]") "")
                   "=" (site-text (nth 2 row)))))

; The CODE of the marker whose form is at work; nil outside a build.
(defun marker-code ()
  (let* ((handle (nth (or (car GBL_qn_bv_marker_data) 0) (cadr GBL_qn_bv_marker_data)))
         (marker (and handle (handle->entity handle))))
    (when (and marker (marker? marker)) (entity-get (entity-attribute marker "CODE") 'text))))

(defun record-component (entity)
  (let* ((texts (entity-attributes entity))
         (text-of (lambda (tag) (site-text (cdr (assoc tag texts)))))
         (family (funcall text-of "FAMILY")))
    (if (string=? family "TRMS")
      (insert-row "TERMS" '("DWGIX" "HDL" "TAGSTRIP" "TERM" "PAR1_CHLD2")
        (list "1" (handle-key entity) (funcall text-of "TAGSTRIP") (funcall text-of "TERM01") "1"))
      (insert-row "COMP" '("DWGIX" "HDL" "TAGNAME" "FAMILY" "INST" "LOC" "DESC1" "DESC2" "DESC3" "MFG" "CAT"
                           "ASSYCODE" "RATING1" "CNT" "PAR1_CHLD2")
        (append (list "1" (handle-key entity))
                (mapcar text-of '("TAG1" "FAMILY" "INST" "LOC" "DESC1" "DESC2" "DESC3" "MFG" "CAT" "ASSYCODE" "RATING1"))
                '("1" "1"))))))

(defun insert-row (table columns values)
  (sql-execute site-project-database
    (string-append "INSERT INTO [" table "] ([" (string-join columns "],[") "]) VALUES ("
                   (string-join (mapcar 'sql-text values) ",") ")")))
(defun sql-text (value)
  (when (string-search "'" value) (error "a text for the project database must not hold a quote: " value))
  (string-append "'" value "'"))
