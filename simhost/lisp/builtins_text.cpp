// Strings. Positions count from 0; a character is a string of length 1.
#include "simhost/lisp/builtins.h"
#include "simhost/lisp/list.h"
#include "simhost/lisp/printer.h"
#include "simhost/lisp/reader.h"
#include "text/compare.h"
#include "text/split.h"

#include <algorithm>
#include <limits>

namespace simhost::lisp {

namespace {

Value stringAppend(Arguments& arguments) {
  std::wstring result;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    result += arguments.text(i);
  }
  return Value::string(std::move(result));
}

Value upcase(Arguments& arguments) {
  return Value::string(brenvolt::toUpper(arguments.text(0)));
}

Value downcase(Arguments& arguments) {
  return Value::string(brenvolt::toLower(arguments.text(0)));
}

Value textLength(Arguments& arguments) {
  return Value::integer(static_cast<std::int32_t>(arguments.text(0).size()));
}

Value substring(Arguments& arguments) {
  const std::wstring& text = arguments.text(0);
  const std::size_t start = arguments.count(1);
  const std::size_t end = arguments.has(2) ? arguments.count(2) : text.size();
  if (start > end || end > text.size()) arguments.fail(L"start and end must be in order within the string");
  return Value::string(text.substr(start, end - start));
}

Value positionOrNil(std::size_t position) {
  return position == std::wstring::npos ? Value() : Value::integer(static_cast<std::int32_t>(position));
}

/// Where the first text begins in the second one, from a position on.
Value search(Arguments& arguments) {
  const std::size_t from = arguments.has(2) ? arguments.count(2) : 0;
  return positionOrNil(arguments.text(1).find(arguments.text(0), from));
}

Value searchNoCase(Arguments& arguments) {
  const std::wstring& text = arguments.text(1);
  const std::size_t from = arguments.has(2) ? arguments.count(2) : 0;
  return from > text.size() ? Value() : positionOrNil(brenvolt::findNoCase(text, arguments.text(0), from));
}

/// Whether the relation holds between all neighbours; the number is below, at or above 0 as in a comparison.
template <typename Compare, typename Relation>
Value chain(Arguments& arguments, Compare compare, Relation holds) {
  bool result = true;
  for (std::size_t i = 0; i + 1 < arguments.size(); ++i) {
    const int order = compare(arguments.text(i), arguments.text(i + 1));
    result = result && holds(order);
  }
  return Value::truth(result);
}

int compareExactly(const std::wstring& left, const std::wstring& right) {
  return left.compare(right);
}

int compareNoCase(const std::wstring& left, const std::wstring& right) {
  return brenvolt::compareOrdinalNoCase(left, right);
}

Value areEqualTexts(Arguments& arguments) {
  return chain(arguments, compareExactly, [](int order) { return order == 0; });
}

Value areEqualTextsNoCase(Arguments& arguments) {
  return chain(arguments, compareNoCase, [](int order) { return order == 0; });
}

Value areRisingTexts(Arguments& arguments) {
  return chain(arguments, compareExactly, [](int order) { return order < 0; });
}

Value areFallingTexts(Arguments& arguments) {
  return chain(arguments, compareExactly, [](int order) { return order > 0; });
}

Value areRisingTextsNoCase(Arguments& arguments) {
  return chain(arguments, compareNoCase, [](int order) { return order < 0; });
}

std::int32_t radix(Arguments& arguments) {
  if (!arguments.has(1)) return 10;
  const std::int32_t base = arguments.integer(1);
  if (base < 2 || base > 36) arguments.expected(1, L"an integer from 2 to 36");
  return base;
}

constexpr std::wstring_view digitLetters = L"0123456789abcdefghijklmnopqrstuvwxyz";

Value numberToString(Arguments& arguments) {
  static_cast<void>(arguments.number(0));
  const std::int32_t base = radix(arguments);
  if (base == 10) return Value::string(printValue(arguments[0]));
  std::int64_t rest = arguments.integer(0);
  const bool isNegative = rest < 0;
  std::wstring digits;
  for (rest = isNegative ? -rest : rest; rest > 0 || digits.empty(); rest /= base) {
    digits += digitLetters[static_cast<std::size_t>(rest % base)];
  }
  if (isNegative) digits += L'-';
  std::reverse(digits.begin(), digits.end());
  return Value::string(std::move(digits));
}

/// nil unless the whole text, without blanks around it, is a number.
Value stringToNumber(Arguments& arguments) {
  const std::wstring word = brenvolt::toLower(brenvolt::trim(arguments.text(0)));
  const std::int32_t base = radix(arguments);
  if (base == 10) return parseNumber(word).value_or(Value());
  const bool isNegative = word.starts_with(L'-');
  const std::wstring_view digits = std::wstring_view(word).substr(isNegative ? 1 : 0);
  if (digits.empty()) return {};
  std::int64_t number = 0;
  for (const wchar_t letter : digits) {
    const std::size_t digit = digitLetters.find(letter);
    if (digit >= static_cast<std::size_t>(base)) return {};
    number = number * base + static_cast<std::int64_t>(digit);
    if (number > std::numeric_limits<std::int32_t>::max()) return {};
  }
  return Value::integer(static_cast<std::int32_t>(isNegative ? -number : number));
}

Value trimBoth(Arguments& arguments) {
  return Value::string(brenvolt::trim(arguments.text(1), arguments.text(0)));
}

Value trimLeft(Arguments& arguments) {
  const std::wstring& text = arguments.text(1);
  return Value::string(text.substr(std::min(text.find_first_not_of(arguments.text(0)), text.size())));
}

Value trimRight(Arguments& arguments) {
  const std::wstring& text = arguments.text(1);
  return Value::string(text.substr(0, text.find_last_not_of(arguments.text(0)) + 1));
}

wchar_t character(Arguments& arguments, std::size_t position) {
  if (arguments.text(position).size() != 1) arguments.expected(position, L"a string of one character");
  return arguments.text(position)[0];
}

Value split(Arguments& arguments) {
  ListBuilder parts;
  for (std::wstring& part : brenvolt::splitKeepingEmpty(arguments.text(0), character(arguments, 1))) {
    parts.add(Value::string(std::move(part)));
  }
  return parts.take();
}

Value join(Arguments& arguments) {
  std::vector<std::wstring> parts;
  for (const Value& part : Elements(arguments.list(0))) {
    if (!part.isString()) arguments.expected(0, L"a list of strings");
    parts.push_back(part.asString());
  }
  return Value::string(brenvolt::join(parts, arguments.has(1) ? arguments.text(1) : L" "));
}

Value characterCode(Arguments& arguments) {
  return Value::integer(static_cast<std::int32_t>(character(arguments, 0)));
}

Value codeCharacter(Arguments& arguments) {
  constexpr std::int32_t lastCodePoint = 0x10FFFF;
  const std::int32_t code = arguments.integer(0);
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  if (code < 1 || code > lastCodePoint || isSurrogate) arguments.expected(0, L"the code of a character");
  return Value::string(std::wstring(1, static_cast<wchar_t>(code)));
}

constexpr BuiltinEntry textBuiltins[] = {
    {L"string-append", 0, anyNumber, stringAppend},
    {L"string-upcase", 1, 1, upcase},
    {L"string-downcase", 1, 1, downcase},
    {L"string-length", 1, 1, textLength},
    {L"substring", 2, 3, substring},
    {L"string-search", 2, 3, search},
    {L"string-search-ci", 2, 3, searchNoCase},
    {L"string=?", 2, anyNumber, areEqualTexts},
    {L"string=", 2, anyNumber, areEqualTexts},
    {L"string-ci=?", 2, anyNumber, areEqualTextsNoCase},
    {L"string-equal", 2, anyNumber, areEqualTextsNoCase},
    {L"string<?", 2, anyNumber, areRisingTexts},
    {L"string<", 2, anyNumber, areRisingTexts},
    {L"string>?", 2, anyNumber, areFallingTexts},
    {L"string>", 2, anyNumber, areFallingTexts},
    {L"string-ci<?", 2, anyNumber, areRisingTextsNoCase},
    {L"number->string", 1, 2, numberToString},
    {L"string->number", 1, 2, stringToNumber},
    {L"string-trim", 2, 2, trimBoth},
    {L"string-left-trim", 2, 2, trimLeft},
    {L"string-right-trim", 2, 2, trimRight},
    {L"string-split", 2, 2, split},
    {L"string-join", 1, 2, join},
    {L"char-code", 1, 1, characterCode},
    {L"code-char", 1, 1, codeCharacter},
};

} // namespace

void defineTextBuiltins(Interpreter& interpreter) {
  defineAll(interpreter, textBuiltins);
}

} // namespace simhost::lisp
