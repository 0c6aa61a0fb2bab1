; A build with the trace flag on: a line before and after every call of a workbook form. The flag is the seventh
; element of the symbol that the parent product keeps for a circuit.
(setq GBL_qn_bv_data (list "" nil 1.0 1.0 1.0 1.0 1))
(setq GBL_qn_electcodestd "NEC")
(zan_bv_code_std_desc)
(site-build "templates/control_station.json" (find-file "zan_brenvolt.xls") "CTRL_3W" "Control circuits"
            "Start and stop station" "" '(0.0 0.0) "" "" "")
