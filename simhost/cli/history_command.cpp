// `brenvolt history`: the saved configurations of a site's circuits.
#include "simhost/cli/site_workbook.h"
#include "simhost/cli/subcommand.h"
#include "simhost/host/errors.h"
#include "simhost/host/session.h"
#include "simhost/ui/scripted_windows.h"
#include "text/encoding.h"

#include <cstdio>
#include <filesystem>
#include <memory>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

struct HistoryOptions {
  SiteWorkbookOptions site;
  std::string circuit;
  std::string type;
  std::string name;
};

ExitCode listHistories(const HistoryOptions& options) {
  const std::string workbook = options.site.path();
  const brenvolt::ZanCircuitCatalog catalogue = readCatalogue(workbook);
  brenvolt::ZanXmlHistory history;
  if (!openHistory(history, workbook)) return ExitCode::done;
  for (const auto& [circuit, types] : catalogue.circuits())
    for (const brenvolt::ZanCircuitEntry& entry : types.entries) {
      std::vector<std::wstring> names;
      if (!history.GetHistoryNames(circuit, entry.type, names)) continue;
      std::printf("%s / %s\n", toUtf8(circuit).c_str(), toUtf8(entry.type).c_str());
      for (const std::wstring& name : names)
        std::printf("  %s\n", toUtf8(name).c_str());
    }
  return ExitCode::done;
}

void openNamed(brenvolt::ZanXmlHistory& history, const HistoryOptions& options, const std::string& workbook) {
  openConfiguration(history, workbook, options.circuit, options.type, options.name);
}

ExitCode showHistory(const HistoryOptions& options) {
  brenvolt::ZanXmlHistory history;
  openNamed(history, options, options.site.path());
  brenvolt::HistorySummary summary;
  static_cast<void>(
      history.ReadHistory(history.historyName, summary)); // one without any choice is shown empty
  for (const auto& [name, value] : summary.pairs)
    std::printf("%s: %s\n", toUtf8(name).c_str(), toUtf8(value).c_str());
  std::printf(
      "component scale: %s\ncircuit scale: %s\n", toUtf8(summary.componentScale).c_str(),
      toUtf8(summary.circuitScale).c_str());
  return ExitCode::done;
}

ExitCode deleteHistory(const HistoryOptions& options) {
  // Writing tells what goes wrong on the host's command line.
  ScriptedWindows windows({}, "no answers");
  const Session session({}, windows);
  const std::string workbook = options.site.path();
  brenvolt::ZanXmlHistory history;
  openNamed(history, options, workbook);
  if (!history.DeleteHistory(history.historyName) || !history.SaveFile())
    throw CannotWrite(std::filesystem::path(workbook).replace_filename("zan_brenvolt.xml").string());
  return ExitCode::done;
}

} // namespace

CommandTable historyCommand() {
  auto options = std::make_shared<HistoryOptions>();
  const OptionRows all = options->site.rows();
  const OptionRows one = joinedRows(
      {all,
       {{"--circuit", &options->circuit, "Name of the circuit", {}, {.isRequired = true}},
        {"--type", &options->type, "Name of its type", {}, {.isRequired = true}},
        {"NAME", &options->name, "Name of the history", {}, {.isRequired = true}}}});
  return {
      .name = "history",
      .description = "list, show or delete saved configurations",
      .commands =
          {
              {.name = "list",
               .description = "the names of all saved configurations",
               .options = all,
               .run = [options] { return listHistories(*options); }},
              {.name = "show",
               .description = "motor or load data and the choices of one",
               .options = one,
               .run = [options] { return showHistory(*options); }},
              {.name = "delete",
               .description = "take one out of the file",
               .options = one,
               .run = [options] { return deleteHistory(*options); }},
          },
      .examples =
          {"brenvolt history list --site site",
           R"(brenvolt history show "Pump 10 HP" --site site --circuit "Three-phase motors" --type "Direct on line")"},
      .page = "history.md",
  };
}

} // namespace simhost
