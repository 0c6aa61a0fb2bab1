// A list of circuits sized in one go.
#pragma once

#include "simhost/site/wire_request.h"

#include <string>

namespace simhost {

struct SizedList {
  std::string text;       ///< the list with its new columns
  bool isComplete = true; ///< every circuit has a size that fits
};

/// Reads the list `file` (CSV, a column for each field, others are copied), fills empty fields from `common`, and
/// returns the list with the columns of the proposal appended. Throws BadInput that names file, row and column of
/// every bad cell.
[[nodiscard]] SizedList sizeWires(WireRequests& requests, const std::string& file, const WireTexts& common);

} // namespace simhost
