#include "flows/wire_report_file.h"

#include "platform/file_lock.h"
#include "platform/file_replace.h"
#include "platform/workbook_writer.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace brenvolt {

namespace {

constexpr std::wstring_view csvLetters = L"csv";
constexpr std::wstring_view reportLetters = L"rep";
constexpr int workbookType = 1;
constexpr int workbookColumns = 20;
// The two spellings are intentional: sheets are found without regard to case.
constexpr std::wstring_view newSheet = L"sheet1$";
constexpr std::wstring_view filledSheet = L"Sheet1$";

std::vector<std::wstring> columnNames(std::size_t count) {
  std::vector<std::wstring> names;
  for (std::size_t column = 1; column <= count; ++column)
    names.push_back(formatInt(static_cast<std::int64_t>(column)));
  return names;
}

/// The workbook names its file in front of the reason, as an absolute path; the caller names it too.
std::wstring withoutPath(std::wstring_view path, std::wstring reason) {
  const std::wstring front =
      fromUtf8(std::filesystem::absolute(std::filesystem::path(toUtf8(path))).string()) + L": ";
  if (reason.starts_with(front)) reason.erase(0, front.size());
  return reason;
}

std::optional<std::wstring> writeWorkbook(
    std::wstring_view path, ReportMode mode, const std::vector<ReportRow>& rows) {
  CDBClass workbook;
  bool isGood = mode == ReportMode::append
                    ? workbook.OpenDB(path, {})
                    : workbook.CreateDB(path, workbookType, {}) &&
                          workbook.AddTable(newSheet, columnNames(workbookColumns), {}, {}, 0);
  int rowIndex = 0;
  for (const ReportRow& row : rows)
    isGood = isGood && workbook.AddRecords(filledSheet, columnNames(row.size()), row, rowIndex++);
  if (isGood && workbook.CloseDB()) return std::nullopt;
  return withoutPath(path, workbook.error());
}

std::optional<std::wstring> writeText(
    std::wstring_view path, ReportMode mode, const std::vector<ReportRow>& rows) {
  std::string bytes;
  if (mode == ReportMode::append) {
    const std::filesystem::path file(toUtf8(path));
    std::error_code error;
    // A stream on a folder opens, and throws when it is read.
    if (!std::filesystem::is_regular_file(file, error)) return L"is not a file";
    std::ifstream in(file, std::ios::binary);
    if (!in) return L"cannot be read";
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (in.bad()) return L"cannot be read";
    if (!bytes.empty() && bytes.back() != '\n') bytes += '\n';
  }
  const ReportFormat format = reportFormatOf(path);
  for (const ReportRow& row : rows)
    bytes += toUtf8(reportLine(row, format));
  return replaceFile(path, bytes);
}

} // namespace

ReportFormat reportFormatOf(std::wstring_view fileName) {
  const std::wstring_view letters =
      fileName.substr(fileName.size() - std::min<std::size_t>(fileName.size(), 3));
  if (equalsOrdinalNoCase(letters, csvLetters)) return ReportFormat::csv;
  if (equalsOrdinalNoCase(letters, reportLetters)) return ReportFormat::tabbed;
  return ReportFormat::workbook;
}

std::wstring reportLine(const ReportRow& row, ReportFormat format) {
  const bool isCsv = format == ReportFormat::csv;
  std::wstring line;
  for (const std::wstring& value : row)
    line += isCsv ? L'"' + value + L"\"," : value + L"\t\t\t";
  // Removes one character at the end: the comma, or one of the three tabs.
  if (!line.empty()) line.pop_back();
  return line + L'\n';
}

std::optional<std::wstring> writeReport(
    std::wstring_view path, ReportMode mode, const std::vector<ReportRow>& rows) {
  std::optional<FileLock> turn;
  if (mode == ReportMode::append && turn.emplace(path).fault()) return turn->fault();
  if (reportFormatOf(path) == ReportFormat::workbook) return writeWorkbook(path, mode, rows);
  return writeText(path, mode, rows);
}

} // namespace brenvolt
