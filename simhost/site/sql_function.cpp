// The statement function.
#include "simhost/site/sql_function.h"

#include "platform/tables.h"
#include "simhost/site/open_database.h"
#include "text/encoding.h"

#include <stdexcept>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using lisp::Arguments;
using lisp::Value;

Value executeStatement(Arguments& arguments) {
  try {
    brenvolt::ZanOleDbConnection connection;
    openDatabase(connection, toUtf8(arguments.text(0)), DatabaseUse::readAndWrite);
    brenvolt::ZanOleDbCommand command;
    command.SetConnection(&connection);
    command.SetCommandText(arguments.text(1));
    if (command.Execute() != brenvolt::dbStatus::success)
      arguments.fail(
          command.ErrorInfo().HasErrorInfo() ? command.ErrorInfo().GetErrorInfo(false)
                                             : std::wstring(L"the statement failed"));
  } catch (const std::runtime_error& error) {
    arguments.fail(fromUtf8(error.what()));
  }
  return Value::truth(true);
}

} // namespace

void defineSqlExecute(lisp::Interpreter& interpreter) {
  interpreter.define(L"sql-execute", 2, 2, executeStatement);
}

} // namespace simhost
