#include "data/catalog_selection.h"

#include "data/table_query.h"
#include "text/numbers.h"

#include <algorithm>
#include <array>

namespace brenvolt {

namespace {

constexpr std::wstring_view selectionTable = L"[CATALOGSEL]";
constexpr std::wstring_view textFormat = L"='%s'";
constexpr std::wstring_view integerFormat = L"=%d";

constexpr std::array<std::wstring_view, catalogValueCount> valueColumns = {
    L"[MFG]",     L"[CAT]",     L"[ASSYCODE]", L"[RCOUNT]",  L"[CATALOGTYPE]", L"[RATING1]",
    L"[RATING2]", L"[RATING3]", L"[RATING4]",  L"[RATING5]", L"[RATING6]"};

constexpr std::wstring_view loadStatement =
    L"SELECT [MFG], [CAT], [ASSYCODE], [RCOUNT], [CATALOGTYPE], [RATING1], [RATING2], [RATING3], [RATING4], "
    L"[RATING5], [RATING6] FROM [CATALOGSEL] WHERE [MARKER]='%s' AND [UI_SEL]=%d AND [LKUPTABLE]='%s' AND "
    L"[TYPE]='%s' AND [Load]='%s' AND [Units]='%s' AND [Voltage (V)]='%s' AND [PHASE]='%s' AND "
    L"[Frequency (Hz)]='%s'";
constexpr std::wstring_view speedCondition = L" AND [Speed (RPM)]='%s'";

struct KeyColumn {
  std::wstring_view name;
  std::wstring_view format;
  std::wstring value;
};

std::vector<KeyColumn> keyColumns(const CatalogKey& key) {
  const CatalogMotor& motor = key.motor;
  std::vector<KeyColumn> columns = {
      {L"[MARKER]", textFormat, key.markerCode},
      {L"[UI_SEL]", integerFormat, formatInt(key.optionCode)},
      {L"[LKUPTABLE]", textFormat, key.table},
      {L"[TYPE]", textFormat, motor.type},
      {L"[Load]", textFormat, motor.load},
      {L"[Units]", textFormat, motor.units},
      {L"[Voltage (V)]", textFormat, motor.voltage},
      {L"[PHASE]", textFormat, motor.phase},
      {L"[Frequency (Hz)]", textFormat, motor.frequency},
  };
  if (!motor.speed.empty()) columns.push_back({L"[Speed (RPM)]", textFormat, motor.speed});
  return columns;
}

} // namespace

bool CatalogMotor::isComplete() const {
  const auto parts = {&type, &load, &units, &voltage, &phase, &frequency};
  return std::none_of(parts.begin(), parts.end(), [](const std::wstring* part) { return part->empty(); });
}

std::optional<std::wstring> storeCatalogSelection(
    ZanOleDbConnection& connection, const CatalogKey& key, const std::vector<std::wstring>& values) {
  const bool hasValues =
      std::any_of(values.begin(), values.end(), [](const std::wstring& value) { return !value.empty(); });
  // A delete that fails with nothing to insert leaves an old record, which is not worth a message.
  const auto failed = [hasValues](const std::wstring& message) {
    return hasValues ? std::optional(message) : std::nullopt;
  };

  TableTransaction transaction(connection);
  if (!transaction.isOpen()) return failed(connection.ErrorInfo().GetErrorInfo(false));
  ZanOleDbDDLCommand command(connection);
  command.SetTable(selectionTable);
  command.EmptyAsNull(true);
  const std::vector<KeyColumn> columns = keyColumns(key);
  for (const KeyColumn& column : columns)
    command.AddSearchCol(column.name, column.format, column.value);
  if (!command.Delete()) return failed(command.ErrorInfo().GetErrorInfo(false));
  if (hasValues) {
    for (const KeyColumn& column : columns)
      command.AddColumn(column.name, column.format, column.value);
    for (std::size_t i = 0; i < std::min(values.size(), valueColumns.size()); ++i)
      command.AddColumn(valueColumns[i], textFormat, values[i]);
    if (!command.Insert()) return command.ErrorInfo().GetErrorInfo(false);
  }
  if (!transaction.commit()) return failed(connection.ErrorInfo().GetErrorInfo(false));
  return std::nullopt;
}

std::optional<std::vector<std::wstring>> loadCatalogSelection(
    ZanOleDbConnection& connection, const CatalogKey& key) {
  std::wstring statement(loadStatement);
  if (!key.motor.speed.empty()) statement += speedCondition;
  std::vector<std::wstring> keyValues;
  for (const KeyColumn& column : keyColumns(key))
    keyValues.push_back(column.value);

  TableQuery query(&connection);
  if (!query.runForRow(statement, keyValues)) return std::nullopt;
  std::vector<std::wstring> values;
  for (int column = 1; column <= static_cast<int>(catalogValueCount); ++column)
    values.push_back(query.text(column));
  return values;
}

} // namespace brenvolt
