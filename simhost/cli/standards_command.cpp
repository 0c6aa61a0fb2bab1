// `brenvolt standards`: the code standards for which a site has tables.
#include "data/option_tables.h"
#include "simhost/cli/site_options.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"

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

CommandTable standardsCommand() {
  auto options = std::make_shared<StandardsOptions>();
  return {
      .name = "standards",
      .description = "list the electrical codes for which a site has tables",
      .options = joinedRows({{options->site.siteRow()}, options->output.rows()}),
      .examples = {"brenvolt standards --site site", "brenvolt standards --site site --json"},
      .page = "tables.md",
      .run = [options] { return runStandards(*options); },
  };
}

} // namespace simhost
