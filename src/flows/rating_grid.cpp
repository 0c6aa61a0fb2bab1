#include "flows/rating_grid.h"

#include "host/host_api_documents.h"
#include "text/compare.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace brenvolt {

namespace {

constexpr std::size_t keyColumn = 0;

} // namespace

RatingGrid::RatingGrid(const RatingPickerKind& kind, const RatingTableService& service, KvUiGrid& grid)
    : kind_(kind), service_(service), grid_(grid) {
  filter_.selected.fill(false);
  std::fill_n(filter_.selected.begin(), service_.description().columnCount(), true);
}

void RatingGrid::fix(std::size_t column, std::wstring_view value) {
  filter_.active[column] = true;
  filter_.values[column] = value;
  filter_.selected[column] = false;
}

void RatingGrid::release(std::size_t column) {
  filter_.active[column] = false;
  filter_.selected[column] = true;
}

std::optional<int> RatingGrid::placeOf(std::size_t column) const {
  if (!filter_.selected[column]) return std::nullopt;
  const auto end = filter_.selected.begin() + static_cast<std::ptrdiff_t>(column);
  return static_cast<int>(std::count(filter_.selected.begin(), end, true));
}

void RatingGrid::show(const TitleOf& titleOf) {
  std::vector<RatingRecord> records;
  if (!service_.Query(filter_, records)) records.clear();

  grid_.LockDrawing();
  grid_.SetSize(0, 0);
  const auto& names = service_.columnNames();
  const std::size_t last = names.empty() ? keyColumn : names.rbegin()->first;
  const auto columns = std::count(
      filter_.selected.begin(), filter_.selected.begin() + static_cast<std::ptrdiff_t>(last) + 1, true);
  grid_.SetSize(static_cast<int>(records.size()), static_cast<int>(columns));
  for (const auto& [column, name] : names) {
    const std::optional<int> place = placeOf(column);
    if (!place) continue;
    grid_.SetCell(0, *place, column == keyColumn ? std::wstring() : titleOf(name));
    for (std::size_t row = 0; row < records.size(); ++row)
      grid_.SetCell(static_cast<int>(row) + 1, *place, records[row][column]);
  }
  grid_.HideColumn(static_cast<int>(keyColumn), true);
  grid_.SelectRow(0);
  grid_.SetColumnWidths({});
  grid_.UnlockDrawing();
}

std::wstring RatingGrid::textOf(int row, std::size_t column) const {
  const std::optional<int> place = placeOf(column);
  return place ? grid_.Cell(row, *place) : filter_.values[column];
}

double RatingGrid::currentOf(int row) const {
  return row > 0 ? toDouble(textOf(row, kind_.flaColumn)) : 0.0;
}

int RatingGrid::findRow(const RatingSelection& wanted) const {
  struct Comparison {
    int place;
    const std::wstring& text;
  };
  std::vector<Comparison> comparisons;
  for (std::size_t column = 0; column < kind_.texts.size(); ++column) {
    const std::optional<int> place = placeOf(column);
    if (!place || kind_.texts[column] == nullptr) continue;
    const std::wstring& text = wanted.*kind_.texts[column];
    if (!text.empty()) comparisons.push_back({*place, text});
  }
  const bool comparesCurrent = isGiven(wanted.fla);
  if (comparisons.empty() && !comparesCurrent) return 0;

  for (int row = 1; row <= grid_.RowCount(); ++row) {
    if (comparesCurrent && std::abs(currentOf(row) - wanted.fla) > numberTolerance) continue;
    const bool fits =
        std::all_of(comparisons.begin(), comparisons.end(), [this, row](const Comparison& comparison) {
          return equalsCollating(grid_.Cell(row, comparison.place), comparison.text);
        });
    if (fits) return row;
  }
  return 0;
}

bool RatingGrid::save(int row) {
  // Another process may hold the database: it is waited for.
  const KvWaitCursor waiting;
  std::vector<std::wstring> cells;
  for (int place = 1; place < grid_.ColumnCount(); ++place)
    cells.push_back(grid_.Cell(row, place));
  const int id = toInt(grid_.Cell(row, keyColumn));
  std::wstring refusal;
  if (!service_.Save(id, cells, filter_, refusal)) {
    if (!refusal.empty()) kvdsMessageBox(kvdsForegroundWindow(), refusal.c_str());
    return false;
  }
  if (id == 0) learnKey(row);
  return true;
}

/// The new key is the highest one that the grid does not show. Without it a second edit would add the row again.
void RatingGrid::learnKey(int row) {
  ZanTableFilter keysOnly = filter_;
  keysOnly.selected.fill(false);
  keysOnly.selected[keyColumn] = true;
  std::vector<RatingRecord> records;
  if (!service_.Query(keysOnly, records)) return;
  std::set<int> shown;
  for (int each = 1; each <= grid_.RowCount(); ++each)
    shown.insert(toInt(grid_.Cell(each, keyColumn)));
  int newest = 0;
  for (const RatingRecord& record : records)
    if (const int id = toInt(record[keyColumn]); !shown.contains(id)) newest = std::max(newest, id);
  if (newest != 0) grid_.SetCell(row, keyColumn, formatInt(newest));
}

} // namespace brenvolt
