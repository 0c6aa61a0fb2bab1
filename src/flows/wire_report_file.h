// The files of a wire report: a workbook, comma-separated values, or a tab-separated report. A file is replaced or
// appended to as a whole: after a failure the old file is unchanged.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// A row of a report; rows differ in length.
using ReportRow = std::vector<std::wstring>;

enum class ReportFormat { workbook, csv, tabbed };

/// By the last three letters of the name, without case; all but "csv" and "rep" are workbooks.
[[nodiscard]] ReportFormat reportFormatOf(std::wstring_view fileName);

enum class ReportMode { replace, append };

/// Where the last report of a dialog went; empty before the first.
struct ReportPlace {
  std::wstring folder;
  std::wstring fileName;
};

/// One line of a text report, with its line end. A quote inside a value is not escaped.
[[nodiscard]] std::wstring reportLine(const ReportRow& row, ReportFormat format);

/// Writes the rows to a file, text as UTF-8. The reason on a failure.
[[nodiscard]] std::optional<std::wstring> writeReport(
    std::wstring_view path, ReportMode mode, const std::vector<ReportRow>& rows);

} // namespace brenvolt
