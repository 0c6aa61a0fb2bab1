// `brenvolt replay`: a recorded session once more, without a screen and on copies of what it may change.
#include "simhost/cli/circuit_run.h"
#include "simhost/cli/host_run.h"
#include "simhost/cli/site_workbook.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/working_copy.h"
#include "simhost/host/errors.h"
#include "simhost/lisp/printer.h"
#include "text/encoding.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace simhost {

namespace {

using brenvolt::fromUtf8;

struct ReplayOptions {
  SiteWorkbookOptions site;
  HostOptions host;
  std::string work;
};

lisp::Value runSession(HostRun& host, const SessionRun& run, const std::string& workbook) {
  if (run.isCircuit()) return host.run(circuitForm(run, workbook, CircuitBuild::withDialog), L"replay");
  lisp::Value value;
  for (const std::string& form : run.forms)
    value = host.run(fromUtf8(form), L"run");
  return value;
}

ExitCode runReplay(ReplayOptions& options) {
  const std::string& session = options.host.answers;
  const SessionRun run = seenFrom(readSession(session), std::filesystem::path(session).parent_path(), {});
  const std::string siteWorkbook = options.site.path();
  const WorkingCopy copy(options.work, siteWorkbook, options.site.site, run.project);

  options.host.site = options.site.site;
  options.host.database = copy.database();
  options.host.drawing = run.drawing;
  if (options.host.language.empty()) options.host.language = run.language;
  HostRun host(options.host);
  host.recordAsSession(run);
  host.run(workbookForm(copy.workbook()), L"replay");
  if (!run.project.empty()) host.run(projectForm(copy.project()), L"replay");
  lisp::Value value;
  try {
    value = runSession(host, run, copy.workbook());
  } catch (const BadInput&) {
    host.writeRecording();
    throw;
  }
  host.writeRecording();
  host.writeResults();
  host.session().commandLine().printLine(lisp::printValue(value));
  return ExitCode::done;
}

} // namespace

Command setUpReplay(CLI::App& command) {
  auto options = std::make_shared<ReplayOptions>();
  command.add_option("SITE", options->site.site, "Folder of the site")->type_name("")->required();
  command.add_option("SESSION", options->host.answers, "The recorded session")->type_name("")->required();
  command.add_option("--workbook", options->site.workbook, "Another workbook than the site's")
      ->type_name("FILE");
  command.add_option("--out", options->host.save, "Write the drawing here when all was answered")
      ->type_name("FILE");
  command.add_option("--svg", options->host.svg, "Write a picture of it")->type_name("FILE");
  command.add_option("--record", options->host.record, "Write the session as it went this time")
      ->type_name("FILE");
  command
      .add_option(
          "--work", options->work,
          "Keep what the session worked on in this folder: workbook, saved configurations, tables, project")
      ->type_name("DIR");
  command
      .add_option("--module", options->host.module, "The plug-in, else ZanBrenvolt.kvx beside the program")
      ->type_name("FILE");
  command.add_option("--language", options->host.language, "Two letters, else those of the session")
      ->type_name("CODE");
  command.footer("The site stays as it is: the session works on copies. The last line of standard output is "
                 "the value of "
                 "the last form, nil for a build that was cancelled, which leaves the drawing as it was.");
  return [options] { return runReplay(*options); };
}

} // namespace simhost
