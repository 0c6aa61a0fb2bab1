; The functions that forms of the workbook call. Each gets the marker's position and the component scale, then the
; values in the workbook. Where a function takes data and data2, they are #data and #data2. They return T, or 2 when
; they have inserted a template with its own markers.

; Texts

(defun site_title (xyz scl text)
  (draw-text xyz (string-append (circuit-name) "   " text) (* 4.0 scl) "TITLES")
  T)

; A motor's or load's data below the title, when there is any.
(defun site_motor_data (xyz scl data)
  ; A saved configuration has its current without a lookup, and parts are selected by it.
  (when (string->number (data-text data 7))
    (setq site-current (string->number (data-text data 7))
          site-load (when (string=? (data-text data 29) "!PF_CTRL") (data-text data 0))))
  (unless (string=? (data-power data) "")
    (draw-text xyz (motor-line data) (* 2.5 scl) "DESCRIPTIONS"))
  T)
(defun motor-line (data)
  (string-append (string-upcase (data-text data 0)) "  " (data-power data) "  " (data-supply data)))

; Wires

; A motor's wire for which no size is known is drawn as the site's size and marked, so that nobody takes it for sized.
; Its grounding conductor likewise.
(defun mark-unsized (xyz scl row)
  (when (string=? (site-text (car row)) "")
    (draw-text (offset xyz 0 (* scl 3.6)) "NO WIRE SIZE" (* scl 1.8) "DESCRIPTIONS")))

(defun site_wire (xyz scl index length data misc1)
  (mark-unsized xyz scl (conductor-row data index))
  (draw-wire xyz (offset xyz (* scl length) 0) (row-layer (conductor-row data index) misc1 "BLK_@SIZE@"))
  T)

; A wire through points given as dx dy dx dy ... from the marker, with a dot where it leaves another one. A path
; that does not begin at the marker branches off a wire that has its mark.
(defun site_wire_path (xyz scl index data misc1 steps)
  (when (and (zerop (first steps)) (zerop (second steps))) (mark-unsized xyz scl (conductor-row data index)))
  (draw-path xyz scl steps (row-layer (conductor-row data index) misc1 "BLK_@SIZE@"))
  T)

(defun draw-path (xyz scl steps layer)
  (let ((from (offset xyz (* scl (first steps)) (* scl (second steps)))) (rest-steps (cddr steps)))
    (while rest-steps
      (let ((to (offset xyz (* scl (first rest-steps)) (* scl (second rest-steps)))))
        (draw-wire from to layer)
        (setq from to rest-steps (cddr rest-steps))))))

(defun site_dot (xyz scl dx dy)
  (place-symbol "ZDOT" (offset xyz (* scl dx) (* scl dy)) scl nil)
  T)

; Along the circuit to the frame of the motor or load.
(defun site_ground_wire (xyz scl dx dy data misc1)
  (mark-unsized xyz scl (ground-row data))
  (draw-path xyz scl (list 0 0 dx 0 dx dy) (row-layer (ground-row data) misc1 "GRN_@SIZE@"))
  T)

(defun site_source_ground (xyz scl)
  (place-symbol "ZGROUND" xyz scl '(("DESC1" . "PE")))
  T)

; MISC1 contains the text after the circuit's number.
(defun site_wire_number (xyz scl misc1)
  (place-symbol "ZWIRENO" xyz scl (list (cons "WIRENO" (control-number (site-text misc1)))))
  T)

; As site_ground_wire, through points given as dx dy dx dy ... from the marker.
(defun site_ground_path (xyz scl data misc1 steps)
  (mark-unsized xyz scl (ground-row data))
  (draw-path xyz scl steps (row-layer (ground-row data) misc1 "GRN_@SIZE@"))
  T)

; The lines of a feeder that several motors share. No table sizes them: the size is the user's.
(defun site_feeder (xyz scl poles length size)
  (dotimes (pole poles)
    (let ((from (offset xyz 0 (* scl pole (- pole-distance)))))
      (draw-wire from (offset from (* scl length) 0) (wire-layer (string-append "BLK_" size)))))
  T)

; The grounding conductor of the feeder, by the rating of its protection and not by that of a motor: all branches leave it.
(defun site_feeder_ground (xyz scl dx dy length size)
  (let ((from (offset xyz (* scl dx) (* scl dy))))
    (draw-wire from (offset from (* scl length) 0) (wire-layer (string-append "GRN_" size))))
  T)

; Power. Where a circuit has several motors, the last argument is the motor's letter.

(defun site_switch (xyz scl poles data data2)
  (place-in-wires (pole-name "ZDISC" poles) xyz scl poles lead
                  (cons (cons "TAG1" (tag-before "DS")) (part-texts data data2 "DS" "DISC" poles)))
  T)

(defun site_breaker (xyz scl poles data data2 &optional motor)
  (place-in-wires (pole-name "ZBREAK" poles) xyz scl poles lead
                  (cons (cons "TAG1" (tag-before "CB" motor)) (part-texts data data2 "CB" "BREAKER" poles)))
  T)

; Switch and fuses of a feeder have the rating that the user chose, since the motor tables size branches only.
(defun site_feeder_switch (xyz scl poles rating data)
  (place-in-wires (pole-name "ZDISC" poles) xyz scl poles lead
                  (append (part-texts data nil "DS" "DISC" poles)
                          (list (cons "TAG1" (tag-before "DS")) (cons "RATING1" rating))))
  T)

(defun site_feeder_fuses (xyz scl poles rating data)
  (place-in-wires (pole-name "ZFUSE" poles) (offset xyz (* scl 20) 0) scl poles lead
                  (append (part-texts data nil "FU" "FUSE_TD")
                          (list (cons "TAG1" (tag-before "FU")) (cons "RATING1" rating))))
  T)

; Fuses after a switch, 20 to the right of it. The kind of fuse is its code in auto-sizing.
(defun site_fuses (xyz scl poles kind data data2 &optional motor)
  (place-in-wires (pole-name "ZFUSE" poles) (offset xyz (* scl 20) 0) scl poles lead
                  (cons (cons "TAG1" (tag-before "FU" motor)) (part-texts data data2 "FU" kind)))
  T)

(defun site_contactor (xyz scl poles name data data2)
  (place-in-wires (pole-name "ZMAIN" poles) xyz scl poles lead
                  (cons (cons "TAG1" (tag-behind name)) (part-texts data data2 "MS" "CONTACTOR")))
  T)

; The second contactor of a reversing starter, 40 below the marker.
(defun site_lower_contactor (xyz scl poles name data data2)
  (site_contactor (offset xyz 0 (* scl -40)) scl poles name data data2))

; The mechanical interlock with a contactor 40 below the marker's, right of that contactor's tag.
(defun site_interlock (xyz scl)
  (place-symbol "ZLOCK" (offset xyz (* scl 8) (* scl -22)) scl nil)
  T)

; kind: heaters or electronic.
(defun site_overload (xyz scl poles kind data data2 &optional motor)
  (place-in-wires (pole-name (if (string-ci=? kind "electronic") "ZSSOL" "ZHEAT") poles) xyz scl poles lead
                  (cons (cons "TAG1" (tag-behind "OL" motor)) (part-texts data data2 "OL" "OVERLOAD")))
  T)

; A row of terminals of the strip that the workbook names; first is the number of the first one.
(defun site_terminals (xyz scl count strip first)
  (dotimes (index count)
    (let ((point (offset xyz 0 (* scl index (- pole-distance)))))
      (cut-wire (offset point (* scl -1.2) 0) (offset point (* scl 1.2) 0))
      (place-symbol "ZTERM" point scl
        (list (cons "TERM01" (number->string (+ first index))) (cons "TAGSTRIP" strip)))))
  T)

; MISC1 may hold DESC1=...;DESC2=...; for the name plate.
(defun motor-attributes (data misc1 motor)
  (list (cons "TAG1" (load-tag "MTR" motor))
        (cons "RATING1" (data-power data))
        (cons "DESC1" (or (setting misc1 "DESC1") (list-text "SITE_DESC1")))
        (cons "DESC2" (data-supply-line data 3 " V"))
        (cons "DESC3" (data-supply-line data 6 " RPM"))))
(defun data-supply-line (data index unit)
  (if (string=? (data-text data index) "") "" (string-append (data-text data index) unit)))

; windings: 1 for a single-phase motor, 3, or 6 with both ends led out.
(defun site_motor (xyz scl windings data misc1 &optional motor)
  (record-control-entity
    (place-symbol (pole-name "ZMOTOR" windings) xyz scl (motor-attributes data misc1 motor)) data "!MCC_CTRL")
  T)

(defun site_load (xyz scl poles data misc1)
  (record-control-entity
    (place-symbol (pole-name "ZDVLOAD" poles) xyz scl
      (list (cons "TAG1" (load-tag "LD"))
            (cons "DESC1" (string-upcase (if (string=? (data-text data 0) "") (or (setting misc1 "DESC1") "LOAD")
                                           (data-text data 0))))
            (cons "RATING1" (data-power data))
            (cons "DESC2" (data-supply-line data 3 " V"))))
    data "!PF_CTRL")
  T)

; Control

(defun control-wire (from to) (draw-wire from to (wire-layer site-control-layer)))

; Of the control transformer, from the rated voltage of the motor: the supply of a motor for 460 V has 480 V.
(setq site-control-voltages
  '(("115" "120-120 V") ("200" "208-120 V") ("208" "208-120 V") ("230" "240-120 V") ("240" "240-120 V") ("400" "400-230 V")
    ("460" "480-120 V") ("480" "480-120 V") ("575" "600-120 V")))
; Nil for a circuit without a motor.
(defun control-voltages (data)
  (cond ((string=? (data-text data 3) "") nil)
        ((second (assoc (data-text data 3) site-control-voltages)))
        (T (string-append (data-text data 3) "-120 V"))))

; A transformer that nobody has chosen is the maker's usual one for these voltages: CT-150, CT-150-240.
(defun transformer-texts (data voltages)
  (append (list (cons "TAG1" (tag-behind "CTR")) (cons "RATING1" (or voltages "NO VOLTAGE")))
          (cdr (part-texts data nil "XF" "XF"))
          (when (and voltages (not (data-part data "XF")))
            (list (cons "MFG" "Carrick")
                  (cons "CAT" (if (string=? voltages "480-120 V") "CT-150"
                                (string-append "CT-150-" (first (string-split voltages "-")))))))))

; The control transformer with its fuses. It is fed from the first and second line above it: rise-1 and rise-2 are
; their distances above the marker. Its secondary feeds the rails, left and right of it at 50 and 60.
(defun site_control_transformer (xyz scl rise-1 rise-2 data)
  (let ((at (lambda (x y) (offset xyz (* scl x) (* scl y)))))
    (control-wire (funcall at -12 rise-1) (funcall at -12 0))
    (control-wire (funcall at 12 rise-2) (funcall at 12 0))
    (place-symbol "ZDOT" (funcall at -12 rise-1) scl nil)
    (place-symbol "ZDOT" (funcall at 12 rise-2) scl nil)
    (vertical-fuse (funcall at -12 16) scl "FU11") ; the wires below are as long as their texts need
    (vertical-fuse (funcall at 12 16) scl "FU12")
    (place-symbol "ZTRANS" xyz scl (transformer-texts data (control-voltages data)))
    (control-wire (funcall at -50 -9) (funcall at -12 -9))
    (control-wire (funcall at 12 -9) (funcall at 60 -9))
    (place-in-wires "ZFUSE1" (funcall at -30 -9) scl 1 lead (list (cons "TAG1" (tag-behind "FU13"))))
    (place-symbol "ZDOT" (funcall at 40 -9) scl nil)
    (control-wire (funcall at 40 -9) (funcall at 40 -12))
    (place-symbol "ZGROUND" (funcall at 40 -12) scl nil))
  T)

(defun vertical-fuse (point scl name)
  (cut-wire (offset point 0 (* scl lead)) (offset point 0 (* scl (- lead))))
  (place-symbol "ZFUSE1" point scl (list (cons "TAG1" (tag-behind name))) 90))

; Rails fed from a panel elsewhere.
(defun site_control_source (xyz scl left right)
  (let ((at (lambda (x y) (offset xyz (* scl x) (* scl y)))))
    (control-wire (funcall at -50 -9) (funcall at -14 -9)) ; on both sides of the fuse as long as a wire number
    (control-wire (funcall at 26 -9) (funcall at 60 -9))
    (place-in-wires "ZFUSE1" (funcall at -32 -9) scl 1 lead (list (cons "TAG1" (tag-behind "FU13"))))
    (place-symbol "ZTERM" (funcall at -14 -9) scl '(("TAGSTRIP" . "TB3") ("TERM01" . "1")))
    (place-symbol "ZTERM" (funcall at 26 -9) scl
      (list (cons "TAGSTRIP" (first site-neutral-terminal)) (cons "TERM01" (second site-neutral-terminal))))
    (draw-text (funcall at -8 -9.8) left (* 2.2 scl) "DESCRIPTIONS" 'left) ; right of a terminal number of three digits
    (draw-text (funcall at 23 -9.8) right (* 2.2 scl) "DESCRIPTIONS" 'right))
  T)

; A device in a rung, dx and dy from the marker: symbol, tag after the circuit's number, description.
(defun site_device (xyz scl dx dy symbol name description)
  (place-in-wires symbol (offset xyz (* scl dx) (* scl dy)) scl 1 lead
    (list (cons "TAG1" (tag-behind name)) (cons "DESC1" description)))
  T)

(defun site_pilot_light (xyz scl name colour description)
  (place-in-wires "ZLIGHT" xyz scl 1 lead
    (list (cons "TAG1" (tag-behind name)) (cons "COLOUR" colour) (cons "DESC1" description)))
  T)

(defun site_control_path (xyz scl steps)
  (draw-path xyz scl steps (wire-layer site-control-layer))
  T)

; A contact of a contactor around a button at dx from the marker: 12 below it, 10 to both sides.
(defun site_seal_in (xyz scl dx dy name)
  (site_control_path xyz scl (list (- dx 10) dy (- dx 10) (- dy 12) (+ dx 10) (- dy 12) (+ dx 10) dy))
  (site_dot xyz scl (- dx 10) dy)
  (site_dot xyz scl (+ dx 10) dy)
  (site_device xyz scl dx (- dy 12) "ZOPEN" name ""))

; Templates in templates

; Inserts a template at the marker. The value 2 makes the build search for its markers.
(defun site_nested (xyz scl template)
  (insert-drawing (site-template template) xyz scl)
  2)

(defun site-template (name)
  (or (find-file (string-append "templates/" name)) (error "the site has no template " name)))

(site-expose '(site_title site_motor_data site_wire site_wire_path site_ground_wire site_ground_path site_feeder site_feeder_ground
               site_feeder_switch site_feeder_fuses site_source_ground site_dot
               site_wire_number site_switch site_breaker site_fuses site_contactor site_lower_contactor site_interlock site_overload
               site_terminals site_motor site_load site_control_transformer site_control_source site_device
               site_pilot_light site_control_path site_seal_in site_nested))
