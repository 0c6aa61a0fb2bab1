// The built-in functions, as rows that a LISP programmer can read and extend.
#include "lisp_support.h"

#include "text/compare.h"

#include <doctest/doctest.h>

#include <fstream>
#include <iterator>
#include <span>

using namespace simhost::lisp;

namespace {

void checkAll(std::span<const Expectation> rows) {
  for (const Expectation& row : rows) {
    CAPTURE(row.form);
    CHECK(evaluated(row.form) == row.printed);
  }
}

} // namespace

TEST_CASE("lists are taken apart and put together") {
  constexpr Expectation rows[] = {
      {"(cons 1 '(2 3))", "(1 2 3)"},
      {"(cons 1 2)", "(1 . 2)"},
      {"(list* 1 2 '(3))", "(1 2 3)"},
      {"(list (car '(1 2)) (cdr '(1 2)) (car nil) (cdr nil))", "(1 (2) nil nil)"},
      {"(list (cadr '(1 2 3)) (caddr '(1 2 3)) (cdar '((1 2))) (cadddr '(1 2 3 4)) (caadr '(1 (2))))",
       "(2 3 (2) 4 2)"},
      {"(cdr '(8 . 0))", "0"},
      {"(append '(1) nil '(2 3) '(4))", "(1 2 3 4)"},
      {"(reverse '(1 2 3))", "(3 2 1)"},
      {"(list (length nil) (length '(a b)) (length \"abc\"))", "(0 2 3)"},
      {"(list (nth 1 '(a b)) (nth 2 '(a b)) (nthcdr 1 '(a b)) (last '(a b)) (butlast '(a b c)))",
       "(B nil (B) (B) (A B))"},
      {"(sublist '(a b c d) 1 3)", "(B C)"},
      {"(member \"b\" '(\"a\" \"b\" \"c\"))", "(\"b\" \"c\")"},
      {"(assoc '(1.0 2.0) '((x) ((1.0 2.0) . \"found\")))", "((1.0 2.0) . \"found\")"},
      {"(list (position 3 '(1 2 3)) (position 9 '(1 2 3)))", "(2 nil)"},
      {"(list (remove 1 '(1 2 1)) (substitute 9 1 '(1 2 1)) (remove-duplicates '(1 2 1)))",
       "((2) (9 2 9) (1 2))"},
      {"(list (remove-if 'null '(1 nil)) (remove-if-not 'null '(1 nil)) (find-if 'stringp '(1 \"a\")))",
       "((1) (nil) \"a\")"},
      {"(list (every 'numberp '(1 2)) (every 'numberp '(1 a)) (some 'car '((nil) (7))))", "(T nil 7)"},
      {"(mapcar '+ '(1 2 3) '(10 20))", "(11 22)"},
      {"(reduce '+ '(1 2 3) 10)", "16"},
      {"(sort '(3 1 2) '<)", "(1 2 3)"},
      // Equal keys keep their order.
      {"(sort '((1 a) (0 b) (1 c) (0 d)) (lambda (x y) (< (car x) (car y))))", "((0 B) (0 D) (1 A) (1 C))"},
      {"(let ((a '(1 2))) (append a '(3)) (reverse a) a)", "(1 2)"},
  };
  checkAll(rows);
}

TEST_CASE("integers have 32 bits, and what does not fit becomes a real instead of wrapping") {
  constexpr Expectation rows[] = {
      {"(+ 2147483647 1)", "2147483648.0"},   {"(- -2147483648)", "2147483648.0"},
      {"(abs -2147483648)", "2147483648.0"},  {"(* 65536 65536)", "4294967296.0"},
      {"(* 46340 46340)", "2147395600"},      {"(- 2147483648.0 2147483647)", "1.0"},
      {"(/ -2147483648 -1)", "2147483648.0"}, {"(rem -2147483648 -1)", "0"},
      {"(expt 2 31)", "2147483648.0"},        {"(1+ 2147483647)", "2147483648.0"},
      {"(1- -2147483648)", "-2147483649.0"},  {"(floor 1e12)", "1000000000000.0"},
  };
  checkAll(rows);
}

TEST_CASE("numbers follow the rules of arithmetic") {
  constexpr Expectation rows[] = {
      {"(list (+) (*) (+ 1 2 3) (- 5) (- 5 1 1) (+ 1 0.5))", "(0 1 6 -5 3 1.5)"},
      {"(list (/ 6 2) (/ 7 2) (/ 2) (/ 1.0 4))", "(3 3.5 0.5 0.25)"},
      {"(list (mod 7 3) (mod -7 3) (rem -7 3) (mod 7 -3) (mod -7.5 2))", "(1 2 -1 -2 0.5)"},
      {"(list (min 3 1.5 2) (max 3 1.5 2))", "(1.5 3)"},
      {"(list (= 1 1.0) (= 1 1 2) (/= 1 2 1) (< 1 2 3) (< 1 3 2) (>= 3 3 1))", "(T nil nil T nil T)"},
      {"(list (floor -1.5) (ceiling -1.5) (truncate -1.5) (floor 7 2) (floor -7 2))", "(-2 -1 -1 3 -4)"},
      {"(mapcar 'round '(0.5 1.5 2.5 -0.5 -1.5 2.6))", "(0 2 2 0 -2 3)"},
      {"(list (sqrt 16) (expt 2 10) (expt 2.0 3) (expt 2 -1) (exp 0) (log 1) (log 8 2))",
       "(4.0 1024 8.0 0.5 1.0 0.0 3.0)"},
      {"(list (sin 0) (cos 0) (* 4 (atan 1)) (= pi (atan 0 -1)))", "(0.0 1.0 3.141592653589793 T)"},
      {"(list (zerop 0.0) (plusp 1) (minusp 1) (evenp 4) (oddp -3))", "(T T nil T T)"},
      {"(list (logand 6 3) (logior 6 3) (float 2))", "(2 7 2.0)"},
      {"(list (numberp 1) (integerp 1.0) (floatp 1.0) (numberp \"1\"))", "(T nil T nil)"},
  };
  checkAll(rows);
}

TEST_CASE("strings count positions from 0 and compare as their names say") {
  constexpr Expectation rows[] = {
      {"(string-append \"a\" \"\" \"b\")", "\"ab\""},
      {"(list (string-upcase \"aé1\") (string-downcase \"AÉ1\"))", "(\"AÉ1\" \"aé1\")"},
      {"(list (substring \"abc\" 1) (substring \"abc\" 1 2) (substring \"abc\" 3))", "(\"bc\" \"b\" \"\")"},
      {"(list (string-search \"an\" \"banana\") (string-search \"an\" \"banana\" 2) (string-search \"x\" "
       "\"a\"))",
       "(1 3 nil)"},
      {"(list (string-search-ci \"AN\" \"banana\") (string-search \"a\" \"a\" 5) (string-search-ci \"a\" "
       "\"a\" 5))",
       "(1 nil nil)"},
      {"(list (string=? \"a\" \"a\") (string= \"a\" \"A\") (string-ci=? \"aB\" \"Ab\" \"AB\"))", "(T nil T)"},
      {"(list (string<? \"a\" \"b\" \"c\") (string< \"b\" \"a\") (string>? \"b\" \"a\") (string-ci<? \"a\" "
       "\"B\"))",
       "(T nil T T)"},
      {"(list (number->string 12) (number->string 0.5) (number->string 2.0) (number->string 255 16))",
       "(\"12\" \"0.5\" \"2.0\" \"ff\")"},
      {"(list (number->string -2147483648 2) (number->string 0 8))",
       "(\"-10000000000000000000000000000000\" \"0\")"},
      {"(list (string->number \" 12 \") (string->number \"1.5\") (string->number \"1a\") (string->number "
       "\"\"))",
       "(12 1.5 nil nil)"},
      {"(list (string->number \"1A\" 16) (string->number \"-ff\" 16) (string->number \"2\" 2))",
       "(26 -255 nil)"},
      {"(list (string-trim \" -\" \"- a -\") (string-left-trim \" \" \"  a \") (string-right-trim \" \" \" a "
       "\"))",
       "(\"a\" \"a \" \" a\")"},
      {"(list (string-split \"a;;b\" \";\") (string-join '(\"a\" \"b\") \", \"))",
       "((\"a\" \"\" \"b\") \"a, b\")"},
      {"(list (char-code \"A\") (code-char 8364))", "(65 \"€\")"},
      {"(format nil \"~a ~s ~d ~,2f~%~~\" \"x\" \"y\" 3 1.005)", "\"x \\\"y\\\" 3 1.00\\n~\""},
  };
  checkAll(rows);
}

TEST_CASE("types, symbols and calls answer as documented") {
  constexpr Expectation rows[] = {
      {"(list (symbolp 'a) (symbolp nil) (symbolp T) (symbolp \"a\") (atom nil) (consp nil) (listp nil))",
       "(T T T nil T nil T)"},
      {"(list (eq 'a 'A) (eq \"a\" \"a\") (eq 3 3) (equal \"a\" \"a\") (equal '(1 (2)) '(1 (2))) (equal 1 "
       "1.0))",
       "(T nil T T T nil)"},
      {"(mapcar 'type-of (list nil 'a 1 1.0 \"a\" '(1) 'car (function car)))",
       "(NULL SYMBOL INTEGER FLOAT STRING CONS SYMBOL FUNCTION)"},
      {"(set 'a 5) (list a (boundp 'a) (boundp 'never) (symbol-value 'a) (symbol-name 'a) (intern \"xy\"))",
       "(5 T nil 5 \"A\" XY)"},
      {"(list (fboundp 'car) (fboundp 'never) (functionp 'car) (functionp (function car)))", "(T nil nil T)"},
      {"(list (apply '+ 1 2 '(3 4)) (funcall '+ 1 2) (eval '(+ 1 2)) (identity 7))", "(10 3 3 7)"},
      {"(read-from-string \"(a . 1) b\")", "(A . 1)"},
      {"(list (not nil) (null 1) (car (builtins)))", "(T nil *)"},
      {"(list car 'car (function car) (lambda (x) x))", "(nil CAR <Function: CAR> <Lambda>)"},
  };
  checkAll(rows);
}

TEST_CASE("what is printed goes to the printer of the embedding") {
  Interpreter interpreter;
  std::wstring printed;
  interpreter.setPrinter([&printed](std::wstring_view text) { printed += text; });
  CHECK(
      evaluated(interpreter, R"((progn (princ "a") (prin1 "a") (print 'b) (terpri) (write-line "c")))") ==
      "\"c\"");
  CHECK(evaluated(interpreter, R"((format T "~a!" 1))") == "nil");
  CHECK(printed == L"a\"a\"\nB \nc\n1!");
}

TEST_CASE("every built-in and special form is described in the manual") {
  std::ifstream file("docs/lisp.md");
  const std::wstring manual =
      brenvolt::fromUtf8(std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()));
  REQUIRE_FALSE(manual.empty());
  Interpreter interpreter;
  std::vector<std::wstring> names = interpreter.builtinNames();
  const std::vector<std::wstring> forms = interpreter.specialFormNames();
  names.insert(names.end(), forms.begin(), forms.end());
  for (const std::wstring& name : names) {
    CAPTURE(brenvolt::toUtf8(name));
    const std::wstring entry = L"`(" + brenvolt::toLower(name);
    const bool isListed =
        manual.find(entry + L" ") != std::wstring::npos || manual.find(entry + L")") != std::wstring::npos;
    CHECK(isListed);
  }
}
