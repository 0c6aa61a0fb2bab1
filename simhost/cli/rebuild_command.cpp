// `brenvolt rebuild`: a circuit of a drawing built again in its place with other choices, or once more beside it.
#include "circuits/building/circuit_parts.h"
#include "circuits/building/circuit_rebuild.h"
#include "circuits/reports/protection_limits.h"
#include "simhost/cli/circuit_choice.h"
#include "simhost/cli/site_options.h"
#include "simhost/cli/subcommand.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/host/errors.h"
#include "simhost/ui/scripted_windows.h"
#include "text/encoding.h"
#include "text/split.h"

#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

struct RebuildOptions {
  std::string drawing;
  std::string circuit;
  std::vector<std::string> changes;
  std::string copyAs;
  std::vector<double> at;
  SiteWorkbookOptions site;
  std::string out;
  std::string module;
};

/// "load=15", "DISC=20,1", "DISC=Fusible switch;Nontime delay".
std::pair<std::wstring, std::wstring> choiceOf(const std::string& text) {
  const std::wstring wide = fromUtf8(text);
  const std::size_t equals = wide.find(L'=');
  std::wstring key = brenvolt::trim(wide.substr(0, equals));
  if (equals == std::wstring::npos || key.empty())
    throw BadInput("--set: \"" + text + "\" must be KEY=VALUE, such as load=15");
  return {std::move(key), brenvolt::trim(wide.substr(equals + 1))};
}

ExitCode runRebuild(const RebuildOptions& options) {
  circuits::RebuildRequest request{options.site.site, options.site.path(), {}, fromUtf8(options.circuit), {}};
  for (const std::string& text : options.changes)
    request.choices.push_back(choiceOf(text));
  ScriptedWindows windows({}, "a circuit is built again without questions");
  SiteRun site(
      {options.site.site,
       options.drawing,
       {},
       options.module,
       {},
       SiteRunOptions::UnnamedSettings::memory,
       {}},
      windows);
  circuits::refuseForeignTables(site.session());
  DrawingDatabase& drawing = site.session().documents().current()->drawing();
  const std::vector<circuits::CircuitObject> all = circuits::circuitsOf(drawing);
  const circuits::CircuitObject& circuit = chosenCircuit(all, "--circuit", options.circuit, options.drawing);
  request.circuit = circuit.id;
  const std::wstring warning =
      options.copyAs.empty() ? circuits::rebuildWarning(drawing, circuit) : std::wstring();
  const circuits::NewProtectionFaults protection(drawing);
  std::vector<std::string> findings;
  if (options.copyAs.empty())
    findings = circuits::rebuildCircuit(site, request);
  else
    findings =
        circuits::copyCircuit(site, request, fromUtf8(options.copyAs), {options.at[0], options.at[1], 0.0})
            .findings;
  for (const std::wstring& fault : protection.texts())
    findings.push_back(toUtf8(fault));
  const std::string& out = options.out.empty() ? options.drawing : options.out;
  if (const Fault fault = saveDrawing(drawing, fromUtf8(out))) throw CannotWrite(toUtf8(*fault));
  if (!warning.empty()) std::fprintf(stderr, "brenvolt: %s\n", toUtf8(warning).c_str());
  for (const std::string& finding : findings)
    std::fprintf(stderr, "brenvolt: %s\n", finding.c_str());
  return findings.empty() ? ExitCode::done : ExitCode::findings;
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
             "KEY=VALUE"},
            {"--copy",
             &options->copyAs,
             "Build a new circuit of this tag and leave the other one as it is",
             "TAG",
             {.needs = {"--at"}}},
            {"--at", &options->at, "Where the new circuit goes", "X,Y", {.needs = {"--copy"}}}},
           options->site.rows(),
           {{"--out", &options->out, "Write the changed drawing here instead of over the old one", "FILE"},
            {"--module", &options->module, "The plug-in, else ZanBrenvolt.kvx beside the program", "FILE"}}}),
      .footer = "What was changed by hand in the circuit is lost, which is reported; the keys of --set are "
                "the columns "
                "of a motor list and the CODEs of the worksheet. A fixed wire size that does not fit any "
                "more, and a "
                "protection that is above its limit since then, are reported; the exit code is then 5.",
      .examples =
          {"brenvolt rebuild motor.json --circuit MTR1 --set load=15 --set units=HP --site site",
           "brenvolt rebuild motor.json --circuit MTR1 --set load=10 --copy P-2 --at 0,-250 --site site"},
      .page = "set.md",
      .run = [options] { return runRebuild(*options); },
  };
}

} // namespace simhost
