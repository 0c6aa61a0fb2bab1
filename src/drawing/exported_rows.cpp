#include "drawing/exported_rows.h"

#include "data/ratings.h"
#include "host/resources.h"
#include "text/format.h"
#include "text/numbers.h"

#include <array>
#include <functional>

namespace brenvolt {

namespace {

using Value = std::wstring (*)(const ZanCircuitData&);

/// A number that is not given shows as "0".
std::wstring number(double value) {
  return isGiven(value) ? formatTrimmed(value) : L"0";
}

std::wstring numberIf(bool used, double value) {
  return used ? number(value) : L"0";
}

std::wstring textIf(bool used, const std::wstring& text) {
  return used ? text : std::wstring();
}

struct Row {
  TextId label;
  std::wstring_view withoutWire; ///< the value while no wire is chosen
  Value value;
};

// The quantity has no row: the forms of the workbook never had it.
constexpr std::array<Row, exportedRowCount> rows = {{
    {TextId::exportExtraCurrent, L"0", [](const ZanCircuitData& data) { return number(data.extraCurrent); }},
    {TextId::exportWireStandard, L"", [](const ZanCircuitData& data) { return data.wireStandard; }},
    {TextId::exportWireMetal, L"", [](const ZanCircuitData& data) { return data.wireMetal; }},
    {TextId::exportInsulation, L"", [](const ZanCircuitData& data) { return data.insulation; }},
    {TextId::exportTemperature, L"", [](const ZanCircuitData& data) { return data.temperature; }},
    {TextId::exportLength, L"0",
     [](const ZanCircuitData& data) { return numberIf(data.useVoltageDrop, data.length); }},
    {TextId::exportLengthUnits, L"",
     [](const ZanCircuitData& data) { return textIf(data.useVoltageDrop, data.lengthUnits); }},
    {TextId::exportRaceway, L"",
     [](const ZanCircuitData& data) { return textIf(data.useVoltageDrop, data.raceway); }},
    // Without voltage drop the number before it is repeated, the length's "0".
    {TextId::exportPowerFactor, L"0",
     [](const ZanCircuitData& data) { return numberIf(data.useVoltageDrop, data.powerFactor); }},
    {TextId::exportDropLimit, L"0",
     [](const ZanCircuitData& data) {
       return numberIf(data.useDropLimit && data.useVoltageDrop, data.dropLimit);
     }},
    {TextId::exportContinuousFactor, L"0",
     [](const ZanCircuitData& data) { return numberIf(data.useContinuousLoad, data.continuousFactor); }},
    {TextId::exportFillRange, L"",
     [](const ZanCircuitData& data) { return textIf(data.useFill, data.fillRange); }},
    {TextId::exportFillFactor, L"0",
     [](const ZanCircuitData& data) { return numberIf(data.useFill, data.fillFactor); }},
    {TextId::exportAmbientRange, L"",
     [](const ZanCircuitData& data) { return textIf(data.useAmbient, data.ambientRange); }},
    {TextId::exportAmbientFactor, L"0",
     [](const ZanCircuitData& data) { return numberIf(data.useAmbient, data.ambientFactor); }},
    {TextId::exportOverallFactor, L"0",
     [](const ZanCircuitData& data) { return number(data.overallFactor); }},
    {TextId::exportParallelCount, L"",
     [](const ZanCircuitData& data) { return textIf(data.useParallel, data.parallelCount); }},
    {TextId::exportParallelMinSize, L"",
     [](const ZanCircuitData& data) { return textIf(data.useParallel, data.parallelMinSize); }},
    {TextId::exportEnergyPrice, L"0", [](const ZanCircuitData& data) { return number(data.energyPrice); }},
    {TextId::exportGroundSize, L"", [](const ZanCircuitData& data) { return data.groundSize; }},
}};

} // namespace

void exportRows(const ZanCircuitData& circuit, const StoredWireFields& stored, ZanAnnotationData& record) {
  const ResourceScope texts;
  for (std::size_t index = 0; index < rows.size(); ++index) {
    const Row& row = rows[index];
    std::wstring value(row.withoutWire);
    if (circuit.wireChosen)
      value = row.value(circuit);
    else if (index < stored.size())
      value = stored[index];
    record.AddText(value, loadText(row.label));
  }
}

void labelSetupRow(ZanAnnotationData& row) {
  const ResourceScope texts;
  for (std::size_t place = 0; place < row.fields.size(); ++place) {
    if (place < ratingCount)
      row.fields[place].name = loadText(ratingFields[place].label);
    else if (place < ratingCount + exportedRowCount)
      row.fields[place].name = loadText(rows[place - ratingCount].label);
    else if (place == ratingCount + exportedRowCount)
      row.fields[place].name = loadText(TextId::controlField);
  }
}

void labelWireRow(ZanAnnotationData& row, bool isGrounding, int number) {
  const ResourceScope texts;
  row.name = isGrounding ? rowname::groundingWireSetup : rowname::wireSetup;
  const auto label = [number](TextId text) {
    return formatText(loadText(text), {static_cast<std::int64_t>(number)});
  };
  row.fields[0].name = label(isGrounding ? TextId::groundSizeRow : TextId::wireSizeRow);
  row.fields[1].name = label(isGrounding ? TextId::groundLayerRow : TextId::wireLayerRow);
}

} // namespace brenvolt
