// Reports as files: for a spreadsheet, for a program, for a reader.
#pragma once

#include "circuits/reports/drawing_reports.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace circuits {

enum class ReportFormat { csv, json, html, xls };

/// A heading, then the rows; UTF-8 with line feeds. Not for workbooks, which are files.
[[nodiscard]] std::string reportText(const Report& report, ReportFormat format);
/// The rows alone, for a file to which they are added piece by piece.
[[nodiscard]] std::string csvRows(const Report& report);
[[nodiscard]] std::string csvHeading(const Report& report);
/// A page with reports one below the other, in pieces none of which has to be kept.
class ReportPage final {
public:
  void add(const Report& report);
  /// Opens a report's table; its rows follow, as a whole or in pieces, and its notes.
  void begin(const Report& report);
  void addRows(const Report& report);
  void end(const Report& report);
  /// What was added since.
  [[nodiscard]] std::string take() { return std::exchange(text_, {}); }
  /// The end of the page.
  [[nodiscard]] static std::string ending() { return "</body></html>\n"; }

private:
  std::string text_;
  bool isBegun_ = false;
};
[[nodiscard]] std::string reportPage(const std::vector<Report>& reports);
/// A workbook with a sheet for the report. The reason of a failure; nothing on success.
[[nodiscard]] std::optional<std::wstring> writeWorkbook(const Report& report, const std::wstring& path);

} // namespace circuits
