#include "circuits/check/table_text.h"

#include "platform/tables.h"
#include "text/compare.h"

#include <algorithm>

namespace circuits {

int TableText::columnOf(std::wstring_view column) const {
  const auto found = std::ranges::find_if(
      columns, [column](const std::wstring& each) { return brenvolt::equalsOrdinalNoCase(each, column); });
  return found == columns.end() ? 0 : static_cast<int>(found - columns.begin()) + 1;
}

bool readTableText(
    brenvolt::ZanOleDbConnection& connection, const std::wstring& table, TableText& text,
    std::wstring& error) {
  brenvolt::ZanOleDbCommand command;
  command.SetConnection(&connection);
  command.SetCommandText(L"SELECT * FROM [" + table + L"]");
  if (command.Execute() != brenvolt::dbStatus::success) {
    error = command.ErrorInfo().GetErrorInfo(false);
    return false;
  }
  text.name = table.ends_with(L'$') ? table.substr(0, table.size() - 1) : table;
  const int columnCount = command.GetColumnCount();
  for (int column = 1; column <= columnCount; ++column)
    text.columns.push_back(command.GetColumnName(column));
  int number = 1;
  while (command.FetchNext() == brenvolt::dbStatus::success) {
    TableText::Row& row = text.rows.emplace_back();
    row.number = ++number;
    row.cells.reserve(text.columns.size());
    for (int column = 1; column <= columnCount; ++column)
      row.cells.push_back(command.FieldAsString(column));
  }
  return true;
}

std::vector<std::wstring> tableNames(brenvolt::ZanOleDbConnection& connection) {
  std::vector<std::wstring> names;
  brenvolt::ZanOleDbTables tables;
  if (tables.Open(connection, L"TABLE")) tables.GetTableList(names);
  return names;
}

} // namespace circuits
