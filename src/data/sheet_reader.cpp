#include "data/sheet_reader.h"

#include "data/table_query.h"
#include "text/compare.h"
#include "text/split.h"

#include <algorithm>

namespace brenvolt {

SheetReader::SheetReader() : file_(ConnectType::file, FileType::workbook) {}

bool SheetReader::open(std::wstring_view path) {
  if (file_.Open(path)) return true;
  error_ = file_.ErrorInfo().GetErrorInfo(false);
  return false;
}

bool SheetReader::read(std::wstring_view sheet, SheetRows& rows) {
  // A sheet is addressed by its name with the suffix "$".
  const std::wstring table = std::wstring(sheet) + L'$';
  if (readTable(table, rows)) return true;
  const std::vector<std::wstring> names = tableNames();
  const bool isThere = std::ranges::any_of(
      names, [&table](const std::wstring& name) { return equalsOrdinalNoCase(trimView(name, L"'"), table); });
  if (!names.empty() && !isThere) error_ = L"the workbook has no sheet " + std::wstring(sheet);
  return false;
}

std::vector<std::wstring> SheetReader::tableNames() {
  ZanOleDbTables tables;
  std::vector<std::wstring> names;
  if (tables.Open(file_.connection(), L"TABLE")) tables.GetTableList(names);
  return names;
}

bool SheetReader::readFirst(SheetRows& rows) {
  for (const std::wstring& name : tableNames())
    if (!name.starts_with(L'\'')) return readTable(name, rows);
  return false;
}

bool SheetReader::readTable(const std::wstring& table, SheetRows& rows) {
  TableQuery query(&file_.connection());
  if (!query.run(L"SELECT * FROM [%s]", {table})) {
    error_ = query.error();
    return false;
  }
  SheetRows read;
  read.columnCount = query.columnCount();
  while (query.next()) {
    std::vector<std::wstring>& row = read.rows.emplace_back();
    row.reserve(static_cast<std::size_t>(read.columnCount));
    for (int column = 1; column <= read.columnCount; ++column)
      row.push_back(query.text(column));
  }
  rows = std::move(read);
  return true;
}

} // namespace brenvolt
