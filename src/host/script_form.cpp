// Tokens, their types, and the call that they make.
#include "host/script_form.h"

#include "host/host_api_lisp.h"
#include "host/lisp_calls.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <utility>

namespace brenvolt {

namespace {

/// From this length on a whole number is a 32-bit integer; shorter ones are 16-bit and wrap, as 99999 does.
constexpr std::size_t longWordLength = 6;

bool isDigit(wchar_t character) {
  return character >= L'0' && character <= L'9';
}

/// The 16 low bits: the narrowing is part of how forms pass numbers.
std::int16_t narrow(std::int32_t value) {
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(static_cast<std::uint32_t>(value)));
}

/// Where the word that begins at `start` ends.
std::size_t wordEnd(std::wstring_view form, std::size_t start) {
  std::size_t end = start;
  while (end < form.size() && !isBlank(form[end]) && form[end] != L'(' && form[end] != L')')
    ++end;
  return end;
}

/// Adds the variable's value. False when it has none: the search for another one then continues.
bool addVariable(ListBuilder& call, const ZanScriptVariable& variable) {
  switch (variable.type) {
  case kvtype::nil:
    call.addNil();
    return true;
  case kvtype::t:
    call.addT();
    return true;
  case kvtype::real:
    if (const auto* value = std::get_if<double>(&variable.value)) {
      call.addReal(*value);
      return true;
    }
    return false;
  case kvtype::point2d:
  case kvtype::point3d:
    if (const auto* value = std::get_if<KvPoint3d>(&variable.value)) {
      variable.type == kvtype::point2d ? call.addPoint2d(*value) : call.addPoint3d(*value);
      return true;
    }
    return false;
  case kvtype::shortInteger:
  case kvtype::longInteger:
    // A 32-bit variable is passed as 16 bits too: forms have always received it so.
    if (const auto* value = std::get_if<std::int32_t>(&variable.value)) {
      call.addShort(narrow(*value));
      return true;
    }
    return false;
  case kvtype::string:
    if (const auto* value = std::get_if<std::wstring>(&variable.value)) {
      call.addText(*value);
      return true;
    }
    return false;
  case kvtype::listBegin:
    if (const auto* value = std::get_if<ResultList>(&variable.value); value && !value->isEmpty()) {
      call.splice(value->clone());
      return true;
    }
    return false;
  default:
    return false;
  }
}

bool addFromVariables(
    ListBuilder& call, const ScriptToken& token, std::span<const ZanScriptVariable> variables) {
  return std::any_of(variables.begin(), variables.end(), [&](const ZanScriptVariable& variable) {
    return equalsCollating(variable.name, token.text) && addVariable(call, variable);
  });
}

/// A list mark of the form itself; the builder's own marks have to match, those of a form need not.
ResultList markNode(std::int16_t type) {
  return ResultList(kvutNewRb(type));
}

void addToken(ListBuilder& call, const ScriptToken& token) {
  switch (token.type) {
  case kvtype::real:
    call.addReal(toDouble(token.text));
    return;
  case kvtype::shortInteger:
    call.addShort(narrow(toInt(token.text)));
    return;
  case kvtype::longInteger:
    call.addLong(toInt(token.text));
    return;
  case kvtype::nil:
    call.addNil();
    return;
  case kvtype::t:
    call.addT();
    return;
  case kvtype::listBegin:
  case kvtype::listEnd:
    call.splice(markNode(token.type));
    return;
  default:
    call.addText(token.text);
    return;
  }
}

} // namespace

ZanScriptVariable ZanScriptVariable::ofReal(std::wstring_view name, double value) {
  return {name, kvtype::real, value};
}

ZanScriptVariable ZanScriptVariable::ofPoint(std::wstring_view name, const KvPoint3d& value) {
  return {name, kvtype::point2d, value};
}

ZanScriptVariable ZanScriptVariable::ofText(std::wstring_view name, std::wstring value) {
  return {name, kvtype::string, std::move(value)};
}

ZanScriptVariable ZanScriptVariable::ofList(std::wstring_view name, ResultList value) {
  return {name, kvtype::listBegin, std::move(value)};
}

ZanScriptVariable ZanScriptVariable::ofNil(std::wstring_view name) {
  return {name, kvtype::nil, std::monostate()};
}

std::int16_t typeOfWord(std::wstring_view word) {
  if (word == L"nil") return kvtype::nil;
  if (word == L"T") return kvtype::t;
  const bool isNegative = word.size() >= 2 && word.front() == L'-';
  const std::wstring_view number = isNegative ? word.substr(1) : word;
  if (number.empty() || !isDigit(number.front())) return kvtype::string;
  if (!std::all_of(number.begin(), number.end(), [](wchar_t c) { return isDigit(c) || c == L'.'; })) {
    return kvtype::string;
  }
  // Two points make no real: 1.2.3 is the integer 1, on purpose.
  if (std::count(number.begin(), number.end(), L'.') == 1) return kvtype::real;
  return word.size() >= longWordLength ? kvtype::longInteger : kvtype::shortInteger;
}

std::vector<ScriptToken> cutTokens(std::wstring_view form) {
  std::vector<ScriptToken> tokens;
  constexpr std::size_t usualWordLength = 6;
  tokens.reserve(form.size() / usualWordLength + 1);
  for (std::size_t position = 0; position < form.size();) {
    const wchar_t character = form[position];
    if (isBlank(character)) {
      ++position;
    } else if (character == L'"') {
      const std::size_t end = std::min(form.find(L'"', position + 1), form.size());
      tokens.push_back({kvtype::string, form.substr(position + 1, end - position - 1)});
      position = end + 1;
    } else if (character == L'(') {
      if (position != 0) tokens.push_back({kvtype::listBegin, L"("});
      ++position;
    } else if (character == L')') {
      if (position + 1 != form.size()) tokens.push_back({kvtype::listEnd, L")"});
      ++position;
    } else {
      const std::size_t end = wordEnd(form, position);
      const std::wstring_view word = form.substr(position, end - position);
      if (!equalsOrdinalNoCase(word, L"list")) tokens.push_back({typeOfWord(word), word});
      position = end;
    }
  }
  return tokens;
}

ResultList buildCall(std::wstring_view form, std::span<const ZanScriptVariable> variables) {
  ListBuilder call;
  for (const ScriptToken& token : cutTokens(form)) {
    if (!addFromVariables(call, token, variables)) addToken(call, token);
  }
  return call.take();
}

bool runForm(std::wstring_view form, std::span<const ZanScriptVariable> variables, ResultList& answer) {
  answer.reset();
  const ResultList call = buildCall(form, variables);
  if (call.isEmpty()) return false;
  return invokeTraced(call, form, answer) == kvstatus::normal;
}

} // namespace brenvolt
