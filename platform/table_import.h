// Makes a site's database out of foreign files: Access files, workbooks, delimited text, other databases.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

enum class ExistingTables {
  /// A table that the output already holds is a fault.
  refuse,
  /// It is replaced.
  replace,
};

struct ImportedTable {
  /// The file or folder that it came from.
  std::wstring input;
  std::wstring name;
  std::int64_t rows = 0;
  /// What could not be carried over, a sentence each.
  std::vector<std::wstring> notes;
};

struct ImportReport {
  std::vector<ImportedTable> tables;
  /// Why nothing was written, each naming file and reason; empty when the import is done.
  std::vector<std::wstring> errors;

  [[nodiscard]] bool isDone() const { return errors.empty(); }
};

/// Told ahead of each table: its place from 0 on, how many there are in all, and its name.
using ImportProgress = std::function<void(std::size_t index, std::size_t count, const std::wstring& table)>;

/// Carries all tables of the inputs into the database `outPath`, which is made when it does not exist. An input is a
/// file of any kind that the engines read or a folder of .csv files, recognised by content. Everything is written in one
/// transaction; a new output is written beside itself and renamed at the end. On a failure the output is what it was.
/// Sheets lose the "$" of their table names.
///
/// Types and NULLs are kept. Cells of delimited text and of sheets have no types; their columns are text but for the
/// ones that statements compare or sort as numbers (see `untypedColumnIsNumber`), and `ID`, which numbers the rows.
[[nodiscard]] ImportReport importTables(
    std::wstring_view outPath, const std::vector<std::wstring>& inputs,
    ExistingTables existing = ExistingTables::refuse, const ImportProgress& progress = {});

/// Carries one table of `inputPath`, found without case, into the existing database `outPath`, in place of the one of
/// that name there. An input without such a table changes nothing; the report then has neither tables nor errors.
[[nodiscard]] ImportReport replaceTable(
    std::wstring_view outPath, const std::wstring& inputPath, std::wstring_view table);

/// Whether a column of a source without types holds numbers: the ampacities of AMP_*, from the third column on, and MAX
/// of AMPG* and MOTOR_I_MAP*, and the option code UI_SEL of CATALOGSEL. As texts 100 would sort ahead of 15. All else is text, so that "1.00" stays "1.00".
/// `column` counts from 1; names compare without case.
[[nodiscard]] bool untypedColumnIsNumber(
    std::wstring_view table, std::size_t column, std::wstring_view columnName);

} // namespace brenvolt
