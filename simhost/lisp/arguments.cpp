// The words in which every function complains about its arguments.
#include "simhost/lisp/arguments.h"

#include "simhost/lisp/evaluator.h"
#include "simhost/lisp/list.h"
#include "simhost/lisp/printer.h"
#include "text/numbers.h"

namespace simhost::lisp {

namespace {

constexpr std::size_t shownValueLength = 60;

} // namespace

const Value& Arguments::operator[](std::size_t position) const {
  BRENVOLT_ASSERT(position < values_.size(), "a function reads an argument that was not given");
  return values_[position];
}

std::int32_t Arguments::integer(std::size_t position) const {
  if (!has(position) || !values_[position].isInteger()) expected(position, L"an integer");
  return values_[position].asInteger();
}

std::size_t Arguments::count(std::size_t position) const {
  if (!has(position) || !values_[position].isInteger() || values_[position].asInteger() < 0) {
    expected(position, L"an integer from 0 on");
  }
  return static_cast<std::size_t>(values_[position].asInteger());
}

double Arguments::number(std::size_t position) const {
  if (!has(position) || !values_[position].isNumber()) expected(position, L"a number");
  return values_[position].asNumber();
}

const std::wstring& Arguments::text(std::size_t position) const {
  if (!has(position) || !values_[position].isString()) expected(position, L"a string");
  return values_[position].asString();
}

Symbol& Arguments::symbol(std::size_t position) const {
  if (!has(position) || !values_[position].isSymbol()) expected(position, L"a symbol other than nil and T");
  return values_[position].asSymbol();
}

const Value& Arguments::list(std::size_t position) const {
  if (!has(position) || !listLength(values_[position])) expected(position, L"a list");
  return values_[position];
}

Value Arguments::function(std::size_t position) const {
  if (!has(position)) expected(position, L"a function");
  return interpreter_.functionOf(values_[position]);
}

void Arguments::expected(std::size_t position, std::wstring_view what) const {
  std::wstring message = L"argument " + brenvolt::formatInt(static_cast<std::int64_t>(position) + 1) +
                         L" must be " + std::wstring(what);
  message += has(position) ? L", not " + printValue(values_[position], PrintStyle::readable, shownValueLength)
                           : L", but there is none";
  fail(message);
}

void Arguments::fail(std::wstring_view message) const {
  interpreter_.fail(function_.name + L": " + std::wstring(message));
}

} // namespace simhost::lisp
