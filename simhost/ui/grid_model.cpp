// The cells of a grid, and their format in a recording.
#include "simhost/ui/grid_model.h"

#include "simhost/ui/dialog_model.h"
#include "text/assertion.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <cstdio>
#include <utility>

namespace simhost {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

namespace {

/// A longer grid is described by its first rows, its last row and a checksum over all cells.
constexpr int mostRowsTold = 60;
constexpr int firstRowsTold = 20;

/// FNV-1a over code points, so that a long grid that differs anywhere differs in the recording.
class CellSum final {
public:
  void add(const std::wstring& text) {
    for (const wchar_t character : text)
      mix(static_cast<std::uint32_t>(character));
    mix(0xFFFFFFFFu); // parts cells
  }
  [[nodiscard]] std::string text() const {
    char digits[17] = {};
    std::snprintf(digits, sizeof digits, "%016llx", static_cast<unsigned long long>(sum_));
    return digits;
  }

private:
  void mix(std::uint32_t value) {
    sum_ ^= value;
    sum_ *= 1099511628211ull;
  }
  std::uint64_t sum_ = 14695981039346656037ull;
};

} // namespace

GridModel::GridModel(DialogModel& dialog, FormControl form)
    : ModelOf(dialog, std::move(form)), owner_(this), rows_(1), isEditable_(this->form().isEditable) {}

GridModel::GridModel(DialogModel& dialog, FormControl form, ControlModel& owner)
    : GridModel(dialog, std::move(form)) {
  owner_ = &owner;
}

void GridModel::touchGrid() {
  dialog().touched(*owner_);
}

bool GridModel::has(int row, int column) const {
  return row >= 0 && row <= RowCount() && column >= 0 && column < columns_;
}

GridModel::CellState& GridModel::cell(int row, int column) {
  BRENVOLT_ASSERT(has(row, column), "a cell outside of its grid is set");
  return rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
}

const GridModel::CellState* GridModel::find(int row, int column) const {
  if (!has(row, column)) return nullptr;
  return &rows_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
}

void GridModel::SetSize(int rows, int columns) {
  BRENVOLT_ASSERT(rows >= 0 && columns >= 0, "a grid is given a negative size");
  columns_ = columns;
  rows_.resize(static_cast<std::size_t>(rows) + 1);
  for (std::vector<CellState>& row : rows_)
    row.resize(static_cast<std::size_t>(columns));
  hidden_.resize(static_cast<std::size_t>(columns), false);
  if (selectedRow_ > rows) selectedRow_ = 0;
  if (edit_ && edit_->row > rows) edit_.reset();
  touchGrid();
}

void GridModel::SetCell(int row, int column, std::wstring_view text) {
  std::wstring& held = cell(row, column).text;
  if (held == text) return;
  held = text;
  touchGrid();
}

std::wstring GridModel::Cell(int row, int column) const {
  const CellState* found = find(row, column);
  return found == nullptr ? std::wstring() : found->text;
}

void GridModel::SetCellKind(int row, int column, KvUiCellKind kind) {
  cell(row, column).kind = kind;
  touchGrid();
}

void GridModel::SetCellChoices(int row, int column, const std::vector<std::wstring>& choices) {
  cell(row, column).choices = choices;
  touchGrid();
}

void GridModel::SetCellTone(int row, int column, KvUiCellTone tone) {
  cell(row, column).tone = tone;
  touchGrid();
}

void GridModel::RemoveRow(int row) {
  if (row < 1 || row > RowCount()) return;
  rows_.erase(rows_.begin() + row);
  if (selectedRow_ == row) selectedRow_ = 0;
  if (selectedRow_ > row) --selectedRow_;
  if (edit_ && edit_->row == row) edit_.reset();
  if (edit_ && edit_->row > row) --edit_->row;
  touchGrid();
}

void GridModel::SetEditable(bool editable, bool withNewRow) {
  if (isEditable_ == editable && withNewRow_ == withNewRow) return;
  isEditable_ = editable;
  withNewRow_ = withNewRow;
  touchGrid();
}

void GridModel::SelectRow(int row) {
  if (row < 0 || row > RowCount()) row = 0;
  if (selectedRow_ == row) return;
  selectedRow_ = row;
  touchGrid();
}

void GridModel::HideColumn(int column, bool hidden) {
  BRENVOLT_ASSERT(has(0, column), "a column that its grid does not have is hidden");
  hidden_[static_cast<std::size_t>(column)] = hidden;
  touchGrid();
}

void GridModel::ScrollTo(int row) {
  scrollTarget_ = row;
  touchGrid();
}

void GridModel::SetColumnWidths(const std::vector<int>& parts) {
  columnWidths_ = parts;
  touchGrid();
}

void GridModel::UnlockDrawing() {
  BRENVOLT_ASSERT(drawingLocks_ > 0, "a grid is unlocked once too often");
  --drawingLocks_;
  touchGrid();
}

bool GridModel::isHidden(int column) const {
  return has(0, column) && hidden_[static_cast<std::size_t>(column)];
}

KvUiCellKind GridModel::cellKind(int row, int column) const {
  const CellState* found = find(row, column);
  return found == nullptr ? KvUiCellKind::text : found->kind;
}

KvUiCellTone GridModel::cellTone(int row, int column) const {
  const CellState* found = find(row, column);
  return found == nullptr ? KvUiCellTone::normal : found->tone;
}

const std::vector<std::wstring>& GridModel::cellChoices(int row, int column) const {
  static const std::vector<std::wstring> none;
  const CellState* found = find(row, column);
  return found == nullptr ? none : found->choices;
}

std::vector<std::wstring> GridModel::rowTexts(int row) const {
  std::vector<std::wstring> texts;
  texts.reserve(static_cast<std::size_t>(columns_));
  for (int column = 0; column < columns_; ++column)
    texts.push_back(Cell(row, column));
  return texts;
}

void GridModel::describe(Json& shown) const {
  const auto tell = [this](int row) {
    Json texts = Json::array();
    for (int column = 0; column < columns_; ++column)
      if (!isHidden(column)) texts.push_back(toUtf8(find(row, column)->text));
    return texts;
  };
  const int count = RowCount();
  const bool isLong = count > mostRowsTold;
  shown["header"] = tell(0);
  shown["rowCount"] = count;
  // An object and not a list: its rows keep their numbers when only changed ones are written.
  Json rows = Json::object();
  for (int row = 1; row <= (isLong ? firstRowsTold : count); ++row)
    rows[std::to_string(row)] = tell(row);
  if (isLong) {
    rows[std::to_string(count)] = tell(count);
    CellSum sum;
    for (const std::vector<CellState>& row : rows_)
      for (const CellState& state : row)
        sum.add(state.text);
    shown["sum"] = sum.text();
  }
  shown["rows"] = std::move(rows);
  shown["selectedRow"] = selectedRow_;
  if (isEditable_) shown["editable"] = true;
  Json alerts = Json::array();
  for (int row = 1; row <= count; ++row)
    for (int column = 0; column < columns_; ++column)
      if (find(row, column)->tone == KvUiCellTone::alert) alerts.push_back(Json::array({row, column}));
  if (!alerts.empty()) shown["alerts"] = std::move(alerts);
}

} // namespace simhost
