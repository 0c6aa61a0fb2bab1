// `brenvolt standards`: the code standards for which a site has tables.
#include "data/option_tables.h"
#include "simhost/cli/engineering_run.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace simhost {

namespace {

struct StandardsOptions {
  SiteOptions site;
  OutputOptions output;
};

ExitCode runStandards(const StandardsOptions& options) {
  EngineeringRun run(options.site.site, options.site.standardCode);
  std::map<std::wstring, std::wstring> standards;
  brenvolt::ZanOptTableReader(&run.connection()).ReadAllStandards(standards, false);
  OutputTable table;
  table.columns = {{"code", "Code"}, {"name", "Name"}};
  for (const auto& [name, code] : standards)
    table.rows.push_back({code, name});
  printOut(formatTable(table, options.output.form()));
  return ExitCode::done;
}

} // namespace

Command setUpStandards(CLI::App& command) {
  auto options = std::make_shared<StandardsOptions>();
  options->site.addSiteTo(command);
  options->output.addTo(command);
  return [options] { return runStandards(*options); };
}

} // namespace simhost
