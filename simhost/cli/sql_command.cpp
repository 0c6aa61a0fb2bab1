// `brenvolt sql`: one statement on any file that the table engines know.
#include "simhost/cli/subcommand.h"
#include "simhost/cli/table_output.h"
#include "simhost/host/errors.h"
#include "simhost/site/engineering_run.h"
#include "text/encoding.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace simhost {

using brenvolt::toUtf8;

namespace {

struct SqlOptions {
  std::string database;
  std::string statement;
  bool writes = false;
  OutputOptions output;
};

/// A key for each column. Where columns have the same name, the later ones get a number: a JSON object would otherwise
/// keep one of them.
std::vector<std::string> distinctKeys(const std::vector<std::string>& names) {
  const std::set<std::string> originals(names.begin(), names.end());
  std::set<std::string> used;
  std::vector<std::string> keys;
  for (const std::string& name : names) {
    std::string key = name;
    for (int number = 2; used.contains(key) || (key != name && originals.contains(key)); ++number)
      key = name + "_" + std::to_string(number);
    used.insert(key);
    keys.push_back(std::move(key));
  }
  return keys;
}

OutputTable answerOf(brenvolt::ZanOleDbCommand& command) {
  OutputTable table;
  const int columns = command.GetColumnCount();
  std::vector<std::string> names;
  for (int column = 1; column <= columns; ++column)
    names.push_back(toUtf8(command.GetColumnName(column)));
  const std::vector<std::string> keys = distinctKeys(names);
  for (std::size_t column = 0; column < names.size(); ++column)
    table.columns.push_back({keys[column], names[column]});
  while (command.FetchNext() == brenvolt::dbStatus::success) {
    std::vector<OutputCell>& row = table.rows.emplace_back();
    for (int column = 1; column <= columns; ++column) {
      OutputCell& cell = row.emplace_back();
      if (command.IsNull(column)) continue;
      cell = OutputCell(command.FieldAsString(column));
      cell.isNumber = command.IsNumber(column);
    }
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
    const char* hint = options.writes ? "" : " (opened read-only; --write allows changes)";
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
