// CSV as spreadsheets write it: comma, double quotes around a field that needs them, doubled inside.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace simhost {

struct CsvRecord {
  std::size_t line = 0; ///< where it begins, from 1
  std::vector<std::string> fields;
};

/// The records of a text read from `file`; blank lines are skipped. Throws BadInput for a quote without an end, which
/// would take the rest of the text as its field.
[[nodiscard]] std::vector<CsvRecord> parseCsv(std::string_view text, const std::string& file);

/// Fields as one line with a line feed.
[[nodiscard]] std::string csvLine(const std::vector<std::string>& fields);

} // namespace simhost
