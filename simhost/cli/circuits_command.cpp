// `brenvolt circuits`: the circuits of a drawing as objects: listed with what they were built from, moved or erased
// whole.
#include "circuits/provenance/circuit_objects.h"
#include "simhost/cli/circuit_choice.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/host/errors.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using circuits::CircuitObject;

struct CircuitsOptions {
  std::string drawing;
  std::string erase;
  std::string move;
  std::vector<double> by;
  std::string out;
  OutputOptions output;
};

std::wstring joined(const std::vector<std::wstring>& texts) {
  std::wstring all;
  for (const std::wstring& text : texts)
    all += (all.empty() ? L"" : L" ") + text;
  return all;
}

/// What the drawing keeps of a build, in the order in which a list shows it.
constexpr std::wstring_view shownFields[] = {L"circuit",       L"type",  L"workbook", L"worksheet",
                                             L"configuration", L"point", L"codes"};

OutputTable tableOf(const std::vector<CircuitObject>& circuits, OutputForm form) {
  OutputTable table;
  table.columns = {{"id", "ID"}, {"name", "NAME"}};
  for (const std::wstring_view field : shownFields) {
    // A line of text ends with the short columns.
    if (form == OutputForm::text && field == L"codes") continue;
    table.columns.push_back({toUtf8(field), toUtf8(brenvolt::toUpper(field))});
  }
  table.columns.push_back({"entities", "ENTITIES", ColumnKind::number});
  if (form != OutputForm::text)
    for (const char* name : {"tags", "params", "wires"})
      table.columns.push_back({name, name});
  for (const CircuitObject& circuit : circuits) {
    std::vector<OutputCell> row = {circuit.id, circuit.name()};
    for (const std::wstring_view field : shownFields)
      if (form != OutputForm::text || field != L"codes")
        row.emplace_back(circuitField(circuit.fields, field));
    row.emplace_back(brenvolt::formatInt(static_cast<std::int64_t>(circuit.entities.size())));
    if (form != OutputForm::text) {
      row.emplace_back(joined(circuit.tags));
      row.emplace_back(circuit.params);
      row.emplace_back(circuit.wires);
    }
    table.rows.push_back(std::move(row));
  }
  return table;
}

ExitCode runCircuits(const CircuitsOptions& options) {
  const LoadedDrawing loaded = loadDrawing(fromUtf8(options.drawing));
  if (loaded.drawing == nullptr) throw BadInput(toUtf8(loaded.error));
  DrawingDatabase& drawing = *loaded.drawing;
  const std::vector<CircuitObject> circuits = circuits::circuitsOf(drawing);
  if (options.erase.empty() && options.move.empty()) {
    printOut(formatTable(tableOf(circuits, options.output.form()), options.output.form()));
    return ExitCode::done;
  }
  if (!options.erase.empty())
    circuits::eraseCircuit(drawing, chosenCircuit(circuits, "--erase", options.erase, options.drawing));
  if (!options.move.empty()) {
    if (!std::isfinite(options.by[0]) || !std::isfinite(options.by[1]))
      throw BadInput("--by: must be two finite numbers X,Y");
    const CircuitObject& circuit = chosenCircuit(circuits, "--move", options.move, options.drawing);
    if (const Fault fault = circuits::moveCircuit(drawing, circuit, options.by[0], options.by[1]))
      throw BadInput("--by: " + toUtf8(*fault));
  }
  const std::string& out = options.out.empty() ? options.drawing : options.out;
  if (const Fault fault = saveDrawing(drawing, fromUtf8(out))) throw CannotWrite(toUtf8(*fault));
  return ExitCode::done;
}

} // namespace

CommandTable circuitsCommand() {
  auto options = std::make_shared<CircuitsOptions>();
  return {
      .name = "circuits",
      .description = "list, move or erase the circuits of a drawing",
      .options = joinedRows(
          {{{"DRAWING", &options->drawing, "The drawing", "FILE", {.isRequired = true}}},
           options->output.rows(),
           {{"--erase",
             &options->erase,
             "Erase the circuit with this id or tag, with all that its build drew",
             "CIRCUIT",
             {.excludes = {"--move"}}},
            {"--move",
             &options->move,
             "Move the circuit with this id or tag",
             "CIRCUIT",
             {.needs = {"--by"}}},
            {"--by", &options->by, "Distance of the move", "X,Y", {.needs = {"--move"}}},
            {"--out", &options->out, "Write the changed drawing here and keep the old one", "FILE"}}}),
      .examples = {"brenvolt circuits motor.json", "brenvolt circuits motor.json --csv"},
      .page = "tool.md",
      .run = [options] { return runCircuits(*options); },
  };
}

} // namespace simhost
