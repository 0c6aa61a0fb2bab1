#include "circuits/check/option_choices.h"

#include "text/compare.h"

#include <algorithm>

namespace circuits {

ChoicePlan::Pair ChoicePlan::pairOf(
    std::size_t leftGroup, std::size_t leftOption, std::size_t rightGroup, std::size_t rightOption) {
  if (rightGroup < leftGroup) return {rightGroup, rightOption, leftGroup, leftOption};
  return {leftGroup, leftOption, rightGroup, rightOption};
}

ChoicePlan::ChoicePlan(const SheetModel& sheet) {
  for (const SheetCode& code : sheet.codes) {
    if (!code.hasTitle || code.isRepeated) continue;
    for (std::size_t i = 0; i < code.groups.size(); ++i) {
      const SheetGroup& group = code.groups[i];
      if (group.options.empty() || group.isControl()) continue;
      const auto marked = std::ranges::find_if(group.options, &SheetOption::isDefault);
      const bool hasDefault = marked != group.options.end();
      groups_.push_back(
          {&code, i, hasDefault ? static_cast<std::size_t>(marked - group.options.begin()) : 0});
    }
  }
  for (std::size_t i = 0; i < groups_.size(); ++i)
    for (std::size_t a = 0; a < groups_[i].options().options.size(); ++a) {
      open_.insert({i, a, i, a});
      for (std::size_t j = i + 1; j < groups_.size(); ++j)
        for (std::size_t b = 0; b < groups_[j].options().options.size(); ++b)
          open_.insert({i, a, j, b});
    }
}

std::optional<Choices> ChoicePlan::next() {
  Choices choices;
  for (const ChoiceGroup& group : groups_)
    choices.push_back(group.defaultOption);
  if (!hasBegun_) {
    hasBegun_ = true;
    return choices;
  }
  if (target_) open_.erase(*target_); // it was built and did not come up: another choice keeps it away
  if (open_.empty()) return std::nullopt;
  target_ = *open_.begin();
  const auto [left, leftOption, right, rightOption] = *target_;
  choices[left] = leftOption;
  choices[right] = rightOption;
  std::set<std::size_t> fixed = {left, right};
  for (std::size_t i = 0; i < groups_.size(); ++i) {
    if (fixed.contains(i)) continue;
    std::ptrdiff_t most = -1;
    std::size_t best = groups_[i].defaultOption;
    const auto openWith = [&](std::size_t option) {
      return std::ranges::count_if(
          fixed, [&](std::size_t other) { return open_.contains(pairOf(i, option, other, choices[other])); });
    };
    most = openWith(best);
    for (std::size_t option = 0; option < groups_[i].options().options.size(); ++option)
      if (const auto count = openWith(option); count > most) {
        most = count;
        best = option;
      }
    choices[i] = best;
    fixed.insert(i);
  }
  return choices;
}

void ChoicePlan::note(const Choices& choices, const std::set<std::wstring>& codes) {
  std::vector<std::size_t> asked;
  for (std::size_t i = 0; i < groups_.size(); ++i)
    if (codes.contains(brenvolt::toUpper(groups_[i].code->code))) asked.push_back(i);
  for (const std::size_t left : asked)
    for (const std::size_t right : asked)
      open_.erase(pairOf(left, choices[left], right, choices[right]));
}

std::wstring ChoicePlan::shownText(const Choices& choices) const {
  std::wstring text;
  for (std::size_t i = 0; i < groups_.size(); ++i)
    if (choices[i] != groups_[i].defaultOption)
      text += (text.empty() ? L"" : L", ") + groups_[i].options().title + L": " +
              groups_[i].options().options[choices[i]].text;
  return text.empty() ? L"the default choices" : text;
}

} // namespace circuits
