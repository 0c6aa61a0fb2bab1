// The motor and the load table of the code standard: filtered, read and edited. One implementation, driven by the
// description of the columns; a site's table may spell them in another case or hold more of them.
#pragma once

#include "data/db_service.h"

#include <array>
#include <initializer_list>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// Column indexes of the motor table.
namespace motorcolumn {
inline constexpr std::size_t id = 0, type = 1, load = 2, units = 3, voltage = 4, phase = 5, frequency = 6,
                             speed = 7, fla = 8, description = 9;
}

/// Column indexes of the load table: it has no speed, and another order.
namespace loadcolumn {
inline constexpr std::size_t id = 0, type = 1, phase = 2, voltage = 3, load = 4, units = 5, fla = 6,
                             frequency = 7, description = 8;
}

inline constexpr std::size_t ratingColumnLimit = 10;

/// One row as texts, by column index.
struct RatingRecord {
  std::array<std::wstring, ratingColumnLimit> fields;
  [[nodiscard]] const std::wstring& operator[](std::size_t column) const { return fields[column]; }
  [[nodiscard]] std::wstring& operator[](std::size_t column) { return fields[column]; }
};
using ZanMotorRecord = RatingRecord;
using ZanLoadRecord = RatingRecord;

/// Which rows and columns a query wants.
struct ZanTableFilter {
  std::array<bool, ratingColumnLimit> active{}; ///< the column has to equal its value
  std::array<std::wstring, ratingColumnLimit> values;
  std::array<bool, ratingColumnLimit> selected{}; ///< the column is read
};

/// What tells the two tables apart.
struct RatingTable {
  ZanTableKind kind;
  unsigned mask;
  std::span<const std::wstring_view> columns; ///< by index; 0 is the key, the last is the description
  std::array<std::size_t, 3> filterColumns;   ///< of the dialog's three filter lists
};

[[nodiscard]] const RatingTable& motorTable();
[[nodiscard]] const RatingTable& loadTable();

class RatingTableService : public ZanDbBaseService {
public:
  /// Works on the connection, or on one of its own when it is absent or not connected.
  RatingTableService(const RatingTable& table, ZanOleDbConnection* connection);

  /// Finds the table of the code standard and the table's own spelling of its columns.
  void Initialize();
  [[nodiscard]] const RatingTable& description() const { return table_; }
  [[nodiscard]] const std::wstring& TableName() const { return tableName_; }
  /// Column index to the table's own name; columns that the table lacks are absent.
  [[nodiscard]] const std::map<std::size_t, std::wstring>& columnNames() const { return columnNames_; }

  /// The rows that the filter lets pass; `records` stays as it was on a failure. Columns that are not selected are
  /// empty in the records.
  bool Query(const ZanTableFilter& filter, std::vector<RatingRecord>& records) const;
  /// The distinct texts of a column; true when there are any.
  bool ListColumnValues(std::size_t column, std::vector<std::wstring>& values) const;
  /// One column of records that are not needed afterwards.
  [[nodiscard]] static std::vector<std::wstring> ExtractColumn(
      std::vector<RatingRecord>&& records, std::size_t column);
  /// Changes the row of `id`, or adds one for 0. `values` is a row of the dialog's grid: the columns from 1 on without
  /// those that an active filter among the three columns hides; these take the filter's value. On a failure the
  /// provider's text is shown in a message box and the table is unchanged.
  bool Save(
      int id, const std::vector<std::wstring>& values, const ZanTableFilter& filter,
      const std::array<std::size_t, 3>& filterColumns) const;
  /// Whether the standard has the table.
  [[nodiscard]] bool CheckTables(std::wstring& dataSource, MissingTables& missing) const;

private:
  [[nodiscard]] std::wstring nameOf(std::size_t column) const;
  [[nodiscard]] std::wstring savedText(
      std::size_t column, const std::vector<std::wstring>& values, const ZanTableFilter& filter,
      const std::array<std::size_t, 3>& filterColumns) const;

  const RatingTable& table_;
  std::wstring code_;
  std::wstring tableName_;
  std::map<std::size_t, std::wstring> columnNames_;
};

class ZanDlgMotorSelectDbService final : public RatingTableService {
public:
  explicit ZanDlgMotorSelectDbService(ZanOleDbConnection* connection)
      : RatingTableService(motorTable(), connection) {}
};

class ZanDlgPowerFeedDbService final : public RatingTableService {
public:
  explicit ZanDlgPowerFeedDbService(ZanOleDbConnection* connection)
      : RatingTableService(loadTable(), connection) {}
};

} // namespace brenvolt
