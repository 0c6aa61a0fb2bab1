#include "config/mcc_fields.h"

#include "text/numbers.h"

#include <algorithm>

namespace brenvolt {

namespace {

constexpr MccField textField(
    TextId label, std::wstring_view argument, std::wstring MccData::*text,
    std::wstring ZanCircuitData::*circuitText) {
  return {label, argument, text, circuitText, nullptr, nullptr};
}

constexpr MccField numberField(
    TextId label, std::wstring_view argument, double MccData::*number,
    double ZanCircuitData::*circuitNumber) {
  return {label, argument, nullptr, nullptr, number, circuitNumber};
}

constexpr std::array<MccField, mccFieldCount> fields = {
    textField(TextId::dataType, L"@type", &MccData::type, &ZanCircuitData::type),
    textField(TextId::dataLoad, L"@load", &MccData::load, &ZanCircuitData::load),
    textField(TextId::dataUnits, L"@units", &MccData::units, &ZanCircuitData::units),
    textField(TextId::dataVoltage, L"@voltage", &MccData::voltage, &ZanCircuitData::voltage),
    textField(TextId::dataPhase, L"@phase", &MccData::phase, &ZanCircuitData::phase),
    textField(TextId::dataFrequency, L"@frequency", &MccData::frequency, &ZanCircuitData::frequency),
    textField(TextId::dataSpeed, L"@speed", &MccData::speed, &ZanCircuitData::speed),
    numberField(TextId::dataFla, L"@fla", &MccData::fla, &ZanCircuitData::fla),
    numberField(TextId::dataMultiplier, L"@flamult", &MccData::flaMultiplier, &ZanCircuitData::flaMultiplier),
};

} // namespace

const MccField& mccField(std::size_t index) {
  return fields.at(index);
}

std::vector<std::size_t> mccFieldsOf(MccMode mode) {
  std::vector<std::size_t> list;
  for (std::size_t field = 0; field < mccFieldCount; ++field)
    if (mode == MccMode::motor || field != speedField) list.push_back(field);
  return list;
}

std::vector<ZanGroupRow> mccEmptyRows(MccMode mode) {
  std::vector<ZanGroupRow> rows;
  for (const std::size_t field : mccFieldsOf(mode)) {
    std::optional<std::wstring> label = findText(fields[field].label);
    if (!label) continue;
    const std::size_t choices = fields[field].text ? 2 : 0;
    rows.push_back({std::move(*label), std::vector<std::wstring>(choices)});
  }
  return rows;
}

void storeInData(MccData& data, std::size_t field, std::wstring_view value) {
  const MccField& place = fields.at(field);
  if (place.text)
    data.*place.text = value;
  else
    data.*place.number = toDouble(value);
}

void storeInCircuit(std::size_t field, std::wstring_view value) {
  const MccField& place = fields.at(field);
  if (place.circuitText)
    circuitData().*place.circuitText = value;
  else
    circuitData().*place.circuitNumber = toDouble(value);
}

void storeUserValue(MccMode mode, std::size_t field, std::wstring_view value) {
  if (mode == MccMode::load && field == multiplierField)
    loadFactors().flaMultiplier = toDouble(value);
  else
    storeInCircuit(field, value);
}

bool isTypedNumber(std::wstring_view text) {
  return text.empty() || formatDouble(toDouble(text)).starts_with(text);
}

std::vector<ZanScriptVariable> mccArguments(MccMode mode, const std::vector<ZanGroupRow>& rows) {
  const std::vector<std::size_t> list = mccFieldsOf(mode);
  std::vector<ZanScriptVariable> arguments;
  for (std::size_t row = 0; row < std::min(rows.size(), list.size()); ++row) {
    const MccField& field = fields[list[row]];
    const std::wstring value = rows[row].value();
    arguments.push_back(
        field.text ? ZanScriptVariable::ofText(field.argument, value)
                   : ZanScriptVariable::ofReal(field.argument, toDouble(value)));
  }
  return arguments;
}

} // namespace brenvolt
