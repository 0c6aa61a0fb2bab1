// Writes a table of a foreign file into an embedded database: declares the columns, binds the rows.
#pragma once

#include "platform/sqlite_database.h"
#include "platform/table_output.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brenvolt::tables {

class TableWriter final : public TableOutput {
public:
  /// The database must outlive the writer.
  TableWriter(SqliteDatabase& database, std::wstring table);

  [[nodiscard]] std::int64_t rowCount() const override { return rowCount_; }
  [[nodiscard]] std::vector<std::wstring> notes() const override;
  [[nodiscard]] const std::wstring& error() const override { return error_; }

  bool columns(const std::vector<SourceColumn>& columns) override;
  bool row(TableRow row, std::int64_t place) override;
  void note(const std::wstring& text) override { notes_.push_back(text); }

private:
  bool insert(const TableRow& row);
  bool fail();

  SqliteDatabase& database_;
  std::wstring table_;
  std::vector<SourceColumn> columns_;
  SqliteQuery insert_;
  std::int64_t rowCount_ = 0;
  std::int64_t renumbered_ = 0;
  std::vector<std::wstring> notes_;
  std::wstring error_;
};

} // namespace brenvolt::tables
