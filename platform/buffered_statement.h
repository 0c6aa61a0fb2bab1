// Rows that are already in memory, as the result of a statement.
#pragma once

#include "platform/table_engine.h"
#include "platform/table_value.h"

#include <string>
#include <vector>

namespace brenvolt::tables {

class BufferedStatement final : public Statement {
public:
  /// `delivered` rows count as already fetched; the last of them is the current row of the statement.
  BufferedStatement(std::vector<std::wstring> columns, std::vector<TableRow> rows, std::size_t delivered = 0)
      : columns_(std::move(columns)), rows_(std::move(rows)), delivered_(delivered) {}

  [[nodiscard]] int columnCount() const override { return static_cast<int>(columns_.size()); }
  [[nodiscard]] std::wstring columnName(int column) const override {
    return columns_[static_cast<std::size_t>(column - 1)];
  }
  [[nodiscard]] std::wstring text(int column) const override { return valueText(cell(column)); }
  [[nodiscard]] double number(int column) const override { return valueNumber(cell(column)); }
  [[nodiscard]] bool isNull(int column) const override { return cell(column).kind == TableValue::Kind::null; }
  [[nodiscard]] bool isNumber(int column) const override { return isNumberKind(cell(column).kind); }
  [[nodiscard]] bool isBlob(int column) const override { return cell(column).kind == TableValue::Kind::blob; }
  [[nodiscard]] std::vector<std::byte> blob(int column) const override {
    return blobBytes(cell(column).bytes);
  }

  dbStatus fetchNext(ZanOleDbErrorInfo&) override {
    if (delivered_ <= rows_.size()) ++delivered_;
    return delivered_ <= rows_.size() ? dbStatus::success : dbStatus::noMoreRows;
  }

private:
  [[nodiscard]] const TableValue& cell(int column) const {
    static const TableValue nothing;
    const bool stands = delivered_ > 0 && delivered_ <= rows_.size();
    return stands ? rows_[delivered_ - 1][static_cast<std::size_t>(column - 1)] : nothing;
  }

  std::vector<std::wstring> columns_;
  std::vector<TableRow> rows_;
  std::size_t delivered_;
};

} // namespace brenvolt::tables
