; What the plug-in's native code reads and calls. Native code reaches only names that are exposed, and those
; beginning with c:.

; (name point circuit-scale rung-spacing spacing component-scale trace workbook)
(setq GBL_qn_bv_data (list "" nil 1.0 1.0 1.0 1.0 0)
      GBL_qn_electcodestd "NEC"
      GBL_qn_bv_save_codehdl_combos nil
      GBL_qn_bv_saved_configuration nil
      GBL_qn_combined_tagloc 0
      GBL_qn_strcase 1)

; A site whose tables are on a server names it in site.lsp by (setq site-connection "odbc:...") before all else; its
; projects are there too.
(setq site-project-database site-connection ; data source of the project; nil for none
      site-saved-codes nil)     ; what the last build used: ((CODE nil "1,2") ...)

(defun site-expose (names) (mapc (lambda (name) (vz-korvo-defun name)) names))

; The 3 means the support path, the only place of this site.
(defun c:zan_find_file (name where) (find-file name))

(defun zan_get_active_dwg_wiretype () (wire-layers))

; One pair (code . value) for each setting; the one at position 24 says whether wires of the layer carry numbers.
(defun zan_get_activedrawing_wiretype_settings (layer) (wire-layer-settings layer))

(defun qn_mdb_proj_dbfnam (&optional project) site-project-database)

; Called at the end of a build with ((CODE nil text) ...): the option values by CODE.
(defun qn_bv_save_codehdl (rows)
  (setq site-saved-codes rows)
  T)

; The database of motor, load and wire tables.
(defun c:zan_bv_figure_mccdb_fnam () (if (fboundp 'site-database) (site-database) ""))

; 1 for metric sites.
(defun c:zan_bv_inch_or_metric () 0)

(site-expose '(zan_get_active_dwg_wiretype zan_get_activedrawing_wiretype_settings
               qn_mdb_proj_dbfnam qn_bv_save_codehdl))
