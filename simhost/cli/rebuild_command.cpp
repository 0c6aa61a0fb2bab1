// `brenvolt rebuild`: a circuit of a drawing built again in its place with other choices.
#include "circuits/set/numbering.h"
#include "simhost/cli/circuit_choice.h"
#include "simhost/cli/set_history.h"
#include "simhost/cli/set_parts.h"
#include "simhost/cli/site_workbook.h"
#include "simhost/cli/subcommand.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/host/errors.h"
#include "simhost/host/session.h"
#include "simhost/ui/scripted_windows.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using circuits::CircuitObject;
using circuits::SetField;
using circuits::SetRow;

struct RebuildOptions {
  std::string drawing;
  std::string circuit;
  std::vector<std::string> changes;
  SiteWorkbookOptions site;
  std::string out;
  std::string module;
};

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

/// What the circuit was built from, as a row of a list.
SetRow rowOf(const CircuitObject& circuit) {
  SetRow row;
  const auto field = [&circuit](const wchar_t* name) { return circuitField(circuit.fields, name); };
  cellOf(row, SetField::tag) = circuit.name();
  cellOf(row, SetField::circuit) = field(L"circuit");
  cellOf(row, SetField::type) = field(L"type");
  // The data that the circuit has now says more than the configuration that it was first built from.
  if (circuit.params.empty()) cellOf(row, SetField::configuration) = field(L"configuration");
  cellOf(row, SetField::standardCode) = field(L"standard-code");
  cellOf(row, SetField::raceway) = field(L"raceway");
  if (const std::wstring length = field(L"length"); !length.empty()) {
    const std::size_t blank = length.find(L' ');
    cellOf(row, SetField::length) = length.substr(0, blank);
    if (blank != std::wstring::npos) cellOf(row, SetField::lengthUnits) = length.substr(blank + 1);
  }
  const std::vector<std::wstring> params = brenvolt::splitKeepingEmpty(circuit.params, L';');
  for (const auto& [target, place] : loadPlaces)
    if (static_cast<std::size_t>(place) < params.size())
      cellOf(row, target) = brenvolt::trim(params[static_cast<std::size_t>(place)]);
  row.codes = codesOf(field(L"codes"));
  return row;
}

/// "load=15", "DISC=20,1", "DISC=Fusible switch;Nontime delay".
void change(SetRow& row, const std::string& text) {
  const std::wstring wide = fromUtf8(text);
  const std::size_t equals = wide.find(L'=');
  const std::wstring key = brenvolt::trim(wide.substr(0, equals));
  if (equals == std::wstring::npos || key.empty())
    throw BadInput("--set: \"" + text + "\" must be KEY=VALUE, such as load=15");
  std::wstring value = brenvolt::trim(wide.substr(equals + 1));
  for (const circuits::SetFieldRow& field : circuits::setFields())
    if (brenvolt::equalsOrdinalNoCase(field.name, key)) {
      if (field.field == SetField::tag)
        throw BadInput("--set: a circuit that is built again keeps its tag; copy it for another one");
      cellOf(row, field.field) = std::move(value);
      return;
    }
  const auto known = std::find_if(row.codes.begin(), row.codes.end(), [&key](const auto& code) {
    return brenvolt::equalsOrdinalNoCase(code.first, key);
  });
  if (known == row.codes.end())
    row.codes.emplace_back(brenvolt::toUpper(key), std::move(value));
  else
    known->second = std::move(value);
}

SetCircuit resolved(
    const RebuildOptions& options, const CircuitObject& circuit, const SetSettings& settings) {
  circuits::SetList list{toUtf8(circuit.name()), {rowOf(circuit)}, {}, {}};
  SetRow& row = list.rows.front();
  for (const std::string& text : options.changes)
    change(row, text);
  std::vector<SetCircuit> built = resolveRows(settings, list);
  if (built.size() == 1) return std::move(built.front());
  std::string reasons;
  for (const circuits::SetFault& fault : list.faults)
    reasons += (reasons.empty() ? "" : "\n") + toUtf8(circuit.name()) + ": " +
               (fault.column.empty() ? std::string() : toUtf8(fault.column) + ": ") + toUtf8(fault.reason);
  throw BadInput(reasons);
}

/// The numbers of the circuit's terminals by strip, in drawing order, and the attributes that hold them.
std::map<std::wstring, std::vector<KvDbHandle>> terminalsOf(
    const DrawingDatabase& drawing, const std::wstring& id) {
  std::map<std::wstring, std::vector<KvDbHandle>> terminals;
  for (const EntityNode* node = drawing.store().findBlock(drawing.currentSpace())->first; node != nullptr;
       node = node->next) {
    const auto origin = provenanceOf(node->value);
    if (!origin || origin->circuit != id) continue;
    KvDbHandle number;
    std::wstring strip;
    for (const KvDbHandle handle : node->attributes)
      if (const EntityNode* attribute = drawing.find(handle)) {
        const auto& value = std::get<Attribute>(attribute->value.shape);
        if (value.tag == L"TERM01") number = handle;
        if (value.tag == L"TAGSTRIP") strip = value.text.text;
      }
    if (!number.isNull()) terminals[strip].push_back(number);
  }
  return terminals;
}

std::wstring textOf(const DrawingDatabase& drawing, KvDbHandle attribute) {
  return std::get<Attribute>(drawing.find(attribute)->value.shape).text.text;
}

using TerminalNumbers = std::map<std::wstring, std::vector<std::wstring>>;

TerminalNumbers numbersOf(const DrawingDatabase& drawing, const std::wstring& id) {
  TerminalNumbers numbers;
  for (const auto& [strip, handles] : terminalsOf(drawing, id))
    for (const KvDbHandle handle : handles)
      numbers[strip].push_back(textOf(drawing, handle));
  return numbers;
}

/// Terminals keep the numbers that they had; further ones go on after the highest of the drawing.
void keepTerminalNumbers(
    DrawingDatabase& drawing, const std::wstring& id, const TerminalNumbers& former, int highest) {
  for (const auto& [strip, handles] : terminalsOf(drawing, id))
    for (std::size_t place = 0; place < handles.size(); ++place) {
      const auto known = former.find(strip);
      const bool isKnown = known != former.end() && place < known->second.size();
      Entity value = drawing.find(handles[place])->value;
      std::get<Attribute>(value.shape).text.text =
          isKnown ? known->second[place] : brenvolt::formatInt(++highest);
      drawing.changeEntity(handles[place], std::move(value));
    }
}

int highestTerminal(const DrawingDatabase& drawing) {
  int highest = 0;
  for (const circuits::CircuitObject& circuit : circuits::circuitsOf(drawing))
    for (const auto& [strip, numbers] : numbersOf(drawing, circuit.id))
      for (const std::wstring& number : numbers)
        highest = std::max(highest, brenvolt::toInt(number));
  return highest;
}

KvPoint3d pointOf(const CircuitObject& circuit) {
  const std::vector<std::wstring> parts =
      brenvolt::splitKeepingEmpty(circuitField(circuit.fields, L"point"), L',');
  if (parts.size() < 2) throw BadInput("the drawing does not keep where the circuit was built");
  return {brenvolt::toDouble(parts[0]), brenvolt::toDouble(parts[1]), 0.0};
}

/// What the site knew of the circuit by variables of the drawing when it was built.
void takeSiteVariables(SetCircuit& row, const CircuitObject& circuit) {
  const auto text = [&circuit](const wchar_t* name) { return circuitField(circuit.fields, name); };
  row.number = static_cast<std::size_t>(std::max(brenvolt::toInt(text(L"SITE_CIRCUIT")), 1));
  row.tag = text(L"SITE_TAG");
  row.installation = text(L"SITE_INST");
  row.location = text(L"SITE_LOC");
  row.descriptions = {text(L"SITE_DESC1"), text(L"SITE_DESC2"), text(L"SITE_DESC3")};
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
  std::vector<std::pair<std::wstring, VariableValue>> former_;
};

ExitCode runRebuild(const RebuildOptions& options) {
  SetSettings settings{options.site.site, options.site.path()};
  std::optional<CircuitObject> circuit;
  {
    const LoadedDrawing loaded = loadDrawing(fromUtf8(options.drawing));
    if (loaded.drawing == nullptr) throw BadInput(toUtf8(loaded.error));
    circuit =
        chosenCircuit(circuits::circuitsOf(*loaded.drawing), "--circuit", options.circuit, options.drawing);
  }
  if (circuit->fields.empty())
    throw BadInput("--circuit: " + options.drawing + " does not keep what the circuit was built from");
  SetCircuit row = resolved(options, *circuit, settings);
  takeSiteVariables(row, *circuit);

  ScriptedWindows windows(refusals(1), "a circuit is built again without questions");
  SiteRun site(
      {options.site.site,
       options.drawing,
       {},
       options.module,
       {},
       SiteRunOptions::UnnamedSettings::memory,
       {}},
      windows);
  DrawingDatabase& drawing = site.session().documents().current()->drawing();
  const TerminalNumbers terminals = numbersOf(drawing, circuit->id);
  const int highest = highestTerminal(drawing);
  SiteVariables variables(drawing);
  circuits::eraseCircuit(drawing, *circuit);
  site.session().circuits().continueCircuit(circuit->id);
  const std::string folder =
      (std::filesystem::temp_directory_path() / ("brenvolt-" + std::to_string(::getpid()))).string();
  const ConfigurationFolder configurations(folder, settings.workbook);
  if (site.run(buildForm(row, configurations.workbookFor(row), pointOf(*circuit)), L"rebuild").isNil())
    throw BadInput(options.circuit + ": the build failed; nothing has been changed");
  circuits::numberContacts(drawing);
  const bool isOfList = !circuitField(circuit->fields, L"tag").empty();
  if (isOfList) {
    labelNets(site, drawing, circuit->id);
    keepTerminalNumbers(drawing, circuit->id, terminals, highest);
    keepRow(drawing, circuit->id, row, circuitField(circuit->fields, L"tag"));
  }
  variables.restore();
  const std::string& out = options.out.empty() ? options.drawing : options.out;
  if (const Fault fault = saveDrawing(drawing, fromUtf8(out))) throw CannotWrite(toUtf8(*fault));
  std::fprintf(
      stderr, "brenvolt: %s: built again; what was changed by hand in this circuit is gone\n",
      options.circuit.c_str());
  return ExitCode::done;
}

} // namespace

CommandTable rebuildCommand() {
  auto options = std::make_shared<RebuildOptions>();
  return {
      .name = "rebuild",
      .description = "build a circuit of a drawing again in its place, with other choices",
      .options = joinedRows(
          {{{"DRAWING", &options->drawing, "The drawing", "FILE", {.isRequired = true}},
            {"--circuit",
             &options->circuit,
             "The circuit, by its id or tag",
             "CIRCUIT",
             {.isRequired = true}},
            {"--set", &options->changes, "A choice: load=15, length=80, DISC=20,1; may be given again",
             "KEY=VALUE"}},
           options->site.rows(),
           {{"--out", &options->out, "Write the changed drawing here instead of over the old one", "FILE"},
            {"--module", &options->module, "The plug-in, else ZanBrenvolt.kvx beside the program", "FILE"}}}),
      .footer = "What was changed by hand in the circuit is lost; the keys of --set are the columns of a "
                "motor list and "
                "the CODEs of the worksheet.",
      .run = [options] { return runRebuild(*options); },
  };
}

} // namespace simhost
