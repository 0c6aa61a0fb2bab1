// What one CODE of a worksheet offers: option groups for the user, and the rules that follow from the choice. The sum
// of the selected options' values is the option code; it alone picks what runs and what is shown.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brenvolt {

/// One choice of a group.
struct ZanOption {
  std::wstring text;
  std::int32_t value = 0; ///< what the choice adds to the option code
  bool selected = false;

  friend bool operator==(const ZanOption&, const ZanOption&) = default;
};

/// One combo box of a page, options in worksheet order.
struct ZanOptionGroup {
  std::wstring title;
  std::vector<ZanOption> options;

  /// The first selected option, null when there is none.
  [[nodiscard]] const ZanOption* selected() const;
  /// Selects the first option of this value, one of this text before any other, and clears all others. False, and
  /// nothing changed, when there is none.
  bool selectValue(std::int32_t value, std::wstring_view preferredText = {});

  friend bool operator==(const ZanOptionGroup&, const ZanOptionGroup&) = default;
};

/// One action or control definition: a LISP form or a whole worksheet cell.
struct ZanScriptEntry {
  std::wstring text;
  std::int32_t code = -1; ///< the option code for which it applies; -1 when the worksheet left it empty
  std::vector<std::pair<std::wstring, std::wstring>> params{}; ///< (name, value); only control rules have any
  int row = 0;    ///< of the worksheet, as a spreadsheet program counts; 0 when it is not known
  int column = 0; ///< from 1

  /// The cell says where to look, not what runs.
  friend bool operator==(const ZanScriptEntry& left, const ZanScriptEntry& right) {
    return left.text == right.text && left.code == right.code && left.params == right.params;
  }
};

/// A rule as records and what is executed share it: read from the worksheet once, never changed.
using ZanSharedEntry = std::shared_ptr<const ZanScriptEntry>;

/// The rules of one kind in worksheet order. Each marker has a copy of its record; the copies share their rules, since
/// a template of ten thousand markers would otherwise hold as many copies of the same forms.
class ZanScriptRules final {
public:
  using Rows = std::vector<ZanScriptEntry>;

  ZanScriptRules() = default;
  ZanScriptRules(Rows rows) : rows_(std::make_shared<Rows>(std::move(rows))) {}
  ZanScriptRules(std::initializer_list<ZanScriptEntry> rows) : ZanScriptRules(Rows(rows)) {}

  [[nodiscard]] const Rows& rows() const;
  [[nodiscard]] bool empty() const { return rows().empty(); }
  [[nodiscard]] std::size_t size() const { return rows().size(); }
  [[nodiscard]] const ZanScriptEntry& operator[](std::size_t index) const { return rows()[index]; }
  [[nodiscard]] Rows::const_iterator begin() const { return rows().begin(); }
  [[nodiscard]] Rows::const_iterator end() const { return rows().end(); }

  /// The rule at `index`, which then outlives the record.
  [[nodiscard]] ZanSharedEntry share(std::size_t index) const { return {rows_, &(*rows_)[index]}; }
  /// Other records that share the list keep theirs.
  void push_back(ZanScriptEntry entry);

  friend bool operator==(const ZanScriptRules& left, const ZanScriptRules& right) {
    return left.rows() == right.rows();
  }

private:
  std::shared_ptr<Rows> rows_; ///< null for an empty list
};

/// The option code of a record with an incomplete group, or without groups.
inline constexpr std::int32_t incompleteOptionCode = -1;
/// The fixed option code of a motor or load unit.
inline constexpr std::int32_t controlOptionCode = -100;

/// Titles of the option group that makes a record a motor's or a load's.
inline constexpr std::wstring_view motorControlTitle = L"!MCC_CTRL";
inline constexpr std::wstring_view loadControlTitle = L"!PF_CTRL";

/// All that a marker offers. Marker and config unit hold a copy each.
struct ZanCodeRecord {
  std::wstring title;
  std::vector<ZanOptionGroup> groups;
  ZanScriptRules firstRules;
  ZanScriptRules secondRules;
  ZanScriptRules controlRules; ///< these name the widget managers of the marker

  /// The sum of the values of all selected options; `incompleteOptionCode` when a group has none or there is no group.
  /// Two selected options in one group both count: the mark comes from the worksheet, and nothing forbids a second.
  [[nodiscard]] std::int32_t GetOptionCode() const;

  /// The rows that run: those of the first list, then those of the second. A first list that is not empty but has no
  /// match silences the second.
  [[nodiscard]] std::vector<ZanSharedEntry> scriptRows() const;

  /// The values of the selected options, group by group.
  [[nodiscard]] std::vector<std::int32_t> selectedValues() const;

  /// The motor or load group: the first whose title is one of the two control titles; null when there is none.
  [[nodiscard]] const ZanOptionGroup* controlGroup() const;

  friend bool operator==(const ZanCodeRecord&, const ZanCodeRecord&) = default;
};

/// Appends the rules whose code is exactly `code` to `out`. True when `out` is not empty afterwards, even if it was
/// not empty before, or when `rules` is empty.
bool GetRulesForCode(const ZanScriptRules& rules, std::int32_t code, std::vector<ZanSharedEntry>& out);

} // namespace brenvolt
