// From what the drawing keeps of a circuit back to a row of a list, and from there as any row is built.
#include "circuits/building/circuit_rebuild.h"

#include "circuits/building/circuit_parts.h"
#include "circuits/building/placed_choices.h"
#include "circuits/building/row_configurations.h"
#include "circuits/reports/drawing_reports.h"
#include "circuits/set/cross_references.h"
#include "circuits/set/numbering.h"
#include "simhost/drawing/circuit_seal.h"
#include "simhost/host/errors.h"
#include "simhost/host/session.h"
#include "simhost/lisp/evaluator.h"
#include "simhost/site/site_workbook.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/plain_number.h"
#include "text/split.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <optional>

namespace circuits {

namespace {

using brenvolt::toUtf8;
using simhost::BadInput;
using simhost::circuitField;
using simhost::DrawingDatabase;
using simhost::EntityNode;

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
constexpr std::array loadColumns = {SetField::kind,    SetField::load,   SetField::units,
                                    SetField::voltage, SetField::phase,  SetField::frequency,
                                    SetField::speed,   SetField::length, SetField::lengthUnits,
                                    SetField::raceway, SetField::ambient};

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

/// A circuit as it is to be built: its row, and its choices as a history file.
struct Plan {
  SetCircuit row;
  std::string history;
  bool hasDrop = false; ///< the row says what the wires come to
};

class Planner final {
public:
  Planner(simhost::SiteRun& run, const RebuildRequest& request, const CircuitObject& circuit)
      : run_(run), request_(request), circuit_(circuit), choices_(singleChoices(request.choices)) {
    if (circuit.fields.empty())
      throw BadInput(
          toUtf8(circuit.name()) +
          ": the drawing does not contain the choices of this circuit; erase it and build a new one");
  }

  /// `copy`: the tag of the circuit that is built beside this one; empty for this one.
  Plan plan(const std::wstring& copy) {
    const CircuitLoad* const meant = meantLoad();
    const bool isNewType = isChosen(SetField::circuit) || isChosen(SetField::type);
    if (isNewType && circuit_.loads.size() > 1)
      throw BadInput(
          toUtf8(circuit_.name()) +
          ": a circuit with several motors or loads keeps its type; erase it and build a new one");
    const bool isOtherCode = isChosen(SetField::standardCode);
    Plan plan;
    ChangedChoices changes;
    for (const CircuitLoad& load : circuit_.loads) {
      if (!isOtherCode && &load != meant) continue;
      const SetCircuit sized = resolved(&load, &load == meant, isOtherCode);
      for (const KvDbHandle symbol : load.symbols)
        changes.loads[symbol.value()] = loadRows(sized);
      plan.hasDrop = circuit_.loads.size() == 1;
      if (plan.hasDrop) plan.row = sized;
    }
    const bool isNewLoad = circuit_.loads.empty() && choosesLoad();
    if (!plan.hasDrop) plan.row = resolved(nullptr, isNewLoad, false);
    if (isNewLoad) changes.newLoad = loadRows(plan.row);
    plan.row.configuration.clear();
    plan.row.sizing = circuitField(circuit_.fields, L"sizing");
    if (!plan.hasDrop) takeWireFacts(plan.row, circuit_, circuit_);
    for (const auto& [code, options] : plan.row.options)
      if (isNewType || isChosen(code)) changes.options[brenvolt::toUpper(code)] = options;
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
  [[nodiscard]] bool isChosen(SetField field) const {
    return isChosen(setFields()[static_cast<std::size_t>(field)].name);
  }
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

  [[nodiscard]] SetCircuit resolved(const CircuitLoad* load, bool isMeant, bool isOtherCode) const {
    SetList list{toUtf8(circuit_.name()), {rowOf(circuit_, load)}, {}};
    SetRow& row = list.rows.front();
    for (const auto& [key, value] : choices_)
      if (isMeant || !isLoadColumn(key)) {
        if (!columnOf(key)) list.codeColumns[brenvolt::toUpper(key)] = key;
        choose(row, key, value);
      }
    row.keepsLoad = load == nullptr && !isMeant;
    SetSettings settings;
    settings.site = request_.site;
    settings.workbook = request_.workbook;
    settings.running = &run_.session();
    // A circuit that no list brought: by the electrical code of the session.
    if (const simhost::lisp::Value code = run_.interpreter().value(L"GBL_qn_electcodestd"); code.isString())
      settings.standardCode = toUtf8(code.asString());
    if (circuitField(circuit_.fields, L"sizing") == L"build") settings.sizing = SetSettings::Sizing::build;
    // Sizes and insulations of one code are not those of another.
    if (load != nullptr && !isOtherCode) settings.wires = wiresOf(*load);
    if (load != nullptr && brenvolt::toInt(setupText(load->params, L"Parallel conductors")) > 1)
      throw BadInput(
          toUtf8(load->tag) + ": its wires run in parallel; change it in the configuration dialog");
    std::vector<SetCircuit> built = resolveRows(settings, list);
    if (built.size() == 1) return std::move(built.front());
    std::string reasons;
    for (const SetFault& fault : list.faults)
      reasons += (reasons.empty() ? "" : "\n") + toUtf8(circuit_.name()) + ": " +
                 (fault.column.empty() ? std::string() : toUtf8(fault.column) + ": ") + toUtf8(fault.reason);
    throw BadInput(reasons);
  }

  [[nodiscard]] std::string historyWith(const SetCircuit& row, const ChangedChoices& changes) const {
    brenvolt::ZanCircuitCatalog list = simhost::readCircuitList(request_.workbook);
    if (!list.readWorksheet(row.worksheet)) throw BadInput(toUtf8(list.error()));
    brenvolt::HistoryFile history;
    if (history.read(brenvolt::historyPathOf(brenvolt::fromUtf8(request_.workbook))) !=
        brenvolt::HistoryFile::State::accepted)
      history.startEmpty(brenvolt::fromUtf8(std::filesystem::path(request_.workbook).filename().string()));
    try {
      putPlacedChoices(
          history, {row.circuit, row.type, row.name}, list.records(), drawingOf(run_), circuit_, changes);
    } catch (const brenvolt::XmlError& error) {
      throw BadInput(toUtf8(row.name) + ": its choices cannot be saved: " + error.what());
    }
    return history.bytes();
  }

  simhost::SiteRun& run_;
  const RebuildRequest& request_;
  const CircuitObject& circuit_;
  Choices choices_;
};

using TerminalNumbers = std::map<std::wstring, std::vector<std::wstring>>;

/// The attributes with the numbers of the circuit's terminals by strip, in drawing order.
std::map<std::wstring, std::vector<KvDbHandle>> terminalsOf(
    const DrawingDatabase& drawing, const std::wstring& id) {
  std::map<std::wstring, std::vector<KvDbHandle>> terminals;
  for (const EntityNode* node = drawing.store().findBlock(drawing.currentSpace())->first; node != nullptr;
       node = node->next) {
    const auto origin = simhost::provenanceOf(node->value);
    if (!origin || origin->circuit != id) continue;
    KvDbHandle number;
    std::wstring strip;
    for (const KvDbHandle handle : node->attributes)
      if (const EntityNode* attribute = drawing.find(handle)) {
        const auto& value = std::get<simhost::Attribute>(attribute->value.shape);
        if (value.tag == L"TERM01") number = handle;
        if (value.tag == L"TAGSTRIP") strip = value.text.text;
      }
    if (!number.isNull()) terminals[strip].push_back(number);
  }
  return terminals;
}

TerminalNumbers numbersOf(const DrawingDatabase& drawing, const std::wstring& id) {
  TerminalNumbers numbers;
  for (const auto& [strip, handles] : terminalsOf(drawing, id))
    for (const KvDbHandle handle : handles)
      numbers[strip].push_back(std::get<simhost::Attribute>(drawing.find(handle)->value.shape).text.text);
  return numbers;
}

/// Where each line of the circuit is before and next, by the line.
std::map<std::wstring, std::wstring> lineReferencesOf(
    const DrawingDatabase& drawing, const std::wstring& id) {
  std::map<std::wstring, std::wstring> references;
  const Netlist netlist = readNetlist(drawing);
  for (const auto& [line, symbol] : lineSymbols(netlist))
    if (const auto origin = simhost::provenanceOf(drawing.find(symbol)->value);
        origin && origin->circuit == id)
      references[line] = attributeText(drawing, symbol, lineReferenceTag);
  return references;
}

/// The lines come from and go to where they did.
void keepLineReferences(
    DrawingDatabase& drawing, const std::wstring& id, const std::map<std::wstring, std::wstring>& former) {
  const Netlist netlist = readNetlist(drawing);
  for (const auto& [line, symbol] : lineSymbols(netlist))
    if (const auto origin = simhost::provenanceOf(drawing.find(symbol)->value);
        origin && origin->circuit == id)
      if (const auto known = former.find(line); known != former.end())
        setAttribute(drawing, symbol, lineReferenceTag, known->second);
}

std::map<std::wstring, int> highestNumbers(const DrawingDatabase& drawing) {
  std::map<std::wstring, int> highest;
  for (const CircuitObject& circuit : circuitsOf(drawing))
    for (const auto& [strip, numbers] : numbersOf(drawing, circuit.id))
      for (const std::wstring& number : numbers)
        highest[strip] = std::max(highest[strip], brenvolt::toInt(number));
  return highest;
}

/// Terminals keep the numbers that they had; further ones go on after the highest of their strip in the drawing.
void keepTerminalNumbers(
    DrawingDatabase& drawing, const std::wstring& id, const TerminalNumbers& former,
    std::map<std::wstring, int> highest) {
  for (const auto& [strip, handles] : terminalsOf(drawing, id))
    for (std::size_t place = 0; place < handles.size(); ++place) {
      const auto known = former.find(strip);
      const bool isKnown = known != former.end() && place < known->second.size();
      simhost::Entity value = drawing.find(handles[place])->value;
      std::get<simhost::Attribute>(value.shape).text.text =
          isKnown ? known->second[place] : brenvolt::formatInt(++highest[strip]);
      drawing.changeEntity(handles[place], std::move(value));
    }
}

KvPoint3d pointOf(const CircuitObject& circuit) {
  const std::vector<std::wstring> parts =
      brenvolt::splitKeepingEmpty(circuitField(circuit.fields, L"point"), L',');
  const std::optional<double> x = parts.size() < 2 ? std::nullopt : brenvolt::plainNumber(parts[0]);
  const std::optional<double> y = parts.size() < 2 ? std::nullopt : brenvolt::plainNumber(parts[1]);
  if (!x || !y)
    throw BadInput(toUtf8(circuit.name()) + ": the drawing does not keep where the circuit was built");
  return {*x, *y, 0.0};
}

/// The site's variables as they were: the circuits that come next are counted as if nothing had been built again.
class SiteVariables final {
public:
  explicit SiteVariables(DrawingDatabase& drawing) : drawing_(drawing) {
    for (const auto& [name, value] : drawing.store().variables())
      if (name.starts_with(L"SITE_")) former_.emplace_back(name, value);
  }
  void restore() {
    for (const auto& [name, value] : former_)
      drawing_.setVariable(name, value);
  }

private:
  DrawingDatabase& drawing_;
  std::vector<std::pair<std::wstring, simhost::VariableValue>> former_;
};

/// What the parent product says of builds, as it was: the scales of this one are not those of the next.
class BuildData final {
public:
  explicit BuildData(simhost::lisp::Interpreter& interpreter)
      : interpreter_(interpreter), former_(interpreter.value(name)) {}
  BuildData(const BuildData&) = delete;
  BuildData& operator=(const BuildData&) = delete;
  ~BuildData() { interpreter_.setValue(name, former_); }

private:
  static constexpr std::wstring_view name = L"GBL_qn_bv_data";
  simhost::lisp::Interpreter& interpreter_;
  simhost::lisp::Value former_;
};

/// All changes of the drawing since, taken back unless they are kept.
class AllOrNothing final {
public:
  explicit AllOrNothing(simhost::UndoLog& log) : log_(log) {
    log_.closeGroup();
    start_ = log_.undoCount();
  }
  AllOrNothing(const AllOrNothing&) = delete;
  AllOrNothing& operator=(const AllOrNothing&) = delete;
  ~AllOrNothing() {
    log_.closeGroup();
    if (isKept_ || log_.undoCount() <= start_) return;
    static_cast<void>(log_.undo(log_.undoCount() - start_));
    log_.forgetUndone();
  }
  void keep() { isKept_ = true; }

private:
  simhost::UndoLog& log_;
  int start_ = 0;
  bool isKept_ = false;
};

void build(
    simhost::SiteRun& run, const RebuildRequest& request, const SetCircuit& row, const std::string& history,
    const KvPoint3d& at) {
  const std::filesystem::path folder =
      std::filesystem::temp_directory_path() / ("brenvolt-" + std::to_string(::getpid()));
  const ConfigurationFolder configurations(folder, request.workbook);
  if (run.run(buildForm(row, configurations.workbookWith(history), at), L"rebuild").isNil())
    throw BadInput(toUtf8(row.name) + ": the build failed; nothing has been changed");
}

/// On the sheet where it is; a drawing without zones has no places to name.
void drawOwnReferences(DrawingDatabase& drawing, const std::wstring& circuit) {
  const SheetZones zones(drawing);
  const Sheet sheet = readSheet(drawing, {});
  if (!zones.exist()) return;
  SymbolPlaces places;
  addSymbolPlaces(places, symbolsOf(drawing, sheet.netlist), sheet.number, zones, {});
  drawReferences(drawing, sheet.netlist, places, circuit);
}

/// The next build continues the circuit, and no other one does when it does not come to that.
class Continued final {
public:
  Continued(simhost::CircuitRecorder& recorder, const std::wstring& circuit) : recorder_(recorder) {
    recorder_.continueCircuit(circuit);
  }
  Continued(const Continued&) = delete;
  Continued& operator=(const Continued&) = delete;
  ~Continued() { recorder_.continueCircuit({}); }

private:
  simhost::CircuitRecorder& recorder_;
};

} // namespace

DrawingDatabase& drawingOf(simhost::SiteRun& run) {
  return run.session().documents().current()->drawing();
}

CircuitObject needCircuit(const DrawingDatabase& drawing, const std::wstring& id) {
  for (CircuitObject& circuit : circuitsOf(drawing))
    if (circuit.id == id) return std::move(circuit);
  throw BadInput(toUtf8(id) + ": the drawing has no circuit of this id");
}

void takeSiteVariables(SetCircuit& row, const CircuitObject& circuit, const RebuildRequest& request) {
  const auto text = [&circuit](const wchar_t* name) { return circuitField(circuit.fields, name); };
  for (const auto& [name, scale] :
       {std::pair{L"scale", &row.scale}, {L"component-scale", &row.componentScale}})
    if (const double drawn = brenvolt::toDouble(text(name)); drawn > 0.0) *scale = drawn;
  const auto isChosen = [&request](SetField field) {
    const wchar_t* name = setFields()[static_cast<std::size_t>(field)].name;
    return std::any_of(request.choices.begin(), request.choices.end(), [name](const auto& choice) {
      return brenvolt::equalsOrdinalNoCase(choice.first, name);
    });
  };
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

bool replaceCircuit(
    simhost::SiteRun& run, const CircuitObject& circuit, SetCircuit row,
    const std::function<bool(const SetCircuit&, const KvPoint3d&)>& build,
    const std::function<void(SetCircuit&)>& finishRow) {
  DrawingDatabase& drawing = drawingOf(run);
  const TerminalNumbers terminals = numbersOf(drawing, circuit.id);
  const auto lineReferences = lineReferencesOf(drawing, circuit.id);
  const std::map<std::wstring, int> highest = highestNumbers(drawing);
  SiteVariables variables(drawing);
  const BuildData buildData(run.interpreter());
  AllOrNothing changes(drawing.undoLog());
  eraseCircuit(drawing, circuit);
  {
    const Continued continued(run.session().circuits(), circuit.id);
    if (!build(row, pointOf(circuit))) return false;
  }
  numberContacts(drawing);
  if (const std::wstring tag = circuitField(circuit.fields, L"tag"); !tag.empty()) {
    labelNets(run, drawing, circuit.id);
    keepTerminalNumbers(drawing, circuit.id, terminals, highest);
    keepLineReferences(drawing, circuit.id, lineReferences);
    finishRow(row);
    keepRow(drawing, circuit.id, row, tag);
    drawOwnReferences(drawing, circuit.id);
  }
  simhost::sealCircuit(drawing, circuit.id);
  variables.restore();
  changes.keep();
  return true;
}

std::wstring rebuildWarning(const DrawingDatabase& drawing, const CircuitObject& circuit) {
  const std::optional<bool> isChanged = simhost::isChangedSinceBuilt(drawing, circuit.id);
  if (!isChanged)
    return circuit.name() +
           L": the circuit was drawn again from its choices. The drawing does not say whether it "
           L"had been changed by hand; such changes are lost.";
  if (!*isChanged) return {};
  return circuit.name() + L": the circuit had been changed since it was built. It was drawn again from its "
                          L"choices: what was changed by hand is lost.";
}

void rebuildCircuit(simhost::SiteRun& run, const RebuildRequest& request) {
  const CircuitObject circuit = needCircuit(drawingOf(run), request.circuit);
  const Plan plan = Planner(run, request, circuit).plan({});
  static_cast<void>(replaceCircuit(
      run, circuit, plan.row,
      [&](const SetCircuit& built, const KvPoint3d& at) {
        build(run, request, built, plan.history, at);
        return true;
      },
      [&](SetCircuit& row) {
        if (!plan.hasDrop) takeWireFacts(row, circuit, needCircuit(drawingOf(run), request.circuit));
      }));
}

std::wstring copyCircuit(
    simhost::SiteRun& run, const RebuildRequest& request, const std::wstring& tag, const KvPoint3d& at) {
  DrawingDatabase& drawing = drawingOf(run);
  const CircuitObject circuit = needCircuit(drawing, request.circuit);
  if (!tag.empty() && !findCircuits(circuitsOf(drawing), tag).empty())
    throw BadInput(toUtf8(tag) + ": the drawing has a circuit of this tag already");
  const Plan plan = Planner(run, request, circuit).plan(tag);
  SetCircuit row = plan.row;
  row.tag = tag;
  const auto* last = drawing.variable(L"SITE_CIRCUIT");
  const auto* count = last == nullptr ? nullptr : std::get_if<std::int32_t>(last);
  row.number = count == nullptr ? row.number + 1 : static_cast<std::size_t>(*count) + 1;
  const std::map<std::wstring, int> highest = highestNumbers(drawing);
  const std::vector<CircuitObject> before = circuitsOf(drawing);
  const BuildData buildData(run.interpreter());
  AllOrNothing changes(drawing.undoLog());
  build(run, request, row, plan.history, at);
  numberContacts(drawing);
  std::wstring id;
  for (const CircuitObject& one : circuitsOf(drawing))
    if (std::none_of(before.begin(), before.end(), [&one](const auto& other) { return other.id == one.id; }))
      id = one.id;
  if (!tag.empty()) {
    labelNets(run, drawing, id);
    keepTerminalNumbers(drawing, id, {}, highest);
    keepRow(drawing, id, row, tag);
    drawOwnReferences(drawing, id);
  }
  simhost::sealCircuit(drawing, id);
  changes.keep();
  return id;
}

} // namespace circuits
