// Makes a site's database out of foreign files: Access files, workbooks, delimited text, other databases.
#pragma once

#include <cstddef>
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

/// What the cells of a column are used for, which decides how they are stored and what they may hold. NULL and an empty
/// cell are allowed everywhere.
enum class ColumnUse : std::uint8_t {
  /// Anything, as it is written.
  text,
  /// Compared or sorted as a number: as texts 100 would come before 15.
  number,
  /// A whole number that numbers the rows.
  key,
  /// Read as a number, shown as it is written: "1.00" stays "1.00".
  numberAsText,
  /// The same, but the last row may hold a word.
  limit,
  /// Two numbers with ";" between.
  numberPair,
};

/// Returns the use of a column from the names of table and column; `column` counts from 1. The reader of a database
/// knows the meaning of its columns, not this class.
using ColumnUses =
    std::function<ColumnUse(std::wstring_view table, std::size_t column, std::wstring_view columnName)>;

/// What to do with a cell that does not hold what its column needs.
enum class BadCells {
  /// Every one is named, and nothing is written.
  refuse,
  /// It becomes NULL and is named in the notes.
  makeNull,
  /// It stays as it is.
  keep,
};

struct ImportedTable {
  /// The file or folder that it came from.
  std::wstring input;
  std::wstring name;
  std::int64_t rows = 0;
  /// What could not be carried over, a sentence each.
  std::vector<std::wstring> notes;
};

enum class ImportFault { none, badInput, cannotWrite };

struct ImportReport {
  std::vector<ImportedTable> tables;
  /// Why nothing was written, each naming file and reason; empty when the import is done.
  std::vector<std::wstring> errors;
  /// What the first of them is about.
  ImportFault fault = ImportFault::none;
  /// How many of them are cells that do not hold what their column needs.
  std::size_t badCells = 0;

  [[nodiscard]] bool isDone() const { return errors.empty(); }
};

/// Called before each table: its place from 0 on, how many there are in all, and its name.
using ImportProgress = std::function<void(std::size_t index, std::size_t count, const std::wstring& table)>;

struct ImportOptions {
  /// Without it all columns are texts where the source has no types.
  ColumnUses columnUses;
  ExistingTables existing = ExistingTables::refuse;
  BadCells badCells = BadCells::refuse;
  /// Inputs whose tables come without their rows, named as in `inputs`.
  std::vector<std::wstring> withoutRows;
  /// Whether an existing table of the output is kept, regardless of `existing`.
  std::function<bool(std::wstring_view table)> staysWhenPresent;
  /// Statements of the output's own for each table that it holds at the end, "%s" for the table's name in brackets; they
  /// belong to the same transaction.
  std::vector<std::wstring> forEachTable;
  ImportProgress progress;
};

/// Carries all tables of the inputs into the database `outPath`, which is made when it does not exist, or into a
/// PostgreSQL server ("odbc:" and a connection string). An input is a
/// file of any kind that the engines read or a folder of .csv files, recognised by content. Everything is written in one
/// transaction; a new output is a temporary file, renamed at the end. On a failure the output is unchanged. Sheets
/// lose the "$" of their table names.
///
/// Types and NULLs are kept. Cells of delimited text and of sheets have no types: their columns are what
/// `options.columnUses` says. Where a source has types, it still says which text columns are stored as numbers and
/// which have to hold some.
[[nodiscard]] ImportReport importTables(
    std::wstring_view outPath, const std::vector<std::wstring>& inputs, const ImportOptions& options = {});

/// Carries one table of `inputPath`, found without case, into the existing database `outPath`, in place of the one of
/// that name there, its cells as they are. An input without such a table changes nothing; the report then has neither
/// tables nor errors.
[[nodiscard]] ImportReport replaceTable(
    std::wstring_view outPath, const std::wstring& inputPath, std::wstring_view table);

} // namespace brenvolt
