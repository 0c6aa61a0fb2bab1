// From the records of one sheet to its cells.
#pragma once

#include "platform/biff_number_formats.h"
#include "platform/biff_records.h"
#include "platform/biff_strings.h"
#include "platform/xls_sheet.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace brenvolt::biff {

/// The data about all sheets in the workbook's first part.
struct WorkbookGlobals {
  std::uint16_t version = version8;
  DateEpoch epoch = DateEpoch::year1900;
  CodePage codePage;
  /// By the number that a cell carries.
  std::vector<NumberStyle> cellStyles;
  SharedStrings sharedStrings;
};

/// Reads the cells of the sheet whose first record is at `offset` into `sheet`, within the first `rowLimit` rows.
/// Records of charts inside the sheet are skipped. False when the sheet is damaged.
[[nodiscard]] bool readSheetCells(
    ByteWindow& window, WorkbookGlobals& globals, std::uint64_t offset, std::size_t rowLimit,
    SheetCells& sheet);

} // namespace brenvolt::biff
