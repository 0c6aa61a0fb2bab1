// The circuits that a project already holds, as the parent product's LISP has written them into the project database.
// Everything here only reads; a file that cannot be opened counts as an empty project. Observers may be null.
#pragma once

#include "platform/tables.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

using TextRow = std::vector<std::wstring>;

/// The project database, open for reading as long as the object lives. A file that cannot be opened has no tables.
class ProjectDatabase final {
public:
  ProjectDatabase(const std::wstring& path, TableObserver* observer);

  /// Null when the file could not be opened.
  [[nodiscard]] ZanOleDbConnection* connection() { return isOpen_ ? &file_.connection() : nullptr; }
  /// The table's own spelling; nothing when the file has none.
  [[nodiscard]] std::optional<std::wstring> findTable(std::wstring_view name) const;
  /// Returns whether a table, named as `findTable` returns it, has the column, without case.
  [[nodiscard]] bool hasColumn(const std::wstring& table, std::wstring_view column);

private:
  ZanOleDbFileRecordset file_;
  bool isOpen_ = false;
  std::vector<std::wstring> tables_;
};

/// Positions of a circuit's row, from 0.
namespace circuitrow {
inline constexpr std::size_t drawingIndex = 0, handle = 1, text = 2, presetText = 5, key = 6, columns = 7;
}

/// The rows of circuits: seven columns, with a circuit text. True when there are any.
bool readCircuitRows(const std::wstring& databasePath, TableObserver* observer, std::vector<TextRow>& rows);

/// The rows as a user sees them: for each component of a circuit nine texts (tag, installation, location, three
/// descriptions, two fields of the circuit text, the row's key), sorted. False when the components cannot be read.
bool readCircuitSummaries(
    const std::wstring& databasePath, TableObserver* observer, const std::vector<TextRow>& rows,
    std::vector<TextRow>& summaries);

/// The catalogue data of a component and its terminals: twelve texts each, the last one empty.
bool readCatalogRows(
    std::wstring_view drawingIndex, std::wstring_view handleKey, TableObserver* observer,
    std::vector<TextRow>& rows);

/// The distinct, non-null texts of the first column of a query on one table, found without case. `statement` takes
/// the column and the table, then `values`. False when the table is missing or the query fails.
bool selectDistinct(
    ProjectDatabase& database, std::wstring_view table, std::wstring_view column, std::wstring_view statement,
    const std::vector<std::wstring>& values, TextRow& texts);

/// Installation and location of a drawing.
struct TagLocations {
  TextRow installations;
  TextRow locations;
};
[[nodiscard]] TagLocations readTagLocations(ProjectDatabase& database, std::wstring_view drawingIndex);

} // namespace brenvolt
