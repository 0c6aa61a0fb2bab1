#include "data/motor_choices.h"

#include "data/auto_wire_size.h"
#include "data/table_query.h"
#include "host/lisp_symbols.h"
#include "platform/statement_text.h"
#include "text/compare.h"
#include "text/split.h"

#include <map>
#include <set>

namespace brenvolt {

namespace {

constexpr std::wstring_view wireSizeTable = L"WIRESIZE";
constexpr std::wstring_view noCondition = L"1=1";

/// Names by ordinal; nothing when the table list does not have the table.
std::optional<std::map<int, std::wstring>> columnsOf(
    ZanOleDbConnection& connection, std::wstring_view table) {
  ZanOleDbColumns columns;
  if (!connection.IsConnected() || table.empty() || !columns.Open(connection, table)) return std::nullopt;
  std::map<int, std::wstring> names;
  while (columns.FetchNext())
    columns.GetName(names[columns.OrdinalPosition()]);
  if (names.empty()) return std::nullopt;
  return names;
}

std::optional<std::wstring> filterOf(const std::vector<MotorCondition>& conditions) {
  if (conditions.empty()) return std::wstring(noCondition);
  std::vector<std::wstring> parts;
  for (const MotorCondition& condition : conditions) {
    const StatementText part = buildStatement(L"[%s] = '%s'", {condition.column, condition.value});
    if (!part.isBuilt()) return std::nullopt;
    parts.push_back(part.text);
  }
  return join(parts, L" AND ");
}

} // namespace

std::optional<MotorColumns> readMotorColumns(ZanOleDbConnection& connection, std::wstring_view code) {
  std::wstring table;
  if (!ZanDbReaderUtils(&connection).ResolveTable(table, ZanTableKind::motors, code)) return std::nullopt;
  const auto names = columnsOf(connection, table);
  if (!names) return std::nullopt;
  MotorColumns columns;
  std::set<int> taken;
  for (std::size_t field = 0; field < ratingCount; ++field)
    for (const auto& [ordinal, name] : *names)
      if (equalsOrdinalNoCase(name, ratingFields[field].column)) {
        columns[field] = name;
        taken.insert(ordinal);
      }
  for (std::size_t field = 0; field < ratingCount; ++field) {
    const auto found = names->find(ratingFields[field].motorColumn);
    // A column that another rating has by its name is not this one.
    if (columns[field].empty() && found != names->end() && !taken.contains(found->first))
      columns[field] = found->second;
  }
  return columns;
}

std::optional<WireSizeColumns> readWireSizeColumns(ZanOleDbConnection& connection) {
  const auto names = columnsOf(connection, wireSizeTable);
  if (!names) return std::nullopt;
  WireSizeColumns columns;
  int ordinal = 0;
  for (std::wstring& column : columns)
    if (const auto found = names->find(++ordinal); found != names->end()) column = found->second;
  return columns;
}

std::vector<std::wstring> distinctMotorValues(
    ZanOleDbConnection& connection, ZanTableKind table, std::wstring_view code, std::wstring_view column,
    const std::vector<MotorCondition>& conditions) {
  std::wstring name;
  const std::optional<std::wstring> filter = filterOf(conditions);
  if (!filter || !ZanDbReaderUtils(&connection).ResolveTable(name, table, code)) return {};
  TableQuery query(&connection);
  if (!query.run(L"SELECT DISTINCT [%s] FROM [%s] WHERE %s", {std::wstring(column), name, *filter}))
    return {};
  std::vector<std::wstring> values;
  while (query.next())
    if (std::wstring value = query.text(1); !value.empty()) values.push_back(std::move(value));
  return values;
}

std::optional<std::wstring> proposedWireSize(ZanOleDbConnection& connection, const ZanCircuitData& circuit) {
  const std::wstring code = getCodeStandard().value_or(std::wstring());
  WireTableCache tables(connection);
  if (!tables.hasOptions(code)) return std::nullopt;
  const WireDefaults defaults(tables, code);
  const std::optional<AutoWire> wire = autoWire(defaults, circuit, autoDesignCurrent(defaults, circuit));
  return wire ? removeBlanks(wire->size) : std::wstring();
}

} // namespace brenvolt
