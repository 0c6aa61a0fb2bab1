// `brenvolt draw`: one circuit by a direct build, as the site's LISP does it, from the workbook to the drawing file.
#include "simhost/cli/host_run.h"
#include "simhost/cli/recorded_build.h"
#include "simhost/cli/site_workbook.h"
#include "simhost/cli/subcommand.h"
#include "simhost/host/errors.h"
#include "simhost/lisp/printer.h"
#include "text/encoding.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

struct DrawOptions {
  SiteWorkbookOptions site;
  HostOptions host;
  std::string circuit;
  std::string type;
  std::string history;
  std::string saveHistory;
  std::string preset;
  std::string params;
  std::string wires;
  std::string project;
  std::vector<double> at = {0.0, 0.0};
};

std::wstring lispText(std::wstring_view text) {
  return lisp::printValue(lisp::Value::string(std::wstring(text)), lisp::PrintStyle::readable);
}

const brenvolt::ZanCircuitEntry& findEntry(
    const brenvolt::ZanCircuitCatalog& catalogue, const DrawOptions& options) {
  const std::wstring circuit = fromUtf8(options.circuit);
  const auto found = catalogue.circuits().find(circuit);
  if (found == catalogue.circuits().end())
    throw BadInput(toUtf8(catalogue.workbook) + ": there is no circuit \"" + options.circuit + "\"");
  const brenvolt::ZanCircuitEntry* entry = catalogue.findEntry(circuit, fromUtf8(options.type));
  if (entry == nullptr)
    throw BadInput(
        toUtf8(catalogue.workbook) + ": circuit \"" + options.circuit + "\" has no type \"" + options.type +
        "\"");
  return *entry;
}

std::wstring buildForm(
    const DrawOptions& options, const std::wstring& workbook, const brenvolt::ZanCircuitEntry& entry) {
  std::wstring form = L"(site-build";
  for (const std::wstring& text :
       {entry.drawingTemplate, workbook, entry.worksheet, fromUtf8(options.circuit), fromUtf8(options.type),
        fromUtf8(options.history)})
    form += L" " + lispText(text);
  form += L" '(" + lisp::printReal(options.at[0]) + L" " + lisp::printReal(options.at[1]) + L")";
  for (const std::string* text : {&options.preset, &options.params, &options.wires})
    form += L" " + lispText(fromUtf8(*text));
  return form + L")";
}

ExitCode runDraw(DrawOptions& options) {
  const std::string workbook = options.site.path();
  brenvolt::ZanCircuitCatalog catalogue = readCatalogue(workbook);
  const brenvolt::ZanCircuitEntry entry = findEntry(catalogue, options);
  // A build that cannot read its sheet answers nil without a word; the reason stands here.
  if (!catalogue.readWorksheet(entry.worksheet)) throw BadInput(workbook + ": " + toUtf8(catalogue.error()));

  options.host.site = options.site.site;
  HostRun host(options.host);
  if (!options.project.empty())
    host.run(L"(setq site-project-database " + lispText(fromUtf8(options.project)) + L")", L"draw");
  if (!options.saveHistory.empty()) recordBuild(host.interpreter(), fromUtf8(options.saveHistory));
  const lisp::Value built = host.run(buildForm(options, fromUtf8(workbook), entry), L"draw");
  host.writeRecording();
  if (built.isNil()) throw BadInput(options.circuit + " / " + options.type + ": the build failed");
  host.writeResults();
  std::printf("%s / %s: %s\n", options.circuit.c_str(), options.type.c_str(), options.host.save.c_str());
  return ExitCode::done;
}

} // namespace

Command setUpDraw(CLI::App& command) {
  auto options = std::make_shared<DrawOptions>();
  options->site.addTo(command);
  command.add_option("--circuit", options->circuit, "Name of the circuit")->required();
  command.add_option("--type", options->type, "Name of its type")->required();
  command.add_option("--history", options->history, "Take over this saved configuration")->type_name("NAME");
  command.add_option("--save-history", options->saveHistory, "Save what was built under this name")
      ->type_name("NAME");
  command.add_option("--preset", options->preset, "Options ahead of the build: CODE=1,2;CODE=3")
      ->type_name("TEXT");
  command
      .add_option("--params", options->params, "Motor or load data of a placed circuit: \"a\";\"b\";\"c\"")
      ->type_name("TEXT");
  command
      .add_option("--wires", options->wires, R"(Wires of a placed circuit: (("10AWG" "BLK_10AWG" "1") ...))")
      ->type_name("TEXT");
  command.add_option("--project", options->project, "Keep records of the circuit in this project database")
      ->type_name("FILE")
      ->check(CLI::ExistingFile);
  command.add_option("--at", options->at, "Where the template goes")
      ->type_name("X,Y")
      ->delimiter(',')
      ->expected(2);
  command.add_option("--drawing", options->host.drawing, "Draw into this drawing instead of an empty one")
      ->type_name("FILE");
  command.add_option("--out", options->host.save, "Write the drawing here when all went well")
      ->type_name("FILE")
      ->required();
  command.add_option("--svg", options->host.svg, "Write a picture too")->type_name("FILE");
  command.add_option("--answers", options->host.answers, "Answers to the questions of the run")
      ->type_name("FILE");
  command
      .add_option("--module", options->host.module, "The plug-in, else ZanBrenvolt.kvx beside the program")
      ->type_name("FILE");
  command.footer("A build that fails writes nothing, and the reason is told.");
  return [options] { return runDraw(*options); };
}

} // namespace simhost
