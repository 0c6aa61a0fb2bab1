; What a set of many drawings asks of a site: numbers and texts for wires.

(setq site-label-height 1.6)

; Called for each net of a circuit once it is drawn. number: what the drawing shows, "" where it shows none; needs: T
; when the net should have a number; place: the middle of its longest wire; level: T when that wire runs from left to
; right; used: the numbers of the circuit's nets. The answer is the net's number.
(defun site-label-net (number needs place level colour size used)
  (let ((text (string-append colour " " size)) (answer number))
    (when needs
      (setq answer (next-net-number used))
      (place-symbol "ZWIRENO" place 1.0 (list (cons "WIRENO" answer)) (if level 0 90)))
    (unless (string=? size "")
      (layer-define "WIRE_SIZES" "#707070")
      (draw-text (if level (offset place 0 -2.6) (offset place 2.6 0)) text site-label-height "WIRE_SIZES" 'centre
                 (if level 0 90)))
    answer))

; The next number of the control scheme that no net has: P101-11, P101-12 ...
(defun next-net-number (used)
  (let ((digits 11))
    (while (member (control-number (number->string digits)) used) (setq digits (+ digits 1)))
    (control-number (number->string digits))))
