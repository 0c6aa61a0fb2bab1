// What engineering tables can have wrong: their names and columns, their cells, and each against the others.
#pragma once

#include "circuits/check/table_set.h"

#include <string>
#include <string_view>
#include <vector>

namespace circuits {

/// An electrical code that the site has options for.
struct ElectricalCode {
  std::wstring name; ///< "NEC"; empty for tables without a code
  const SiteTable* options = nullptr;

  /// A setting's default; empty without one.
  [[nodiscard]] const std::wstring& defaultOf(std::wstring_view setting) const;
  /// A setting's choices.
  [[nodiscard]] std::vector<std::wstring> listOf(std::wstring_view setting) const;
  /// The row of a setting; null when it has none.
  [[nodiscard]] const TableText::Row* rowOf(std::wstring_view setting) const;
};

/// The codes that have an option table, then the one in use when it has none.
[[nodiscard]] std::vector<ElectricalCode> codesOf(const TableSet& tables, std::wstring_view codeInUse);

/// Names, columns, keys and numbers of every table, one by one.
void checkTableForms(const TableSet& tables, Findings& findings);
/// Which code has its own tables, which borrows.
void checkFamilies(const TableSet& tables, const std::vector<ElectricalCode>& codes, Findings& findings);
void checkWireTables(const TableSet& tables, const std::vector<ElectricalCode>& codes, Findings& findings);
void checkRatingTables(const TableSet& tables, const std::vector<ElectricalCode>& codes, Findings& findings);
void checkOptions(const TableSet& tables, const std::vector<ElectricalCode>& codes, Findings& findings);

/// A cell that must be a number: nothing, and a finding, when it is none. An empty cell gives nothing alone.
[[nodiscard]] std::optional<double> numberAt(
    const SiteTable& table, const TableText::Row& row, int column, Findings& findings);
/// A formula in the full-load current, tried for each current; the finding names the first for which it fails.
/// @return the values, in the order of the currents; empty when the formula is at fault
[[nodiscard]] std::vector<double> checkFormula(
    const FindingPlace& place, const std::wstring& formula, const std::vector<double>& currents,
    Findings& findings);

} // namespace circuits
