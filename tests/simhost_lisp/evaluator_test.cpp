// Special forms, bindings, errors with their place, and the interface to the embedding.
#include "lisp_support.h"

#include "simhost/lisp/list.h"

#include <doctest/doctest.h>

#include <array>
#include <stdexcept>

using namespace simhost::lisp;

TEST_CASE("special forms evaluate as documented") {
  constexpr Expectation rows[] = {
      {"(setq a 1 b (+ a 1)) (list a b)", "(1 2)"},
      {"(setq)", "nil"},
      {"(list (if 1 2 3) (if nil 2 3) (if nil 2))", "(2 3 nil)"},
      {"(list (cond (nil 1) (2)) (cond ((= 1 1) 3 4)) (cond))", "(2 4 nil)"},
      {"(list (case 2 (1 'a) ((2 3) 'b)) (case \"x\" (\"x\" 1)) (case 9 (1 2) (t 'other)))", "(B 1 OTHER)"},
      {"(list (and) (and 1 2) (and 1 nil (error \"not reached\")) (or) (or nil 2 (error \"not reached\")))",
       "(T 2 nil nil 2)"},
      {"(list (when 1 2 3) (when nil 2) (unless nil 2 3) (unless 1 2))", "(3 nil 3 nil)"},
      {"(list (progn 1 2) (prog1 1 2) (progn))", "(2 1 nil)"},
      {"(setq a 1) (list (let ((a 2) (b a)) (list a b)) (let* ((a 2) (b a)) (list a b)) a)",
       "((2 1) (2 2) 1)"},
      {"(let (a (b) (c 3)) (list a b c))", "(nil nil 3)"},
      {"(setq i 0) (while (< i 3) (setq i (+ i 1)))", "3"},
      {"(setq r nil) (list (dolist (x '(1 2) r) (setq r (cons x r))) x)", "((2 1) nil)"},
      {"(setq r nil) (dotimes (i 3 (list i r)) (setq r (cons i r)))", "(3 (2 1 0))"},
      {"(defun f (x &optional y &rest z) (list x y z)) (list (f 1) (f 1 2) (f 1 2 3 4))",
       "((1 nil nil) (1 2 nil) (1 2 (3 4)))"},
      {"((lambda (x) (* x x)) 5)", "25"},
      {"(ignore-errors 1 (car 5))", "nil"},
      {"(setq done nil) (list (ignore-errors (unwind-protect (car 5) (setq done T))) done)", "(nil T)"},
  };
  for (const Expectation& row : rows) {
    CAPTURE(row.form);
    CHECK(evaluated(row.form) == row.printed);
  }
}

TEST_CASE("a function is reached by name, by value and by lambda expression") {
  constexpr std::string_view setup = "(defun twice (x) (* 2 x)) (setq held (lambda (x) (* 3 x)))";
  constexpr Expectation rows[] = {
      {"(twice 1)", "2"},
      {"(mapcar 'twice '(1 2))", "(2 4)"},
      {"(mapcar (function twice) '(1 2))", "(2 4)"},
      {"(mapcar #'twice '(1 2))", "(2 4)"},
      {"(mapcar '(lambda (x) (+ x 1)) '(1 2))", "(2 3)"},
      {"(apply 'twice '(4))", "8"},
      {"(held 1)", "3"},
      {"(mapcar held '(1 2))", "(3 6)"},
      // A variable does not hide the function of the same name.
      {"(let ((twice 5) (list 6)) (list (twice twice) list))", "(10 6)"},
      {"(TWICE 4)", "8"},
      // A function may be redefined while it runs.
      {"(defun g () (defun g () 2) 1) (list (g) (g))", "(1 2)"},
  };
  for (const Expectation& row : rows) {
    CAPTURE(row.form);
    CHECK(evaluated(std::string(setup) + std::string(row.form)) == row.printed);
  }
}

TEST_CASE("bindings are dynamic and are undone on every way out") {
  Interpreter interpreter;
  CHECK(
      evaluated(interpreter, "(setq v 1) (defun show () v) (defun f (v) (show)) (list (f 2) (show))") ==
      "(2 1)");
  CHECK(evaluated(interpreter, "(defun g (v) (error \"stop\")) (ignore-errors (g 5)) v") == "1");
  CHECK(evaluated(interpreter, "(ignore-errors (let* ((v 7) (w (car v))) w)) v") == "1");
  CHECK(evaluated(interpreter, "(ignore-errors (dolist (v '(1 2)) (car v))) v") == "1");
}

TEST_CASE("an error names file, line and form") {
  constexpr Expectation rows[] = {
      {"\n(car 5)", "test.lsp:2: CAR: argument 1 must be a list, not 5, in (CAR 5)"},
      {"(+ 1\n (length 5))",
       "test.lsp:2: LENGTH: argument 1 must be a list or a string, not 5, in (LENGTH 5)"},
      {"(nth -1 '(a))", "test.lsp:1: NTH: argument 1 must be an integer from 0 on, not -1, in (NTH -1 '(A))"},
      {"(substring \"abc\" 2 1)", "test.lsp:1: SUBSTRING: start and end must be in order within the string, "
                                  "in (SUBSTRING \"abc\" 2 1)"},
      {"(no-such 1)", "test.lsp:1: the function is not defined: NO-SUCH, in (NO-SUCH 1)"},
      {"(5 1)", "test.lsp:1: not a function: 5, in (5 1)"},
      {"(apply 'if '(1))", "test.lsp:1: IF is a special form, not a function, in (APPLY 'IF '(1))"},
      {"(cons 1)", "test.lsp:1: CONS takes 2 arguments, not 1, in (CONS 1)"},
      {"(atan 1 2 3)", "test.lsp:1: ATAN takes 1 to 2 arguments, not 3, in (ATAN 1 2 3)"},
      {"(max)", "test.lsp:1: MAX takes at least 1 argument, not 0, in (MAX)"},
      {"(defun f (a b)\n a)\n(f 1)", "test.lsp:3: F takes 2 arguments, not 1, in (F 1)"},
      {"(/ 1 0)", "test.lsp:1: /: division by zero, in (/ 1 0)"},
      {"(expt 0 -1)", "test.lsp:1: EXPT: the result is not a finite number, in (EXPT 0 -1)"},
      {"(* 1e300 1e300)", "test.lsp:1: *: the result is not a finite number, in (* 1e+300 1e+300)"},
      {"(sqrt -1)", "test.lsp:1: SQRT: argument 1 must be a number from 0 on, not -1, in (SQRT -1)"},
      {"(setq nil 1)", "test.lsp:1: this cannot be set or bound: nil, in (SETQ nil 1)"},
      {"(setq t 1)", "test.lsp:1: this cannot be set or bound: T, in (SETQ T 1)"},
      {"(set nil 1)",
       "test.lsp:1: SET: argument 1 must be a symbol other than nil and T, not nil, in (SET nil 1)"},
      {"(let ((t 1)) 2)", "test.lsp:1: this cannot be set or bound: T, in (LET ((T 1)) 2)"},
      {"(defun f (t) 1)",
       "test.lsp:1: a parameter must be a symbol other than nil and T, not T, in (DEFUN F (T) 1)"},
      {"(defun if (x) 1)", "test.lsp:1: IF is a special form and cannot be redefined, in (DEFUN IF (X) 1)"},
      {"(setq a)", "test.lsp:1: the form must be (setq name form ...), in (SETQ A)"},
      {"(if)", "test.lsp:1: the form must be (if condition then) or (if condition then else), in (IF)"},
      {"(car . 5)", "test.lsp:1: a call must be a list that ends in nil, in (CAR . 5)"},
      {"(error \"value \" 5 \" of \" \"x\")",
       "test.lsp:1: value 5 of x, in (ERROR \"value \" 5 \" of \" \"x\")"},
      {"(read-from-string \"(a\")",
       "test.lsp:1: READ-FROM-STRING: the ( here has no ), in (READ-FROM-STRING \"(a\")"},
      {"(load \"x\")", "test.lsp:1: LOAD: no file x, in (LOAD \"x\")"},
      {"(format nil \"~q\" 1)", "test.lsp:1: FORMAT: the template has a ~ that is none of ~A ~S ~D ~F ~,nF "
                                "~% ~~, in (FORMAT nil \"~q\" 1)"},
  };
  for (const Expectation& row : rows) {
    CAPTURE(row.form);
    CHECK(evaluated(row.form) == "error: " + std::string(row.printed));
  }
}

TEST_CASE("a long form is cut in the error's text") {
  const std::string form = "(car (quote " + std::string(5000, 'x') + "))";
  CHECK(evaluated(form).size() < 300);
}

TEST_CASE("a text that cannot be read runs no form at all") {
  Interpreter interpreter;
  CHECK(evaluated(interpreter, "(setq a 1) (car") == "error: test.lsp:1: the ( here has no )");
  CHECK(interpreter.value(L"a").isNil());
}

TEST_CASE("the embedding defines, calls and replaces functions") {
  Interpreter interpreter;
  interpreter.define(L"zan_area", 2, 2, [](Arguments& arguments) {
    return Value::real(arguments.number(0) * arguments.number(1));
  });
  CHECK(evaluated(interpreter, "(zan_area 2 3.5)") == "7.0");
  CHECK(
      evaluated(interpreter, "(zan_area 2 \"x\")") ==
      "error: test.lsp:1: ZAN_AREA: argument 2 must be a number, not \"x\", in (ZAN_AREA 2 \"x\")");

  static_cast<void>(interpreter.run(L"(defun c:sum (a b c d e) (+ a b c d e))", L"sum.lsp"));
  const std::array<Value, 5> arguments{
      Value::integer(1), Value::integer(2), Value::real(3), Value::integer(4), Value::integer(5)};
  CHECK(printValue(interpreter.call(L"C:SUM", arguments)) == L"15.0");
  CHECK_THROWS_AS(interpreter.call(L"no_such", {}), LispError);
  CHECK(interpreter.findFunction(L"c:sum").has_value());
  interpreter.undefine(L"zan_area");
  CHECK_FALSE(interpreter.findFunction(L"zan_area").has_value());
}

TEST_CASE("what the embedding throws passes through every form, and clean-up forms still run") {
  Interpreter interpreter;
  interpreter.define(L"cancel", 0, 0, [](Arguments&) -> Value { throw Cancelled(); });
  interpreter.define(L"break", 0, 0, [](Arguments&) -> Value { throw std::runtime_error("host"); });
  const auto run = [&](std::wstring_view text) { static_cast<void>(interpreter.run(text, L"t")); };
  CHECK_THROWS_AS(run(L"(let ((a 1)) (ignore-errors (mapcar '(lambda (x) (cancel)) '(1))))"), Cancelled);
  CHECK_THROWS_AS(run(L"(unwind-protect (cancel) (setq cleaned 1) (car 5))"), Cancelled);
  CHECK_THROWS_AS(run(L"(ignore-errors (break))"), std::runtime_error);
  CHECK(evaluated(interpreter, "(list cleaned a)") == "(1 nil)");
}

TEST_CASE("load asks the embedding, tells the file at work, and errors name the loaded file") {
  Interpreter interpreter;
  std::wstring asked;
  interpreter.setLoader([&](std::wstring_view name, std::wstring_view from) -> std::optional<LoadedText> {
    asked += std::wstring(from) + L">" + std::wstring(name) + L" ";
    if (name == L"outer") return LoadedText{L"(load \"inner\")", L"dir/outer.lsp"};
    if (name == L"inner") return LoadedText{L"\n\n(car 5)", L"dir/inner.lsp"};
    if (name == L"again") return LoadedText{L"(load \"again\")", L"again.lsp"};
    if (name == L"cut") return LoadedText{L"\n(a", L"cut.lsp"};
    return std::nullopt;
  });
  CHECK(evaluated(interpreter, "(load \"outer\")").starts_with("error: dir/inner.lsp:3: CAR"));
  CHECK(asked == L"test.lsp>outer dir/outer.lsp>inner ");
  CHECK(evaluated(interpreter, "(load \"cut\")") == "error: cut.lsp:2: the ( here has no )");
  CHECK(
      evaluated(interpreter, "(load \"again\")") ==
      "error: again.lsp:1: too many files load each other, in (LOAD \"again\")");
  CHECK(evaluated(interpreter, "(car 5)").starts_with("error: test.lsp:1"));
}
