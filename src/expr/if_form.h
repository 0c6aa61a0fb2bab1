// "if (condition) then branch else branch": resolved by putting the text of one branch in its place.
#pragma once

#include <cstddef>
#include <string_view>

namespace brenvolt {

/// The result of an if-form: `branch` replaces the characters from `start` up to `end`.
struct IfForm {
  std::size_t start = 0;
  std::size_t end = 0;
  std::string_view branch; ///< part of the text; empty where a missing else-branch is taken
};

/// Finds the if-form of a lower-cased text that contains an "if" and selects the branch by its conditions. The words
/// are found as plain substrings, regardless of their surroundings. A branch needs parentheses only where it is
/// followed by more text; a condition needs them always and ends at the first ")".
/// Throws `IllegalExprException` for an incomplete form and for an illegal condition on the way to the branch.
[[nodiscard]] IfForm resolveIfForm(std::string_view text, double variable);

} // namespace brenvolt
