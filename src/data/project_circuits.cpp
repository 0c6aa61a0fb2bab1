#include "data/project_circuits.h"

#include "data/table_query.h"
#include "host/lisp_calls.h"
#include "text/compare.h"
#include "text/split.h"

#include <algorithm>
#include <map>
#include <unordered_set>
#include <utility>

namespace brenvolt {

namespace {

constexpr std::wstring_view circuitTable = L"BRENVOLT";
constexpr std::wstring_view componentTable = L"COMP";
constexpr std::wstring_view terminalTable = L"TERMS";
constexpr std::wstring_view drawingTable = L"QN_M";
constexpr std::size_t circuitTextFields = 9;
constexpr std::size_t firstSummaryField = 3;
constexpr std::size_t secondSummaryField = 4;
constexpr int componentColumns = 6;

TextRow wholeRow(const TableQuery& query) {
  TextRow row;
  for (int column = 1; column <= query.columnCount(); ++column)
    row.push_back(query.text(column));
  return row;
}

std::wstring trimQuotesAndBlanks(std::wstring_view text) {
  return trim(text, L"\" \t\r\n");
}

/// Drawing index and handle of a component, without case.
using ComponentKey = std::pair<std::wstring, std::wstring>;

ComponentKey componentKey(std::wstring_view drawingIndex, std::wstring_view handle) {
  return {toUpper(drawingIndex), toUpper(handle)};
}

} // namespace

ProjectDatabase::ProjectDatabase(const std::wstring& path, TableObserver* observer)
    : file_(ConnectType::file, FileType::workbook, observer) {
  // The parent product writes paths with "\\"; here the separator is "/".
  isOpen_ = !path.empty() && file_.Open(replaceAll(path, L"\\", L"/"));
  // A file that is not there is an empty project, a server that is not reached is none.
  if (!isOpen_ && file_.ErrorInfo().IsConnectionLost() && observer != nullptr)
    observer->statementFailed({{}, file_.ErrorInfo().Text(), {}, true});
  ZanOleDbTables tables;
  if (isOpen_ && tables.Open(file_.connection(), L"TABLE")) tables.GetTableList(tables_);
}

std::optional<std::wstring> ProjectDatabase::findTable(std::wstring_view name) const {
  const auto table = std::find_if(tables_.begin(), tables_.end(), [name](const std::wstring& each) {
    return equalsOrdinalNoCase(each, name);
  });
  if (table == tables_.end()) return std::nullopt;
  return *table;
}

bool ProjectDatabase::hasColumn(const std::wstring& table, std::wstring_view column) {
  ZanOleDbColumns columns;
  if (!isOpen_ || !columns.Open(file_.connection(), table)) return false;
  for (std::wstring name; columns.FetchNext() && columns.GetName(name);)
    if (equalsOrdinalNoCase(name, column)) return true;
  return false;
}

bool readCircuitRows(const std::wstring& databasePath, TableObserver* observer, std::vector<TextRow>& rows) {
  rows.clear();
  ProjectDatabase database(databasePath, observer);
  const std::optional<std::wstring> table = database.findTable(circuitTable);
  TableQuery query(database.connection());
  if (!table || !query.run(L"SELECT %s FROM [%s]", {L"*", *table})) return false;
  while (query.next()) {
    TextRow row = wholeRow(query);
    if (row.size() == circuitrow::columns && !row[circuitrow::text].empty()) rows.push_back(std::move(row));
  }
  return !rows.empty();
}

bool readCircuitSummaries(
    const std::wstring& databasePath, TableObserver* observer, const std::vector<TextRow>& rows,
    std::vector<TextRow>& summaries) {
  summaries.clear();
  ProjectDatabase database(databasePath, observer);
  if (!database.findTable(componentTable)) return true;
  // Read once for all circuits: a query a circuit would walk the components as often as there are circuits.
  std::multimap<ComponentKey, TextRow> components;
  TableQuery query(database.connection());
  if (!query.run(L"SELECT TAGNAME,INST,LOC,DESC1,DESC2,DESC3,DWGIX,HDL FROM [COMP]")) return false;
  while (query.next()) {
    TextRow component = wholeRow(query);
    component.resize(componentColumns);
    components.emplace(
        componentKey(query.text(componentColumns + 1), query.text(componentColumns + 2)),
        std::move(component));
  }

  for (const TextRow& row : rows) {
    if (row.size() != circuitrow::columns) continue;
    if (row[circuitrow::drawingIndex].empty() || row[circuitrow::handle].empty()) continue;
    TextRow fields = splitKeepingEmpty(row[circuitrow::text], L';');
    if (fields.size() != circuitTextFields) continue;
    for (std::wstring& field : fields)
      field = trimQuotesAndBlanks(field);
    if (fields[firstSummaryField].empty() || fields[secondSummaryField].empty()) continue;
    const auto [first, last] =
        components.equal_range(componentKey(row[circuitrow::drawingIndex], row[circuitrow::handle]));
    for (auto component = first; component != last; ++component) {
      TextRow summary = component->second;
      // The key is the row's last column, by which the chosen summary leads back to its row.
      for (const std::wstring& more :
           {fields[firstSummaryField], fields[secondSummaryField], row[circuitrow::key]})
        summary.push_back(more);
      summaries.push_back(std::move(summary));
    }
  }
  std::sort(summaries.begin(), summaries.end());
  return true;
}

bool readCatalogRows(
    std::wstring_view drawingIndex, std::wstring_view handleKey, TableObserver* observer,
    std::vector<TextRow>& rows) {
  rows.clear();
  const std::optional<std::wstring> path = getProjectDatabase();
  if (!path) return false;
  ProjectDatabase database(*path, observer);
  TableQuery query(database.connection());
  const std::vector<std::wstring> values = {std::wstring(drawingIndex), std::wstring(handleKey)};
  bool found = false;
  if (database.findTable(componentTable) &&
      query.run(
          L"SELECT MFG,CAT,ASSYCODE,CNT,RATING1,RATING2,"
          L"                                         RATING3,RATING4,RATING5,RATING6,FAMILY FROM [COMP]"
          L"                                         WHERE DWGIX='%s' AND HDL='%s' ORDER BY COMP.PAR1_CHLD2 "
          L"ASC",
          values)) {
    found = true;
    while (query.next()) {
      rows.push_back(wholeRow(query));
      rows.back().emplace_back();
    }
  }
  if (database.findTable(terminalTable) &&
      query.run(
          L"SELECT MFG,CAT,ASSYCODE,CNT,RATING1,RATING2,"
          L"                                         RATING3,RATING4,RATING5,RATING6 FROM [TERMS]"
          L"                                         WHERE DWGIX='%s' AND HDL='%s' AND PAR1_CHLD2='1'",
          values)) {
    found = true;
    while (query.next()) {
      rows.push_back(wholeRow(query));
      rows.back().insert(rows.back().end(), {L"TRMS", L""});
    }
  }
  return found;
}

bool selectDistinct(
    ProjectDatabase& database, std::wstring_view table, std::wstring_view column, std::wstring_view statement,
    const std::vector<std::wstring>& values, TextRow& texts) {
  const std::optional<std::wstring> name = database.findTable(table);
  if (!name) return false;
  std::vector<std::wstring> filled = {std::wstring(column), *name};
  filled.insert(filled.end(), values.begin(), values.end());
  TableQuery query(database.connection(), Refusal::answer);
  if (!query.run(statement, filled)) {
    // A table without the column is passed over like a missing table.
    if (database.hasColumn(*name, column)) query.noteFault();
    return false;
  }
  std::unordered_set<std::wstring> seen(texts.begin(), texts.end());
  while (query.next()) {
    if (query.isNull(1)) continue;
    std::wstring text = query.text(1);
    if (seen.insert(text).second) texts.push_back(std::move(text));
  }
  return true;
}

TagLocations readTagLocations(ProjectDatabase& database, std::wstring_view drawingIndex) {
  TagLocations locations;
  constexpr std::wstring_view statement = L"SELECT %s FROM [%s] WHERE DWGIX='%s' AND ATTR_NAME ='%s'";
  const std::wstring index(drawingIndex);
  selectDistinct(
      database, drawingTable, L"ATTR_VAL", statement, {index, L"IEC_INST"}, locations.installations);
  selectDistinct(database, drawingTable, L"ATTR_VAL", statement, {index, L"IEC_LOC"}, locations.locations);
  return locations;
}

} // namespace brenvolt
