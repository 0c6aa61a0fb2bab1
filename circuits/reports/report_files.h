// Reports as files: for a spreadsheet, for a program, for a reader.
#pragma once

#include "circuits/reports/drawing_reports.h"

#include <optional>
#include <string>
#include <vector>

namespace circuits {

enum class ReportFormat { csv, json, html, xls };

/// A heading, then the rows; UTF-8 with line feeds. Not for workbooks, which are files.
[[nodiscard]] std::string reportText(const Report& report, ReportFormat format);
/// A page with reports one below the other, none of which has to be kept.
class ReportPage final {
public:
  void add(const Report& report);
  /// The whole page; nothing can be added after it.
  [[nodiscard]] std::string text();

private:
  std::string text_;
};
[[nodiscard]] std::string reportPage(const std::vector<Report>& reports);
/// A workbook with a sheet for the report. The reason of a failure; nothing on success.
[[nodiscard]] std::optional<std::wstring> writeWorkbook(const Report& report, const std::wstring& path);

} // namespace circuits
