// The motor and the load table of the code standard: filtered, read and edited. One implementation, driven by the
// description of the columns; a site's table may spell them in another case or hold more of them.
#pragma once

#include "data/db_service.h"
#include "data/ratings.h"

#include <array>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// The key, the ratings without the multiplier, the description.
inline constexpr std::size_t ratingColumnLimit = ratingCount + 1;

/// One row as texts, by column index.
struct RatingRecord {
  std::array<std::wstring, ratingColumnLimit> fields;
  [[nodiscard]] const std::wstring& operator[](std::size_t column) const { return fields[column]; }
  [[nodiscard]] std::wstring& operator[](std::size_t column) { return fields[column]; }
};
using ZanMotorRecord = RatingRecord;
using ZanLoadRecord = RatingRecord;

/// Selects the rows and columns of a query.
struct ZanTableFilter {
  std::array<bool, ratingColumnLimit> active{}; ///< the column has to equal its value
  std::array<std::wstring, ratingColumnLimit> values;
  std::array<bool, ratingColumnLimit> selected{}; ///< the column is read
};

/// What distinguishes the two tables. Their columns: the key, the ratings, the description.
struct RatingTable {
  ZanTableKind kind;
  unsigned mask;
  std::span<const Rating> ratings; ///< in the order of their columns
  std::array<Rating, 3> filters;   ///< of the dialog's three filter lists

  [[nodiscard]] std::size_t columnCount() const { return ratings.size() + 2; }
  /// The rating's column; that of the description for a rating that the table does not have.
  [[nodiscard]] std::size_t columnOf(Rating rating) const;
  /// Null for the key and the description.
  [[nodiscard]] const RatingField* fieldOf(std::size_t column) const;
  [[nodiscard]] std::wstring_view nameOf(std::size_t column) const;
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
  /// those that an active filter among the three columns hides; these take the filter's value. On a failure the table
  /// is unchanged, and `refusal` is the provider's text; empty when there was nothing to save.
  [[nodiscard]] bool Save(
      int id, const std::vector<std::wstring>& values, const ZanTableFilter& filter,
      std::wstring& refusal) const;
  /// Whether the standard has the table.
  [[nodiscard]] bool CheckTables(std::wstring& dataSource, MissingTables& missing) const;

private:
  [[nodiscard]] std::wstring nameOf(std::size_t column) const;
  [[nodiscard]] std::wstring savedText(
      std::size_t column, const std::vector<std::wstring>& values, const ZanTableFilter& filter) const;

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
