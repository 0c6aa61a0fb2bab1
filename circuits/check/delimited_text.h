// A CSV file of a site, read with all that may be wrong in it: encoding, separator, quotes, rows of another length.
#pragma once

#include "circuits/check/finding.h"
#include "circuits/check/table_text.h"

#include <string>
#include <string_view>

namespace circuits {

/// Rows are numbered as a spreadsheet does. False when the file is not a table.
[[nodiscard]] bool readDelimited(
    std::string_view bytes, const std::wstring& file, TableText& table, Findings& findings);

} // namespace circuits
