// The report of the wire lookup: its inputs, then the table as the grid shows it.
#include "flows/save_as_file_dlg.h"
#include "flows/wire_select_ctrl_mgr.h"
#include "host/host_api_lisp.h"
#include "host/resources.h"
#include "text/encoding.h"
#include "text/format.h"
#include "widgets/roles_wire_lookup.h"

#include <filesystem>

namespace brenvolt {

namespace {

constexpr std::wstring_view openFieldMark = L"-";
constexpr std::wstring_view selectedRowMark = L"x";
constexpr std::wstring_view endMark = L"**END**";

/// A row of circuit data ahead of the fields; a field that the user may change is shown as "-", since only a value
/// that the circuit fixes belongs to the report.
struct DataRow {
  TextId label = {};
  std::wstring ZanCircuitData::*field = nullptr;
  OpenField flag = {};
  std::optional<TextId> unit;
};
constexpr DataRow loadRow = {TextId::reportLoad, &ZanCircuitData::load, OpenField::load, std::nullopt};
constexpr DataRow dataRows[] = {
    {TextId::reportType, &ZanCircuitData::type, OpenField::type, std::nullopt},
    {TextId::reportSpeed, &ZanCircuitData::speed, OpenField::speed, TextId::reportSpeedUnits},
    {TextId::reportFrequency, &ZanCircuitData::frequency, OpenField::frequency, TextId::reportFrequencyUnits},
};

/// A row of the dialog's fields. The label is a text, or what stands on a tick; a row with a tick is there only while
/// it is set.
struct FieldRow {
  std::optional<TextId> label;
  std::optional<WireControl> tick;
  WireControl value = {};
  std::optional<WireControl> secondValue;
};
constexpr auto none = std::nullopt;
constexpr FieldRow fieldRows[] = {
    {TextId::reportVoltage, none, WireControl::voltage, none},
    {TextId::reportPhase, none, WireControl::phase, none},
    {TextId::reportCurrent, none, WireControl::current, none},
    {TextId::reportMultiplier, none, WireControl::multiplier, none},
    {TextId::reportExtraCurrent, none, WireControl::extraCurrent, none},
    {TextId::reportTotal, none, WireControl::total, none},
    {TextId::reportStandard, none, WireControl::standard, none},
    {TextId::reportMetal, none, WireControl::metal, none},
    {TextId::reportInsulation, none, WireControl::insulation, none},
    {none, WireControl::dropTick, WireControl::length, WireControl::lengthUnits},
    {TextId::reportRaceway, WireControl::dropTick, WireControl::raceway, none},
    {TextId::reportPowerFactor, WireControl::dropTick, WireControl::powerFactor, none},
    {none, WireControl::continuousTick, WireControl::continuousFactor, none},
    {none, WireControl::fillTick, WireControl::fillRange, WireControl::fillFactor},
    {none, WireControl::ambientTick, WireControl::ambientRange, WireControl::ambientFactor},
    // The overall factor has no row.
    {TextId::reportEnergyPrice, none, WireControl::energyPrice, none},
    {TextId::reportGroundSize, none, WireControl::groundSize, none},
};

std::wstring fixedText(const DataRow& row) {
  return circuitData().isOpen(row.flag) ? std::wstring(openFieldMark) : circuitData().*row.field;
}

ReportRow reportRow(const DataRow& row) {
  ReportRow cells = {loadText(row.label), fixedText(row)};
  if (row.unit) cells.push_back(loadText(*row.unit));
  return cells;
}

void addGridRows(const KvUiGrid& grid, std::vector<ReportRow>& rows) {
  for (int row = 0; row <= grid.RowCount(); ++row) {
    ReportRow cells;
    for (int column = 0; column < grid.ColumnCount(); ++column)
      cells.push_back(grid.Cell(row, column));
    if (row > 0 && row == grid.SelectedRow() && !cells.empty()) cells.front() = selectedRowMark;
    rows.push_back(std::move(cells));
  }
  rows.push_back({std::wstring(endMark)});
}

} // namespace

std::vector<ReportRow> ZanDlgWireSelectCtrlMgr::reportRows() const {
  std::vector<ReportRow> rows;
  rows.push_back({loadText(TextId::reportTitle), form().text(role::reportTitle).Text()});
  rows.push_back({loadText(TextId::reportCircuit)});
  if (const std::optional<std::wstring> name = form().circuitName()) rows.back().push_back(*name);
  ReportRow load = reportRow(loadRow);
  load.push_back(circuitData().isOpen(OpenField::units) ? std::wstring(openFieldMark) : circuitData().units);
  rows.push_back(std::move(load));
  for (const DataRow& row : dataRows)
    rows.push_back(reportRow(row));
  for (const FieldRow& row : fieldRows) {
    if (row.tick && !isTicked(*row.tick)) continue;
    ReportRow cells = {row.label ? loadText(*row.label) : form().tick(*row.tick).Label(), textOf(row.value)};
    if (row.secondValue) cells.push_back(textOf(*row.secondValue));
    rows.push_back(std::move(cells));
  }
  addGridRows(form().results(), rows);
  return rows;
}

void ZanDlgWireSelectCtrlMgr::ExportReport() {
  ShowHeldBack();
  ZanBVSaveAsFileDlg dialog(lastReport_, form().parentWindow());
  if (dialog.DoModal() != kvui::ok) return;
  const std::filesystem::path path(toUtf8(dialog.path()));
  lastReport_ = {fromUtf8(path.parent_path().string()), fromUtf8(path.filename().string())};
  const std::optional<std::wstring> failure = writeReport(dialog.path(), dialog.mode(), reportRows());
  // There is no task dialog for this; the command line has the place and the reason.
  if (failure) kvutPrintf(formatText(loadText(TextId::reportNotWritten), {dialog.path(), *failure}).c_str());
}

} // namespace brenvolt
