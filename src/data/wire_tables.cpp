#include "data/wire_tables.h"

#include "data/table_query.h"
#include "expr/expr_evaluator.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace brenvolt {

namespace {

/// The first column of the raceways in the impedance table, and of the ambient temperatures in the insulation table.
constexpr int firstRacewayColumn = 3;
constexpr int firstAmbientColumn = 5;

void addDistinct(std::vector<std::wstring>& list, const std::wstring& text) {
  const bool known = std::any_of(list.begin(), list.end(), [&text](const std::wstring& each) {
    return equalsOrdinalNoCase(each, text);
  });
  if (!known) list.push_back(text);
}

bool startsWithNoCase(std::wstring_view text, std::wstring_view start) {
  return text.size() >= start.size() && equalsOrdinalNoCase(text.substr(0, start.size()), start);
}

/// Sizes and ampacities of a query on these two columns, ascending by ampacity also where the database declares that
/// column as text and so sorts it by characters.
std::vector<ZanWireRow> rowsByAmpacity(TableQuery& query) {
  std::vector<ZanWireRow> rows;
  while (query.next())
    if (const std::optional<double> ampacity = query.figure(2)) rows.push_back({query.text(1), *ampacity});
  std::stable_sort(rows.begin(), rows.end(), [](const ZanWireRow& left, const ZanWireRow& right) {
    return left.ampacity < right.ampacity;
  });
  return rows;
}

} // namespace

std::wstring insulationLabel(std::wstring_view description, std::wstring_view temperature) {
  return std::wstring(description).append(L" / ").append(temperature);
}

ZanWireTableReader::ZanWireTableReader(ZanOleDbConnection* connection)
    : connection_(connection), utils_(connection), options_(connection) {}

bool ZanWireTableReader::ListStandards(std::vector<std::wstring>& standards) const {
  standards.clear();
  if (!connection_ || !connection_->IsConnected()) return false;
  // The three letters alone, so grounding tables count as well.
  for (const std::wstring& name : utils_.tableList()) {
    if (!startsWithNoCase(name, ZanDbReaderUtils::TableBaseName(ZanTableKind::ampacity))) continue;
    const std::vector<std::wstring> tokens = splitKeepingEmpty(name, L'_');
    if (tokens.size() >= 3) addDistinct(standards, tokens[2]);
  }
  return true;
}

bool ZanWireTableReader::ListMetals(std::wstring_view standard, std::vector<std::wstring>& metals) const {
  metals.clear();
  if (!connection_ || !connection_->IsConnected()) return false;
  const std::wstring family = std::wstring(ZanDbReaderUtils::TableBaseName(ZanTableKind::ampacity)) + L'_';
  for (const std::wstring& name : utils_.tableList()) {
    if (!startsWithNoCase(name, family)) continue;
    const std::vector<std::wstring> tokens = splitKeepingEmpty(name, L'_');
    if (tokens.size() >= 3 && equalsOrdinalNoCase(tokens[2], standard)) addDistinct(metals, tokens[1]);
  }
  return true;
}

bool ZanWireTableReader::ListInsulations(const WireTableSet& set, std::vector<std::wstring>& labels) const {
  labels.clear();
  std::wstring table;
  TableQuery query(connection_);
  if (!ResolveTable(table, ZanTableKind::insulation, set)) return false;
  if (!query.run(L"SELECT [INSUL_DESC], [TEMP] FROM [%s]", {table})) return false;
  while (query.next())
    labels.push_back(insulationLabel(query.text(1), query.text(2)));
  return true;
}

bool ZanWireTableReader::InsulationLabel(
    const WireTableSet& set, std::wstring_view insulation, std::wstring& label) const {
  label.clear();
  std::wstring table;
  TableQuery query(connection_);
  if (!ResolveTable(table, ZanTableKind::insulation, set)) return false;
  if (!query.runForRow(
          L"SELECT [INSUL_DESC], [TEMP] FROM [%s] WHERE [INSUL]='%s'", {table, std::wstring(insulation)}))
    return false;
  label = insulationLabel(query.text(1), query.text(2));
  return true;
}

bool ZanWireTableReader::ListRaceways(
    std::wstring_view code, std::map<std::wstring, std::wstring>& descriptions) const {
  descriptions.clear();
  std::wstring table;
  TableQuery query(connection_);
  if (!utils_.ResolveTable(table, ZanTableKind::racewayDescriptions, code)) return false;
  if (!query.run(L"SELECT [CODE], [DESCRIPTION] FROM [%s]", {table})) return false;
  while (query.next())
    if (std::wstring column = query.text(1); !column.empty()) descriptions[std::move(column)] = query.text(2);
  return true;
}

bool ZanWireTableReader::ListRacewayColumns(
    const WireTableSet& set, std::vector<std::wstring>& columns) const {
  columns.clear();
  std::wstring table;
  ZanOleDbColumns catalogueColumns;
  if (!ResolveTable(table, ZanTableKind::impedance, set)) return false;
  if (!catalogueColumns.Open(*connection_, table)) return false;
  while (catalogueColumns.FetchNext()) {
    std::wstring name;
    if (catalogueColumns.OrdinalPosition() >= firstRacewayColumn && catalogueColumns.GetName(name))
      columns.push_back(name);
  }
  return true;
}

bool ZanWireTableReader::ListFill(std::wstring_view code, FactorList& fill) const {
  fill = {};
  std::wstring table;
  TableQuery query(connection_);
  if (!utils_.ResolveTable(table, ZanTableKind::conduitFill, code)) return false;
  if (!query.run(L"SELECT [MAX], [FACTOR] FROM [%s]", {table})) return false;
  while (query.next()) {
    fill.ranges.push_back(query.text(1));
    fill.factors.push_back(normaliseFactor(query.text(2)));
    // Read as a number, such a text would not derate.
    query.noteUnlessFigure(2);
  }
  makeFillRanges(fill.ranges);
  return true;
}

bool ZanWireTableReader::ListAmbient(
    const WireTableSet& set, std::wstring_view insulationDescription, FactorList& ambient,
    std::size_t& defaultIndex) const {
  ambient = {};
  defaultIndex = 0;
  std::wstring table;
  TableQuery query(connection_);
  if (!ResolveTable(table, ZanTableKind::insulation, set)) return false;
  if (!query.runForRow(
          L"SELECT * FROM [%s] WHERE [INSUL_DESC]='%s'", {table, std::wstring(insulationDescription)}))
    return false;
  for (int column = firstAmbientColumn; column <= query.columnCount(); ++column) {
    const std::wstring factor = query.text(column);
    if (factor.empty()) continue;
    query.noteUnlessFigure(column);
    ambient.ranges.push_back(query.columnName(column));
    ambient.factors.push_back(normaliseFactor(factor));
  }
  defaultIndex =
      makeAmbientRanges(ambient.ranges, ambientDegrees(options_.defaultOf(option::ambientTemperature)));
  return true;
}

bool ZanWireTableReader::ReadAmpacity(
    const WireTableSet& set, std::wstring_view column, std::vector<ZanWireRow>& rows) const {
  rows.clear();
  std::wstring table;
  TableQuery query(connection_);
  const std::wstring name(column);
  if (!ResolveTable(table, ZanTableKind::ampacity, set)) return false;
  if (!query.run(
          L"SELECT [SIZE_DESC], [%s] FROM [%s] WHERE [%s] IS NOT NULL ORDER BY [%s] ASC",
          {name, table, name, name}))
    return false;
  rows = rowsByAmpacity(query);
  return true;
}

bool ZanWireTableReader::ReadAmpacityAt(
    const WireTableSet& set, std::wstring_view column, std::wstring_view size, double& amps) const {
  amps = 0.0;
  std::wstring table;
  TableQuery query(connection_);
  if (!ResolveTable(table, ZanTableKind::ampacity, set)) return false;
  if (!query.runForRow(
          L"SELECT [%s] FROM [%s] WHERE [SIZE]='%s'", {std::wstring(column), table, std::wstring(size)}))
    return false;
  const std::optional<double> figure = query.figure(1);
  amps = figure.value_or(0.0);
  return figure.has_value();
}

bool ZanWireTableReader::ListParallelSizes(
    const WireTableSet& set, std::wstring_view column, std::wstring_view size, std::vector<ZanWireRow>& rows,
    SizeText text) const {
  rows.clear();
  std::wstring table;
  TableQuery query(connection_);
  const std::wstring name(column);
  if (!ResolveTable(table, ZanTableKind::ampacity, set)) return false;
  if (!query.runForRow(L"SELECT [%s] FROM [%s] WHERE [SIZE]='%s'", {name, table, std::wstring(size)}))
    return false;
  const std::optional<double> ampacity = query.figure(1);
  if (!ampacity) return false;
  // The limit is an integer: 215.5 admits a size of 215.2.
  const double limit = std::trunc(*ampacity);
  // Compared here, because a database that declares the column as text compares by characters.
  const std::wstring_view statement =
      text == SizeText::description
          ? L"SELECT [SIZE_DESC], [%s] FROM [%s] WHERE [%s] IS NOT NULL ORDER BY [%s] ASC"
          : L"SELECT [SIZE], [%s] FROM [%s] WHERE [%s] IS NOT NULL ORDER BY [%s] ASC";
  if (!query.run(statement, {name, table, name, name})) return false;
  rows = rowsByAmpacity(query);
  std::erase_if(rows, [limit](const ZanWireRow& row) { return row.ampacity < limit; });
  return true;
}

bool ZanWireTableReader::ListGround(
    const WireTableSet& set, std::wstring_view expression, std::wstring_view currentText,
    std::vector<std::wstring>& sizes) const {
  sizes.clear();
  std::wstring table;
  TableQuery query(connection_);
  if (!ResolveTable(table, ZanTableKind::grounding, set)) return false;
  double rating = 0.0;
  try {
    rating = ZanExprEvaluator().Evaluate(expression, toDouble(currentText));
  } catch (const IllegalExprException&) {
    return false;
  }
  if (!query.run(L"SELECT [SIZE_DESC], [MAX] FROM [%s] WHERE [MAX] IS NOT NULL ORDER BY [MAX] ASC", {table}))
    return false;
  std::vector<GroundRow> rows;
  while (query.next())
    if (const std::optional<double> limit = query.figure(2)) rows.push_back({query.text(1), *limit});
  std::stable_sort(rows.begin(), rows.end(), [](const GroundRow& left, const GroundRow& right) {
    return left.maximum < right.maximum;
  });
  sizes = groundSizes(rows, rating);
  return true;
}

bool ZanWireTableReader::ReadImpedance(
    std::wstring_view impedanceTable, std::wstring_view ampacityTable, std::wstring_view column,
    std::wstring_view sizeDescription, Impedance& impedance, ImpedanceSource* source) const {
  impedance = {};
  const std::wstring table(impedanceTable);
  const std::wstring name(column);
  TableQuery query(connection_);
  if (!query.runForRow(
          L"SELECT [SIZE] FROM [%s] WHERE [SIZE_DESC]='%s'",
          {std::wstring(ampacityTable), std::wstring(sizeDescription)}))
    return false;
  ImpedanceSource read;
  read.sizeKey = query.text(1);
  std::optional<Impedance> found;
  if (query.runForRow(L"SELECT [%s] FROM [%s] WHERE [SIZE]='%s'", {name, table, read.sizeKey})) {
    read.cell = query.text(1);
    if (!read.cell.empty()) {
      found = parseImpedance(read.cell);
    } else if (query.run(L"SELECT [SIZE],[%s] FROM [%s]", {name, table})) {
      std::vector<ImpedanceRow> rows;
      while (query.next())
        rows.push_back({query.text(1), query.text(2)});
      read.neighbours = impedanceNeighbours(rows, read.sizeKey);
      found = interpolateImpedance(read.neighbours, read.sizeKey);
    }
  }
  if (source) *source = std::move(read);
  impedance = found.value_or(Impedance{});
  return found.has_value();
}

std::map<std::wstring, Impedance> ZanWireTableReader::ReadImpedances(
    std::wstring_view impedanceTable, std::wstring_view ampacityTable, std::wstring_view column,
    const std::vector<ZanWireRow>& sizes) const {
  std::map<std::wstring, std::wstring> keys;
  TableQuery query(connection_, Refusal::answer);
  if (query.run(L"SELECT [SIZE_DESC],[SIZE] FROM [%s]", {std::wstring(ampacityTable)}))
    while (query.next())
      keys.emplace(query.text(1), query.text(2));
  std::vector<ImpedanceRow> rows;
  if (query.run(L"SELECT [SIZE],[%s] FROM [%s]", {std::wstring(column), std::wstring(impedanceTable)}))
    while (query.next()) {
      rows.push_back({query.text(1), query.text(2)});
      if (const std::wstring& cell = rows.back().cell; !cell.empty() && !parseImpedance(cell))
        query.noteBadCell(2, L"is not a reactance and a resistance such as 0.2;0.6");
    }

  std::map<std::wstring, Impedance> impedances;
  for (const ZanWireRow& size : sizes) {
    if (impedances.contains(size.size)) continue;
    const auto key = keys.find(size.size);
    const auto row =
        key == keys.end() ? rows.end() : std::ranges::find(rows, key->second, &ImpedanceRow::size);
    std::optional<Impedance> found;
    if (row == rows.end()) {
      // The engine may find what differs in its letters or in blanks only; it is not asked for what no row has.
      const auto mayBeMeant = [&](const ImpedanceRow& each) {
        return equalsOrdinalNoCase(trimView(each.size), trimView(key->second));
      };
      if (key != keys.end() && std::ranges::none_of(rows, mayBeMeant)) continue;
      Impedance single;
      if (ReadImpedance(impedanceTable, ampacityTable, column, size.size, single)) found = single;
    } else {
      found = row->cell.empty() ? interpolateImpedance(impedanceNeighbours(rows, key->second), key->second)
                                : parseImpedance(row->cell);
    }
    if (found) impedances.emplace(size.size, *found);
  }
  return impedances;
}

bool ZanWireTableReader::CheckWireTables(
    const WireTableSet& set, MissingTables& missing, WithOptions withOptions) const {
  const unsigned options = withOptions == WithOptions::yes ? tablemask::options : 0;
  return CheckTables(set, missing, tablemask::wires | tablemask::grounding | options);
}

} // namespace brenvolt
