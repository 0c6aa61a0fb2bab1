// The cells of one sheet in memory: sixteen bytes each, texts in a separate pool, rows found through an index.
#pragma once

#include "platform/biff_number_formats.h"
#include "platform/biff_strings.h"
#include "platform/xls_reader.h"

#include <cstdint>
#include <string>
#include <vector>

namespace brenvolt {

struct StoredCell {
  /// A text's id in the pool; else the bits of the number. An error keeps its code.
  std::uint64_t value = 0;
  std::uint16_t row = 0;
  std::uint16_t column = 0;
  WorkbookCell::Kind kind = WorkbookCell::Kind::empty;
  biff::NumberStyle style = biff::NumberStyle::number;
  /// The value is still an index into the shared string table.
  bool isShared = false;
};
static_assert(sizeof(StoredCell) == 16);

struct SheetCells {
  std::wstring name;
  biff::DateEpoch epoch = biff::DateEpoch::year1900;
  std::vector<StoredCell> cells;
  biff::TextPool texts;
  /// Where each row's cells start; one more at the end.
  std::vector<std::uint32_t> rowStarts;
  std::size_t columnCount = 0;
  std::vector<MergedCells> merged;

  /// Brings the cells into order (of two at one place the later one stays) and builds the index.
  void arrange();
  [[nodiscard]] const StoredCell* find(std::size_t row, std::size_t column) const;
};

} // namespace brenvolt
