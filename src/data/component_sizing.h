// Ratings and default catalogue parts of a motor's protective components, from its type and current.
#pragma once

#include "data/db_service.h"
#include "host/result_list.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// One protective component of the code standard.
struct ZanAutoSizeRow {
  std::wstring code;
  std::wstring description;
  double value = 0.0;  ///< what the component's expression gives for the current, amperes; 0 without one
  std::wstring rating; ///< the first step at or above the value; empty beyond the largest or without a value
  std::wstring defaultPart; ///< the step's catalogue choice
  std::wstring expression;  ///< where the value came from; empty when the type has none
};

class ZanAutoSizeComponent final : public ZanDbBaseService {
public:
  using ZanDbBaseService::ZanDbBaseService;

  /// Finds which of the three tables of a standard the data source lacks, on a connection of its own when there is
  /// none. False when that cannot be opened.
  [[nodiscard]] bool findMissing(std::wstring_view standard, std::wstring& source, MissingTables& missing);
  /// Works with the tables of a standard from now on, the default ones for those it lacks; with the tables' plain names
  /// until then.
  void useTables(std::wstring_view standard);
  /// The rows of a motor type for a current in amperes, in the order of the description table. False without rows:
  /// an empty type, no connection, no description table. A component whose expression is missing or illegal keeps
  /// the value 0 and gets no rating; an illegal expression is passed to the connection's observer.
  [[nodiscard]] bool size(std::wstring_view type, double current, std::vector<ZanAutoSizeRow>& rows);

  [[nodiscard]] const std::wstring& calculationTable() const { return calculationTable_; }
  [[nodiscard]] const std::wstring& mapTable() const { return mapTable_; }

private:
  /// False when there is no value.
  [[nodiscard]] bool evaluate(ZanAutoSizeRow& row, std::wstring_view type, double current);
  void chooseStep(ZanAutoSizeRow& row);

  std::wstring descriptionTable_ = L"MOTOR_I_DESC";
  std::wstring calculationTable_ = L"MOTOR_I_CALC";
  std::wstring mapTable_ = L"MOTOR_I_MAP";
};

/// The rows as LISP takes them: ((code description value rating default) ...). No rows give the empty list; an empty
/// handle when the host refuses a node.
[[nodiscard]] ResultList rowsToList(const std::vector<ZanAutoSizeRow>& rows);

/// Sets a symbol to the rows; false for no rows.
[[nodiscard]] bool putRows(const wchar_t* name, const std::vector<ZanAutoSizeRow>& rows);

} // namespace brenvolt
