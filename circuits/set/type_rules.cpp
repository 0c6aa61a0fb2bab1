// Cutting a rule into its parts, and comparing.
#include "circuits/set/type_rules.h"

#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <array>
#include <utility>

namespace circuits {

namespace {

const SetFieldRow* fieldOf(std::wstring_view name) {
  for (const SetFieldRow& field : setFields())
    if (brenvolt::equalsOrdinalNoCase(field.name, name)) return &field;
  return nullptr;
}

bool isUnits(std::wstring_view name) {
  constexpr std::array<std::wstring_view, 4> units = {L"hp", L"kw", L"kva", L"w"};
  return std::any_of(units.begin(), units.end(), [name](std::wstring_view unit) {
    return brenvolt::equalsOrdinalNoCase(unit, name);
  });
}

bool isNumber(std::wstring_view text) {
  return !text.empty() && text.find_first_not_of(L"0123456789.") == std::wstring_view::npos &&
         std::count(text.begin(), text.end(), L'.') <= 1 && text != L".";
}

} // namespace

std::optional<TypeRule> TypeRule::parse(std::wstring_view text, std::wstring& fault) {
  const auto fail = [&fault](std::wstring reason) {
    fault = std::move(reason);
    return std::nullopt;
  };
  const std::size_t arrow = text.find(L"->");
  if (arrow == std::wstring_view::npos) return fail(L"there is no \"->\" before the type");
  TypeRule rule;
  const std::wstring result = brenvolt::trim(std::wstring(text.substr(arrow + 2)));
  const std::size_t slash = result.find(L" / ");
  rule.type_ = slash == std::wstring::npos ? result : brenvolt::trim(result.substr(slash + 3));
  if (slash != std::wstring::npos) rule.circuit_ = brenvolt::trim(result.substr(0, slash));
  if (rule.type_.empty()) return fail(L"no type follows \"->\"");
  std::wstring rest(text.substr(0, arrow));
  while (true) {
    const std::size_t cut = rest.find(L" and ");
    const std::wstring part = brenvolt::trim(rest.substr(0, cut));
    const std::size_t sign = part.find_first_of(L"<>=");
    if (sign == std::wstring::npos) return fail(L"\"" + part + L"\" has none of the signs < <= > >= =");
    const bool isWide = part[sign] != L'=' && sign + 1 < part.size() && part[sign + 1] == L'=';
    Condition condition{
        SetField::load, {}, Comparison::equal, brenvolt::trim(part.substr(sign + (isWide ? 2 : 1)))};
    if (part[sign] == L'<') condition.comparison = isWide ? Comparison::lessOrEqual : Comparison::less;
    if (part[sign] == L'>') condition.comparison = isWide ? Comparison::greaterOrEqual : Comparison::more;
    const std::wstring name = brenvolt::trim(part.substr(0, sign));
    bool needsNumber = condition.comparison != Comparison::equal;
    if (const SetFieldRow* field = fieldOf(name)) {
      condition.field = field->field;
      if (needsNumber && !field->isNumber) return fail(L"\"" + name + L"\" is a text and has no size");
      needsNumber = field->isNumber;
    } else if (isUnits(name)) {
      condition.units = name;
      needsNumber = true;
    } else {
      return fail(L"the list has no column \"" + name + L"\"");
    }
    if (needsNumber && !isNumber(condition.value))
      return fail(L"\"" + condition.value + L"\" is not a plain number");
    rule.conditions_.push_back(std::move(condition));
    if (cut == std::wstring::npos) return rule;
    rest = rest.substr(cut + 5);
  }
}

bool TypeRule::fits(const SetRow& row) const {
  return std::all_of(conditions_.begin(), conditions_.end(), [&row](const Condition& condition) {
    if (!condition.units.empty() && !brenvolt::equalsOrdinalNoCase(condition.units, row[SetField::units]))
      return false;
    const std::wstring& cell = row[condition.field];
    if (cell.empty()) return false;
    if (!setFields()[static_cast<std::size_t>(condition.field)].isNumber)
      return brenvolt::equalsOrdinalNoCase(cell, condition.value);
    const double has = brenvolt::toDouble(cell);
    const double wanted = brenvolt::toDouble(condition.value);
    switch (condition.comparison) {
    case Comparison::less:
      return has < wanted;
    case Comparison::lessOrEqual:
      return has <= wanted;
    case Comparison::more:
      return has > wanted;
    case Comparison::greaterOrEqual:
      return has >= wanted;
    case Comparison::equal:
      return has == wanted;
    }
    return false;
  });
}

void applyTypeRules(SetList& list, const std::vector<TypeRule>& rules) {
  for (SetRow& row : list.rows) {
    std::wstring& type = row.texts[static_cast<std::size_t>(SetField::type)];
    if (!type.empty()) continue;
    const auto rule =
        std::find_if(rules.begin(), rules.end(), [&row](const TypeRule& one) { return one.fits(row); });
    if (rule == rules.end()) {
      list.faults.push_back(
          {row.number, L"type",
           rules.empty() ? L"is missing" : L"is missing, and none of the rules fits the row"});
      continue;
    }
    type = rule->type();
    std::wstring& circuit = row.texts[static_cast<std::size_t>(SetField::circuit)];
    if (circuit.empty()) circuit = rule->circuit();
  }
}

} // namespace circuits
