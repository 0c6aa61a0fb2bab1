#include "project/code_record.h"

#include "text/compare.h"

#include <algorithm>
#include <limits>

namespace brenvolt {

const ZanOption* ZanOptionGroup::selected() const {
  const auto found =
      std::find_if(options.begin(), options.end(), [](const ZanOption& option) { return option.selected; });
  return found == options.end() ? nullptr : &*found;
}

bool ZanOptionGroup::selectValue(std::int32_t value, std::wstring_view preferredText) {
  const auto hasValue = [value](const ZanOption& option) { return option.value == value; };
  auto found = std::find_if(options.begin(), options.end(), [&](const ZanOption& option) {
    return hasValue(option) && option.text == preferredText;
  });
  if (found == options.end()) found = std::find_if(options.begin(), options.end(), hasValue);
  if (found == options.end()) return false;
  for (ZanOption& option : options)
    option.selected = false;
  found->selected = true;
  return true;
}

const ZanScriptRules::Rows& ZanScriptRules::rows() const {
  static const Rows none;
  return rows_ ? *rows_ : none;
}

void ZanScriptRules::push_back(ZanScriptEntry entry) {
  if (!rows_ || rows_.use_count() > 1) rows_ = std::make_shared<Rows>(rows());
  rows_->push_back(std::move(entry));
}

std::int32_t ZanCodeRecord::GetOptionCode() const {
  if (groups.empty()) return incompleteOptionCode;
  std::int64_t sum = 0;
  for (const ZanOptionGroup& group : groups) {
    if (group.selected() == nullptr) return incompleteOptionCode;
    for (const ZanOption& option : group.options)
      if (option.selected) sum += option.value;
  }
  // Values are read saturating at the 32-bit limits, and so is their sum.
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(sum, Limits::min(), Limits::max()));
}

std::vector<ZanSharedEntry> ZanCodeRecord::scriptRows() const {
  const std::int32_t code = GetOptionCode();
  std::vector<ZanSharedEntry> rows;
  if (GetRulesForCode(firstRules, code, rows)) GetRulesForCode(secondRules, code, rows);
  return rows;
}

std::vector<std::int32_t> ZanCodeRecord::selectedValues() const {
  std::vector<std::int32_t> values;
  for (const ZanOptionGroup& group : groups)
    for (const ZanOption& option : group.options)
      if (option.selected) values.push_back(option.value);
  return values;
}

const ZanOptionGroup* ZanCodeRecord::controlGroup() const {
  const auto found = std::find_if(groups.begin(), groups.end(), [](const ZanOptionGroup& group) {
    return equalsCollating(group.title, motorControlTitle) || equalsCollating(group.title, loadControlTitle);
  });
  return found == groups.end() ? nullptr : &*found;
}

bool GetRulesForCode(const ZanScriptRules& rules, std::int32_t code, std::vector<ZanSharedEntry>& out) {
  if (rules.empty()) return true;
  for (std::size_t i = 0; i < rules.size(); ++i)
    if (rules[i].code == code) out.push_back(rules.share(i));
  return !out.empty();
}

} // namespace brenvolt
