// A circuit's worksheet as its author wrote it: every CODE with its groups, options and forms and the cells in which they
// stand, also what a build would pass over. Reads by the same rules as a build.
#pragma once

#include "circuits/check/table_text.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace circuits {

/// Columns of a circuit's sheet, from 1.
namespace sheetcolumn {
inline constexpr int code = 1, title = 2, defaultMark = 3, group = 4, option = 5, value = 6, forCode = 7,
                     firstForms = 8, secondForms = 9, controlForms = 10, firstPair = 11;
}
/// The column, by its title, that says with which option of a group above a group is offered. Builds do not read it.
inline constexpr std::wstring_view onlyWithColumn = L"ONLY WITH";
/// The option code of a CODE without groups or with a group in which nothing is selected.
inline constexpr std::int32_t incompleteCode = -1;

struct SheetOption {
  int row = 0;
  std::wstring text;
  std::int32_t value = 0;
  bool isDefault = false;
};

struct SheetGroup {
  int row = 0;
  std::wstring title;
  std::vector<SheetOption> options;
  std::vector<std::wstring> onlyWith{}; ///< options of groups above; empty for no condition

  /// The motor or load group, which is never shown.
  [[nodiscard]] bool isControl() const;
  [[nodiscard]] bool hasDefault() const;
};

/// A table of parts and the title of its group.
struct SheetPair {
  std::wstring table;
  std::wstring title;
  int column = 0; ///< of the table
};

/// One form of a cell.
struct SheetForm {
  int row = 0;
  int column = 0;
  std::wstring cell;    ///< the whole cell
  std::size_t from = 0; ///< of the form in the cell
  std::wstring text;
  std::int32_t forCode = incompleteCode;
  std::vector<SheetPair> pairs;
};

struct SheetCode {
  std::wstring code;
  int row = 0;
  bool hasTitle = false;
  bool isRepeated = false; ///< the sheet has the CODE above: a build drops this one
  std::vector<SheetGroup> groups;
  std::vector<SheetForm> forms; ///< of columns 8 to 10, in the sheet's order

  [[nodiscard]] const SheetGroup* controlGroup() const;
  [[nodiscard]] bool hasForms(int column) const;
  /// CODE text from its last "-" on; empty without one.
  [[nodiscard]] std::wstring suffix() const;
};

struct SheetModel {
  std::wstring name;
  std::vector<SheetCode> codes;                ///< those with a title or with anything below
  std::map<std::wstring, std::size_t> records; ///< those that a build finds, by upper-case CODE

  /// The record that a build finds for a CODE; null when there is none.
  [[nodiscard]] const SheetCode* find(std::wstring_view code) const;
  [[nodiscard]] const SheetCode* findKey(const std::wstring& upperCaseCode) const;
};

[[nodiscard]] SheetModel modelOf(const TableText& sheet);

} // namespace circuits
