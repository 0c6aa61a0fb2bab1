#include "project/circuit_list.h"

#include "data/sheet_reader.h"
#include "project/circuit_sheet.h"
#include "text/numbers.h"

#include <algorithm>
#include <utility>

namespace brenvolt {

namespace {

constexpr std::wstring_view circuitSheet = L"ZAN_CIRCS";
constexpr std::wstring_view annotationSheet = L"ANNO_CODE";
constexpr int leastListColumns = 4;
constexpr std::size_t listColumns = 5;
constexpr int leastCircuitColumns = 9;

} // namespace

bool ZanCircuitCatalog::keepOpen() {
  auto reader = std::make_shared<SheetReader>();
  if (!reader->open(workbook)) {
    error_ = reader->error();
    return false;
  }
  kept_ = std::move(reader);
  return true;
}

bool ZanCircuitCatalog::readSheet(std::wstring_view name, OtherSheet other, SheetRows& rows) {
  SheetReader own;
  SheetReader& reader = kept_ ? *kept_ : own;
  if ((kept_ || own.open(workbook)) &&
      (reader.read(name, rows) || (other == OtherSheet::first && reader.readFirst(rows))))
    return true;
  error_ = reader.error();
  return false;
}

bool ZanCircuitCatalog::readCircuits() {
  circuits_.clear();
  SheetRows sheet;
  if (!readSheet(circuitSheet, OtherSheet::first, sheet)) return false;
  if (sheet.columnCount < leastListColumns) {
    error_ = L"sheet " + std::wstring(circuitSheet) + L" has " + formatInt(sheet.columnCount) +
             L" columns; circuit, type, template and worksheet are needed";
    return false;
  }
  int counter = 0;
  bool any = false;
  std::wstring circuit;
  for (std::vector<std::wstring>& row : sheet.rows) {
    row.resize(std::max(row.size(), listColumns));
    const auto isEmpty = [](const std::wstring& cell) { return cell.empty(); };
    if (std::all_of(row.begin(), row.begin() + listColumns, isEmpty)) continue;
    if (!row[0].empty()) circuit = row[0];
    const auto [place, isNew] = circuits_.try_emplace(circuit);
    if (isNew) place->second.id = ++counter;
    place->second.entries.push_back({row[1], row[2], row[3], row[4], ++counter});
    any = true;
  }
  if (!any) error_ = L"sheet " + std::wstring(circuitSheet) + L" lists no circuit";
  return any;
}

bool ZanCircuitCatalog::readAnnotationCodes() {
  annotationCodes_.Clear();
  SheetRows sheet;
  if (!readSheet(annotationSheet, OtherSheet::first, sheet)) return false;
  bool any = false;
  std::wstring key;
  for (const std::vector<std::wstring>& row : sheet.rows) {
    if (row.empty()) continue;
    if (!row.front().empty()) key = row.front();
    if (annotationCodes_.AddRow(key, row)) any = true;
  }
  return any;
}

bool ZanCircuitCatalog::readWorksheet(std::wstring_view name) {
  records_.clear();
  SheetRows sheet;
  if (!readSheet(name, OtherSheet::none, sheet)) return false;
  if (sheet.columnCount < leastCircuitColumns) {
    error_ = L"sheet " + std::wstring(name) + L" has " + formatInt(sheet.columnCount) +
             L" columns; a circuit's sheet needs at least " + formatInt(leastCircuitColumns);
    return false;
  }
  CircuitSheetReader records;
  for (std::size_t i = 0; i < sheet.rows.size(); ++i)
    records.addRow(static_cast<int>(i) + 2, sheet.rows[i]);
  records_ = records.finish();
  if (records_.empty()) error_ = L"sheet " + std::wstring(name) + L" holds no CODE with a title";
  return !records_.empty();
}

const ZanCircuitEntry* ZanCircuitCatalog::findEntry(std::wstring_view circuit, std::wstring_view type) const {
  const auto place = circuits_.find(circuit);
  if (place == circuits_.end()) return nullptr;
  const auto& entries = place->second.entries;
  const auto entry = std::find_if(entries.begin(), entries.end(), [type](const ZanCircuitEntry& each) {
    return equalsCollating(each.type, type);
  });
  return entry == entries.end() ? nullptr : &*entry;
}

const ZanCodeRecord* ZanCircuitCatalog::findRecord(std::wstring_view code) const {
  const auto record = records_.find(toUpper(code));
  return record == records_.end() ? nullptr : &record->second;
}

ZanCodeRecord* ZanCircuitCatalog::findRecord(std::wstring_view code) {
  const auto record = records_.find(toUpper(code));
  return record == records_.end() ? nullptr : &record->second;
}

} // namespace brenvolt
