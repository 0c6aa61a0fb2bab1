#include "circuits/check/sample_load.h"

#include "data/auto_wire_size.h"
#include "data/circuit_data.h"
#include "data/wire_table_cache.h"
#include "data/wire_tables.h"
#include "platform/tables.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <array>
#include <map>

namespace circuits {

using brenvolt::equalsOrdinalNoCase;

namespace {

/// Fields of a motor or load, by position.
constexpr std::size_t fieldCount = 30;
namespace field {
constexpr std::size_t type = 0, load = 1, units = 2, voltage = 3, phase = 4, frequency = 5, speed = 6,
                      current = 7, multiplier = 8, standard = 10, metal = 11, groundSize = 28, control = 29;
}

/// The row to build with; null for none.
const TableText::Row* chooseRow(
    const SiteTable& table, std::wstring_view phases, const std::wstring& voltage) {
  const int phase = table.text.columnOf(L"Phase");
  const int volts = table.text.columnOf(L"Voltage (V)");
  const int current = table.text.columnOf(L"FLA (A)");
  const TableText::Row* first = nullptr;
  for (const TableText::Row& row : table.text.rows) {
    const bool fits = row.cell(phase) == phases && numberOf(row.cell(current)).value_or(0.0) > 0.0;
    if (!fits) continue;
    if (row.cell(volts) == voltage) return &row;
    if (first == nullptr) first = &row;
  }
  return first;
}

bool isRated(const TableSet& tables, const ElectricalCode& electrical, const std::wstring& type) {
  const SiteTable* formulas = tables.resolve(L"MOTOR_I_CALC", electrical.name);
  const int column = formulas == nullptr ? 0 : formulas->text.columnOf(L"Type");
  return column != 0 && std::ranges::any_of(formulas->text.rows, [&](const TableText::Row& row) {
           return equalsOrdinalNoCase(row.cell(column), type);
         });
}

/// The sizes that a build nobody watches takes.
void sizeWires(
    const std::filesystem::path& database, const ElectricalCode& electrical,
    const std::array<std::wstring, fieldCount>& fields, SampleLoad& sample) {
  brenvolt::ZanOleDbConnection connection;
  const std::wstring init =
      brenvolt::ZanOleDbHelper::FormatConnectString(brenvolt::fromUtf8(database.string()), L"", L"Mode=Read");
  if (connection.OpenFromInitializationString(init, false, true) < 0) return;
  brenvolt::WireTableCache tables(connection);
  const brenvolt::WireDefaults defaults(tables, electrical.name);
  brenvolt::ZanCircuitData data;
  data.type = fields[field::type];
  data.voltage = fields[field::voltage];
  data.phase = fields[field::phase];
  data.fla = brenvolt::toDouble(fields[field::current]);
  const auto wire = brenvolt::autoWire(defaults, data, brenvolt::autoDesignCurrent(defaults, data));
  if (wire) sample.wireSize = brenvolt::removeBlanks(wire->size);
  std::vector<std::wstring> grounds;
  const brenvolt::WireTableSet set = {fields[field::metal], fields[field::standard], electrical.name};
  if (defaults.reader().ListGround(set, electrical.defaultOf(L"AMPG_MAX"), fields[field::current], grounds) &&
      !grounds.empty())
    sample.groundSize = brenvolt::removeBlanks(grounds.front());
}

std::wstring escaped(std::wstring_view text) {
  std::wstring whole = brenvolt::replaceAll(text, L"&", L"&amp;");
  whole = brenvolt::replaceAll(whole, L"<", L"&lt;");
  return brenvolt::replaceAll(whole, L"\"", L"&quot;");
}

std::wstring property(std::wstring_view name, std::wstring_view value) {
  return L"<Property Name=\"" + escaped(name) + L"\" Value=\"" + escaped(value) + L"\"/>";
}

} // namespace

std::optional<SampleLoad> sampleLoad(
    const TableSet& tables, const ElectricalCode& electrical, LoadKind kind, std::wstring_view phases,
    const std::filesystem::path& database) {
  const SiteTable* table = tables.resolve(kind == LoadKind::motor ? L"MOTOR" : L"FEED", electrical.name);
  if (table == nullptr) return std::nullopt;
  const TableText::Row* row = chooseRow(*table, phases, electrical.defaultOf(L"VOLTS"));
  if (row == nullptr) return std::nullopt;
  const auto cell = [&](std::wstring_view column) {
    const int position = table->text.columnOf(column);
    return position == 0 ? std::wstring() : row->cell(position);
  };
  std::array<std::wstring, fieldCount> fields;
  fields[field::type] = cell(L"Type");
  fields[field::load] = cell(L"Load");
  fields[field::units] = cell(L"Units");
  fields[field::voltage] = cell(L"Voltage (V)");
  fields[field::phase] = cell(L"Phase");
  fields[field::frequency] = cell(L"Frequency (HZ)");
  fields[field::speed] = cell(L"Speed (RPM)");
  fields[field::current] = cell(L"FLA (A)");
  fields[field::multiplier] = electrical.defaultOf(L"FLA_MULT");
  fields[field::standard] = electrical.defaultOf(L"W_STD");
  fields[field::metal] = electrical.defaultOf(L"W_METAL");
  fields[field::control] = kind == LoadKind::motor ? L"!MCC_CTRL" : L"!PF_CTRL";

  SampleLoad sample;
  sample.isRated = isRated(tables, electrical, fields[field::type]);
  sizeWires(database, electrical, fields, sample);
  fields[field::groundSize] = sample.groundSize;
  sample.kind = kind;
  sample.setup.assign(fields.begin(), fields.end());
  return sample;
}

namespace {

std::wstring setupText(const SampleLoad& load, const SampleControl& control) {
  const std::wstring row = load.kind == LoadKind::motor ? L"MotorSetup" : L"LOADSetup";
  std::wstring text = L"<ControlGroup><" + row + L">";
  for (std::size_t i = 0; i < load.setup.size(); ++i)
    text += property(L"Field " + brenvolt::formatInt(static_cast<std::int64_t>(i)), load.setup[i]);
  text += L"</" + row + L">";
  for (const SampleWire& wire : control.wires) {
    const std::wstring element = wire.isGround ? L"GroundingWireSetup" : L"WireSetup";
    text += L"<" + element + L">" + property(L"Size", wire.isGround ? load.groundSize : load.wireSize) +
            property(L"Layer", wire.layer) + L"</" + element + L">";
  }
  return text + L"</ControlGroup>";
}

} // namespace

std::wstring savedSample(
    const SampleLoad* load, const std::vector<SampleControl>& controls,
    const std::vector<SampleChoice>& choices, const std::wstring& circuit, const std::wstring& type,
    const std::wstring& name) {
  std::wstring text = L"<BrenvoltHistory Version=\"1.0\"><Circuit Name=\"" + escaped(circuit) +
                      L"\"><CircuitType Name=\"" + escaped(type) + L"\"><History Name=\"" + escaped(name) +
                      L"\" ComponentScale=\"1\" CircuitScale=\"1\">";
  const auto marker =
      [&text](const std::wstring& code, const std::wstring& place, const std::wstring& content) {
        text += L"<Marker Code=\"" + escaped(code) + L"\" Tag=\"" + escaped(code) + place + L"\">" + content +
                L"</Marker>";
      };
  if (load != nullptr)
    for (const SampleControl& control : controls)
      marker(
          control.code, L".1.1", setupText(*load, control)); // the first of its CODE in the template itself
  std::map<std::wstring, std::wstring> options;              // by CODE
  for (const SampleChoice& choice : choices)
    options[choice.code] += L"<SelectOption UI_TITLE=\"" + escaped(choice.group) + L"\" UI_PROMPT=\"" +
                            escaped(choice.option) + L"\" UI_VAL=\"" + brenvolt::formatInt(choice.value) +
                            L"\"/>";
  // How often a CODE comes, and how deep, shows only when the circuit is built.
  constexpr int mostOrdinals = 6;
  constexpr int mostLevels = 5;
  for (const auto& [code, content] : options)
    for (int ordinal = 1; ordinal <= mostOrdinals; ++ordinal)
      for (int level = 1; level <= mostLevels; ++level)
        marker(code, L"." + brenvolt::formatInt(ordinal) + L"." + brenvolt::formatInt(level), content);
  return text + L"</History></CircuitType></Circuit></BrenvoltHistory>";
}

} // namespace circuits
