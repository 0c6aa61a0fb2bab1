// Looking up row by row, with each table and worksheet read once.
#include "circuits/building/circuit_rows.h"

#include "circuits/building/row_configurations.h"
#include "circuits/building/row_wires.h"
#include "circuits/building/template_phases.h"
#include "circuits/provenance/load_data.h"
#include "circuits/set/conductor_sizes.h"
#include "data/rating_tables.h"
#include "simhost/host/errors.h"
#include "simhost/site/code_standard.h"
#include "simhost/site/site_workbook.h"
#include "simhost/site/wire_request.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/plain_number.h"
#include "text/similar_name.h"
#include "text/split.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>

namespace circuits {

using brenvolt::fromUtf8;
using brenvolt::Rating;
using brenvolt::RatingRecord;
using brenvolt::toUtf8;
using simhost::BadInput;
using simhost::EngineeringRun;
using simhost::WireField;
using simhost::WireRequest;
using simhost::WireRequests;

namespace {

/// The rating that a field of the list means.
struct RatingColumn {
  SetField field;
  Rating rating;
};
constexpr RatingColumn ratingColumns[] = {
    {SetField::kind, Rating::type},   {SetField::load, Rating::load},
    {SetField::units, Rating::units}, {SetField::voltage, Rating::voltage},
    {SetField::phase, Rating::phase}, {SetField::frequency, Rating::frequency},
    {SetField::speed, Rating::speed},
};

enum class LoadKind { none, motor, load };

/// What a worksheet says, read once.
struct Worksheet {
  std::map<std::wstring, brenvolt::ZanCodeRecord> records;
  LoadKind kind = LoadKind::none;
  std::vector<SetOptionsOfCode> controls; ///< the CODEs that ask for the motor or load
  std::string fault;
};

/// Motors and loads of one code standard.
struct Standard {
  std::unique_ptr<EngineeringRun> run;
  std::unique_ptr<WireRequests> wires;
  std::map<LoadKind, std::vector<RatingRecord>> records;
  std::optional<std::vector<std::wstring>> sizes; ///< of conductors, as shown
  std::wstring temperature;                       ///< at which they have an ampacity
  std::string fault;
};

class RowResolver final {
public:
  RowResolver(const SetSettings& settings, SetList& list)
      : settings_(settings), list_(list), catalogue_(simhost::readCircuitList(settings.workbook)) {
    for (const SetFault& fault : list.faults)
      badRows_.insert(fault.row);
  }

  std::vector<SetCircuit> run() {
    std::vector<SetCircuit> circuits;
    std::size_t number = 0;
    for (const SetRow& row : list_.rows) {
      // A row that is left out keeps its number: its neighbours stay as they are once it is put right.
      ++number;
      const std::size_t faults = list_.faults.size();
      SetCircuit circuit = resolve(row);
      circuit.number = number;
      if (list_.faults.size() == faults && !badRows_.contains(row.number))
        circuits.push_back(std::move(circuit));
    }
    for (std::vector<SetFault>* faults : {&list_.faults, &list_.findings})
      std::stable_sort(faults->begin(), faults->end(), [](const auto& one, const auto& other) {
        return one.row < other.row;
      });
    return circuits;
  }

private:
  void fail(const SetRow& row, std::wstring_view column, std::wstring reason) {
    list_.faults.push_back({row.number, std::wstring(column), std::move(reason)});
  }
  void fail(const SetRow& row, SetField field, std::wstring reason) {
    fail(row, setFields()[static_cast<std::size_t>(field)].name, std::move(reason));
  }
  void find(const SetRow& row, SetField field, std::wstring reason) {
    list_.findings.push_back(
        {row.number, setFields()[static_cast<std::size_t>(field)].name, std::move(reason)});
  }

  SetCircuit resolve(const SetRow& row) {
    SetCircuit circuit;
    circuit.row = row.number;
    circuit.scale = circuit.componentScale = settings_.scale;
    circuit.tag = row[SetField::tag];
    circuit.name = circuit.tag;
    circuit.circuit = row[SetField::circuit];
    circuit.type = row[SetField::type];
    circuit.configuration = row[SetField::configuration];
    circuit.standardCode =
        row[SetField::standardCode].empty() ? fromUtf8(settings_.standardCode) : row[SetField::standardCode];
    circuit.installation = row[SetField::installation];
    circuit.location = row[SetField::location];
    circuit.descriptions = {
        row[SetField::description1], row[SetField::description2], row[SetField::description3]};
    const Worksheet* sheet = findType(row, circuit);
    if (sheet == nullptr) return circuit;
    takeConfiguration(row, circuit);
    takeOptions(row, *sheet, circuit);
    takeFixedSize(row, *sheet, circuit);
    takeLoad(row, *sheet, circuit);
    return circuit;
  }

  const Worksheet* findType(const SetRow& row, SetCircuit& circuit) {
    const auto known = catalogue_.circuits().find(circuit.circuit);
    if (known == catalogue_.circuits().end()) {
      fail(
          row, SetField::circuit,
          L"the workbook has no circuit \"" + circuit.circuit + L"\": it has " +
              names(catalogue_.circuits(), [](const auto& one) { return one.first; }));
      return nullptr;
    }
    const brenvolt::ZanCircuitEntry* entry = catalogue_.findEntry(circuit.circuit, circuit.type);
    if (entry == nullptr) {
      fail(
          row, SetField::type,
          L"circuit \"" + circuit.circuit + L"\" has no type \"" + circuit.type + L"\": it has " +
              names(known->second.entries, [](const auto& one) { return one.type; }));
      return nullptr;
    }
    circuit.circuit = known->first;
    circuit.type = entry->type;
    circuit.drawingTemplate = entry->drawingTemplate;
    circuit.worksheet = entry->worksheet;
    const Worksheet& sheet = worksheetOf(entry->worksheet);
    if (sheet.fault.empty()) return &sheet;
    fail(row, SetField::type, fromUtf8(sheet.fault));
    return nullptr;
  }

  template <typename Range, typename NameOf>
  static std::wstring names(const Range& range, NameOf nameOf) {
    std::wstring all;
    for (const auto& one : range)
      all += (all.empty() ? L"" : L", ") + nameOf(one);
    return all;
  }

  Worksheet& worksheetOf(const std::wstring& name) {
    const auto [place, isNew] = worksheets_.try_emplace(name);
    Worksheet& sheet = place->second;
    if (!isNew) return sheet;
    brenvolt::ZanCircuitCatalog reader(catalogue_.workbook);
    if (!reader.readWorksheet(name)) {
      sheet.fault = toUtf8(reader.error());
      return sheet;
    }
    sheet.records = reader.records();
    for (const auto& [code, record] : sheet.records)
      if (const brenvolt::ZanOptionGroup* group = record.controlGroup()) {
        const bool isLoad = brenvolt::equalsCollating(group->title, brenvolt::loadControlTitle);
        sheet.kind = isLoad ? LoadKind::load : LoadKind::motor;
        if (group->options.empty()) continue;
        const brenvolt::ZanOption& first = group->options.front();
        sheet.controls.push_back({code, {{group->title, first.text, first.value}}});
      }
    return sheet;
  }

  void takeConfiguration(const SetRow& row, const SetCircuit& circuit) {
    if (circuit.configuration.empty()) return;
    try {
      simhost::needConfiguration(
          simhost::readHistory(settings_.workbook), {circuit.circuit, circuit.type, circuit.configuration});
    } catch (const BadInput& error) {
      fail(row, SetField::configuration, fromUtf8(error.what()));
    }
  }

  /// "CODE=20,1;CODE=3", and a cell for a CODE: values, or titles of options parted by ";".
  void takeOptions(const SetRow& row, const Worksheet& sheet, SetCircuit& circuit) {
    for (const std::wstring& part : brenvolt::splitSkippingEmpty(row[SetField::options], L';')) {
      const std::size_t equals = part.find(L'=');
      const std::wstring code = brenvolt::toUpper(brenvolt::trim(part.substr(0, equals)));
      if (equals == std::wstring::npos)
        fail(row, SetField::options, L"\"" + brenvolt::trim(part) + L"\" must be CODE=1,2");
      else
        takeOption(row, L"options", sheet, code, part.substr(equals + 1), circuit);
    }
    for (const auto& [code, cell] : row.codes)
      if (isUnknownColumn(code))
        badRows_.insert(row.number);
      else
        takeOption(row, columnName(code), sheet, code, cell, circuit);
  }

  /// The column of a CODE as the list writes it.
  [[nodiscard]] std::wstring columnName(const std::wstring& code) const {
    const auto written = list_.codeColumns.find(code);
    return written == list_.codeColumns.end() ? code : written->second;
  }

  /// A column that is neither a field nor a CODE of any worksheet of the workbook is a mistake of the header, and is
  /// reported there once.
  bool isUnknownColumn(const std::wstring& code) {
    const auto [place, isNew] = unknownColumns_.try_emplace(code, false);
    if (!isNew) return place->second;
    for (const auto& [name, known] : catalogue_.circuits())
      for (const brenvolt::ZanCircuitEntry& entry : known.entries)
        if (worksheetOf(entry.worksheet).records.contains(code)) return false;
    list_.faults.push_back({list_.header, columnName(code), unknownColumnReason(code)});
    return place->second = true;
  }

  std::wstring unknownColumnReason(const std::wstring& code) {
    std::wstring reason = L"is neither a CODE of the workbook nor a column of a list";
    std::vector<std::wstring> columns;
    for (const SetFieldRow& field : setFields())
      columns.emplace_back(field.name);
    const std::wstring all = names(columns, [](const std::wstring& column) { return column; });
    for (const auto& [name, sheet] : worksheets_)
      for (const auto& [known, record] : sheet.records)
        columns.push_back(known);
    if (const std::wstring similar = brenvolt::similarName(code, columns); !similar.empty())
      return reason + L"; did you mean " + similar + L"?";
    return reason + L", which has " + all;
  }

  void takeOption(
      const SetRow& row, std::wstring_view field, const Worksheet& sheet, const std::wstring& code,
      const std::wstring& text, SetCircuit& circuit) {
    const auto record = sheet.records.find(code);
    if (record == sheet.records.end()) {
      fail(row, field, L"the worksheet " + circuit.worksheet + L" has no CODE " + code);
      return;
    }
    const bool areTitles = text.find_first_not_of(L"0123456789,- ") != std::wstring::npos;
    const std::vector<std::wstring> words = brenvolt::splitSkippingEmpty(text, areTitles ? L';' : L',');
    std::wstring values;
    SetOptionsOfCode chosen{code, {}};
    for (std::size_t place = 0; place < words.size(); ++place) {
      const std::wstring word = brenvolt::trim(words[place]);
      const brenvolt::ZanOption* value = valueOf(record->second, place, word, areTitles);
      if (value == nullptr) {
        const std::wstring names = optionNames(record->second);
        fail(
            row, field,
            L"CODE " + code + L" has no option \"" + word + L"\"" +
                (names.empty() ? L"; it asks for nothing" : L": it has " + names));
        return;
      }
      values += (values.empty() ? L"" : L",") + brenvolt::formatInt(value->value);
      chosen.second.push_back({record->second.groups[place].title, value->text, value->value});
    }
    circuit.options.push_back(std::move(chosen));
    circuit.preset += (circuit.preset.empty() ? L"" : L";") + code + L'=' + values;
  }

  static const brenvolt::ZanOption* valueOf(
      const brenvolt::ZanCodeRecord& record, std::size_t place, const std::wstring& word, bool isTitle) {
    if (place >= record.groups.size()) return nullptr;
    for (const brenvolt::ZanOption& option : record.groups[place].options)
      if (isTitle ? brenvolt::equalsOrdinalNoCase(option.text, word)
                  : brenvolt::formatInt(option.value) == word)
        return &option;
    return nullptr;
  }

  static std::wstring optionNames(const brenvolt::ZanCodeRecord& record) {
    std::wstring all;
    for (const brenvolt::ZanOptionGroup& group : record.groups)
      for (const brenvolt::ZanOption& option : group.options)
        all += (all.empty() ? L"" : L", ") + brenvolt::formatInt(option.value) + L" " + option.text;
    return all;
  }

  [[nodiscard]] std::unique_ptr<EngineeringRun> newRun(const std::wstring& code) const {
    if (settings_.running == nullptr) return std::make_unique<EngineeringRun>(settings_.site, toUtf8(code));
    return std::make_unique<EngineeringRun>(*settings_.running, settings_.site, toUtf8(code));
  }

  Standard& standardOf(const std::wstring& code) {
    const auto [place, isNew] = standards_.try_emplace(code);
    Standard& standard = place->second;
    if (!isNew) return standard;
    // One session at a time: the tables of a standard are read with a host of their own.
    for (auto& [other, one] : standards_)
      if (other != code) {
        one.wires.reset();
        one.run.reset();
      }
    try {
      standard.run = newRun(code);
      noteSizingTables(*standard.run, code);
    } catch (const BadInput& error) {
      standard.fault = error.what();
    }
    return standard;
  }

  /// Figures of another code are not taken unseen: without tables of its own a standard's devices have no ratings.
  void noteSizingTables(EngineeringRun& run, const std::wstring& code) {
    brenvolt::ZanOleDbTables tables;
    std::vector<std::wstring> known;
    if (tables.Open(run.connection(), L"TABLE")) tables.GetTableList(known);
    const std::wstring needed = L"MOTOR_I_CALC_" + code;
    const bool isThere = std::any_of(known.begin(), known.end(), [&needed](const std::wstring& name) {
      return brenvolt::equalsOrdinalNoCase(name, needed);
    });
    if (!isThere)
      list_.notes.push_back(
          L"the site has no table " + needed + L": devices of circuits by " + code +
          L" have no ratings; add the table, or give them parts by hand");
  }

  /// The host of a standard whose tables have been read before; made again when another one's had to be.
  EngineeringRun& runOf(Standard& standard, const std::wstring& code) {
    if (standard.run == nullptr) {
      for (auto& [other, one] : standards_) {
        one.wires.reset();
        one.run.reset();
      }
      standard.run = newRun(code);
    }
    if (standard.wires == nullptr)
      standard.wires = std::make_unique<WireRequests>(standard.run->connection());
    return *standard.run;
  }

  const std::vector<RatingRecord>& recordsOf(Standard& standard, const std::wstring& code, LoadKind kind) {
    const auto [place, isNew] = standard.records.try_emplace(kind);
    if (!isNew) return place->second;
    const brenvolt::RatingTableService service(tableOf(kind), &runOf(standard, code).connection());
    brenvolt::ZanTableFilter filter;
    for (const auto& [column, name] : service.columnNames())
      filter.selected[column] = true;
    static_cast<void>(service.Query(filter, place->second));
    return place->second;
  }

  static const brenvolt::RatingTable& tableOf(LoadKind kind) {
    return kind == LoadKind::motor ? brenvolt::motorTable() : brenvolt::loadTable();
  }
  /// Nothing for a rating that the table does not have.
  static std::optional<std::size_t> columnOf(Rating rating, LoadKind kind) {
    const std::size_t column = tableOf(kind).columnOf(rating);
    return tableOf(kind).fieldOf(column) == nullptr ? std::nullopt : std::optional(column);
  }
  static std::wstring textOf(const RatingRecord& record, Rating rating, LoadKind kind) {
    const std::optional<std::size_t> column = columnOf(rating, kind);
    return column ? record[*column] : std::wstring();
  }

  /// The sizes that the tables have for a circuit; none, which is reported with its motor or load, where they cannot be read.
  const std::vector<std::wstring>& sizesOf(Standard& standard, const SetCircuit& circuit) {
    if (standard.sizes) return *standard.sizes;
    standard.sizes.emplace();
    simhost::WireTexts texts = wireTextsOf(settings_, circuit);
    // Any motor or load: the sizes do not depend on it.
    texts[WireField::fla] = texts[WireField::voltage] = texts[WireField::phase] = L"1";
    static_cast<void>(runOf(standard, circuit.standardCode));
    std::vector<simhost::WireFault> faults;
    if (const std::optional<WireRequest> request = standard.wires->resolve(texts, faults)) {
      for (const brenvolt::WireCandidate& each : standard.wires->allSizes(*request))
        standard.sizes->push_back(each.size);
      standard.temperature = request->choice.temperature;
    }
    return *standard.sizes;
  }

  /// Looked up without the motor or load, so that both cells are reported when both are wrong.
  void takeFixedSize(const SetRow& row, const Worksheet& sheet, SetCircuit& circuit) {
    const std::wstring& text = row[SetField::wireSize];
    if (text.empty()) return;
    if (sheet.kind == LoadKind::none)
      return fail(row, SetField::wireSize, L"a circuit of this type has no motor or load");
    if (!circuit.configuration.empty())
      return fail(row, SetField::wireSize, L"comes from the configuration: leave one of both empty");
    Standard& standard = standardOf(circuit.standardCode);
    if (!standard.fault.empty()) return;
    const std::vector<std::wstring>& sizes = sizesOf(standard, circuit);
    if (sizes.empty()) return;
    const std::wstring size = tableSizeOf(text, sizes);
    circuit.fixedSizes = brenvolt::removeBlanks(size);
    if (size.empty())
      fail(
          row, SetField::wireSize,
          L"the tables have no size \"" + text + L"\" with an ampacity at " + standard.temperature + L"; " +
              neighbourText(text, sizes));
  }

  const std::optional<std::wstring>& phasesOf(const std::wstring& drawing) {
    const auto [place, isNew] = phases_.try_emplace(drawing);
    if (isNew) place->second = templatePhases(settings_.site, drawing);
    return place->second;
  }

  /// A circuit draws all its wire positions, so a motor or load of fewer phases would leave one without a size, and one
  /// of more phases would lack a wire.
  void takeLoad(const SetRow& row, const Worksheet& sheet, SetCircuit& circuit) {
    const std::optional<std::wstring>& phases = phasesOf(circuit.drawingTemplate);
    const std::wstring& phase = row[SetField::phase];
    if (!phases || !circuit.configuration.empty() || sheet.kind == LoadKind::none)
      return findLoad(row, sheet, circuit);
    if (phase.empty()) {
      SetRow fitting = row;
      fitting.texts[static_cast<std::size_t>(SetField::phase)] = *phases;
      return findLoad(fitting, sheet, circuit);
    }
    if (brenvolt::toDouble(phase) != brenvolt::toDouble(*phases))
      return fail(
          row, SetField::phase,
          L"\"" + phase + L"\" does not fit: a circuit of this type has the wires of " + *phases +
              (*phases == L"1" ? L" phase" : L" phases") +
              L"; choose another type, or another motor or load");
    findLoad(row, sheet, circuit);
  }

  void findLoad(const SetRow& row, const Worksheet& sheet, SetCircuit& circuit) {
    const bool isGiven = !row[SetField::load].empty();
    if (sheet.kind == LoadKind::none) {
      if (isGiven) fail(row, SetField::load, L"a circuit of this type has no motor or load");
      return;
    }
    if (row.keepsLoad) return;
    if (!circuit.configuration.empty()) {
      if (isGiven) fail(row, SetField::load, L"comes from the configuration: leave one of both empty");
      return;
    }
    if (!isGiven) return fail(row, SetField::load, L"is missing");
    Standard& standard = standardOf(circuit.standardCode);
    if (!standard.fault.empty()) return fail(row, SetField::standardCode, fromUtf8(standard.fault));
    const std::vector<RatingRecord>& records = recordsOf(standard, circuit.standardCode, sheet.kind);
    const RatingRecord* found = find(row, sheet.kind, records);
    if (found == nullptr) return failLoad(row, sheet.kind, records);
    takeParams(row, sheet, *found, standard, circuit);
  }

  static bool fits(
      const SetRow& row, LoadKind kind, const RatingRecord& record, std::optional<SetField> except) {
    for (const RatingColumn& column : ratingColumns) {
      const std::wstring& wanted = row[column.field];
      if (wanted.empty() || !columnOf(column.rating, kind) || column.field == except) continue;
      const std::wstring has = textOf(record, column.rating, kind);
      const bool isNumber = setFields()[static_cast<std::size_t>(column.field)].isNumber;
      // "1/2" of a table is not the 1 of a list.
      const std::optional<double> figure = isNumber ? brenvolt::plainNumber(has) : std::nullopt;
      const bool isEqual =
          figure ? brenvolt::toDouble(wanted) == *figure : brenvolt::equalsOrdinalNoCase(wanted, has);
      if (!isEqual) return false;
    }
    return true;
  }

  static const RatingRecord* find(
      const SetRow& row, LoadKind kind, const std::vector<RatingRecord>& records) {
    const auto found = std::find_if(records.begin(), records.end(), [&](const RatingRecord& record) {
      return fits(row, kind, record, std::nullopt);
    });
    return found == records.end() ? nullptr : &*found;
  }

  /// Names the loads on both sides of the one that the table lacks, or the first other field that does not fit.
  void failLoad(const SetRow& row, LoadKind kind, const std::vector<RatingRecord>& records) {
    const double wanted = brenvolt::toDouble(row[SetField::load]);
    std::optional<double> below;
    std::optional<double> above;
    for (const RatingRecord& record : records) {
      if (!fits(row, kind, record, SetField::load)) continue;
      const double load = brenvolt::toDouble(textOf(record, Rating::load, kind));
      if (load < wanted) below = std::max(below.value_or(load), load);
      if (load > wanted) above = std::min(above.value_or(load), load);
    }
    if (below || above) {
      std::wstring neighbours = below ? brenvolt::formatShortest(*below) : std::wstring();
      if (above) neighbours += (below ? L" and " : L"") + brenvolt::formatShortest(*above);
      return fail(
          row, SetField::load,
          L"the table has no " + row[SetField::load] + L" " + row[SetField::units] +
              L"; its neighbours are " + neighbours);
    }
    for (const RatingColumn& column : ratingColumns) {
      if (row[column.field].empty() || column.field == SetField::load) continue;
      std::set<std::wstring> values;
      for (const RatingRecord& record : records)
        if (fits(row, kind, record, column.field)) values.insert(textOf(record, column.rating, kind));
      if (values.empty()) continue;
      return fail(
          row, column.field,
          L"the table has no " + row[column.field] + L" for this load; it has " +
              names(values, [](const std::wstring& value) { return value; }));
    }
    fail(row, SetField::load, L"the table has no such motor or load");
  }

  void takeParams(
      const SetRow& row, const Worksheet& sheet, const RatingRecord& record, Standard& standard,
      SetCircuit& circuit) {
    const auto text = [&](Rating rating) { return textOf(record, rating, sheet.kind); };
    using namespace brenvolt;
    const std::wstring voltage = text(Rating::voltage);
    const std::wstring phase = text(Rating::phase);
    const std::wstring fla = text(Rating::fla);
    simhost::WireTexts texts = wireTextsOf(settings_, circuit);
    texts[WireField::fla] = fla;
    texts[WireField::voltage] = voltage;
    texts[WireField::phase] = phase;
    texts[WireField::ambient] = row[SetField::ambient];
    texts[WireField::length] = row[SetField::length];
    texts[WireField::units] = brenvolt::toUpper(row[SetField::lengthUnits]);
    texts[WireField::raceway] = row[SetField::raceway];
    static_cast<void>(runOf(standard, circuit.standardCode));
    std::vector<simhost::WireFault> faults;
    const std::optional<WireRequest> request = standard.wires->resolve(texts, faults);
    for (const simhost::WireFault& fault : faults)
      fail(row, fromUtf8(simhost::wireField(fault.field).name), fromUtf8(fault.reason));
    if (!request) return;
    RowWire chosen = wireOf(settings_, circuit, *request, *standard.wires);
    for (auto& [field, reason] : chosen.findings)
      find(row, field, std::move(reason));
    if (!chosen.wire) return fail(row, chosen.fault.first, std::move(chosen.fault.second));
    const std::optional<WireCandidate>& wire = chosen.wire;
    const std::wstring& size = wire->size;
    if (request->groundSizes().empty())
      return fail(row, SetField::load, L"the tables name no grounding conductor for " + fla + L" A");
    if (!row[SetField::length].empty())
      circuit.length = row[SetField::length] + L" " + (*request)[WireField::units].text;
    circuit.raceway = (*request)[WireField::raceway].text;
    circuit.ambient = row[SetField::ambient];
    if (settings_.sizing == SetSettings::Sizing::build) circuit.sizing = L"build";
    if (!row[SetField::length].empty()) circuit.drop = percentText(wire->dropPercent);
    circuit.isMotor = sheet.kind == LoadKind::motor;
    circuit.controls = sheet.controls;
    circuit.wireSize = brenvolt::removeBlanks(size);
    const BesideGround ground = standard.wires->groundBeside(*request, size);
    circuit.groundSize = brenvolt::removeBlanks(ground.size);
    if (!ground.withoutArea.empty())
      find(
          row, circuit.fixedSizes.empty() ? SetField::load : SetField::wireSize,
          simhost::groundNote(ground.withoutArea));
    circuit.conductors = phase == L"1" ? 2 : 3;
    const auto from = [&](WireField field) { return (*request)[field].text; };
    const bool isContinuous = from(WireField::continuous) != simhost::offText;
    const bool hasLength = !row[SetField::length].empty();
    const auto given = [this](WireField field) {
      const std::wstring& said = settings_.wires[field];
      return said.empty() ? std::wstring(L"0") : said;
    };
    const bool hasFill = request->fields.isTicked(LookupField::fillTick);
    std::array<std::wstring, loadSetupNames.size()> setup = {
        text(Rating::type),
        text(Rating::load),
        text(Rating::units),
        voltage,
        phase,
        text(Rating::frequency),
        text(Rating::speed),
        fla,
        from(WireField::multiplier),
        given(WireField::extra),
        from(WireField::wireStandard),
        from(WireField::metal),
        request->fields.insulationDescription(), // the wire lookup knows an insulation by it
        request->choice.temperature,
        hasLength ? from(WireField::length) : L"0",
        hasLength ? from(WireField::units) : L"",
        circuit.raceway,
        hasLength ? from(WireField::powerFactor) : L"0",
        given(WireField::dropLimit),
        isContinuous ? from(WireField::continuous) : L"0",
        hasFill ? request->fields.text(LookupField::fillRange) : L"",
        hasFill ? request->fields.text(LookupField::fillFactor) : L"0",
        row[SetField::ambient],
        row[SetField::ambient].empty() ? std::wstring(L"0")
                                       : request->fields.text(LookupField::ambientFactor),
        brenvolt::formatShortest(request->input.overallFactor),
        L"",
        L"",
        given(WireField::energyPrice),
        circuit.groundSize,
        std::wstring(circuit.isMotor ? brenvolt::motorControlTitle : brenvolt::loadControlTitle)};
    circuit.data.assign(std::make_move_iterator(setup.begin()), std::make_move_iterator(setup.end()));
  }

  const SetSettings& settings_;
  SetList& list_;
  brenvolt::ZanCircuitCatalog catalogue_;
  std::set<std::size_t> badRows_;
  std::map<std::wstring, Worksheet> worksheets_;
  std::map<std::wstring, bool> unknownColumns_;
  std::map<std::wstring, std::optional<std::wstring>> phases_; ///< by template
  std::map<std::wstring, Standard> standards_;
};

} // namespace

std::wstring SetCircuit::fingerprint() const {
  std::wstring all = brenvolt::formatInt(static_cast<std::int64_t>(number));
  const auto add = [&all](const std::wstring& text) { all += L'\n' + text; };
  for (const std::wstring* text :
       {&tag, &drawingTemplate, &worksheet, &circuit, &type, &configuration, &preset, &wireSize, &groundSize,
        &standardCode, &length, &raceway, &ambient, &sizing, &installation, &location})
    add(*text);
  for (std::size_t place = 0; place < data.size(); ++place)
    add(loadSetupNames[place] + (L'=' + data[place]));
  for (const auto& [code, choices] : options)
    for (const SetOption& option : choices)
      add(code + L'=' + brenvolt::formatInt(option.value));
  for (const std::wstring& text : descriptions)
    add(text);
  if (!fixedSizes.empty()) add(L"wire-size=" + fixedSizes);
  for (const double factor : {scale, componentScale})
    if (factor != 1.0) add(brenvolt::formatShortest(factor));
  return all;
}

std::vector<SetCircuit> resolveRows(const SetSettings& settings, SetList& list) {
  return RowResolver(settings, list).run();
}

} // namespace circuits
