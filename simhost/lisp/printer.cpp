// One loop over the parts of a value; the remainders of the open lists are kept on a separate stack.
#include "simhost/lisp/printer.h"

#include "simhost/lisp/symbol.h"
#include "text/numbers.h"

#include <string_view>
#include <vector>

namespace simhost::lisp {

namespace {

void appendQuoted(std::wstring& out, const std::wstring& text) {
  out += L'"';
  for (const wchar_t character : text) {
    switch (character) {
    case L'"':
      out += L"\\\"";
      break;
    case L'\\':
      out += L"\\\\";
      break;
    case L'\n':
      out += L"\\n";
      break;
    case L'\r':
      out += L"\\r";
      break;
    case L'\t':
      out += L"\\t";
      break;
    default:
      out += character;
    }
  }
  out += L'"';
}

std::wstring hexadecimal(std::uint64_t number) {
  std::wstring digits;
  do {
    digits.insert(digits.begin(), L"0123456789ABCDEF"[number % 16]);
    number /= 16;
  } while (number != 0);
  return digits;
}

void appendAtom(std::wstring& out, const Value& value, PrintStyle style) {
  switch (value.kind()) {
  case Kind::nil:
    out += L"nil";
    break;
  case Kind::truth:
    out += L"T";
    break;
  case Kind::integer:
    out += brenvolt::formatInt(value.asInteger());
    break;
  case Kind::real:
    out += printReal(value.asReal());
    break;
  case Kind::symbol:
    out += value.asSymbol().name;
    break;
  case Kind::entity:
    out += L"<Entity: " + hexadecimal(value.asEntity()) + L">";
    break;
  case Kind::string:
    if (style == PrintStyle::readable) {
      appendQuoted(out, value.asString());
    } else {
      out += value.asString();
    }
    break;
  case Kind::builtin:
    out += L"<Function: " + value.asBuiltin().name + L">";
    break;
  case Kind::lambda: {
    const Symbol* name = value.asLambda().name;
    out += name == nullptr ? L"<Lambda>" : L"<Function: " + name->name + L">";
    break;
  }
  case Kind::opaque:
    out += L"<" + value.asOpaque().label + L">";
    break;
  case Kind::cons:
    break;
  }
}

/// The quoted datum of a form (quote x), null for every other value.
const Value* quotedDatum(const Cons& cons) {
  if (!cons.car().isSymbol() || cons.car().asSymbol().name != L"QUOTE" || !cons.cdr().isCons())
    return nullptr;
  const Cons& rest = cons.cdr().asCons();
  return rest.cdr().isNil() ? &rest.car() : nullptr;
}

/// Closes finished lists and gives the next element of the innermost open one, null at the end of all.
const Value* nextElement(std::wstring& out, std::vector<const Value*>& openRests, PrintStyle style) {
  while (!openRests.empty()) {
    const Value& rest = *openRests.back();
    if (rest.isCons()) {
      out += L' ';
      openRests.back() = &rest.asCons().cdr();
      return &rest.asCons().car();
    }
    if (!rest.isNil()) {
      out += L" . ";
      appendAtom(out, rest, style);
    }
    out += L')';
    openRests.pop_back();
  }
  return nullptr;
}

} // namespace

std::wstring printValue(const Value& value, PrintStyle style, std::size_t limit) {
  std::wstring out;
  std::vector<const Value*> openRests;
  const Value* current = &value;
  while (current != nullptr && out.size() <= limit) {
    if (!current->isCons()) {
      appendAtom(out, *current, style);
      current = nextElement(out, openRests, style);
      continue;
    }
    const Cons& cons = current->asCons();
    if (const Value* datum = quotedDatum(cons)) {
      out += L'\'';
      current = datum;
      continue;
    }
    out += L'(';
    openRests.push_back(&cons.cdr());
    current = &cons.car();
  }
  if (out.size() > limit) {
    out.resize(limit);
    out += L"...";
  }
  return out;
}

std::wstring printReal(double number) {
  std::wstring text = brenvolt::formatShortest(number);
  // "1" would be read back as an integer; the letters of an exponent (and of non-finite values) need no point.
  if (text.find_first_not_of(L"-0123456789") == std::wstring::npos) text += L".0";
  return text;
}

std::wstring printPointForm(double x, double y) {
  return L"'(" + printReal(x) + L" " + printReal(y) + L" 0.0)";
}

} // namespace simhost::lisp
