; The template drawings. Unit: millimetre on the sheet; the origin is where the first supply line begins. Power
; circuits run from left to right, lines 10 apart; control circuits hang below, with the origin in the middle of the
; transformer's primary. (site-draw-template NAME) draws one into the current space. Needs the site's LISP.

(layer-define "MARKERS" "#c04000")
(layer-define "DESCRIPTIONS" "#303030")
(layer-define "TITLES" "#000000")

(defun marker (code order x y &optional misc1)
  (site-block "ZAN_BV_MARKER_BLOCK")
  (insert-block "ZAN_BV_MARKER_BLOCK" (list x y) 1 0 "MARKERS"
    (list (cons "CODE" code) (cons "ORDER" (number->string order)) (cons "MISC1" (or misc1 "")))))

(defun label (x y text) (draw-text (list x y) text 2.5 "DESCRIPTIONS" 'right))

; Points as x y x y ...
(defun rung (steps) (draw-path '(0 0) 1 steps (wire-layer site-control-layer)))
(defun dot (x y) (place-symbol "ZDOT" (list x y) 1 nil))

; What every power circuit begins with: title, row of data, supply lines with their wires, disconnecting means.
(defun power-head (poles)
  (marker "TITLE" 1 0 24)
  (dotimes (pole poles)
    (let ((y (- (* 10 pole))) (number (number->string (+ pole 1))))
      (label -3 (- y 0.9) (string-append "L" number))
      (marker (string-append "WT0" number) 10 0 y "_WIRETYPE=BLK_@SIZE@;_WIRENUMBERS=1;")
      (marker "WNUM" 90 6 y (string-append "L" number))))
  (marker "DISC" 20 18 0))

(defun ground-line (y)
  (label -3 (- y 0.9) "PE")
  (marker "WT01E" 15 0 y "_WIRETYPE=GRN_@SIZE@;_WIRENUMBERS=0;"))

; Wire numbers of all poles: MISC1 is the letters and the pole's number.
(defun numbers (x poles letters)
  (dotimes (pole poles)
    (marker "WNUM" 90 x (- (* 10 pole)) (string-append letters (number->string (+ pole 1))))))

; The number of a wire has its place between overload relay and terminal, where up to nine letters fit.
; `more` is further room between the contactor and what follows it.
(defun starter (poles ground-y control-y more)
  (power-head poles)
  (marker "MCTL" 2 0 18)
  (ground-line ground-y)
  (numbers 54 poles "L1")
  (marker "MS" 30 86 0)
  (marker "OL" 40 (+ 112 more) 0)
  (numbers (+ 123 more) poles "T")
  (marker "TERM" 50 (+ 131 more) 0)
  (marker "MOTOR" 60 (+ 137 more) 0)
  (marker "CTRL" 70 58 control-y))

(defun draw-motor3-dol () (starter 3 -30 -56 0))
; The lines that the contactors exchange are right of them; number and size of each wire have their place after these.
(defun draw-motor3-reversing () (starter 3 -72 -98 20))
(defun draw-motor3-star-delta ()
  (starter 3 -114 -140 0)
  (marker "DELTA" 32 86 -44)
  (marker "STAR" 34 114 -84))
(defun draw-motor1-dol () (starter 2 -24 -56 0))

; A motor's branch after the feeder: the lines run from x on at y; `letter` distinguishes the two motors.
(defun motor-branch (letter order x y)
  (let ((code (lambda (name) (string-append name "-" letter))))
    (marker (funcall code "MCTL") order (+ x 16) (+ y 12))
    (marker (funcall code "BRK") (+ order 20) (+ x 16) y)
    (marker (funcall code "MS") (+ order 30) (+ x 64) y)
    (marker (funcall code "OL") (+ order 40) (+ x 90) y)
    (marker (funcall code "TERM") (+ order 50) (+ x 109) y)
    (marker (funcall code "MOTOR") (+ order 60) (+ x 115) y)
    (dotimes (pole 3)
      (let ((line (- y (* 10 pole))) (number (number->string (+ pole 1))))
        (marker "WNUM" 190 (+ x 46) line (string-append letter number))
        (marker "WNUM" 190 (+ x 101) line (string-append "T" letter number))))))

; A wire position with a letter, where its wire begins.
(defun branch-wire (number letter order x y)
  (marker (string-append "WT0" (number->string number) "-" letter) order x y
          "_WIRETYPE=BLK_@SIZE@;_WIRENUMBERS=1;"))
(defun branch-ground (letter order x y)
  (marker (string-append "WT01E-" letter) order x y "_WIRETYPE=GRN_@SIZE@;_WIRENUMBERS=0;"))

; The feeder and its grounding conductor end at x = 96, where motor A's branch begins; motor B's wires leave them shortly
; before.
(defun draw-motor3-two ()
  (marker "TITLE" 1 0 24)
  (marker "FEED" 1.2 0 0)
  (marker "DISC" 1.4 18 0)
  (dotimes (pole 3)
    (let ((y (- (* 10 pole))) (number (number->string (+ pole 1))))
      (label -3 (- y 0.9) (string-append "L" number))
      (marker "WNUM" 190 6 y (string-append "L" number))
      (branch-wire (+ pole 1) "A" 12 96 y)
      (branch-wire (+ pole 1) "B" 112 (+ 86 (* 3 pole)) y)))
  (label -3 -30.9 "PE")
  (branch-ground "A" 15 96 -30)
  (branch-ground "B" 115 82 -30)
  (motor-branch "A" 2 96 0)
  (motor-branch "B" 102 96 -80)
  (marker "CTRL" 170 64 -136))

(defun feed (poles ground-y)
  (power-head poles)
  (marker "PCTL" 2 0 18)
  (ground-line ground-y)
  (numbers 54 poles "L1")
  (marker "TERM" 50 126 0)
  (marker "LOAD" 60 132 0))

(defun draw-feed3 () (feed 3 -30))
(defun draw-feed2 () (feed 2 -24))

(defun draw-control-station ()
  (marker "TITLE" 1 0 24)
  (marker "CTRL" 70 60 9))

(defun rails (left-end right-end)
  (marker "SOURCE" 10 0 0)
  (rung (list -50 -9 -50 left-end))
  (rung (list 60 -9 60 right-end))
  (marker "WNUM" 90 -44 -9 "01")
  (marker "WNUM" 90 52 -9 "02"))

(defun draw-control-three-wire ()
  (rails -28 -28)
  (rung '(-50 -28 60 -28))
  (marker "OPER" 20 -15 -28)
  (marker "COIL" 30 25 -28)
  (marker "OLC" 40 45 -28)
  (marker "WNUM" 90 8 -28 "04")
  (marker "WNUM" 90 35 -28 "05")
  (marker "LITE" 50 -50 -28))

; Two motors on one transformer: a rung for each.
(defun draw-control-two-motors ()
  (rails -60 -60)
  (mapc (lambda (letter y numbers)
          (let ((code (lambda (name) (string-append name "-" letter))))
            (rung (list -50 y 60 y))
            (marker (funcall code "OPER") 20 -15 y)
            (marker (funcall code "COIL") 30 25 y)
            (marker (funcall code "OLC") 40 45 y)
            (marker "WNUM" 90 8 y (first numbers))
            (marker "WNUM" 90 35 y (second numbers))))
        '("A" "B") '(-28 -60) '(("04" "05") ("06" "07")))
  (mapc 'dot '(-50 60) '(-28 -28)))

; The rails end at the lowest rung that is always there; the rows of LITE extend them to the pilot lights.
(defun draw-control-reversing ()
  (rails -28 -28)
  (rung '(-50 -28 60 -28))
  (rung '(-25 -40 -25 -60 38 -60 38 -28))
  (dot 38 -28)
  (dot -25 -40)
  (marker "OPER" 20 -15 -28)
  (marker "COIL" 30 28 -28)
  (marker "OLC" 40 49 -28)
  (marker "WNUM" 90 1.2 -28 "04")
  (marker "WNUM" 90 1.2 -60 "05")
  (marker "LITE" 50 -50 -68))

(defun draw-control-star-delta ()
  (rails -54 -28)
  (rung '(-50 -28 60 -28))
  (rung '(-50 -54 38 -54))
  (rung '(-25 -54 -25 -74 38 -74))
  (rung '(-25 -74 -25 -94 38 -94 38 -74))
  (rung '(38 -74 38 -54))
  (rung '(38 -54 38 -28))
  (mapc 'dot '(-50 38 38 38 -25 -25) '(-28 -28 -54 -74 -54 -74))
  (marker "OPER" 20 -15 -28)
  (marker "COIL" 30 28 -28)
  (marker "OLC" 40 49 -28)
  (marker "WNUM" 90 1.2 -28 "04")
  (marker "WNUM" 90 1.2 -54 "05")
  (marker "LITE" 50 -50 -88))

; The origin is on the left rail.
(defun light-rung (y from number)
  (rung (list 0 from 0 y 110 y 110 from))
  (marker "WNUM" 90 50 y number))

(defun draw-pilot-run ()
  (light-rung -26 0 "07")
  (marker "RUNC" 10 25 -26)
  (marker "RUNL" 20 75 -26))

(defun draw-pilot-run-stop ()
  (draw-pilot-run)
  (light-rung -44 -26 "08")
  (dot 0 -26)
  (dot 110 -26)
  (marker "STPC" 30 25 -44)
  (marker "STPL" 40 75 -44))

(setq GBL_site_templates
  '(("motor3_dol" draw-motor3-dol) ("motor3_reversing" draw-motor3-reversing)
    ("motor3_star_delta" draw-motor3-star-delta) ("motor3_two" draw-motor3-two)
    ("motor1_dol" draw-motor1-dol)
    ("feed3" draw-feed3) ("feed2" draw-feed2) ("control_station" draw-control-station)
    ("control_three_wire" draw-control-three-wire) ("control_reversing" draw-control-reversing)
    ("control_star_delta" draw-control-star-delta) ("control_two_motors" draw-control-two-motors)
    ("pilot_run" draw-pilot-run) ("pilot_run_stop" draw-pilot-run-stop)))

(defun site-draw-template (name)
  (let ((entry (assoc name GBL_site_templates)))
    (unless entry (error "no template of the name " name))
    (funcall (cadr entry))))
