// The output of the tool as tables: aligned columns as text, CSV for spreadsheets, JSON for programs.
#pragma once

#include "simhost/cli/command_table.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace simhost {

enum class OutputForm { text, csv, json };

/// The options --csv and --json of a subcommand, of which at most one may be given.
struct OutputOptions {
  bool isCsv = false;
  bool isJson = false;

  [[nodiscard]] OptionRows rows();
  [[nodiscard]] OutputForm form() const;
};

enum class ColumnKind {
  text,
  number ///< right-aligned, and a number in JSON where the cell is one
};

struct OutputColumn {
  std::string key;   ///< in CSV and JSON
  std::string title; ///< for text output
  ColumnKind kind = ColumnKind::text;
};

/// A cell without a value is NULL: empty in text and CSV, null in JSON.
struct OutputCell : std::optional<std::wstring> {
  using std::optional<std::wstring>::optional;
  OutputCell() = default;
  OutputCell(std::optional<std::wstring> text) : std::optional<std::wstring>(std::move(text)) {}
  /// A number in JSON, independent of the other cells of its column.
  bool isNumber = false;
};

struct OutputTable {
  std::vector<OutputColumn> columns;
  std::vector<std::vector<OutputCell>> rows;
};

/// The table with a line feed at the end of each line. A table without columns is empty.
[[nodiscard]] std::string formatTable(const OutputTable& table, OutputForm form);

/// The rows as a JSON array of objects, to be inserted in a larger document.
[[nodiscard]] std::string jsonRows(const OutputTable& table);

/// Writes to standard output.
void printOut(const std::string& text);

} // namespace simhost
