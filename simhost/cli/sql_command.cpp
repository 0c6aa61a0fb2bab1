// `brenvolt sql`: one statement on any file that the table engines know.
#include "simhost/cli/engineering_run.h"
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"
#include "simhost/host/errors.h"
#include "text/encoding.h"

#include <memory>

namespace simhost {

using brenvolt::toUtf8;

namespace {

struct SqlOptions {
  std::string database;
  std::string statement;
  bool writes = false;
  OutputOptions output;
};

OutputTable answerOf(brenvolt::ZanOleDbCommand& command) {
  OutputTable table;
  const int columns = command.GetColumnCount();
  for (int column = 1; column <= columns; ++column) {
    const std::string name = toUtf8(command.GetColumnName(column));
    table.columns.push_back({name, name});
  }
  while (command.FetchNext() == brenvolt::dbStatus::success) {
    std::vector<OutputCell>& row = table.rows.emplace_back();
    for (int column = 1; column <= columns; ++column)
      row.push_back(command.IsNull(column) ? OutputCell() : OutputCell(command.FieldAsString(column)));
  }
  return table;
}

ExitCode runSql(const SqlOptions& options) {
  brenvolt::ZanOleDbConnection connection;
  openDatabase(connection, options.database, options.writes ? DatabaseUse::readAndWrite : DatabaseUse::read);
  brenvolt::ZanOleDbCommand command;
  command.SetConnection(&connection);
  command.SetCommandText(brenvolt::fromUtf8(options.statement));
  const auto failIfTold = [&] {
    if (!command.ErrorInfo().HasErrorInfo()) return;
    const char* hint = options.writes ? "" : " (open for reading only; --write allows changes)";
    throw BadInput(options.database + ": " + toUtf8(command.ErrorInfo().GetErrorInfo(false)) + hint);
  };
  if (command.Execute() != brenvolt::dbStatus::success) {
    failIfTold();
    throw BadInput(options.database + ": the statement failed");
  }
  const OutputTable answer = answerOf(command);
  failIfTold();
  printOut(formatTable(answer, options.output.form()));
  return ExitCode::done;
}

} // namespace

CommandTable sqlCommand() {
  auto options = std::make_shared<SqlOptions>();
  return {
      .name = "sql",
      .description = "run one statement on a database",
      .options = joinedRows(
          {{{"DB", &options->database, "Database, Access file or workbook", {}, {.isRequired = true}},
            {"STATEMENT",
             &options->statement,
             "Names in brackets, as in \"SELECT * FROM [OPT_NEC]\"",
             {},
             {.isRequired = true}},
            {"--write", &options->writes, "Allow statements that change the database"}},
           options->output.rows()}),
      .examples =
          {"brenvolt sql site/zan_brenvolt.xls 'SELECT * FROM [ZAN_CIRCS$]'",
           "brenvolt sql site/zan_brenvolt.xls 'SELECT [CIRCUIT], [TYPE] FROM [ZAN_CIRCS$]' --csv"},
      .page = "tables.md",
      .run = [options] { return runSql(*options); },
  };
}

} // namespace simhost
