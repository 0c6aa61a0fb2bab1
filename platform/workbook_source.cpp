// A workbook as tables: each sheet is one, named with the suffix "$", its first row the column names.
#include "platform/table_source.h"
#include "platform/xls_reader.h"

#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <algorithm>
#include <utility>

namespace brenvolt::tables {

namespace {

class WorkbookSource final : public TableSource {
public:
  explicit WorkbookSource(WorkbookReader reader) : reader_(std::move(reader)) {
    for (const WorkbookSheetInfo& sheet : reader_.sheets())
      names_.push_back(sheet.name + L"$");
  }

  [[nodiscard]] const std::vector<std::wstring>& tableNames() const override { return names_; }

  bool read(const std::wstring& table, TableReceiver& receiver, std::wstring& error) override {
    const auto place = std::find(names_.begin(), names_.end(), table);
    const std::optional<WorkbookSheet> sheet =
        reader_.readSheet(static_cast<std::size_t>(place - names_.begin()));
    if (!sheet) {
      error = reader_.error();
      return false;
    }
    if (!receiver.columns(columnsOf(*sheet))) return false;
    for (std::size_t row = 1; row < sheet->rowCount(); ++row) {
      if (!receiver.row(rowOf(*sheet, row), static_cast<std::int64_t>(row) + 1)) return false;
    }
    return true;
  }

private:
  static std::vector<SourceColumn> columnsOf(const WorkbookSheet& sheet) {
    std::vector<std::wstring> header;
    for (std::size_t column = 0; column < sheet.columnCount(); ++column)
      header.push_back(sheet.text(0, column));
    std::vector<SourceColumn> columns;
    for (std::wstring& name : distinctColumnNames(std::move(header))) {
      columns.push_back({std::move(name), ColumnType::text});
    }
    return columns;
  }

  static TableRow rowOf(const WorkbookSheet& sheet, std::size_t row) {
    TableRow cells(sheet.columnCount());
    for (std::size_t column = 0; column < cells.size(); ++column) {
      if (sheet.kind(row, column) == WorkbookCell::Kind::empty) continue;
      cells[column] = TableValue::ofText(toUtf8(sheet.text(row, column)));
    }
    return cells;
  }

  WorkbookReader reader_;
  std::vector<std::wstring> names_;
};

} // namespace

std::unique_ptr<TableSource> openWorkbookSource(const std::wstring& path, std::wstring& error) {
  WorkbookReader reader;
  if (!reader.open(path)) {
    error = reader.error();
    return nullptr;
  }
  return std::make_unique<WorkbookSource>(std::move(reader));
}

std::vector<std::wstring> distinctColumnNames(std::vector<std::wstring> header) {
  for (std::size_t column = 0; column < header.size(); ++column) {
    if (header[column].empty()) header[column] = L"F" + formatInt(static_cast<std::int64_t>(column) + 1);
    const auto isTaken = [&](const std::wstring& name) {
      const auto end = header.begin() + static_cast<std::ptrdiff_t>(column);
      return std::any_of(header.begin(), end, [&](const std::wstring& earlier) {
        return equalsOrdinalNoCase(earlier, name);
      });
    };
    std::wstring name = header[column];
    for (std::int64_t number = 1; isTaken(name); ++number)
      name = header[column] + formatInt(number);
    header[column] = std::move(name);
  }
  return header;
}

} // namespace brenvolt::tables
