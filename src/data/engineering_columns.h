// The contents of the columns of the engineering tables, for importing tables into a database.
#pragma once

#include "platform/table_import.h"

#include <cstddef>
#include <string_view>

namespace brenvolt {

/// The use of a column; the name of the table defines its family. `column` counts from 1, names compare without case.
/// Columns that statements compare or sort as numbers are numbers; those that are only read as one stay as they are
/// written, and are checked. Of a table that is none of these only `ID` is special: it numbers the rows.
[[nodiscard]] ColumnUse engineeringColumnUse(
    std::wstring_view table, std::size_t column, std::wstring_view columnName);

/// Options of an import of engineering tables.
[[nodiscard]] ImportOptions engineeringImport();

} // namespace brenvolt
