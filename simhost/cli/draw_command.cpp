// `brenvolt draw`: one circuit, built by the site's LISP, from the workbook to the drawing file. Without answers it is
// a direct build; with them the configuration dialog opens.
#include "circuits/reports/protection_limits.h"
#include "simhost/cli/circuit_run.h"
#include "simhost/cli/host_run.h"
#include "simhost/cli/site_options.h"
#include "simhost/cli/subcommand.h"
#include "simhost/host/circuit_recorder.h"
#include "simhost/host/errors.h"
#include "simhost/host/session.h"
#include "simhost/site/code_standard.h"
#include "simhost/site/open_database.h"
#include "simhost/site/site_database.h"
#include "text/encoding.h"

#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

struct DrawOptions {
  SiteWorkbookOptions site;
  HostOptions host;
  SessionRun run;
  std::vector<std::string> saveHistory; ///< a name, if it is to be saved
  std::string standardCode;
  bool takesDefaultTables = false;
  bool keepsGoing = false;
};

lisp::Value build(HostRun& host, const CircuitCall& call) {
  try {
    lisp::Value built = callSite(host, call);
    host.writeRecording();
    return built;
  } catch (const BadInput&) {
    host.writeRecording();
    throw;
  }
}

/// The alerts about missing tables are answered as by a user who continues with the default ones.
void acceptDefaultTables(Session& session) {
  for (const wchar_t* alert :
       {L"ZanBrenvolt.TableNotFound", L"ZanBrenvolt.MotorTableNotFound", L"ZanBrenvolt.LoadTableNotFound",
        L"ZanBrenvolt.MotorITableNotFound"})
    session.settings().answerInThisRun(alert, kvui::firstCommand);
}

/// Forms that fail are noted in `failures`, and the build goes on.
void noteFailures(Session& session, std::vector<std::string>& failures) {
  session.answerAlways(
      L"ZanBrenvolt.ExecutionError",
      {kvui::firstCommand, [&failures](const TaskQuestion& question) {
         const auto part = [&question](std::wstring_view name) { return toUtf8(question.parameter(name)); };
         failures.push_back(part(L"place") + ": " + part(L"errorFunc") + ": " + part(L"reason"));
       }});
}

/// From now on the site's LISP reaches the module's function that also saves. `isUnsaved` is set when only that failed.
void saveBuilds(HostRun& host, const std::wstring& name, bool& isUnsaved) {
  const auto build = [&host, name, &isUnsaved](lisp::Arguments& arguments) {
    CircuitRecorder::Build recorded(host.session().circuits(), arguments.values());
    const std::array<lisp::Value, 2> passed = {arguments[0], lisp::Value::string(name)};
    const lisp::Value answer = host.interpreter().call(L"zan_bv_build_and_save", passed);
    const bool isSaved = answer.isCons() && !answer.asCons().car().isNil();
    isUnsaved = answer.isCons() && !isSaved;
    if (isSaved) recorded.succeed();
    return lisp::Value::truth(isSaved);
  };
  host.interpreter().define(CircuitRecorder::buildFunction, 1, 1, build);
}

ExitCode runDraw(DrawOptions& options) {
  if (options.host.save.empty()) throw CannotWrite("--out: name a file");
  if (!std::isfinite(options.run.at[0]) || !std::isfinite(options.run.at[1]))
    throw BadInput("--at: must be two finite numbers X,Y");
  const bool asks = !options.host.answers.empty();
  const std::string workbook = options.site.path();
  if (options.saveHistory.size() > 1) throw BadInput("--save-history: give one name");
  if (!options.saveHistory.empty() && options.saveHistory[0].empty())
    throw BadInput("--save-history: must not be empty");
  const CircuitCall call =
      circuitCall(options.run, workbook, asks ? CircuitBuild::withDialog : CircuitBuild::direct);

  // Without its tables the build would go on, and size nothing; a site that has none keeps them elsewhere.
  if (hasSiteTables(options.site.site)) {
    brenvolt::ZanOleDbConnection tables;
    openDatabase(tables, siteDataSource(options.site.site), DatabaseUse::read);
    const std::wstring code = fromUtf8(options.standardCode);
    const auto fault = code.empty() ? std::nullopt : codeStandardFault(tables, code);
    if (fault) throw BadInput("--standard-code: " + *fault);
  }
  options.host.site = options.site.site;
  options.host.drawing = options.run.drawing;
  HostRun host(options.host);
  if (!options.standardCode.empty())
    host.interpreter().setValue(codeStandardSymbol, lisp::Value::string(fromUtf8(options.standardCode)));
  if (options.takesDefaultTables) acceptDefaultTables(host.session());
  useProject(host, options.run.project);
  bool isUnsaved = false;
  if (!options.saveHistory.empty()) saveBuilds(host, brenvolt::fromUtf8(options.saveHistory[0]), isUnsaved);
  const circuits::NewProtectionFaults protection(host.session().documents().current()->drawing());
  std::vector<std::string> failures;
  if (options.keepsGoing) noteFailures(host.session(), failures);
  if (asks) host.recordAsSession(options.run);
  const std::string name = options.run.circuit + " / " + options.run.type;
  const bool isBuilt = !build(host, call).isNil();
  if (!failures.empty()) {
    std::string all;
    for (const std::string& failure : failures)
      all += failure + "\nbrenvolt: ";
    throw BadInput(
        all + name + ": " + std::to_string(failures.size()) + (failures.size() == 1 ? " form" : " forms") +
        " failed, so nothing is written");
  }
  // The module has said which file it is and why.
  if (isUnsaved) throw CannotWrite(name + ": the configuration was not saved, so nothing is drawn");
  if (!isBuilt) throw BadInput(name + (asks ? ": the build failed or was cancelled" : ": the build failed"));
  host.writeResults();
  std::printf("%s: %s\n", name.c_str(), options.host.save.c_str());
  const std::vector<std::wstring> faults = protection.texts();
  for (const std::wstring& fault : faults)
    std::fprintf(stderr, "brenvolt: %s\n", toUtf8(fault).c_str());
  if (!faults.empty()) return ExitCode::findings;
  // The module has said at which markers, and which tables.
  for (const wchar_t* symbol : {L"GBL_qn_bv_unsized_wires", L"GBL_qn_bv_table_problems"})
    if (const lisp::Symbol* const count = host.interpreter().symbols().find(symbol))
      if (!count->value.isNil()) return ExitCode::findings;
  return ExitCode::done;
}

} // namespace

CommandTable drawCommand() {
  auto options = std::make_shared<DrawOptions>();
  SessionRun& run = options->run;
  HostOptions& host = options->host;
  OptionRows rows = {
      {"--standard-code", &options->standardCode, "Electrical code, instead of that of the site's LISP",
       "CODE"},
      {"--default-tables", &options->takesDefaultTables,
       "Continue with the tables of NEC where the electrical code has none"},
      {"--keep-going", &options->keepsGoing,
       "Continue after a form that fails, and report all of them at the end"},
      {"--circuit", &run.circuit, "Name of the circuit", {}, {.isRequired = true}},
      {"--type", &run.type, "Name of its type", {}, {.isRequired = true}},
      {"--history", &run.history, "Use this saved configuration", "NAME"},
      {"--save-history", &options->saveHistory, "Save the choices of the build under this name", "NAME"},
      {"--preset", &run.preset, "Choose options: CODE=1,2;CODE=3", "TEXT"},
      {"--params",
       &run.params,
       "Motor or load data of a placed circuit: \"a\";\"b\";\"c\"",
       "TEXT",
       {.needs = {"--preset"}}},
      {"--wires",
       &run.wires,
       R"(Wires of a placed circuit: (("10AWG" "BLK_10AWG" "1") ...))",
       "TEXT",
       {.needs = {"--preset"}}},
      {"--preset-drawing",
       &run.presetDrawing,
       "DWGIX of the project's drawing whose parts the handles of --preset name, else 1",
       "INDEX",
       {.needs = {"--preset", "--project"}}},
      {"--project",
       &run.project,
       "Write the records of the circuit to this project database",
       "FILE",
       {.path = OptionRules::Path::existingFile}},
      {"--scale", &run.scale, "Scale of the circuit; default: that of the saved configuration", "NUMBER"},
      {"--component-scale", &run.componentScale, "Scale of its components; default: likewise", "NUMBER"},
      {"--at", &run.at, "Position of the template", "X,Y"},
      {"--drawing", &run.drawing, "Draw into this drawing instead of an empty one", "FILE"},
      {"--out", &host.save, "Write the drawing here if no error occurs", "FILE", {.isRequired = true}},
      {"--svg", &host.svg, "Also write a picture", "FILE"},
      // The dialog gives the name under which it saves.
      {"--answers",
       &host.answers,
       "Build with the configuration dialog, answered by this file step by step",
       "FILE",
       {.excludes = {"--save-history"}}},
      {"--record",
       &host.record,
       "Record the session: commands, questions and answers, also after an error",
       "FILE",
       {.needs = {"--answers"}}},
      moduleRow(host.module),
      {"--language", &host.language, "Two letters; default: from the environment", "CODE"},
  };
  return {
      .name = "draw",
      .description = "draw a circuit of the site's workbook",
      .options = joinedRows({options->site.rows(), rows}),
      .footer =
          "A build that fails or is cancelled writes nothing, and the reason is reported. A circuit "
          "whose wires could not be sized is drawn with a mark at them, one whose ratings the tables do not "
          "give without these. A load whose protection is above the limit for its small conductors, and a "
          "feeder that is too small for its motors or whose protection is above its limit, are reported. "
          "The exit code is then 5.",
      .examples =
          {R"(brenvolt draw --site site --circuit "Three-phase motors" --type "Direct on line" --history "Pump 10 HP" --out motor.json)",
           R"(brenvolt draw --site site --circuit "Three-phase motors" --type "Direct on line" --history "Pump 10 HP" --preset "OL=2" --out pump.json --svg pump.svg)"},
      .page = "circuits.md",
      .run = [options] { return runDraw(*options); },
  };
}

} // namespace simhost
