// Formulas of table cells: worked cases, and the odd ones that tables rely on.
#include "expr/expr_evaluator.h"
#include "text/encoding.h"
#include "text/split.h"

#include <doctest/doctest.h>

#include <limits>
#include <optional>

using namespace brenvolt;

namespace {

/// Nothing for a text that is refused.
std::optional<double> valueOf(std::wstring_view text, double variable = 0.0) {
  try {
    return ZanExprEvaluator().Evaluate(text, variable);
  } catch (const IllegalExprException& illegal) {
    CHECK(illegal.text.empty());
    return std::nullopt;
  }
}

struct Row {
  const wchar_t* text = nullptr;
  double variable = 0.0;
  std::optional<double> value;
};

void checkRows(std::initializer_list<Row> rows) {
  for (const Row& row : rows) {
    CAPTURE(toUtf8(row.text));
    CHECK(valueOf(row.text, row.variable) == row.value);
  }
}

std::wstring repeated(std::wstring_view text, int times) {
  std::wstring result;
  for (int i = 0; i < times; ++i)
    result += text;
  return result;
}

} // namespace

TEST_CASE("formulas follow the precedence of their operators") {
  checkRows({
      {L"", 0, 1.0},           {L" \t\r\n ", 0, 1.0},    {L"2+3*4", 0, 14.0},
      {L"(2+3)*4", 0, 20.0},   {L"2*(3+4)", 0, 14.0},    {L" ( i * 1.25 + 3 ) ^ 2 / 4 ", 4, 16.0},
      {L"2^3^2", 0, 64.0},     {L"10-4-3", 0, 3.0},      {L"-2^2", 0, 4.0},
      {L"--2", 0, 2.0},        {L"2*-3", 0, -6.0},       {L"2--3", 0, 5.0},
      {L"pi*2", 0, 6.2831853}, {L"PI+I", 1, 4.14159265}, {L"5.", 0, 5.0},
      {L".5", 0, 0.5},         {L"i>5", 6, 1.0},         {L"i>5", 5, 0.0},
      {L"i=>5", 5, 1.0},       {L"i>=5", 5, 1.0},        {L"i=<5", 5, 1.0},
      {L"i < = 4", 5, 0.0},    {L"i=5", 5, 1.0},         {L"2+i>4", 3, 1.0},
  });
}

TEST_CASE("odd texts keep the values that tables rely on") {
  // The sign goes with the missing operand: -(2+3) is 5. What is missing is forgiven, and nothing is divided by 0.
  checkRows(
      {{L"-(2+3)", 0, 5.0},
       {L"2*+3", 0, 3.0},
       {L"2+", 0, 4.0},
       {L"2*3+", 0, 9.0},
       {L"2+-", 0, 2.0},
       {L"5/0", 0, 5.0},
       {L"1+5/0", 0, 5.0},
       {L"5/i", 0, 5.0},
       {L"1==1", 0, 0.0},
       {L"(2", 0, 2.0},
       {L"2)", 0, 2.0},
       {L"1+2)*3", 0, 3.0},
       {L"2(3)", 0, 3.0},
       {L"()", 0, 0.0},
       {L"-", 0, 0.0}});
}

TEST_CASE("a text that is not an expression is refused, and an incomplete if-form never loops") {
  constexpr std::wstring_view refused =
      L"abc~1e3~1.2.3~.~1,5~2 3~(2)3~ii~nan~5/0+1~(5/0)~2+x*3~2\u00B2~p\u0130~if i>10 then 3~if~if (~if (1)~"
      L"if (1) else 2~then 1~else~then 1 if (1) then 2~if (1) then 2 else 3 else 4~if (1) thenelse 4~"
      L"if (if (1) then 2) then 3~if (x) then 1 else if (y) then 2 else 3";
  for (const std::wstring& text : splitKeepingEmpty(refused, L'~')) {
    CAPTURE(toUtf8(text));
    CHECK_FALSE(valueOf(text));
  }
}

TEST_CASE("an if-form is replaced by the branch that its condition names") {
  checkRows({
      {L"if (i>10) then 3 else 4", 11, 3.0},
      {L"if (i>10) then 3 else 4", 1, 4.0},
      {L"IF(I>10)THEN 3 ELSE 4", 11, 3.0},
      {L"2*if (i>10) then (3) else (4)", 11, 6.0},
      {L"if (i>10) then 3 else (i*2)+1", 5, 11.0},
      {L"if (i>10) then 3 else (i*2)+1", 11, 4.0},
      {L"2if (i) then 3 else (4)5", 1, 235.0}, // put in place as text
      {L"if (i>10) then 3else 4", 11, 0.0},    // the character before "else" is dropped
      {L"if (i>1) then if (i>2) then 30 else 20 else 10", 3, 30.0},
      {L"if (i>1) then if (i>2) then 30 else 20 else 10", 2, 20.0},
      {L"if (i>1) then if (i>2) then 30 else 20 else 10", 1, 10.0},
      {L"if (i<1) then 1 else if (i<2) then 2 else 3", 0, 1.0},
      {L"if (i<1) then 1 else if (i<2) then 2 else 3", 1, 2.0},
      {L"if (i<1) then 1 else if (i<2) then 2 else 3", 2, 3.0},
      {L"if (i<1) then 1 else if (i<2) then 2 else 3 else 4", 5, 4.0}, // the second "else" of the first "if"
      {L"if (i) then 7", 1, 7.0},
      {L"if (i) then 7", 0, 0.0},
      {L"1+if (i) then 7", 0, 2.0}, // nothing is put in place, and "1+" is 2
      {L"if (i) then", 1, 0.0},
      {L"if ((1)) then 2", 0, 2.0}, // the first ")" ends the condition, an open "(" is forgiven
      {L"if (1+(2)*0) then 2 else 3", 0, 2.0},
      {L"if (1) then 4 else if (x) then 2 else 3", 0, 4.0}, // only conditions on the way are evaluated
  });
}

TEST_CASE("length and depth are limited by memory only") {
  constexpr int deep = 200000;
  CHECK(valueOf(repeated(L"(", deep) + L"7" + repeated(L")", deep)) == 7.0);
  CHECK(valueOf(repeated(L"(1+", deep) + L"1") == deep + 1.0);
  CHECK(valueOf(repeated(L")", deep)) == 0.0);
  CHECK(valueOf(repeated(L"1^", deep) + L"1") == 1.0);
  CHECK(valueOf(repeated(L"-", deep) + L"1") == 1.0);
  CHECK(valueOf(repeated(L"if (i) then ", deep) + L"9", 1) == 9.0);
  CHECK(valueOf(repeated(L"if (i) then 1 else ", deep) + L"9", 0) == 9.0);
  CHECK(valueOf(repeated(L"if (i) then ", deep) + L"9" + repeated(L" else 8", deep), 0) == 8.0);
  CHECK(valueOf(repeated(L"9", deep)) == std::numeric_limits<double>::max());
  CHECK(valueOf(L"." + repeated(L"0", deep) + L"1") == 0.0);
}
