// `brenvolt import`: a site's database out of foreign files.
#include "platform/table_import.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"
#include "simhost/host/errors.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <unistd.h>

#include <cstdio>
#include <memory>

namespace simhost {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

namespace {

struct ImportOptions {
  std::string out;
  std::vector<std::string> inputs;
  bool replaces = false;
  OutputOptions output;
};

/// One line that is written over, on a terminal only.
void showProgress(std::size_t index, std::size_t count, const std::wstring& table) {
  if (::isatty(STDERR_FILENO) == 0) return;
  std::fprintf(stderr, "\r\x1b[K%zu/%zu %s", index + 1, count, toUtf8(table).c_str());
  if (index + 1 == count) std::fputs("\r\x1b[K", stderr);
}

OutputTable tableOf(const brenvolt::ImportReport& report) {
  OutputTable table;
  table.columns = {
      {"table", "Table"},
      {"rows", "Rows", ColumnKind::number},
      {"input", "From"},
      {"notes", "Not carried over"}};
  for (const brenvolt::ImportedTable& imported : report.tables)
    table.rows.push_back(
        {imported.name, brenvolt::formatInt(imported.rows), imported.input,
         brenvolt::join(imported.notes, L"; ")});
  return table;
}

ExitCode runImport(const ImportOptions& options) {
  std::vector<std::wstring> inputs;
  for (const std::string& input : options.inputs)
    inputs.push_back(fromUtf8(input));
  const brenvolt::ImportReport report = brenvolt::importTables(
      fromUtf8(options.out), inputs,
      options.replaces ? brenvolt::ExistingTables::replace : brenvolt::ExistingTables::refuse, showProgress);
  if (report.isDone()) {
    printOut(formatTable(tableOf(report), options.output.form()));
    return ExitCode::done;
  }
  std::string message;
  for (const std::wstring& error : report.errors)
    message.append(message.empty() ? "" : "\n").append(toUtf8(error));
  if (message.starts_with(options.out + ": cannot be written")) throw CannotWrite(message);
  throw BadInput(message);
}

} // namespace

CommandTable importCommand() {
  auto options = std::make_shared<ImportOptions>();
  return {
      .name = "import",
      .description = "make a database of Access files, workbooks, databases and folders of CSV files",
      .options = joinedRows(
          {{{"OUT", &options->out, "Database to make or to add to", {}, {.isRequired = true}},
            {"INPUT",
             &options->inputs,
             "Access files, workbooks, databases, folders of CSV files; told by content, not by name",
             {},
             {.isRequired = true}},
            {"--replace", &options->replaces, "Replace tables that OUT holds already"}},
           options->output.rows()}),
      .footer = "Nothing is written unless all inputs can be read whole.",
      .examples =
          {"brenvolt import tables.db site/tables", "brenvolt import tables.db site/tables --replace"},
      .page = "tables.md",
      .run = [options] { return runImport(*options); },
  };
}

} // namespace simhost
