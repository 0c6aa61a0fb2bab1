#include "data/component_sizing.h"

#include "data/table_query.h"
#include "expr/expr_evaluator.h"
#include "host/lisp_symbols.h"
#include "text/numbers.h"

#include <optional>

namespace brenvolt {

bool ZanAutoSizeComponent::findMissing(
    std::wstring_view standard, std::wstring& source, MissingTables& missing) {
  if (!isConnected()) return false;
  static_cast<void>(CheckTables({}, {}, standard, source, missing, tablemask::components));
  return true;
}

void ZanAutoSizeComponent::useTables(std::wstring_view standard) {
  struct Resolved {
    ZanTableKind kind;
    std::wstring& name;
  };
  for (const Resolved& table :
       {Resolved{ZanTableKind::componentDescription, descriptionTable_},
        Resolved{ZanTableKind::componentCalculation, calculationTable_},
        Resolved{ZanTableKind::componentMap, mapTable_}}) {
    std::wstring name;
    if (utils().ResolveTable(name, table.kind, standard)) table.name = name;
  }
}

bool ZanAutoSizeComponent::size(std::wstring_view type, double current, std::vector<ZanAutoSizeRow>& rows) {
  rows.clear();
  if (type.empty() || !isConnected()) return false;
  TableQuery query(connection());
  if (!query.run(L"SELECT [CODE], [Description] FROM %s", {descriptionTable_})) return false;
  while (query.next()) {
    ZanAutoSizeRow row;
    row.code = query.text(1);
    row.description = query.text(2);
    rows.push_back(std::move(row));
  }
  for (ZanAutoSizeRow& row : rows) {
    // The smallest step is not the one for a value that is not known: it would protect no motor. Nor is it for the value
    // 0, which is that of a component that a load does not have.
    if (evaluate(row, type, current) && isGiven(current) && isGiven(row.value)) chooseStep(row);
  }
  return !rows.empty();
}

bool ZanAutoSizeComponent::evaluate(ZanAutoSizeRow& row, std::wstring_view type, double current) {
  TableQuery query(connection());
  if (!query.runForRow(
          L"SELECT [%s] FROM %s WHERE Type='%s'", {row.code, calculationTable_, std::wstring(type)}))
    return false;
  row.expression = query.text(1);
  try {
    row.value = ZanExprEvaluator().Evaluate(row.expression, current);
    return true;
  } catch (const IllegalExprException&) {
    query.noteBadCell(1, L"is not an expression in the current"); // the other components are still sized
    return false;
  }
}

void ZanAutoSizeComponent::chooseStep(ZanAutoSizeRow& row) {
  TableQuery query(connection());
  if (!query.run(
          L"SELECT [MAX], [RATING], [DEFAULT] FROM %s WHERE [CODE]='%s' ORDER BY [MAX] ASC",
          {mapTable_, row.code}))
    return;
  // The lowest step is looked for among all: where a database declares MAX as text, its order is that of characters.
  std::optional<double> lowest;
  while (query.next()) {
    const std::optional<double> limit = query.figure(1);
    // Compared this way round so that a value that is not a number takes no step.
    const bool isReached = limit && *limit - row.value >= -numberTolerance;
    if (!isReached || (lowest && *limit >= *lowest)) continue;
    lowest = limit;
    row.rating = query.text(2);
    row.defaultPart = query.text(3);
  }
}

ResultList rowsToList(const std::vector<ZanAutoSizeRow>& rows) {
  ListBuilder list;
  list.beginList();
  for (const ZanAutoSizeRow& row : rows) {
    list.beginList().addText(row.code).addText(row.description).addReal(row.value);
    list.addText(row.rating).addText(row.defaultPart).endList();
  }
  list.endList();
  return list.take();
}

bool putRows(const wchar_t* name, const std::vector<ZanAutoSizeRow>& rows) {
  if (rows.empty()) return false;
  const ResultList list = rowsToList(rows);
  return !list.isEmpty() && putList(name, list);
}

} // namespace brenvolt
