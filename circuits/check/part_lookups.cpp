#include "circuits/check/part_lookups.h"

#include "circuits/check/check_session.h"
#include "circuits/check/similar_name.h"
#include "host/script_form.h"
#include "simhost/lisp/list.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <iterator>

namespace circuits {

namespace lisp = simhost::lisp;
using brenvolt::equalsOrdinalNoCase;
using brenvolt::toUpper;
using lisp::Value;

std::optional<std::vector<std::wstring>> lookUpPart(
    CheckSession& session, const SheetForm& form, const KnownPart& known) {
  std::vector<std::wstring> words =
      brenvolt::splitSkippingEmpty(brenvolt::replaceAll(form.text, L"(", L" "), L' ');
  if (words.empty() || !words.back().ends_with(L")")) return std::nullopt;
  words.back().pop_back();
  const std::pair<std::wstring_view, const std::wstring&> variables[] = {
      {L"@table", known.table}, {L"@mfg", known.maker}, {L"@cat", known.number}, {L"@asm", known.assembly}};
  std::vector<Value> arguments;
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (brenvolt::typeOfWord(words[i]) == kvtype::shortInteger) {
      arguments.push_back(Value::integer(brenvolt::toInt(words[i])));
      continue;
    }
    const auto variable = std::ranges::find_if(
        variables, [&](const auto& each) { return equalsOrdinalNoCase(words[i], each.first); });
    if (variable == std::end(variables)) return std::nullopt;
    arguments.push_back(Value::string(variable->second));
  }
  // A lookup may offer to pick a component; without one it goes by the motor.
  session.windows().picksNothing = true;
  const CheckSession::Answer answer = session.call(words.front(), arguments);
  session.windows().picksNothing = false;
  std::vector<std::wstring> values;
  if (answer.value && answer.value->isCons())
    for (const Value& value : lisp::Elements(*answer.value))
      values.push_back(value.isString() ? value.asString() : std::wstring());
  constexpr std::size_t least = 3;
  if (values.size() < least || values[1].empty()) values.clear();
  return values;
}

const std::vector<std::wstring>& PartLookups::partOf(
    const SheetModel& sheet, const SheetCode& code, const SheetForm& form, const SheetPair& pair) {
  std::vector<std::wstring>& part = parts_[{form.text, pair.table}];
  if (!part.empty()) return part;
  std::optional<std::vector<std::wstring>> values = lookUpPart(session_, form, {pair.table});
  if (!values) return part;
  note(sheet, code, form, pair, !values->empty());
  constexpr std::ptrdiff_t count = 3; // its place among the values of a group
  if (!values->empty()) values->insert(values->begin() + count, L"1");
  return part = std::move(*values);
}

void PartLookups::note(
    const SheetModel& sheet, const SheetCode& code, const SheetForm& form, const SheetPair& pair,
    bool hasPart) {
  const std::wstring function(brenvolt::cutTokens(form.text).front().text);
  Asked& asked = asked_[toUpper(function)].try_emplace(toUpper(pair.table), Asked{pair.table}).first->second;
  asked.hasParts = asked.hasParts || hasPart;
  asked.places.try_emplace({sheet.name, form.row}, site_.place(sheet, code, form.row, pair.column));
}

void PartLookups::report(Findings& findings) const {
  for (const auto& [function, tables] : asked_) {
    std::vector<std::wstring> known;
    for (const auto& [name, asked] : tables)
      if (asked.hasParts) known.push_back(asked.table);
    if (known.empty()) continue; // it may need what a check does not have
    for (const auto& [name, asked] : tables) {
      if (asked.hasParts) continue;
      for (const auto& [row, place] : asked.places)
        findings.add(
            L"run-table-without-parts", place, {asked.table},
            {{L"function", brenvolt::toLower(function)},
             {L"table", asked.table},
             {L"known", brenvolt::join(known, L", ")},
             {L"similar", didYouMean(similarName(asked.table, known))}});
    }
  }
}

} // namespace circuits
