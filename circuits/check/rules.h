// The rules that a site is checked against, as data: what each is called, how grave it is, what it says and what to do.
// The table in the manual is made of them.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace circuits {

enum class Severity : std::uint8_t {
  error,   ///< will draw wrong, or fail
  warning, ///< probably not meant
  note     ///< worth knowing
};
[[nodiscard]] std::wstring_view severityName(Severity severity);

/// What of a site a rule looks at; a check can be limited to some.
enum class CheckKind : std::uint8_t { workbook, forms, templates, run, tables, saved, lisp, allow };
[[nodiscard]] std::wstring_view kindName(CheckKind kind);
[[nodiscard]] std::optional<CheckKind> kindOf(std::wstring_view name);
inline constexpr int kindCount = 8;

enum class CheckDepth : std::uint8_t {
  quick, ///< without building circuits, and without the database that builds read
  whole
};

struct Rule {
  std::wstring_view id;
  CheckKind kind;
  Severity severity;
  std::wstring_view sentence; ///< what is wrong; "{name}" is filled in by the finding
  std::wstring_view remedy;   ///< what to do, filled in likewise
  std::wstring_view example;  ///< of what breaks it
};

/// In the order of the manual.
[[nodiscard]] std::span<const Rule> rules();
/// The rule of this id; null when there is none.
[[nodiscard]] const Rule* findRule(std::wstring_view id);
/// The same for an id of the program: an unknown one is a bug.
[[nodiscard]] const Rule& ruleOf(std::wstring_view id);

} // namespace circuits
