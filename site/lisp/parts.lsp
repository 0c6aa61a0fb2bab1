; The catalogue of parts, and the lookups that workbook rules name. Makers and numbers are invented.

; Rows of protection: maker, how its numbers begin, ratings. The ratings of 240.6 have no gap, since the next larger part
; of a load has to protect its wires.
(setq site-small-ratings '(15 20 25 30 35 40 45 50 60 70 80 90) site-large-ratings '(100 110 125 150))
(defun rated-parts (table maker number ratings type more)
  (mapcar (lambda (amperes)
            (let ((rating (number->string amperes)))
              (list table amperes maker (string-append number rating) "" type (string-append rating "A") more)))
          ratings))

; Table, up to this current, manufacturer, catalogue number, assembly code, type, ratings. Rising within a maker.
(setq site-parts (append
  (rated-parts "CB" "Nordhaven" "CB3-0" site-small-ratings "BREAKER" "25KA")
  (rated-parts "CB" "Nordhaven" "CB3-" site-large-ratings "BREAKER" "35KA")
  (rated-parts "CB" "Carrick" "KB-" (append site-small-ratings '(100)) "BREAKER" "18KA")
  (rated-parts "CB2" "Nordhaven" "CB2-0" site-small-ratings "BREAKER" "25KA")
  (rated-parts "CB2" "Nordhaven" "CB2-" site-large-ratings "BREAKER" "35KA")
  (rated-parts "FU" "Fusewell" "FT-0" site-small-ratings "FUSE" "600V")
  (rated-parts "FU" "Fusewell" "FT-" (append site-large-ratings '(175 200)) "FUSE" "600V")
  '(("DS"   30 "Nordhaven" "DS-3030" "" "SWITCH" "30A" "600V")
    ("DS"   60 "Nordhaven" "DS-3060" "" "SWITCH" "60A" "600V")
    ("DS"  100 "Nordhaven" "DS-3100" "" "SWITCH" "100A" "600V")
    ("DS"  200 "Nordhaven" "DS-3200" "" "SWITCH" "200A" "600V")
    ("DS2"  30 "Nordhaven" "DS-2030" "" "SWITCH" "30A" "600V")
    ("DS2"  60 "Nordhaven" "DS-2060" "" "SWITCH" "60A" "600V")
    ("DS2" 100 "Nordhaven" "DS-2100" "" "SWITCH" "100A" "600V")
    ("DS2" 200 "Nordhaven" "DS-2200" "" "SWITCH" "200A" "600V")
    ("MS"    9 "Carrick"   "MC-09-120" "A1" "CONTACTOR" "9A" "120V COIL")
    ("MS"   18 "Carrick"   "MC-18-120" "A1" "CONTACTOR" "18A" "120V COIL")
    ("MS"   25 "Carrick"   "MC-25-120" "A1" "CONTACTOR" "25A" "120V COIL")
    ("MS"   40 "Carrick"   "MC-40-120" "A1" "CONTACTOR" "40A" "120V COIL")
    ("MS"   65 "Carrick"   "MC-65-120" "A1" "CONTACTOR" "65A" "120V COIL")
    ("OL"    9 "Carrick"   "OR-05-09" "" "OVERLOAD" "5-9A")
    ("OL"   18 "Carrick"   "OR-10-18" "" "OVERLOAD" "10-18A")
    ("OL"   25 "Carrick"   "OR-18-25" "" "OVERLOAD" "18-25A")
    ("OL"   65 "Carrick"   "OR-40-65" "" "OVERLOAD" "40-65A")
    ("XF"  100 "Carrick"   "CT-150"  "" "TRANSFORMER" "150VA" "480-120V"))))

; How many times a motor's current a part of a table has to carry, and a load's: protection at 2.5 times the current of a
; heater would not protect its wires. The current of a receptacle is its own rating, which protection does not exceed.
(setq site-part-factors '(("DS" 1.15 1.25) ("CB" 2.5 1.25) ("FU" 1.75 1.25) ("MS" 1.0 1.0) ("OL" 1.0 1.0) ("XF" 0.0 0.0)))

(setq site-current nil ; of the motor or load that was looked up or inserted last in this circuit; nil for none
      site-load nil) ; the type of the load; nil for a motor

; The plug-in's lookups, which also remember the current; the results are theirs.
(defun site_motor_lookup (&rest args) (note-current (apply 'zan_bv_motor_select args) 7 nil))
(defun site_load_lookup (&rest args)
  (let ((answer (apply 'zan_bv_power_feed_select args)))
    (note-current answer 6 (site-text (car answer)))))
(defun note-current (answer place load)
  (when answer (setq site-current (nth place answer) site-load load))
  answer)

(defun site_wire_lookup (fla) (setq site-current fla site-load nil) (zan_bv_wire_select))
; The form of the wires does not have the type: it stays that of the lookup before, if any.
(defun site_feed_wire_lookup (fla) (setq site-current fla site-load (or site-load "")) (zan_bv_pf_wire_select))

; A part from a table: (manufacturer catalogue-number assembly type ratings ...). While the host has the editor, the
; user may pick a component whose rating the part shall have; a pick of nothing uses the current of the motor. An
; existing manufacturer of the group is kept. Nil when no part is large enough, or when the required size is unknown: a
; part for no current would be too small for any motor. The form of a circuit with two poles gives their number: what was
; saved or chosen is kept by the table's name, so the name is the same for all.
(defun site_part_lookup (table mfg cat asm &optional poles)
  (let* ((picked (pick-entity "Component with the rating of the part, Enter for the motor's: "))
         (wanted (if picked (entity-rating (car picked)) (motor-rating table)))
         (part (when wanted (find-if (lambda (row) (part-fits? row (part-table table poles) mfg wanted)) site-parts))))
    (unless wanted (princ "\nThe current of the motor is not known: look the motor up, or insert its unit first.\n"))
    (when part
      ; All ratings, or those of the part before would stay.
      (sublist (append (nthcdr 2 part) '("" "" "" "" "" "")) 0 10))))

; Breakers and switches with two poles have rows of their own, CB2 and DS2.
(defun part-table (table poles)
  (if (and (eql poles 2) (member (string-upcase table) '("CB" "DS"))) (string-append table "2") table))

(defun part-fits? (row table mfg wanted)
  (and (string-ci=? (first row) table)
       (or (string=? mfg "") (string-ci=? (third row) mfg))
       (>= (second row) wanted)))

; What a part of the table has to carry; 0 where no current counts, nil while the motor's is not known.
(defun motor-rating (table)
  (let* ((family (string-upcase table))
         (factors (or (assoc family site-part-factors) '("" 0.0 0.0)))
         (factor (cond ((not site-load) (second factors))
                       ((string-ci=? site-load "Receptacle") (min 1.0 (third factors)))
                       (T (third factors)))))
    (cond ((zerop factor) 0) (site-current (* site-current factor)))))

; "35A" is 35; 0 for what has no rating.
(defun entity-rating (entity)
  (let* ((attributes (entity-attributes entity))
         (text (cdr (assoc "RATING1" attributes)))
         (number (when text (string->number (string-trim "Aa " text)))))
    (or number 0)))

(site-expose '(site_motor_lookup site_load_lookup site_wire_lookup site_feed_wire_lookup site_part_lookup))
