#include "circuits/check/sample_load.h"

#include "circuits/check/check_session.h"
#include "data/auto_wire_size.h"
#include "data/circuit_data.h"
#include "data/wire_table_cache.h"
#include "data/wire_tables.h"
#include "platform/tables.h"
#include "platform/xml_document.h"
#include "project/history_names.h"
#include "simhost/site/code_standard.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/plain_number.h"
#include "text/split.h"

#include <algorithm>
#include <map>

namespace circuits {

namespace xmlname = brenvolt::xmlname;
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
    const bool fits =
        row.cell(phase) == phases && brenvolt::plainNumber(row.cell(current)).value_or(0.0) > 0.0;
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
    const std::vector<std::wstring>& fields, SampleLoad& sample) {
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
  // By the formula alone: a form that takes another wire's size shows only where the two sizes differ.
  std::vector<std::wstring> grounds;
  const brenvolt::WireTableSet set = {fields[field::metal], fields[field::standard], electrical.name};
  if (defaults.reader().ListGround(set, electrical.defaultOf(L"AMPG_MAX"), fields[field::current], grounds) &&
      !grounds.empty())
    sample.groundSize = brenvolt::removeBlanks(grounds.front());
}

const SiteTable* loadTable(const TableSet& tables, const ElectricalCode& electrical, LoadKind kind) {
  return tables.resolve(kind == LoadKind::motor ? L"MOTOR" : L"FEED", electrical.name);
}

/// The fields of a row as a configuration keeps them.
std::vector<std::wstring> setupOf(
    const SiteTable& table, const TableText::Row& row, const ElectricalCode& electrical, LoadKind kind) {
  const auto cell = [&](std::wstring_view column) {
    const int position = table.text.columnOf(column);
    return position == 0 ? std::wstring() : row.cell(position);
  };
  std::vector<std::wstring> fields(fieldCount);
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
  return fields;
}

} // namespace

std::optional<LoadNeed> loadNeedOf(const SheetModel& sheet, const TemplateDrawing& drawing) {
  const SheetGroup* control = nullptr;
  for (const SheetCode& code : sheet.codes)
    if (control == nullptr && code.hasTitle) control = code.controlGroup();
  if (control == nullptr) return std::nullopt;
  std::map<std::wstring, int> conductors; // by letter of the motor
  int most = 0;
  for (const TemplateMarker& marker : drawing.markers)
    if (marker.isWire() && !marker.isGround()) most = std::max(most, ++conductors[marker.suffixKey]);
  constexpr int threePhase = 3;
  return LoadNeed{
      brenvolt::equalsCollating(control->title, L"!MCC_CTRL") ? LoadKind::motor : LoadKind::load,
      most >= threePhase ? L"3" : L"1"};
}

const ElectricalCode* codeOf(CheckSession& session, const std::vector<ElectricalCode>& codes) {
  const std::wstring name = simhost::sessionStandard(session.interpreter());
  const auto found = std::ranges::find_if(
      codes, [&name](const ElectricalCode& each) { return equalsOrdinalNoCase(each.name, name); });
  return found == codes.end() ? nullptr : &*found;
}

std::optional<SampleLoad> sampleLoad(
    const TableSet& tables, const ElectricalCode& electrical, const LoadNeed& need,
    const std::filesystem::path& database) {
  const SiteTable* table = loadTable(tables, electrical, need.kind);
  if (table == nullptr) return std::nullopt;
  const TableText::Row* row = chooseRow(*table, need.phases, electrical.defaultOf(L"VOLTS"));
  if (row == nullptr) return std::nullopt;
  SampleLoad sample{need.kind, setupOf(*table, *row, electrical, need.kind), {}, {}, false};
  sample.isRated = isRated(tables, electrical, sample.setup[field::type]);
  sizeWires(database, electrical, sample.setup, sample);
  sample.setup[field::groundSize] = sample.groundSize;
  return sample;
}

std::vector<SampleLoad> loadsToTry(
    const TableSet& tables, const ElectricalCode& electrical, const LoadNeed& need) {
  const SiteTable* table = loadTable(tables, electrical, need.kind);
  if (table == nullptr) return {};
  std::map<double, const TableText::Row*> first; // by current
  std::vector<const TableText::Row*> others;
  const int phase = table->text.columnOf(L"Phase");
  const int current = table->text.columnOf(L"FLA (A)");
  for (const TableText::Row& row : table->text.rows) {
    const double amperes = brenvolt::plainNumber(row.cell(current)).value_or(0.0);
    if (row.cell(phase) != need.phases || amperes <= 0.0) continue;
    if (!first.try_emplace(amperes, &row).second) others.push_back(&row);
  }
  std::vector<SampleLoad> loads;
  const auto add = [&](const TableText::Row& row) {
    loads.push_back({need.kind, setupOf(*table, row, electrical, need.kind), {}, {}, false});
  };
  for (const auto& [amperes, row] : first)
    add(*row);
  for (const TableText::Row* row : others)
    add(*row);
  return loads;
}

namespace {

std::vector<brenvolt::EntryRow> setupOf(const SampleLoad& load, const SampleControl& control) {
  const bool isMotor = load.kind == LoadKind::motor;
  brenvolt::HistoryProperties fields;
  for (std::size_t i = 0; i < load.setup.size(); ++i)
    fields.emplace_back(L"Field " + brenvolt::formatInt(static_cast<std::int64_t>(i)), load.setup[i]);
  std::vector<brenvolt::EntryRow> rows = {
      {std::wstring(isMotor ? xmlname::motorSetup : xmlname::loadSetup), std::move(fields)}};
  for (const SampleWire& wire : control.wires)
    rows.push_back(
        {std::wstring(wire.isGround ? xmlname::groundingWireSetup : xmlname::wireSetup),
         {{L"Size", wire.isGround ? load.groundSize : load.wireSize}, {L"Layer", wire.layer}}});
  return rows;
}

brenvolt::EntryRow rowOf(const SamplePart& part) {
  brenvolt::HistoryProperties fields = {{L"TITLE", part.title}, {L"TABLE", part.table}};
  for (std::size_t i = 0; i < part.values.size(); ++i)
    fields.emplace_back(L"Field " + brenvolt::formatInt(static_cast<std::int64_t>(i)), part.values[i]);
  return {std::wstring(xmlname::catalog), std::move(fields)};
}

} // namespace

std::string savedSample(
    const SampleLoad* load, const std::vector<SampleControl>& controls,
    const std::vector<SampleChoice>& choices, const std::vector<SamplePart>& parts,
    const brenvolt::HistoryKey& key) {
  brenvolt::EntryContent entry{key, {}, {}};
  if (load != nullptr)
    for (const SampleControl& control : controls) // the first of its CODE in the template itself
      entry.markers.push_back({.code = control.code, .options = {}, .rows = setupOf(*load, control)});
  struct Chosen {
    std::vector<brenvolt::EntryOption> options;
    std::vector<brenvolt::EntryRow> parts;
  };
  std::map<std::wstring, Chosen> chosenByCode;
  for (const SampleChoice& choice : choices)
    chosenByCode[choice.code].options.push_back(choice.option);
  for (const SamplePart& part : parts)
    chosenByCode[part.code].parts.push_back(rowOf(part));
  // How often a CODE comes, and how deep, shows only when the circuit is built.
  constexpr int mostOrdinals = 6;
  constexpr int mostDepths = 5;
  for (const auto& [code, chosen] : chosenByCode)
    for (int ordinal = 1; ordinal <= mostOrdinals; ++ordinal)
      for (int depth = 1; depth <= mostDepths; ++depth)
        entry.markers.push_back(
            {.code = code,
             .ordinal = ordinal,
             .depth = depth,
             .options = chosen.options,
             .rows = {},
             .parts = chosen.parts});
  brenvolt::HistoryFile file;
  file.startEmpty({});
  try {
    brenvolt::appendEntry(file, entry);
  } catch (const brenvolt::XmlError&) {
    file.startEmpty({}); // the rules for the worksheet report such a text
  }
  return file.bytes();
}

} // namespace circuits
