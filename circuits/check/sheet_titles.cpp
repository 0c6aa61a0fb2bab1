#include "circuits/check/sheet_titles.h"

#include "circuits/check/sheet_model.h"
#include "platform/tables.h"
#include "text/compare.h"
#include "text/split.h"

namespace circuits {

namespace {

TableText readSheet(const std::wstring& workbook, const std::wstring& worksheet) {
  TableText sheet;
  brenvolt::ZanOleDbFileRecordset file(brenvolt::ConnectType::file, brenvolt::FileType::workbook);
  if (!file.Open(workbook)) return sheet;
  std::wstring error;
  for (const std::wstring& name : tableNames(file.connection())) {
    const std::wstring table(brenvolt::trimView(name, L"'"));
    if (!brenvolt::equalsOrdinalNoCase(brenvolt::trimView(table, L"$"), worksheet)) continue;
    if (!readTableText(file.connection(), table, sheet, error)) return {};
    break;
  }
  return sheet;
}

std::wstring titleIn(const TableText& sheet, const SheetCode& code) {
  for (const TableText::Row& row : sheet.rows)
    if (row.number == code.row) return row.cell(sheetcolumn::title);
  return {};
}

} // namespace

SheetTitles readSheetTitles(const std::wstring& workbook, const std::wstring& worksheet) {
  const TableText sheet = readSheet(workbook, worksheet);
  SheetTitles titles;
  for (const SheetCode& code : modelOf(sheet).codes) {
    if (!code.hasTitle || code.isRepeated) continue;
    const std::wstring title = titleIn(sheet, code);
    titles.byCode[brenvolt::toUpper(code.code)] = title;
    for (const SheetGroup& group : code.groups)
      if (!group.onlyWith.empty()) titles.onlyWith[{title, group.title}] = group.onlyWith;
    for (const SheetForm& form : code.forms)
      for (const SheetPair& pair : form.pairs)
        titles.partTables[{brenvolt::toUpper(code.code), pair.title}].insert(brenvolt::toUpper(pair.table));
  }
  return titles;
}

} // namespace circuits
