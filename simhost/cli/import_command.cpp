// `brenvolt import`: a site's database out of foreign files.
#include "data/engineering_columns.h"
#include "simhost/cli/import_report.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"
#include "text/encoding.h"

#include <memory>

namespace simhost {

using brenvolt::fromUtf8;

namespace {

struct ImportOptions {
  std::string out;
  std::vector<std::string> inputs;
  bool replaces = false;
  bool keepsBad = false;
  OutputOptions output;
};

ExitCode runImport(const ImportOptions& options) {
  std::vector<std::wstring> inputs;
  for (const std::string& input : options.inputs)
    inputs.push_back(fromUtf8(input));
  brenvolt::ImportOptions import = brenvolt::engineeringImport();
  if (options.replaces) import.existing = brenvolt::ExistingTables::replace;
  if (options.keepsBad) import.badCells = brenvolt::BadCells::makeNull;
  import.progress = showImportProgress;
  const brenvolt::ImportReport report = brenvolt::importTables(fromUtf8(options.out), inputs, import);
  return reportImport(
      report, options.output, "Correct these cells, or import with --keep-bad to leave them empty (NULL).");
}

} // namespace

CommandTable importCommand() {
  auto options = std::make_shared<ImportOptions>();
  return {
      .name = "import",
      .description = "create a database from Access files, workbooks, databases and folders of CSV files",
      .options = joinedRows(
          {{{"OUT",
             &options->out,
             "Database to create or extend; \"odbc:...\" for a PostgreSQL server",
             {},
             {.isRequired = true}},
            {"INPUT",
             &options->inputs,
             "Access files, workbooks, databases, folders of CSV files; recognised by content",
             {},
             {.isRequired = true}},
            {"--replace", &options->replaces, "Replace existing tables of OUT"},
            {"--keep-bad", &options->keepsBad, "Leave cells empty (NULL) that do not fit their column"}},
           options->output.rows()}),
      .footer = "Nothing is written unless all inputs can be read completely.",
      .examples =
          {"brenvolt import tables.db site/tables", "brenvolt import tables.db site/tables --replace"},
      .page = "tables.md",
      .run = [options] { return runImport(*options); },
  };
}

} // namespace simhost
