#include "platform/xls_sheet.h"

#include <algorithm>
#include <bit>

namespace brenvolt {

namespace {

struct ErrorText {
  unsigned code;
  const wchar_t* text;
};

constexpr ErrorText errorTexts[] = {
    {0x00, L"#NULL!"}, {0x07, L"#DIV/0!"}, {0x0F, L"#VALUE!"}, {0x17, L"#REF!"},
    {0x1D, L"#NAME?"}, {0x24, L"#NUM!"},   {0x2A, L"#N/A"},
};

std::wstring errorText(std::uint64_t code) {
  for (const ErrorText& error : errorTexts) {
    if (error.code == code) return error.text;
  }
  return L"#ERROR!";
}

std::uint32_t placeOf(const StoredCell& cell) {
  return (static_cast<std::uint32_t>(cell.row) << 16) | cell.column;
}

bool standsBefore(const StoredCell& left, const StoredCell& right) {
  return placeOf(left) < placeOf(right);
}

} // namespace

void SheetCells::arrange() {
  const auto outOfOrder = [](const StoredCell& left, const StoredCell& right) {
    return placeOf(left) >= placeOf(right);
  };
  if (std::adjacent_find(cells.begin(), cells.end(), outOfOrder) != cells.end()) {
    std::stable_sort(cells.begin(), cells.end(), standsBefore);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const bool isReplaced = i + 1 < cells.size() && placeOf(cells[i]) == placeOf(cells[i + 1]);
      if (!isReplaced) cells[kept++] = cells[i];
    }
    cells.resize(kept);
  }
  rowStarts.assign(cells.empty() ? 1 : std::size_t{cells.back().row} + 2, 0);
  columnCount = 0;
  for (const StoredCell& cell : cells) {
    ++rowStarts[std::size_t{cell.row} + 1];
    columnCount = std::max(columnCount, std::size_t{cell.column} + 1);
  }
  for (std::size_t row = 1; row < rowStarts.size(); ++row) {
    rowStarts[row] += rowStarts[row - 1];
  }
}

const StoredCell* SheetCells::find(std::size_t row, std::size_t column) const {
  if (row + 1 >= rowStarts.size() || column >= columnCount) return nullptr;
  const StoredCell* first = cells.data() + rowStarts[row];
  const StoredCell* last = cells.data() + rowStarts[row + 1];
  // A row without gaps, the usual case, needs no search.
  if (column < static_cast<std::size_t>(last - first) && first[column].column == column)
    return first + column;
  const StoredCell* cell = std::lower_bound(
      first, last, column, [](const StoredCell& left, std::size_t wanted) { return left.column < wanted; });
  return cell != last && cell->column == column ? cell : nullptr;
}

WorkbookSheet::WorkbookSheet() : cells_(std::make_unique<SheetCells>()) {}
WorkbookSheet::~WorkbookSheet() = default;
WorkbookSheet::WorkbookSheet(WorkbookSheet&&) noexcept = default;
WorkbookSheet& WorkbookSheet::operator=(WorkbookSheet&&) noexcept = default;

const std::wstring& WorkbookSheet::name() const {
  return cells_->name;
}

std::size_t WorkbookSheet::rowCount() const {
  return cells_->rowStarts.empty() ? 0 : cells_->rowStarts.size() - 1;
}

std::size_t WorkbookSheet::columnCount() const {
  return cells_->columnCount;
}

WorkbookCell::Kind WorkbookSheet::kind(std::size_t row, std::size_t column) const {
  const StoredCell* cell = cells_->find(row, column);
  return cell == nullptr ? WorkbookCell::Kind::empty : cell->kind;
}

double WorkbookSheet::number(std::size_t row, std::size_t column) const {
  const StoredCell* cell = cells_->find(row, column);
  if (cell == nullptr) return 0.0;
  switch (cell->kind) {
  case WorkbookCell::Kind::number:
  case WorkbookCell::Kind::date:
    return std::bit_cast<double>(cell->value);
  case WorkbookCell::Kind::boolean:
    return static_cast<double>(cell->value);
  case WorkbookCell::Kind::empty:
  case WorkbookCell::Kind::text:
  case WorkbookCell::Kind::error:
    break;
  }
  return 0.0;
}

std::wstring WorkbookSheet::text(std::size_t row, std::size_t column) const {
  const StoredCell* cell = cells_->find(row, column);
  if (cell == nullptr) return {};
  switch (cell->kind) {
  case WorkbookCell::Kind::empty:
    return {};
  case WorkbookCell::Kind::text:
    return cells_->texts.text(static_cast<biff::TextPool::Id>(cell->value));
  case WorkbookCell::Kind::number:
    return biff::workbookNumberText(std::bit_cast<double>(cell->value));
  case WorkbookCell::Kind::boolean:
    return cell->value != 0 ? L"TRUE" : L"FALSE";
  case WorkbookCell::Kind::date: {
    const double value = std::bit_cast<double>(cell->value);
    const auto date = biff::workbookDateText(value, cell->style, cells_->epoch);
    return date ? *date : biff::workbookNumberText(value);
  }
  case WorkbookCell::Kind::error:
    return errorText(cell->value);
  }
  return {};
}

const std::vector<MergedCells>& WorkbookSheet::mergedCells() const {
  return cells_->merged;
}

WorkbookCell WorkbookSheet::cell(std::size_t row, std::size_t column) const {
  return {kind(row, column), number(row, column), text(row, column)};
}

} // namespace brenvolt
