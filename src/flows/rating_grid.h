// The rows of a picker: which of them pass the filters, the grid column of each table column, and which row matches
// given ratings.
#pragma once

#include "data/rating_tables.h"
#include "flows/rating_picker_kind.h"
#include "host/host_api_ui.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// A column that a filter fixes is not shown, and the following columns move up. The table's key is in the hidden
/// column 0: this is how a row's key reaches an edit of it.
class RatingGrid final {
public:
  using TitleOf = std::function<std::wstring(std::wstring_view columnName)>;

  /// All three must outlive this.
  RatingGrid(const RatingPickerKind& kind, const RatingTableService& service, KvUiGrid& grid);

  [[nodiscard]] const ZanTableFilter& filter() const { return filter_; }
  /// A filter column takes one value only, or any again; the grid changes with `show`.
  void fix(std::size_t column, std::wstring_view value);
  void release(std::size_t column);

  /// Reads the rows and shows them, no row selected. A failed query shows none.
  void show(const TitleOf& titleOf);

  /// The grid column of a table column; nothing for one that is not shown.
  [[nodiscard]] std::optional<int> placeOf(std::size_t column) const;
  /// A column's text of a row: the filter's value where one fixes it.
  [[nodiscard]] std::wstring textOf(int row, std::size_t column) const;
  /// The current of a row, 0.0 for an empty cell and for row 0.
  [[nodiscard]] double currentOf(int row) const;
  /// The first row whose visible cells are the given ratings; what is not given is not compared. 0 when there is none,
  /// or when nothing visible is given.
  [[nodiscard]] int findRow(const RatingSelection& wanted) const;

  /// Writes a row into the table; a row that has no key yet becomes a new one there and learns its key. False when the
  /// table refused it, which a message box reports; the grid keeps the text.
  [[nodiscard]] bool save(int row);

private:
  void learnKey(int row);

  const RatingPickerKind& kind_;
  const RatingTableService& service_;
  KvUiGrid& grid_;
  ZanTableFilter filter_;
};

} // namespace brenvolt
