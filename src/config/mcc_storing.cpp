// What a motor's or load's page keeps: its rows for unit and history, and the catalogue parts that its circuit's other
// pages store under its data.
#include "config/widget_manager_mcc.h"
#include "drawing/exported_rows.h"
#include "host/host_api_documents.h"

#include <algorithm>

namespace brenvolt {

namespace {

constexpr std::size_t groundSizeField = 28; ///< of an exported data row: the last of the circuit's own

} // namespace

void ZanWidgetManagerMcc::ExportRows(ZanAnnotationDataList& rows) {
  rows.Clear();
  if (!HasWindow()) return;
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
      storeInData(data_, fields[i], shown[i].value());
    }
    exportRows(row);
    row.AddText(isMotor ? motorControlTitle : loadControlTitle, loadText(TextId::controlField));
    rows.AddRow(std::move(row));
  }
  if (const ZanGroupCtrl* group = groupAt(mccplace::wires)) rows.AddList(exportWires(group->ReadRows()));
}

void ZanWidgetManagerMcc::ImportRows(const ZanAnnotationDataList& rows) {
  if (!HasWindow() || rows.isEmpty()) return;
  const ZanAnnotationDataList::Item& data = rows.items().front();
  if (data.row) {
    const std::vector<ZanAnnotationField>& fields = data.row->fields;
    std::vector<std::wstring> values;
    for (std::size_t field = 0; field < std::min(fields.size(), mccFieldCount); ++field) {
      storeInData(data_, field, fields[field].value);
      storeInCircuit(field, fields[field].value);
      if (mode_ == MccMode::motor || field != speedField) values.push_back(fields[field].value);
    }
    if (fields.size() > groundSizeField) circuitData().groundSize = fields[groundSizeField].value;
    if (ZanGroupCtrl* group = groupAt(mccplace::data)) writeDataValues(*group, values);
  }
  ZanGroupCtrl* wires = groupAt(mccplace::wires);
  if (wires && rows.size() > 1 && rows.items()[1].list)
    wires->WriteValues(importWires(formats_, *rows.items()[1].list, wires->ReadRows()));
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
    // A group that is cut short ends the whole, and what stands behind it stays as it was stored.
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
