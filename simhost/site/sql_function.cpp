// Statements on databases for a site's LISP.
#include "simhost/site/sql_function.h"

#include "platform/tables.h"
#include "simhost/lisp/list.h"
#include "simhost/site/open_database.h"
#include "text/encoding.h"

#include <stdexcept>
#include <string>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using lisp::Arguments;
using lisp::Value;

[[noreturn]] void failWith(Arguments& arguments, brenvolt::ZanOleDbErrorInfo& error) {
  arguments.fail(error.HasErrorInfo() ? error.GetErrorInfo(false) : std::wstring(L"the statement failed"));
}

void execute(Arguments& arguments, brenvolt::ZanOleDbConnection& connection, const std::wstring& statement) {
  brenvolt::ZanOleDbCommand command;
  command.SetConnection(&connection);
  command.SetCommandText(statement);
  if (command.Execute() != brenvolt::dbStatus::success) failWith(arguments, command.ErrorInfo());
}

/// The names of the columns, then the rows, each a list of texts and nil for NULL.
Value queryWith(Arguments& arguments, brenvolt::ZanOleDbConnection& connection, const std::wstring& query) {
  lisp::ListBuilder answer;
  brenvolt::ZanOleDbCommand command;
  command.SetConnection(&connection);
  command.SetCommandText(query);
  if (command.Execute() != brenvolt::dbStatus::success) failWith(arguments, command.ErrorInfo());
  lisp::ListBuilder names;
  const int columns = command.GetColumnCount();
  for (int column = 1; column <= columns; ++column)
    names.add(Value::string(command.GetColumnName(column)));
  answer.add(names.take());
  while (command.FetchNext() == brenvolt::dbStatus::success) {
    lisp::ListBuilder row;
    for (int column = 1; column <= columns; ++column)
      row.add(command.IsNull(column) ? Value() : Value::string(command.FieldAsString(column)));
    answer.add(row.take());
  }
  return answer.take();
}

/// (sql-execute file statements [query]): runs one statement or a list of them, which are then one transaction: all or
/// none. A query runs last in the same transaction, and its rows are the answer, as of sql-query.
Value executeStatements(Arguments& arguments) {
  constexpr std::size_t query = 2;
  Value answer = Value::truth(true);
  try {
    brenvolt::ZanOleDbConnection connection;
    openDatabase(connection, toUtf8(arguments.text(0)), DatabaseUse::readAndWrite);
    if (arguments[1].isString() && arguments.size() <= query) {
      execute(arguments, connection, arguments.text(1));
      return Value::truth(true);
    }
    brenvolt::TableTransaction transaction(connection);
    if (!transaction.isOpen()) failWith(arguments, connection.ErrorInfo());
    for (const Value& statement : lisp::Elements(arguments.list(1))) {
      if (!statement.isString()) arguments.expected(1, L"a statement or a list of statements");
      execute(arguments, connection, statement.asString());
    }
    if (arguments.size() > query) answer = queryWith(arguments, connection, arguments.text(query));
    if (!transaction.commit()) failWith(arguments, connection.ErrorInfo());
  } catch (const std::runtime_error& error) {
    arguments.fail(fromUtf8(error.what()));
  }
  return answer;
}

/// (sql-query file statement): the names of the columns, then the rows, each a list of texts and nil for NULL.
Value queryRows(Arguments& arguments) {
  try {
    brenvolt::ZanOleDbConnection connection;
    openDatabase(connection, toUtf8(arguments.text(0)), DatabaseUse::read);
    return queryWith(arguments, connection, arguments.text(1));
  } catch (const std::runtime_error& error) {
    arguments.fail(fromUtf8(error.what()));
  }
  return {};
}

} // namespace

void defineSqlFunctions(lisp::Interpreter& interpreter) {
  interpreter.define(L"sql-execute", 2, 3, executeStatements);
  interpreter.define(L"sql-query", 2, 2, queryRows);
}

} // namespace simhost
