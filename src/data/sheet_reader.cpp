#include "data/sheet_reader.h"

#include "data/table_query.h"

namespace brenvolt {

SheetReader::SheetReader() : file_(ConnectType::file, FileType::workbook) {}

bool SheetReader::open(std::wstring_view path) {
  if (file_.Open(path)) return true;
  error_ = file_.ErrorInfo().GetErrorInfo(false);
  return false;
}

bool SheetReader::read(std::wstring_view sheet, SheetRows& rows) {
  // A sheet is addressed by its name with "$" behind it.
  return readTable(std::wstring(sheet) + L'$', rows);
}

bool SheetReader::readFirst(SheetRows& rows) {
  ZanOleDbTables tables;
  std::vector<std::wstring> names;
  if (!tables.Open(file_.connection(), L"TABLE")) return false;
  tables.GetTableList(names);
  for (const std::wstring& name : names)
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
