// `brenvolt site publish`: a site's tables on a server that a firm shares.
#include "data/engineering_columns.h"
#include "simhost/cli/import_report.h"
#include "simhost/cli/subcommand.h"
#include "simhost/host/errors.h"
#include "simhost/site/site_database.h"
#include "text/compare.h"
#include "text/encoding.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <set>

namespace simhost {

using brenvolt::fromUtf8;

namespace {

struct PublishOptions {
  std::string site;
  std::string server;
  std::string readers;
  std::string editors;
  bool replaces = false;
  OutputOptions output;
};

/// The rows that users save themselves. A site's tables never replace them.
constexpr std::wstring_view partsTable = L"CATALOGSEL";

/// The names of the tables in a folder of .csv files.
std::vector<std::wstring> tablesOf(const std::filesystem::path& folder) {
  std::vector<std::wstring> names;
  std::error_code none;
  for (const auto& entry : std::filesystem::directory_iterator(folder, none))
    if (entry.path().extension() == ".csv") names.push_back(fromUtf8(entry.path().stem().string()));
  return names;
}

/// A role as a name in a statement.
std::wstring roleName(const char* option, const std::string& role) {
  if (role.find_first_of("[]\"") != std::string::npos)
    throw BadInput(std::string(option) + ": \"" + role + "\" cannot be the name of a role");
  return L"[" + fromUtf8(role) + L"]";
}

ExitCode publish(const PublishOptions& options) {
  const std::wstring server = fromUtf8(options.server);
  if (!brenvolt::equalsOrdinalNoCase(server.substr(0, 5), L"odbc:"))
    throw BadInput("SERVER: \"" + options.server + "\" must be \"odbc:\" and a connection string");
  std::vector<std::wstring> inputs = {fromUtf8(siteDatabase(options.site).string())};
  brenvolt::ImportOptions import = brenvolt::engineeringImport();
  const std::filesystem::path project = std::filesystem::path(options.site) / "project";
  std::vector<std::wstring> kept = tablesOf(project);
  if (!kept.empty()) {
    inputs.push_back(fromUtf8(project.string()));
    import.withoutRows = {inputs.back()};
  }
  kept.emplace_back(partsTable);
  import.staysWhenPresent = [kept](std::wstring_view table) {
    return std::any_of(kept.begin(), kept.end(), [table](const std::wstring& name) {
      return brenvolt::equalsOrdinalNoCase(name, table);
});
}; // namespace
if (options.replaces) import.existing = brenvolt::ExistingTables::replace;
if (!options.readers.empty())
  import.forEachTable.push_back(L"GRANT SELECT ON %s TO " + roleName("--readers", options.readers));
if (!options.editors.empty())
  import.forEachTable.push_back(
      L"GRANT SELECT, INSERT, UPDATE, DELETE ON %s TO " + roleName("--editors", options.editors));
import.progress = showImportProgress;
return reportImport(
    brenvolt::importTables(server, inputs, import), options.output,
    "Correct these cells in the tables of the site.");
} // namespace simhost

} // namespace

CommandTable sitePublishCommand() {
  auto options = std::make_shared<PublishOptions>();
  return {
      .name = "publish",
      .description = "copy engineering tables, parts choices and an empty project to a PostgreSQL database",
      .options = joinedRows(
          {{{"SERVER",
             &options->server,
             "\"odbc:\" and a connection string, as in \"odbc:DSN=brenvolt\"",
             {},
             {.isRequired = true}},
            {"--site", &options->site, "Folder of the site", "DIR", {.isRequired = true}},
            {"--replace", &options->replaces,
             "Replace existing engineering tables of the server; parts choices and projects are kept"},
            {"--readers", &options->readers, "Role of the server that may read the tables", "ROLE"},
            {"--editors", &options->editors, "Role that may also change their rows", "ROLE"}},
           options->output.rows()}),
      .footer = "Everything is written in one transaction, or nothing.",
      .page = "server.md",
      .run = [options] { return publish(*options); },
  };
}

} // namespace simhost
