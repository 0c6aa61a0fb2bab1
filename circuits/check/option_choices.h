// Choices to build a circuit with, so that every two options of different groups meet in at least one build.
#pragma once

#include "circuits/check/sheet_model.h"

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace circuits {

/// A group of a CODE that a user chooses from.
struct ChoiceGroup {
  const SheetCode* code = nullptr;
  std::size_t group = 0; ///< among the groups of the CODE
  std::size_t defaultOption = 0;
  [[nodiscard]] const SheetGroup& options() const { return code->groups[group]; }
};

/// One option for each group.
using Choices = std::vector<std::size_t>;

class ChoicePlan final {
public:
  /// Groups without an option are left out, and so is the group of a motor or load.
  explicit ChoicePlan(const SheetModel& sheet);

  [[nodiscard]] const std::vector<ChoiceGroup>& groups() const { return groups_; }
  /// The next choices to build with: at first all defaults. Nothing when every pair has been met, or cannot be.
  [[nodiscard]] std::optional<Choices> next();
  /// Notes what a build has shown: only the groups of these CODEs, in upper case, were asked at all.
  void note(const Choices& choices, const std::set<std::wstring>& codes);

  /// What differs from the defaults, for a reader; "the default choices" when nothing does.
  [[nodiscard]] std::wstring shownText(const Choices& choices) const;

private:
  /// Group and option of the one, group and option of the other; the same twice for an option alone.
  using Pair = std::tuple<std::size_t, std::size_t, std::size_t, std::size_t>;
  static Pair pairOf(
      std::size_t leftGroup, std::size_t leftOption, std::size_t rightGroup, std::size_t rightOption);

  std::vector<ChoiceGroup> groups_;
  std::set<Pair> open_;
  std::optional<Pair> target_;
  bool hasBegun_ = false;
};

} // namespace circuits
