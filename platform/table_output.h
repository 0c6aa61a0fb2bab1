// The destination of an imported table: what the import needs to know of a writer, for any database.
#pragma once

#include "platform/table_source.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brenvolt::tables {

/// Writes one table.
class TableOutput : public TableReceiver {
public:
  [[nodiscard]] virtual std::int64_t rowCount() const = 0;
  /// What the source and the writer could not carry over.
  [[nodiscard]] virtual std::vector<std::wstring> notes() const = 0;
  /// Why the reading was stopped; empty when it was not.
  [[nodiscard]] virtual const std::wstring& error() const = 0;
  /// Call after the last row: writes the buffered rows.
  virtual bool finish() { return true; }
};

/// A database that takes tables over in one transaction: without `commit` it is what it was.
class ImportTarget {
public:
  ImportTarget() = default;
  ImportTarget(const ImportTarget&) = delete;
  ImportTarget& operator=(const ImportTarget&) = delete;
  virtual ~ImportTarget() = default;

  /// The tables and views that it holds. Nothing on a failure, with the reason in `error`.
  virtual bool tableNames(std::vector<std::wstring>& names, std::wstring& error) = 0;
  virtual bool drop(const std::wstring& table, std::wstring& error) = 0;
  /// A writer for a table that does not exist yet.
  [[nodiscard]] virtual std::unique_ptr<TableOutput> output(const std::wstring& table) = 0;
  /// Runs a statement of the target in the same transaction.
  virtual bool run(const std::wstring& statement, std::wstring& error) = 0;
  virtual bool commit(std::wstring& error) = 0;
};

/// What to do with the file of an embedded database.
enum class TargetFile { open, create };
/// A file with the transaction begun; nothing on a failure, with the reason in `error`.
[[nodiscard]] std::unique_ptr<ImportTarget> openSqliteTarget(
    const std::string& utf8Path, TargetFile file, std::wstring& error);
/// A PostgreSQL server with the transaction begun; `dataSource` begins with "odbc:".
[[nodiscard]] std::unique_ptr<ImportTarget> openServerTarget(
    const std::wstring& dataSource, std::wstring& error);

} // namespace brenvolt::tables
