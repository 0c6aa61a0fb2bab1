// Foreign files as streams of typed rows: what the engines that only read, and the import, have in common.
#pragma once

#include "platform/table_value.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace brenvolt::tables {

enum class ColumnType : std::uint8_t {
  text,
  integer,
  /// An integer that numbers the rows: unique, filled in when an insert leaves it out.
  key,
  real,
  /// Whole numbers stay whole, others are reals: columns of delimited text and of sheets that compare as numbers.
  numeric,
  blob,
};

struct SourceColumn {
  std::wstring name;
  ColumnType type = ColumnType::text;
};

/// Takes one table.
class TableReceiver {
public:
  TableReceiver() = default;
  TableReceiver(const TableReceiver&) = delete;
  TableReceiver& operator=(const TableReceiver&) = delete;
  virtual ~TableReceiver() = default;

  /// Called once, before the rows. False stops the reading.
  virtual bool columns(const std::vector<SourceColumn>& columns) = 0;
  /// One cell for each column. `place` is where the row is found in the file: its line in delimited text, its row in a
  /// sheet, its number from 1 in a table. False stops the reading.
  virtual bool row(TableRow row, std::int64_t place) = 0;
  /// Reports as a sentence what could not be imported unchanged.
  virtual void note(const std::wstring& text) = 0;
};

/// An open file with tables.
class TableSource {
public:
  TableSource(const TableSource&) = delete;
  TableSource& operator=(const TableSource&) = delete;
  virtual ~TableSource() = default;

  /// In the order of the file.
  [[nodiscard]] virtual const std::vector<std::wstring>& tableNames() const = 0;
  /// Reads one table, named as in `tableNames`. False when the file fails, with file and reason in `error`, or when the
  /// receiver stopped; `error` then stays as it was.
  virtual bool read(const std::wstring& table, TableReceiver& receiver, std::wstring& error) = 0;

protected:
  TableSource() = default;
};

/// Each opens a file, or returns nothing with file and reason in `error`.
[[nodiscard]] std::unique_ptr<TableSource> openAccessSource(const std::wstring& path, std::wstring& error);
[[nodiscard]] std::unique_ptr<TableSource> openWorkbookSource(const std::wstring& path, std::wstring& error);
/// A folder whose .csv files are tables of that name.
[[nodiscard]] std::unique_ptr<TableSource> openDelimitedSource(
    const std::wstring& folder, std::wstring& error);
[[nodiscard]] std::unique_ptr<TableSource> openSqliteSource(const std::wstring& path, std::wstring& error);

/// Column names of a header row as tables need them: an empty one becomes "F" and its position from 1 on, a repeated
/// one, compared without case, gets a number appended.
[[nodiscard]] std::vector<std::wstring> distinctColumnNames(std::vector<std::wstring> header);

} // namespace brenvolt::tables
