// Building from the plan as any row of a list is built, in the place of what was there.
#include "circuits/building/circuit_rebuild.h"

#include "circuits/building/circuit_parts.h"
#include "circuits/building/row_configurations.h"
#include "circuits/reports/drawing_reports.h"
#include "circuits/set/cross_references.h"
#include "circuits/set/numbering.h"
#include "simhost/drawing/circuit_seal.h"
#include "simhost/host/errors.h"
#include "simhost/host/session.h"
#include "simhost/lisp/evaluator.h"
#include "simhost/site/code_standard.h"
#include "text/encoding.h"
#include "text/numbers.h"

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
  if (const std::optional<KvPoint3d> point = simhost::circuitPoint(circuit.fields)) return *point;
  throw BadInput(toUtf8(circuit.name()) + ": the drawing does not keep where the circuit was built");
}

/// The site's variables as they were: the circuits that come next are counted as if nothing had been built again.
class SiteVariables final {
public:
  explicit SiteVariables(DrawingDatabase& drawing) : drawing_(drawing) {
    for (const auto& [name, value] : drawing.store().variables())
      if (name.starts_with(L"SITE_")) former_.emplace_back(name, value);
  }
  void restore() {
    // One that the build was the first to set is empty, which is the same as not set.
    std::vector<std::wstring> added;
    for (const auto& [name, value] : drawing_.store().variables())
      if (name.starts_with(L"SITE_") && isNew(name)) added.push_back(name);
    for (const std::wstring& name : added)
      if (name != circuitNumber) drawing_.setVariable(name, std::wstring());
    for (const auto& [name, value] : former_)
      drawing_.setVariable(name, value);
  }
  /// All but the number of the last circuit: there is one more.
  void restoreAfterNewCircuit() {
    std::erase_if(former_, [](const auto& variable) { return variable.first == circuitNumber; });
    restore();
  }

private:
  [[nodiscard]] bool isNew(const std::wstring& name) const {
    return std::none_of(
        former_.begin(), former_.end(), [&name](const auto& variable) { return variable.first == name; });
  }

  static constexpr std::wstring_view circuitNumber = L"SITE_CIRCUIT";
  DrawingDatabase& drawing_;
  std::vector<std::pair<std::wstring, simhost::VariableValue>> former_;
};

/// What the parent product says of builds, as it was: scales and electrical code of this one are not those of the next.
class BuildData final {
public:
  explicit BuildData(simhost::lisp::Interpreter& interpreter) : interpreter_(interpreter) {
    for (std::size_t place = 0; place < names.size(); ++place)
      former_[place] = interpreter.value(names[place]);
  }
  BuildData(const BuildData&) = delete;
  BuildData& operator=(const BuildData&) = delete;
  ~BuildData() {
    for (std::size_t place = 0; place < names.size(); ++place)
      interpreter_.setValue(names[place], former_[place]);
  }

private:
  static constexpr std::array<std::wstring_view, 2> names = {L"GBL_qn_bv_data", simhost::codeStandardSymbol};
  simhost::lisp::Interpreter& interpreter_;
  std::array<simhost::lisp::Value, names.size()> former_;
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

/// The build read its choices from a history file of its own, under a name that the site may give to another configuration.
void keepConfiguration(DrawingDatabase& drawing, const std::wstring& id, const CircuitObject& former) {
  setConfiguration(drawing, id, circuitField(former.fields, L"configuration"));
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

void setConfiguration(DrawingDatabase& drawing, const std::wstring& id, const std::wstring& name) {
  constexpr std::wstring_view key = L"configuration";
  simhost::CircuitFields fields = drawing.store().circuits().at(id);
  for (auto& [known, text] : fields)
    if (known == key) text = name;
  std::erase_if(fields, [&](const auto& field) { return field.first == key && name.empty(); });
  drawing.putCircuit(id, std::move(fields));
}

CircuitObject needCircuit(const DrawingDatabase& drawing, const std::wstring& id) {
  for (CircuitObject& circuit : circuitsOf(drawing))
    if (circuit.id == id) return std::move(circuit);
  throw BadInput(toUtf8(id) + ": the drawing has no circuit of this id");
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
  const Netlist netlist = readNetlist(drawing);
  numberContacts(drawing, netlist);
  if (const std::wstring tag = circuitField(circuit.fields, L"tag"); !tag.empty()) {
    labelNets(run, drawing, netlist, circuit.id);
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

std::vector<std::string> rebuildCircuit(simhost::SiteRun& run, const RebuildRequest& request) {
  const CircuitObject circuit = needCircuit(drawingOf(run), request.circuit);
  const RebuildPlan plan = planRebuild(run, request, circuit, {});
  static_cast<void>(replaceCircuit(
      run, circuit, plan.row,
      [&](const SetCircuit& built, const KvPoint3d& at) {
        build(run, request, built, plan.history, at);
        keepConfiguration(drawingOf(run), request.circuit, circuit);
        return true;
      },
      [&](SetCircuit& row) {
        if (!plan.hasDrop) takeWireFacts(row, circuit, needCircuit(drawingOf(run), request.circuit));
      }));
  return plan.findings;
}

CopiedCircuit copyCircuit(
    simhost::SiteRun& run, const RebuildRequest& request, const std::wstring& tag, const KvPoint3d& at) {
  DrawingDatabase& drawing = drawingOf(run);
  const CircuitObject circuit = needCircuit(drawing, request.circuit);
  if (!tag.empty() && !findCircuits(circuitsOf(drawing), tag).empty())
    throw BadInput(toUtf8(tag) + ": the drawing has a circuit of this tag already");
  const RebuildPlan plan = planRebuild(run, request, circuit, tag);
  SetCircuit row = plan.row;
  row.tag = tag;
  const auto* last = drawing.variable(L"SITE_CIRCUIT");
  const auto* count = last == nullptr ? nullptr : std::get_if<std::int32_t>(last);
  row.number = count == nullptr ? row.number + 1 : static_cast<std::size_t>(*count) + 1;
  const std::map<std::wstring, int> highest = highestNumbers(drawing);
  const std::vector<CircuitObject> before = circuitsOf(drawing);
  SiteVariables variables(drawing);
  const BuildData buildData(run.interpreter());
  AllOrNothing changes(drawing.undoLog());
  build(run, request, row, plan.history, at);
  const Netlist netlist = readNetlist(drawing);
  numberContacts(drawing, netlist);
  std::wstring id;
  for (const CircuitObject& one : circuitsOf(drawing))
    if (std::none_of(before.begin(), before.end(), [&one](const auto& other) { return other.id == one.id; }))
      id = one.id;
  if (tag.empty()) {
    keepConfiguration(drawing, id, circuit);
  } else {
    labelNets(run, drawing, netlist, id);
    keepTerminalNumbers(drawing, id, {}, highest);
    keepRow(drawing, id, row, tag);
    drawOwnReferences(drawing, id);
  }
  simhost::sealCircuit(drawing, id);
  variables.restoreAfterNewCircuit();
  changes.keep();
  return {std::move(id), plan.findings};
}

} // namespace circuits
