// Writes a table of a foreign file into an embedded database: declares the columns, binds the rows.
#pragma once

#include "platform/sqlite_database.h"
#include "platform/table_source.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brenvolt::tables {

class TableWriter final : public TableReceiver {
public:
  /// The database must outlive the writer.
  TableWriter(SqliteDatabase& database, std::wstring table);

  [[nodiscard]] std::int64_t rowCount() const { return rowCount_; }
  /// What the source and the writer could not carry over.
  [[nodiscard]] std::vector<std::wstring> notes() const;
  /// Why the reading was stopped; empty when it was not.
  [[nodiscard]] const std::wstring& error() const { return error_; }

  bool columns(const std::vector<SourceColumn>& columns) override;
  bool row(TableRow row) override;
  void note(const std::wstring& text) override { notes_.push_back(text); }

private:
  void convert(TableValue& value, ColumnType type);
  bool insert(const TableRow& row);
  bool fail();

  SqliteDatabase& database_;
  std::wstring table_;
  std::vector<SourceColumn> columns_;
  SqliteQuery insert_;
  std::int64_t rowCount_ = 0;
  std::int64_t renumbered_ = 0;
  std::int64_t notNumbers_ = 0;
  std::vector<std::wstring> notes_;
  std::wstring error_;
};

} // namespace brenvolt::tables
