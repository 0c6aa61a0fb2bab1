// From what the drawing keeps of a circuit back to a row of a list.
#include "circuits/building/rebuild_plan.h"

#include "circuits/building/placed_choices.h"
#include "circuits/building/row_configurations.h"
#include "circuits/provenance/load_data.h"
#include "simhost/host/errors.h"
#include "simhost/site/code_standard.h"
#include "simhost/site/site_workbook.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace circuits {

namespace {

using brenvolt::toUtf8;
using simhost::BadInput;
using simhost::circuitField;

/// Motor or load data by the place that the parent product keeps it at.
constexpr std::array loadPlaces = {std::pair{SetField::kind, 0},  std::pair{SetField::load, 1},
                                   std::pair{SetField::units, 2}, std::pair{SetField::voltage, 3},
                                   std::pair{SetField::phase, 4}, std::pair{SetField::frequency, 5},
                                   std::pair{SetField::speed, 6}};

std::wstring& cellOf(SetRow& row, SetField field) {
  return row.texts[static_cast<std::size_t>(field)];
}

/// The choices by CODE that the drawing keeps; a group without a choice has none.
std::vector<std::pair<std::wstring, std::wstring>> codesOf(const std::wstring& text) {
  std::vector<std::pair<std::wstring, std::wstring>> codes;
  for (const std::wstring& part : brenvolt::splitSkippingEmpty(text, L';')) {
    const std::size_t equals = part.find(L'=');
    const std::wstring values = equals == std::wstring::npos ? std::wstring() : part.substr(equals + 1);
    if (!values.empty() && values.find(L'-') == std::wstring::npos)
      codes.emplace_back(part.substr(0, equals), values);
  }
  return codes;
}

using Choices = std::vector<std::pair<std::wstring, std::wstring>>;

/// The columns that say which motor or load one is and what sizes its wires.
constexpr std::array loadColumns = {SetField::kind,    SetField::load,    SetField::units,
                                    SetField::voltage, SetField::phase,   SetField::frequency,
                                    SetField::speed,   SetField::length,  SetField::lengthUnits,
                                    SetField::raceway, SetField::ambient, SetField::wireSize};

std::optional<SetField> columnOf(const std::wstring& key) {
  for (const SetFieldRow& field : setFields())
    if (brenvolt::equalsOrdinalNoCase(field.name, key)) return field.field;
  return std::nullopt;
}

bool isLoadColumn(const std::wstring& key) {
  const std::optional<SetField> column = columnOf(key);
  return column && std::find(loadColumns.begin(), loadColumns.end(), *column) != loadColumns.end();
}

/// The part of a range after "~": a dialog keeps "36~40C" where a list says 40C.
std::wstring upperEnd(const std::wstring& range) {
  return range.substr(range.find(L'~') + 1);
}

/// The sizes that the designer fixed, one for each motor or load; a wire that was changed since has none.
std::vector<std::wstring> fixedSizesOf(const CircuitObject& circuit) {
  const std::vector<std::wstring> kept =
      brenvolt::splitKeepingEmpty(circuitField(circuit.fields, L"wire-size"), L';');
  std::vector<std::wstring> sizes;
  for (const CircuitLoad& load : circuit.loads) {
    const std::wstring& size = kept[std::min(sizes.size(), kept.size() - 1)];
    const std::vector<std::wstring> wires = wireTexts(load.wires);
    const bool isDrawn = !wires.empty() && brenvolt::equalsOrdinalNoCase(wires.front(), size);
    sizes.push_back(isDrawn ? size : std::wstring());
  }
  return sizes;
}

/// What the circuit was built from, as a row of a list; `load` is the motor or load that the row is about.
SetRow rowOf(const CircuitObject& circuit, const CircuitLoad* load) {
  SetRow row;
  const auto field = [&circuit](const wchar_t* name) { return circuitField(circuit.fields, name); };
  cellOf(row, SetField::tag) = circuit.name();
  cellOf(row, SetField::circuit) = field(L"circuit");
  cellOf(row, SetField::type) = field(L"type");
  cellOf(row, SetField::standardCode) = field(L"standard-code");
  row.codes = codesOf(field(L"codes"));
  if (load == nullptr) return row;
  const std::vector<std::wstring> params = brenvolt::splitKeepingEmpty(load->params, L';');
  for (const auto& [target, place] : loadPlaces)
    if (static_cast<std::size_t>(place) < params.size())
      cellOf(row, target) = brenvolt::trim(params[static_cast<std::size_t>(place)]);
  if (const std::wstring length = setupText(load->params, L"Wire length"); brenvolt::toDouble(length) > 0.0) {
    cellOf(row, SetField::length) = length;
    cellOf(row, SetField::lengthUnits) = setupText(load->params, L"Length units");
    cellOf(row, SetField::raceway) = setupText(load->params, L"Raceway");
  }
  if (brenvolt::toDouble(setupText(load->params, L"Ambient correction factor")) > 0.0)
    cellOf(row, SetField::ambient) = upperEnd(setupText(load->params, L"Ambient temperature"));
  cellOf(row, SetField::wireSize) =
      fixedSizesOf(circuit)[static_cast<std::size_t>(load - circuit.loads.data())];
  return row;
}

/// How its wires were chosen: what the user chose in a dialog counts when they are sized again, too.
simhost::WireTexts wiresOf(const CircuitLoad& load) {
  using simhost::WireField;
  simhost::WireTexts texts;
  const auto text = [&load](std::wstring_view name) { return setupText(load.params, name); };
  for (const auto& [field, name] :
       {std::pair{WireField::wireStandard, L"Wire size standard"},
        std::pair{WireField::metal, L"Conductor metal"}, std::pair{WireField::insulation, L"Insulation"}})
    texts[field] = text(name);
  texts.temperature = text(L"Temperature rating");
  for (const auto& [field, name] :
       {std::pair{WireField::multiplier, L"Multiplier"},
        std::pair{WireField::extra, L"Additional current (A)"},
        std::pair{WireField::powerFactor, L"Power factor"},
        std::pair{WireField::dropLimit, L"Voltage drop limit (%)"},
        std::pair{WireField::continuous, L"Continuous load factor"},
        std::pair{WireField::energyPrice, L"Energy price"}})
    if (brenvolt::toDouble(text(name)) > 0.0) texts[field] = text(name);
  // Data without wires says nothing of the factor.
  if (texts[WireField::continuous].empty() && !texts[WireField::insulation].empty())
    texts[WireField::continuous] = simhost::offText;
  if (brenvolt::toDouble(text(L"Fill correction factor")) > 0.0)
    texts[WireField::fill] = upperEnd(text(L"Conductors in raceway"));
  return texts;
}

/// The option of the value in a group of the CODE; null where it does not have it.
const brenvolt::ZanOption* optionAt(
    const CodeRecords& records, const std::wstring& code, std::size_t group, std::wstring_view value) {
  const auto record = records.find(brenvolt::toUpper(code));
  if (record == records.end() || group >= record->second.groups.size()) return nullptr;
  for (const brenvolt::ZanOption& option : record->second.groups[group].options)
    if (brenvolt::formatInt(option.value) == value) return &option;
  return nullptr;
}

/// "CODE=20,1;CODE=3" without the values that mean something else in `records` than in `former`.
std::wstring commonOptions(const std::wstring& codes, const CodeRecords& former, const CodeRecords& records) {
  std::wstring common;
  for (const std::wstring& part : brenvolt::splitSkippingEmpty(codes, L';')) {
    const std::size_t equals = part.find(L'=');
    if (equals == std::wstring::npos) continue;
    const std::wstring code = part.substr(0, equals);
    std::vector<std::wstring> values = brenvolt::splitKeepingEmpty(part.substr(equals + 1), L',');
    bool isAny = false;
    for (std::size_t group = 0; group < values.size(); ++group) {
      const brenvolt::ZanOption* was = optionAt(former, code, group, values[group]);
      const brenvolt::ZanOption* is = optionAt(records, code, group, values[group]);
      if (was != nullptr && is != nullptr && brenvolt::equalsOrdinalNoCase(was->text, is->text))
        isAny = true;
      else
        values[group] = L"-";
    }
    if (isAny) common += (common.empty() ? L"" : L";") + code + L'=' + brenvolt::join(values, L",");
  }
  return common;
}

/// The cell that is chosen for a column; null for none.
const std::wstring* choiceOf(const Choices& choices, SetField field) {
  const auto choice = std::find_if(
      choices.begin(), choices.end(), [field](const auto& each) { return columnOf(each.first) == field; });
  return choice == choices.end() ? nullptr : &choice->second;
}

void choose(SetRow& row, const std::wstring& key, const std::wstring& value) {
  if (const std::optional<SetField> column = columnOf(key)) {
    if (*column == SetField::tag)
      throw BadInput("tag: a circuit that is built again keeps its tag; copy it for another one");
    if (*column == SetField::configuration)
      throw BadInput("configuration: a circuit that is built again keeps its own choices; name those that "
                     "change, or erase it and build a new one");
    cellOf(row, *column) = value;
    return;
  }
  const auto known = std::find_if(row.codes.begin(), row.codes.end(), [&key](const auto& code) {
    return brenvolt::equalsOrdinalNoCase(code.first, key);
  });
  if (known == row.codes.end())
    row.codes.emplace_back(brenvolt::toUpper(key), value);
  else
    known->second = value;
}

/// Each CODE of the column "options" as a choice of its own.
Choices singleChoices(const Choices& choices) {
  Choices single;
  for (const auto& [key, value] : choices) {
    const bool areSeveral = columnOf(key) == SetField::options;
    for (const std::wstring& part :
         areSeveral ? brenvolt::splitSkippingEmpty(value, L';') : std::vector<std::wstring>{value})
      if (const std::size_t equals = part.find(L'='); areSeveral && equals != std::wstring::npos)
        single.emplace_back(brenvolt::trim(part.substr(0, equals)), part.substr(equals + 1));
      else
        single.emplace_back(key, part);
  }
  return single;
}

class Planner final {
public:
  Planner(simhost::SiteRun& run, const RebuildRequest& request, const CircuitObject& circuit)
      : run_(run), request_(request), circuit_(circuit), choices_(singleChoices(request.choices)),
        isNewType_(isChosen(SetField::circuit) || isChosen(SetField::type)) {
    if (circuit.fields.empty())
      throw BadInput(
          toUtf8(circuit.name()) +
          ": the drawing does not contain the choices of this circuit; erase it and build a new one");
    if (isNewType_) keepCommonOptions();
  }

  RebuildPlan plan(const std::wstring& copy) {
    const CircuitLoad* const meant = meantLoad();
    if (isNewType_ && circuit_.loads.size() > 1)
      throw BadInput(
          toUtf8(circuit_.name()) +
          ": a circuit with several motors or loads keeps its type; erase it and build a new one");
    // Naming the code that the circuit has changes nothing.
    const std::wstring* const standard = choiceOf(choices_, SetField::standardCode);
    const bool isOtherCode =
        standard != nullptr &&
        !brenvolt::equalsOrdinalNoCase(*standard, circuitField(circuit_.fields, L"standard-code"));
    RebuildPlan plan;
    ChangedChoices changes;
    std::vector<std::wstring> fixedSizes = fixedSizesOf(circuit_);
    for (std::size_t place = 0; place < circuit_.loads.size(); ++place) {
      const CircuitLoad& load = circuit_.loads[place];
      if (!isOtherCode && &load != meant) continue;
      const SetCircuit sized = resolved(&load, &load == meant, isOtherCode, plan.findings);
      fixedSizes[place] = sized.fixedSizes;
      for (const KvDbHandle symbol : load.symbols)
        changes.loads[symbol.value()] = loadRows(sized);
      plan.hasDrop = circuit_.loads.size() == 1;
      if (plan.hasDrop) plan.row = sized;
    }
    const bool isNewLoad = circuit_.loads.empty() && choosesLoad();
    if (!plan.hasDrop) plan.row = resolved(nullptr, isNewLoad, false, plan.findings);
    if (isNewLoad)
      changes.newLoad = loadRows(plan.row);
    else if (std::any_of(
                 fixedSizes.begin(), fixedSizes.end(), [](const auto& size) { return !size.empty(); }))
      plan.row.fixedSizes = brenvolt::join(fixedSizes, L";");
    plan.row.sizing = circuitField(circuit_.fields, L"sizing");
    if (!plan.hasDrop) takeWireFacts(plan.row, circuit_, circuit_);
    for (const auto& [code, options] : plan.row.options)
      if (isNewType_ || isChosen(code)) changes.options[brenvolt::toUpper(code)] = options;
    takeSiteVariables(plan.row, circuit_, request_);
    plan.row.name = !copy.empty() ? copy : circuitField(circuit_.fields, L"configuration");
    if (plan.row.name.empty()) plan.row.name = circuit_.name().empty() ? plan.row.circuit : circuit_.name();
    plan.history = historyWith(plan.row, changes);
    return plan;
  }

private:
  [[nodiscard]] bool isChosen(std::wstring_view key) const {
    return std::any_of(choices_.begin(), choices_.end(), [key](const auto& choice) {
      return brenvolt::equalsOrdinalNoCase(choice.first, key);
    });
  }
  [[nodiscard]] bool isChosen(SetField field) const { return choiceOf(choices_, field) != nullptr; }
  [[nodiscard]] bool choosesLoad() const {
    return std::any_of(
        choices_.begin(), choices_.end(), [](const auto& choice) { return isLoadColumn(choice.first); });
  }

  /// The motor or load that the choices change; null where they change none.
  [[nodiscard]] const CircuitLoad* meantLoad() const {
    if (!choosesLoad() || circuit_.loads.empty()) return nullptr;
    if (circuit_.loads.size() == 1) return &circuit_.loads.front();
    std::vector<const CircuitLoad*> named;
    std::wstring tags;
    for (const CircuitLoad& load : circuit_.loads) {
      if (brenvolt::equalsOrdinalNoCase(load.tag, request_.load)) named.push_back(&load);
      tags += (tags.empty() ? L"" : L", ") + load.tag;
    }
    if (named.size() == 1) return named.front();
    throw BadInput(
        toUtf8(circuit_.name()) +
        ": the circuit has several motors or loads: name the one that changes by its tag, " + toUtf8(tags));
  }

  [[nodiscard]] SetCircuit resolved(
      const CircuitLoad* load, bool isMeant, bool isOtherCode, std::vector<std::string>& findings) const {
    SetList list{toUtf8(circuit_.name()), {rowOf(circuit_, load)}, {}};
    SetRow& row = list.rows.front();
    if (std::wstring& size = cellOf(row, SetField::wireSize); isOtherCode && !size.empty()) {
      if (!isMeant || !isChosen(SetField::wireSize))
        findings.push_back(
            toUtf8(load->tag) + ": wire-size: " + toUtf8(size) +
            " was fixed by the tables of the other code; the proposed size is taken");
      size.clear();
    }
    for (const auto& [key, value] : choices_)
      if (isMeant || !isLoadColumn(key)) {
        if (!columnOf(key)) list.codeColumns[brenvolt::toUpper(key)] = key;
        choose(row, key, value);
      }
    // A type that needs a motor or load cannot keep the one of a circuit without one.
    row.keepsLoad = load == nullptr && !isMeant && !(isNewType_ && circuit_.loads.empty());
    if (row.keepsLoad && isNewType_)
      cellOf(row, SetField::phase) = setupText(circuit_.loads.front().params, L"Phase");
    SetSettings settings;
    settings.site = request_.site;
    settings.workbook = request_.workbook;
    settings.running = &run_.session();
    // A circuit that no list brought: by the electrical code of the session.
    if (const std::wstring code = simhost::sessionStandard(run_.interpreter()); !code.empty())
      settings.standardCode = toUtf8(code);
    if (circuitField(circuit_.fields, L"sizing") == L"build") settings.sizing = SetSettings::Sizing::build;
    // Sizes and insulations of one code are not those of another.
    if (load != nullptr && !isOtherCode) settings.wires = wiresOf(*load);
    if (load != nullptr && brenvolt::toInt(setupText(load->params, L"Parallel conductors")) > 1)
      throw BadInput(
          toUtf8(load->tag) + ": its wires run in parallel; change it in the configuration dialog");
    std::vector<SetCircuit> built = resolveRows(settings, list);
    const auto textOf = [this](const SetFault& fault) {
      return toUtf8(circuit_.name()) + ": " +
             (fault.column.empty() ? std::string() : toUtf8(fault.column) + ": ") + toUtf8(fault.reason);
    };
    for (const SetFault& finding : list.findings)
      findings.push_back(textOf(finding));
    if (built.size() == 1) return std::move(built.front());
    std::string reasons;
    for (const SetFault& fault : list.faults)
      reasons += (reasons.empty() ? "" : "\n") + textOf(fault);
    throw BadInput(reasons);
  }

  /// An option stays where the other type has the same one: a value of another meaning is not it. The rest are as the
  /// other type has them from the start.
  void keepCommonOptions() {
    const auto chosen = [this](SetField field, std::wstring_view own) {
      const std::wstring* choice = choiceOf(choices_, field);
      return choice == nullptr ? circuitField(circuit_.fields, own) : *choice;
    };
    const brenvolt::ZanCircuitCatalog list = simhost::readCircuitList(request_.workbook);
    const brenvolt::ZanCircuitEntry* type =
        list.findEntry(chosen(SetField::circuit, L"circuit"), chosen(SetField::type, L"type"));
    if (type == nullptr) return; // reported with the row
    const CodeRecords former = recordsOf(list, circuitField(circuit_.fields, L"worksheet"));
    const CodeRecords records = recordsOf(list, type->worksheet);
    for (auto& [name, text] : circuit_.fields)
      if (name == L"codes") text = commonOptions(text, former, records);
  }

  static CodeRecords recordsOf(const brenvolt::ZanCircuitCatalog& list, const std::wstring& worksheet) {
    brenvolt::ZanCircuitCatalog sheet(list.workbook);
    return sheet.readWorksheet(worksheet) ? sheet.records() : CodeRecords();
  }

  /// A motor stays a motor, and what has one does not lose it.
  void needSameControl(const CodeRecords& records) const {
    if (!isNewType_ || circuit_.loads.empty()) return;
    const bool isLoad = setupText(circuit_.loads.front().params, L"Control") == brenvolt::loadControlTitle;
    const std::wstring_view title = isLoad ? brenvolt::loadControlTitle : brenvolt::motorControlTitle;
    const bool asks = std::any_of(records.begin(), records.end(), [title](const auto& record) {
      const brenvolt::ZanOptionGroup* group = record.second.controlGroup();
      return group != nullptr && brenvolt::equalsCollating(group->title, title);
    });
    if (!asks)
      throw BadInput(
          toUtf8(circuit_.name()) + ": type: a circuit of this type has no " + (isLoad ? "load" : "motor") +
          ", and the circuit has one; erase it and build a new one");
  }

  [[nodiscard]] std::string historyWith(const SetCircuit& row, const ChangedChoices& changes) const {
    brenvolt::ZanCircuitCatalog list = simhost::readCircuitList(request_.workbook);
    if (!list.readWorksheet(row.worksheet)) throw BadInput(toUtf8(list.error()));
    needSameControl(list.records());
    const brenvolt::HistoryKey key{row.circuit, row.type, row.name};
    brenvolt::HistoryFile history = emptyHistory(request_.workbook);
    // Scales and parts of the configuration that it was built from; another one of its name has nothing to do with it.
    const auto own = [this](std::wstring_view name) { return circuitField(circuit_.fields, name); };
    if (own(L"circuit") == row.circuit && own(L"type") == row.type) {
      const brenvolt::HistoryFile site = siteHistory(request_.workbook);
      const brenvolt::XmlElement former = site.find({row.circuit, row.type, own(L"configuration")}).history;
      if (!former.isNull()) history.put(key, former);
    }
    putPlacedChoices(history, key, list.records(), drawingOf(run_), circuit_, changes);
    return history.bytes();
  }

  simhost::SiteRun& run_;
  const RebuildRequest& request_;
  CircuitObject circuit_;
  Choices choices_;
  bool isNewType_;
};

} // namespace

simhost::DrawingDatabase& drawingOf(simhost::SiteRun& run) {
  return run.session().documents().current()->drawing();
}

RebuildPlan planRebuild(
    simhost::SiteRun& run, const RebuildRequest& request, const CircuitObject& circuit,
    const std::wstring& copy) {
  return Planner(run, request, circuit).plan(copy);
}

void takeSiteVariables(SetCircuit& row, const CircuitObject& circuit, const RebuildRequest& request) {
  const auto text = [&circuit](const wchar_t* name) { return circuitField(circuit.fields, name); };
  for (const auto& [name, scale] :
       {std::pair{L"scale", &row.scale}, {L"component-scale", &row.componentScale}})
    if (const double drawn = brenvolt::toDouble(text(name)); drawn > 0.0) *scale = drawn;
  const auto isChosen = [&request](SetField field) { return choiceOf(request.choices, field) != nullptr; };
  row.number = static_cast<std::size_t>(std::max(brenvolt::toInt(text(L"SITE_CIRCUIT")), 1));
  row.tag = text(L"SITE_TAG");
  if (!isChosen(SetField::installation)) row.installation = text(L"SITE_INST");
  if (!isChosen(SetField::location)) row.location = text(L"SITE_LOC");
  constexpr std::array descriptions = {
      std::pair{SetField::description1, L"SITE_DESC1"}, std::pair{SetField::description2, L"SITE_DESC2"},
      std::pair{SetField::description3, L"SITE_DESC3"}};
  for (std::size_t place = 0; place < descriptions.size(); ++place)
    if (!isChosen(descriptions[place].first)) row.descriptions[place] = text(descriptions[place].second);
}

void takeWireFacts(SetCircuit& row, const CircuitObject& before, const CircuitObject& now) {
  const auto text = [&now](std::wstring_view name) { return setupText(now.params, name); };
  if (brenvolt::toDouble(text(L"Wire length")) > 0.0)
    row.length = text(L"Wire length") + L" " + text(L"Length units");
  row.raceway = text(L"Raceway");
  row.ambient = text(L"Ambient temperature");
  const bool isSame = std::equal(
      before.loads.begin(), before.loads.end(), now.loads.begin(), now.loads.end(),
      [](const CircuitLoad& one, const CircuitLoad& other) {
        return one.params == other.params && one.wires == other.wires;
      });
  row.drop = isSame ? circuitField(before.fields, L"drop") : std::wstring();
}

} // namespace circuits
