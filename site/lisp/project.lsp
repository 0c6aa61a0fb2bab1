; The rows of the project's database follow the drawing: a row exists as long as its component or motor, and has the
; same values. So an undo, an erased circuit and a drawing closed without saving remove their rows, and a redo restores
; them.

; The index of the drawing in the project, by which its rows differ from those of other drawings with the same handles.
; A drawing gets it with its first circuit in the project and keeps it as its variable SITE_DWGIX. Drawings of an earlier
; release have none, and all of them wrote rows with the index 1.

(defun own-index () (let ((index (get-variable "SITE_DWGIX"))) (if (and index (not (string=? index ""))) index nil)))

; Nil for a drawing that has no rows in this project yet. An index whose rows are of other entities is that of another
; drawing: this one came from another project.
(defun drawing-index ()
  (let ((own (own-index)))
    (cond (own (if (or (rows-of-index own) (not (index-has-rows? own))) own nil))
          ((and (not (member "1" (given-indexes))) (rows-of-index "1")) "1")
          (T nil))))

(defun rows-of-index (index)
  (apply 'append (mapcar (lambda (table) (rows-of-table table index)) site-row-tables)))
(defun first-column (statement)
  (mapcar 'car (cdr (ignore-errors (sql-query site-project-database statement)))))
(defun index-has-rows? (index)
  (some (lambda (table)
          (first-column (string-append "SELECT HDL FROM [" table "] WHERE DWGIX=" (sql-text index))))
        site-row-tables))

; The indexes that were given to drawings are rows of QN_M with the attribute DRAWING. A project without this table
; cannot tell drawings apart: they all have the index 1.
(setq site-given-index-query "SELECT [ATTR_VAL] FROM [QN_M] WHERE [ATTR_NAME] LIKE 'DRAWING'")
(defun given-indexes () (first-column site-given-index-query))

; What the drawing had before the circuit came: the new entities may have the handles of another drawing's rows.
(setq site-index-before nil)

(defun claim-drawing-index ()
  (let ((index site-index-before))
    (cond ((not (tells-drawings-apart?)) (keep-index "1"))
          ((not index) (keep-index (next-drawing-index)))
          ((not (own-index))
            (sql-execute site-project-database
              "INSERT INTO [QN_M] ([ATTR_NAME],[ATTR_VAL]) VALUES ('DRAWING','1')")
            (keep-index index)))))
(defun on-server? () (eql 0 (string-search-ci "odbc:" site-project-database)))
; Whether the project has the table of the indexes, as each project on a server does. A file that cannot be read at all
; is not an answer but an error: the drawing would share the index of others.
(defun tells-drawings-apart? ()
  (cond ((on-server?) (sql-query site-project-database site-given-index-query))
        ((ignore-errors (sql-query site-project-database site-given-index-query)))
        (T (sql-query site-project-database "SELECT HDL FROM [BRENVOLT] WHERE DWGIX=''") nil)))
(defun keep-index (index)
  (unless (equal (own-index) index) (set-variable "SITE_DWGIX" index)))

; One more than the highest in use. Two programs at once get two: SQLite lets one transaction write at a time, on a
; PostgreSQL server the transactions of this program take turns, and the table is locked against other programs. Any
; other server has to lock the table: where it refuses, no index is given, since two drawings could get the same one.
; LIKE and a text made by || need no rule of comparison that a foreign driver lacks.
(defun next-drawing-index ()
  (let* ((used (apply 'append
                 (mapcar (lambda (table) (first-column (string-append "SELECT DISTINCT DWGIX FROM [" table "]")))
                         site-row-tables)))
         (highest (apply 'max (cons 0 (mapcar (lambda (index) (or (string->number (site-text index)) 0)) used))))
         (give (string-append
                 "INSERT INTO [QN_M] ([ATTR_NAME],[ATTR_VAL]) SELECT 'DRAWING',CAST(MAX(N)+1 AS VARCHAR(12)) FROM "
                 "(SELECT CAST([ATTR_VAL] || '' AS INTEGER) AS N FROM [QN_M] WHERE [ATTR_NAME] LIKE 'DRAWING' "
                 "UNION ALL SELECT "
                 (number->string (floor highest)) ") AS T"))
         (number "SELECT MAX(CAST([ATTR_VAL] || '' AS INTEGER)) FROM [QN_M] WHERE [ATTR_NAME] LIKE 'DRAWING'")
         (locked (list "LOCK TABLE [QN_M] IN SHARE ROW EXCLUSIVE MODE" give)))
    (car (second (cond ((not (on-server?)) (sql-execute site-project-database (list give) number))
                       ((ignore-errors (sql-execute site-project-database locked number)))
                       ((takes-turns?) (sql-execute site-project-database (list give) number))
                       ; Again, so that the server's reason reaches the user.
                       (T (sql-execute site-project-database locked number)))))))

; Whether the server lets one transaction of this program write at a time: a function that only such a server has.
(defun takes-turns? ()
  (some (lambda (question) (ignore-errors (sql-query site-project-database question)))
        '("SELECT sqlite_version() AS V" "SELECT pg_backend_pid() AS V")))

; Rows that were written or found for this drawing:
;   (table handle look columns values is-in-project drawn saved)
; The look distinguishes the entity from another one that gets its handle later. `drawn` is the entity's data when the
; values were last made from it, and `saved` the values of the row when the drawing was saved, nil for none.
(setq site-rows nil site-rows-project nil)

(setq site-row-tables '("BRENVOLT" "COMP" "TERMS"))

(defun row-values (row) (nth 4 row))
(defun row-is-in? (row) (nth 5 row))
(defun row-saved (row) (nth 7 row))
(defun row-index (row) (cdr (assoc "DWGIX" (mapcar 'cons (nth 3 row) (row-values row)))))
(defun row-with (row values is-in drawn saved) (append (sublist row 0 4) (list values is-in drawn saved)))

(defun entity-look (entity)
  (when (and entity (equal (entity-get entity 'kind) "block-reference"))
    (list (entity-get entity 'block) (entity-get entity 'position))))
(defun row-entity (row)
  (let* ((entity (handle->entity (second row))) (look (entity-look entity)))
    (when (and look (equal look (third row))) entity)))

; The columns of a row that come from the entity itself, with their values.
(setq site-drawn-columns
  '(("COMP" ("TAGNAME" . "TAG1") ("FAMILY" . "FAMILY") ("INST" . "INST") ("LOC" . "LOC") ("DESC1" . "DESC1")
            ("DESC2" . "DESC2") ("DESC3" . "DESC3") ("MFG" . "MFG") ("CAT" . "CAT") ("ASSYCODE" . "ASSYCODE")
            ("RATING1" . "RATING1"))
    ("TERMS" ("TAGSTRIP" . "TAGSTRIP") ("TERM" . "TERM01"))))
(defun drawn-values (table entity)
  (if (string=? table "BRENVOLT")
    (list (cons "PARAMS" (quoted-fields (site-text (car (entity-data entity "ORL_QN_BV_CIRCPARAMS")))))
          (cons "WIRES" (site-text (car (entity-data entity "ORL_QN_BV_CIRCPARAMS2")))))
    (let ((texts (entity-attributes entity)))
      (mapcar (lambda (pair) (cons (car pair) (site-text (cdr (assoc (cdr pair) texts)))))
              (cdr (assoc table site-drawn-columns))))))

; A row of an entity, in place of an earlier one of the same table: what the drawing does not contain is passed here.
; It is written by the next site-sync-records.
(defun remember-row (entity table columns values)
  (let* ((handle (entity-handle entity)) (drawn (drawn-values table entity))
         (is-same (lambda (row) (and (string=? (first row) table) (string=? (second row) handle))))
         (former (find-if is-same site-rows)))
    (setq site-rows
      (cons (list table handle (entity-look entity) (append columns (mapcar 'car drawn))
                  (append values (mapcar 'cdr drawn)) nil drawn (row-saved former))
            (remove-if is-same site-rows)))))

; The project's rows of this drawing. Rows whose entities are not in the drawing belong to other drawings.
(defun read-project-rows ()
  (unless (equal site-rows-project site-project-database)
    (setq site-rows-project site-project-database
          site-rows (let ((index (and site-project-database (drawing-index))))
                      (if index (rows-of-index index) nil)))))

(defun rows-of-table (table index)
  (let* ((answer (ignore-errors (sql-query site-project-database
                   (string-append "SELECT * FROM [" table "] WHERE DWGIX=" (sql-text index)))))
         (columns (car answer)) (rows nil))
    (dolist (values (cdr answer))
      (let* ((key (site-text (cdr (assoc "HDL" (mapcar 'cons columns values)))))
             (handle (if (eql 0 (string-search "h=" key)) (substring key 2) ""))
             (entity (handle->entity handle)))
        (when (entity-look entity)
          (setq rows (cons (list table handle (entity-look entity) columns values T (drawn-values table entity) values)
                           rows)))))
    rows))

; Makes the project's rows those of the present drawing, all or none. The host calls it when the drawing has changed,
; so a project that cannot be written now is written then.
(defun site-sync-records () (write-project-rows 'row-as-drawn))
(defun row-as-drawn (row)
  (let ((entity (row-entity row)))
    (if (not entity)
      (row-with row (row-values row) nil (nth 6 row) (row-saved row))
      (let ((drawn (drawn-values (first row) entity)))
        (row-with row (if (equal drawn (nth 6 row)) (row-values row) (values-drawn row drawn)) T drawn
                  (row-saved row))))))
(defun values-drawn (row drawn)
  (mapcar (lambda (column value) (let ((pair (assoc column drawn))) (if pair (cdr pair) value)))
          (nth 3 row) (row-values row)))

; Called when the drawing was opened or saved: its present rows stay if it is closed without saving later.
(defun site-records-saved ()
  (when (site-sync-records)
    (setq site-rows
      (mapcar (lambda (row) (row-with row (row-values row) (row-is-in? row) (nth 6 row)
                                      (if (row-is-in? row) (row-values row) nil)))
              site-rows))))

; The drawing is left without being saved.
(defun site-records-dropped ()
  (write-project-rows
    (lambda (row) (row-with row (or (row-saved row) (row-values row)) (if (row-saved row) T nil) (nth 6 row)
                            (row-saved row)))))

(defun write-project-rows (become)
  (when site-project-database
    (read-project-rows)
    (let ((rows (mapcar become site-rows)) (statements nil))
      (mapc (lambda (before after)
              (unless (and (equal (row-is-in? before) (row-is-in? after))
                           (or (not (row-is-in? after)) (equal (row-values before) (row-values after))))
                (setq statements (cons (delete-statement after) statements))
                (when (row-is-in? after) (setq statements (cons (insert-statement after) statements)))))
            (reverse site-rows) (reverse rows))
      (when statements (sql-execute site-project-database (reverse statements)))
      (setq site-rows rows)
      T)))

(defun delete-statement (row)
  (string-append "DELETE FROM [" (first row) "] WHERE DWGIX=" (sql-text (row-index row))
                 " AND HDL=" (sql-text (string-append "h=" (second row)))))
(defun insert-statement (row)
  (string-append "INSERT INTO [" (first row) "] ([" (string-join (nth 3 row) "],[") "]) VALUES ("
                 (string-join (mapcar 'sql-text (row-values row)) ",") ")"))
(defun sql-text (value)
  (if value (string-append "'" (string-join (string-split value "'") "''") "'") "NULL"))

; A project that cannot be written is reported before anything is drawn or saved for it.
(defun need-project ()
  (when site-project-database
    (sql-execute site-project-database nil)
    (read-project-rows)
    (setq site-index-before (drawing-index))))
