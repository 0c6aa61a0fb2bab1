// Hostile programs and texts: they end with a value or an error, never with a crash.
#include "lisp_support.h"

#include "simhost/lisp/list.h"
#include "simhost/lisp/reader.h"
#include "text/split.h"

#include <doctest/doctest.h>

#include <random>

using namespace simhost::lisp;

namespace {

constexpr std::size_t manyElements = 100'000;

} // namespace

TEST_CASE("recursion without end is an error on every road, and the interpreter goes on after it") {
  constexpr std::string_view programs[] = {
      "(defun f () (f)) (f)",
      "(defun f (n) (if (= n -1) 0 (+ 1 (f (+ n 1))))) (f 0)",
      "(defun f (x) (mapcar 'f (list x))) (f 1)",
      "(defun f (x) (apply 'f (list x))) (f 1)",
      "(defun f () (funcall 'f)) (f)",
      "(defun f () (eval '(f))) (f)",
      "(defun f (a b) (sort '(2 1) 'f)) (f 1 2)",
      "(defun f (a b) (reduce 'f '(1 2))) (f 1 2)",
      "(defun f () (let* ((a 1) (b (f))) (cond ((and a (or nil (f)))))))  (f)",
      "(defun f () (dolist (x '(1)) (dotimes (i 1) (while T (unwind-protect (when T (f)) 1))))) (f)",
      "(defun f (x) (case (f x) (1 (progn (prog1 (f x)))))) (f 1)",
      "(defun f (&rest r) (apply 'f 1 r)) (f)",
      "(setq f '(lambda () (funcall f))) (funcall f)",
      "(defun f () (ignore-errors (f)) (car 5)) (f)",
  };
  Interpreter interpreter;
  for (const std::string_view program : programs) {
    CAPTURE(program);
    const std::string answer = evaluated(interpreter, program);
    const bool isError = answer.find("nested too deeply") != std::string::npos ||
                         answer.find("CAR: argument 1") != std::string::npos;
    CHECK(isError);
    CHECK(evaluated(interpreter, "(+ 1 1)") == "2");
  }
}

TEST_CASE("a program may nest 1,500 calls, in every build") {
  CHECK(evaluated("(defun down (n) (if (= n 0) 0 (+ 1 (down (- n 1))))) (down 1500)") == "1500");
}

TEST_CASE("the depth limit counts through functions of the embedding") {
  Interpreter interpreter;
  interpreter.define(L"again", 0, 0, [](Arguments& arguments) {
    return arguments.interpreter().run(L"(again)", L"again.lsp");
  });
  CHECK(evaluated(interpreter, "(again)").find("too many files") != std::string::npos);
  interpreter.setDepthLimit(50);
  CHECK(evaluated(interpreter, "(again)").find("nested too deeply") != std::string::npos);
}

TEST_CASE("an endless loop ends by step limit or interruption, which no LISP form can hide") {
  constexpr std::string_view loops[] = {
      "(while T)",
      "(ignore-errors (while T))",
      "(dotimes (i 2147483647))",
      "(while T (ignore-errors (car 5)))",
  };
  Interpreter interpreter;
  interpreter.setStepLimit(10'000);
  for (const std::string_view loop : loops) {
    CAPTURE(loop);
    CHECK(evaluated(interpreter, loop).find("the limit of steps is reached") != std::string::npos);
  }
  // The limit applies to each outermost form.
  CHECK(evaluated(interpreter, "(dotimes (i 6000)) (dotimes (i 6000) i)") == "nil");
  interpreter.setStepLimit(0);
  interpreter.define(L"stop", 0, 0, [](Arguments& arguments) {
    arguments.interpreter().interrupt();
    return Value();
  });
  CHECK(
      evaluated(interpreter, "(ignore-errors (while T (stop)))") ==
      "error: test.lsp:1: interrupted, in (WHILE T (STOP))");
  CHECK(evaluated(interpreter, "(+ 1 1)") == "2");
}

TEST_CASE("a list of 100,000 elements is read, printed, compared, walked and freed") {
  std::string text;
  for (std::size_t i = 0; i < manyElements; ++i) {
    text += " 1";
  }
  Interpreter interpreter;
  const std::string list = "(list" + text + ")";
  CHECK(evaluated(interpreter, "(setq a " + list + ") (apply '+ (mapcar '1+ a))") == "200000");
  CHECK(evaluated(interpreter, "a").size() == 2 * manyElements + 1);
  CHECK(
      evaluated(interpreter, "(list (length (append a a)) (equal a (reverse a)) (car (last (sort a '<))))") ==
      "(200000 T 1)");
}

TEST_CASE("100,000 nested lists are read, printed, compared and freed; evaluating them is an error") {
  const std::string nested = std::string(manyElements, '(') + "x" + std::string(manyElements, ')');
  Interpreter interpreter;
  CHECK(evaluated(interpreter, "(setq a '" + nested + " b '" + nested + ") (equal a b)") == "T");
  CHECK(printValue(interpreter.value(L"a")).size() == 2 * manyElements + 1);
  CHECK(evaluated(interpreter, nested).starts_with("error: test.lsp:1: not a function: (((((("));
  const std::string calls = [] {
    std::string text;
    for (std::size_t i = 0; i < manyElements; ++i) {
      text += "(car ";
    }
    return text + std::string(manyElements, ')');
  }();
  CHECK(evaluated(interpreter, calls).find("nested too deeply") != std::string::npos);
  const std::string quotes(manyElements, '\'');
  CHECK(evaluated(interpreter, "(null " + quotes + "a)") == "nil");
}

TEST_CASE("whatever the reader is fed, it answers forms that print and read back the same, or an error") {
  constexpr std::wstring_view alphabet = L"()()'\"\\;.#|aT1-+e \n\t\0\x80\xFEFF\xD800\x1F600nil"
                                         "5:";
  std::mt19937 random(20240131);
  std::size_t readable = 0;
  for (int round = 0; round < 20'000; ++round) {
    std::wstring text;
    for (std::size_t length = random() % 40; length > 0; --length) {
      text +=
          random() % 8 == 0 ? static_cast<wchar_t>(random() % 0x300) : alphabet[random() % alphabet.size()];
    }
    SymbolTable symbols;
    try {
      Reader reader(symbols, text, L"fuzz", 1);
      while (const std::optional<Value> form = reader.next()) {
        const std::wstring printed = printValue(*form);
        CAPTURE(brenvolt::toUtf8(printed));
        Reader again(symbols, printed, L"printed", 1);
        const std::optional<Value> back = again.next();
        REQUIRE(back.has_value());
        REQUIRE(isEqual(*form, *back));
        ++readable;
      }
    } catch (const LispError& error) {
      REQUIRE(error.line() > 0);
    }
  }
  CHECK(readable > 10'000);
}

TEST_CASE("every built-in and special form bears every mixture of odd arguments") {
  const std::vector<std::wstring> oddValues = brenvolt::splitKeepingEmpty(
      LR"x(nil|T|0|-1|2147483647|-2147483648|1e308|-0.5|""|"~a~"|'sym|'(1 . 2)|'(1 2)|'((1 . 2) "x")|)x"
      LR"x((function car)|'list|'(lambda)|'(lambda (x) x))x",
      L'|');
  Interpreter interpreter;
  interpreter.setStepLimit(2'000);
  std::vector<std::wstring> names = interpreter.builtinNames();
  const std::vector<std::wstring> forms = interpreter.specialFormNames();
  names.insert(names.end(), forms.begin(), forms.end());
  std::size_t answers = 0;
  std::mt19937 random(7);
  for (const std::wstring& name : names) {
    for (int round = 0; round < 150; ++round) {
      std::string call = "(" + brenvolt::toUtf8(name);
      for (std::size_t count = random() % 4; count > 0; --count) {
        call += " " + brenvolt::toUtf8(oddValues[random() % oddValues.size()]);
      }
      CAPTURE(call);
      // The variable t of a loop over 2^31 turns must meet the step limit, and nothing may end the program.
      const std::string answer = evaluated(interpreter, call + ")");
      if (!answer.starts_with("error")) ++answers;
    }
  }
  CHECK(answers > 1'000);
}
