// What a motor's or load's page keeps: its rows for unit and history, and the catalogue parts that its circuit's other
// pages store under its data.
#include "config/widget_manager_mcc.h"
#include "host/host_api_documents.h"

#include <algorithm>

namespace brenvolt {

namespace {

/// Fields of an exported data row: after the data come the circuit's wire choices, the grounding size last.
constexpr std::size_t firstWireField = ratingCount;
constexpr std::size_t groundSizeField = firstWireField + exportedRowCount - 1;

/// The wire choices of a stored data row; none when the row ends before them.
StoredWireFields storedWireFields(const std::vector<ZanAnnotationField>& fields) {
  StoredWireFields stored;
  for (std::size_t field = firstWireField; field <= groundSizeField && groundSizeField < fields.size();
       ++field)
    stored.push_back(fields[field].value);
  return stored;
}

} // namespace

std::optional<ZanAnnotationDataList> ZanWidgetManagerMcc::ExportRows() const {
  if (!HasWindow()) return std::nullopt;
  ZanAnnotationDataList rows;
  const ResourceScope texts;
  if (const ZanGroupCtrl* group = groupAt(mccplace::data)) {
    const bool isMotor = mode_ == MccMode::motor;
    const std::vector<std::size_t> fields = mccFieldsOf(mode_);
    const std::vector<ZanGroupRow> shown = group->ReadRows();
    ZanAnnotationData row(isMotor ? rowname::motorSetup : rowname::loadSetup);
    for (std::size_t i = 0; i < std::min(shown.size(), fields.size()); ++i) {
      // A load's row keeps a motor's places, so the speed's stays empty.
      if (!isMotor && i == speedField) row.AddText(L"", loadText(TextId::dataSpeed));
      row.AddText(shown[i].value(), shown[i].label);
    }
    exportRows(circuit().circuit, storedWires_, row);
    row.AddText(isMotor ? motorControlTitle : loadControlTitle, loadText(TextId::controlField));
    rows.AddRow(std::move(row));
  }
  if (const ZanGroupCtrl* group = groupAt(mccplace::wires))
    rows.AddList(exportWires(group->ReadRows(), circuit().circuit.groundSize));
  return rows;
}

void ZanWidgetManagerMcc::ImportRows(const ZanAnnotationDataList& rows) {
  if (!HasWindow() || rows.isEmpty()) return;
  const ZanAnnotationDataList::Item& data = rows.items().front();
  const ZanAnnotationDataList* wires = rows.size() > 1 ? rows.items()[1].list.get() : nullptr;
  CircuitContext& own = circuits_.of(record_);
  if (data.row) {
    const std::vector<ZanAnnotationField>& fields = data.row->fields;
    std::vector<std::wstring> values;
    for (std::size_t field = 0; field < std::min(fields.size(), ratingCount); ++field) {
      setRating(own.circuit, field, fields[field].value);
      storeUserValue(own, mode_, field, fields[field].value);
      if (mode_ == MccMode::motor || field != speedField) values.push_back(fields[field].value);
    }
    storedWires_ = storedWireFields(fields);
    if (!storedWires_.empty()) own.circuit.groundSize = storedWires_.back();
    // A row without the grounding size: the grounding wire that was stored still has it.
    if (wires && (storedWires_.empty() || storedWires_.back().empty()))
      if (std::wstring size = storedGroundSize(*wires); !size.empty())
        own.circuit.groundSize = std::move(size);
    if (ZanGroupCtrl* group = groupAt(mccplace::data)) writeDataValues(*group, values);
  }
  ZanGroupCtrl* group = groupAt(mccplace::wires);
  if (group && wires)
    group->WriteValues(importWires(formats_, *wires, group->ReadRows(), own.circuit.groundSize));
}

CatalogKey ZanWidgetManagerMcc::catalogKey(
    std::wstring_view markerCode, std::int32_t code, std::wstring_view table) const {
  return {
      std::wstring(markerCode),
      code,
      std::wstring(table),
      {data_.type, data_.load, data_.units, data_.voltage, data_.phase, data_.frequency, data_.speed}};
}

void ZanWidgetManagerMcc::SaveCatalog(
    std::wstring_view markerCode, std::int32_t code, const ManagerResults& results) {
  for (const auto& [table, values] : results) {
    const CatalogKey key = catalogKey(markerCode, code, table);
    // A group that is cut short ends the whole, and the entries after it stay as they were stored.
    if (values.size() < 2 || !key.motor.isComplete()) return;
    ensureDatabase();
    if (const std::optional<std::wstring> failure = storeCatalogSelection(connection_, key, values)) {
      kvdsMessageBox(kdsw_korvoMainWnd(), failure->c_str());
      return;
    }
  }
}

void ZanWidgetManagerMcc::LoadCatalog(
    std::wstring_view markerCode, std::int32_t code, const std::vector<std::wstring>& tables,
    ManagerResults& results) {
  for (const std::wstring& table : tables) {
    const CatalogKey key = catalogKey(markerCode, code, table);
    if (!key.motor.isComplete()) return;
    if (std::optional<std::vector<std::wstring>> values = loadCatalogSelection(connection_, key))
      results.emplace_back(table, std::move(*values));
  }
}

} // namespace brenvolt
