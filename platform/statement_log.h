// A list of the statements sent to data sources, for the administrator of a server or for a test.
#pragma once

#include <string_view>

namespace brenvolt::tables {

/// Appends data source and statement as one line, with a tab between and blanks for line ends, to the file that the
/// environment names by BRENVOLT_STATEMENTS. Without that name nothing is written.
void logStatement(std::wstring_view dataSource, std::wstring_view statement);

} // namespace brenvolt::tables
