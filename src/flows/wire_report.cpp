#include "flows/wire_report.h"

#include "host/resources.h"

namespace brenvolt {

namespace {

constexpr std::wstring_view openFieldMark = L"-";
constexpr std::wstring_view selectedRowMark = L"x";
constexpr std::wstring_view endMark = L"**END**";

/// In the order of `WireColumn`.
constexpr TextId columnTitles[] = {
    TextId::wireColumnSize,        TextId::wireColumnCount,       TextId::wireColumnFillRange,
    TextId::wireColumnAmpacity,    TextId::wireColumnLoadPercent, TextId::wireColumnDrop,
    TextId::wireColumnDropPercent, TextId::wireColumnPowerLoss,   TextId::wireColumnYearlyCost,
};

/// A row of circuit data before the fields; a field that the user may change is shown as "-", since only a value that
/// the circuit fixes belongs to the report.
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

/// A row of the lookup's fields. The label is a text, or that of a tick; a row with a tick is there only while it is
/// set.
struct FieldRow {
  std::optional<TextId> label;
  std::optional<LookupField> tick;
  LookupField value = {};
  std::optional<LookupField> secondValue;
};
constexpr auto none = std::nullopt;
constexpr FieldRow fieldRows[] = {
    {TextId::reportVoltage, none, LookupField::voltage, none},
    {TextId::reportPhase, none, LookupField::phase, none},
    {TextId::reportCurrent, none, LookupField::current, none},
    {TextId::reportMultiplier, none, LookupField::multiplier, none},
    {TextId::reportExtraCurrent, none, LookupField::extraCurrent, none},
    {TextId::reportTotal, none, LookupField::total, none},
    {TextId::reportStandard, none, LookupField::standard, none},
    {TextId::reportMetal, none, LookupField::metal, none},
    {TextId::reportInsulation, none, LookupField::insulation, none},
    {none, LookupField::dropTick, LookupField::length, LookupField::lengthUnits},
    {TextId::reportRaceway, LookupField::dropTick, LookupField::raceway, none},
    {TextId::reportPowerFactor, LookupField::dropTick, LookupField::powerFactor, none},
    {none, LookupField::continuousTick, LookupField::continuousFactor, none},
    {none, LookupField::fillTick, LookupField::fillRange, LookupField::fillFactor},
    {none, LookupField::ambientTick, LookupField::ambientRange, LookupField::ambientFactor},
    // The overall factor has no row.
    {TextId::reportEnergyPrice, none, LookupField::energyPrice, none},
    {TextId::reportGroundSize, none, LookupField::groundSize, none},
};

std::wstring fixedText(
    const ZanCircuitData& data, OpenField flag, const std::wstring ZanCircuitData::*field) {
  return data.isOpen(flag) ? std::wstring(openFieldMark) : data.*field;
}

ReportRow reportRow(const ZanCircuitData& data, const DataRow& row) {
  ReportRow cells = {loadText(row.label), fixedText(data, row.flag, row.field)};
  if (row.unit) cells.push_back(loadText(*row.unit));
  return cells;
}

void addTable(const WireLookup& lookup, std::vector<ReportRow>& rows) {
  const std::vector<WireColumn> columns = lookup.columns();
  ReportRow& titles = rows.emplace_back(1);
  for (const WireColumn column : columns)
    titles.push_back(wireColumnTitle(column));
  for (const WireCandidate& size : lookup.rows()) {
    ReportRow& cells = rows.emplace_back();
    cells.emplace_back(&size == lookup.chosen() ? selectedRowMark : std::wstring_view());
    for (const WireColumn column : columns)
      cells.push_back(cellOf(size, column));
  }
  if (!sizesWithoutDrop(lookup.rows()).empty()) rows.push_back({{}, loadText(TextId::wireDropUnknown)});
  rows.push_back({std::wstring(endMark)});
}

} // namespace

std::wstring wireColumnTitle(WireColumn column) {
  return loadText(columnTitles[static_cast<std::size_t>(column)]);
}

std::vector<ReportRow> wireReportRows(const WireLookup& lookup, const WireReportTexts& texts) {
  const ZanCircuitData& data = lookup.choices();
  const WireInput& input = lookup.input();
  std::vector<ReportRow> rows;
  rows.push_back({loadText(TextId::reportTitle), texts.title});
  rows.push_back({loadText(TextId::reportCircuit)});
  if (texts.circuit) rows.back().push_back(*texts.circuit);
  ReportRow load = reportRow(data, loadRow);
  load.push_back(fixedText(data, OpenField::units, &ZanCircuitData::units));
  rows.push_back(std::move(load));
  for (const DataRow& row : dataRows)
    rows.push_back(reportRow(data, row));
  for (const FieldRow& row : fieldRows) {
    if (row.tick && !input.isTicked(*row.tick)) continue;
    ReportRow cells = {row.label ? loadText(*row.label) : texts.tickLabel(*row.tick), input.text(row.value)};
    if (row.secondValue) cells.push_back(input.text(*row.secondValue));
    rows.push_back(std::move(cells));
  }
  addTable(lookup, rows);
  return rows;
}

} // namespace brenvolt
