; The site's LISP: the parent product that serves the plug-in. Loaded before everything else.
(load "lisp/parent.lsp")   ; what the plug-in's native code calls
(load "lisp/data.lsp")     ; reading the data that the plug-in passes to forms
(load "lisp/wires.lsp")    ; wire layers, wires, wire numbers
(load "lisp/symbols.lsp")  ; placing symbols
(load "lisp/records.lsp")  ; the records of a placed circuit
(load "lisp/project.lsp")  ; the project's rows and the drawing
(load "lisp/parts.lsp")    ; catalogue of parts, the lookups that workbook rules name
(load "lisp/forms.lsp")    ; the functions that workbook forms name
(load "lisp/circuits.lsp") ; select, insert, build
(load "lisp/sets.lsp")     ; numbers and texts for wires of a set
(load "lisp/edit.lsp")     ; another wire size for a circuit in the drawing
(load "lisp/sheet.lsp")    ; border and title block
