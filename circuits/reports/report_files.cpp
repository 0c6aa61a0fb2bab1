// Escapes and frames of each format.
#include "circuits/reports/report_files.h"

#include "platform/workbook_writer.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace circuits {

using brenvolt::toUtf8;

namespace {

std::string csvField(const std::wstring& text) {
  std::string field = toUtf8(text);
  if (field.find_first_of(",\"\r\n") == std::string::npos) return field;
  std::string quoted = "\"";
  for (const char character : field) {
    if (character == '"') quoted += '"';
    quoted += character;
  }
  return quoted + '"';
}

std::string asJson(const Report& report) {
  using Json = nlohmann::ordered_json;
  Json rows = Json::array();
  for (const auto& row : report.rows) {
    Json object = Json::object();
    for (std::size_t column = 0; column < row.size(); ++column) {
      Json& cell = object[report.columns[column].key];
      if (!row[column]) continue;
      const std::string text = toUtf8(*row[column]);
      cell = text;
      if (!report.columns[column].isNumber) continue;
      if (Json number = Json::parse(text, nullptr, false); number.is_number()) cell = std::move(number);
    }
    rows.push_back(std::move(object));
  }
  Json notes = Json::array();
  for (const ReportNote& note : report.notes)
    notes.push_back(toUtf8(note.text));
  return Json{{"title", toUtf8(report.title)}, {"rows", std::move(rows)}, {"notes", std::move(notes)}}.dump(
             1) +
         '\n';
}

std::string htmlText(std::wstring_view text) {
  std::string escaped;
  for (const char character : toUtf8(text)) {
    if (character == '&')
      escaped += "&amp;";
    else if (character == '<')
      escaped += "&lt;";
    else if (character == '>')
      escaped += "&gt;";
    else
      escaped += character;
  }
  return escaped;
}

} // namespace

std::string csvHeading(const Report& report) {
  std::string text;
  for (std::size_t column = 0; column < report.columns.size(); ++column)
    text += (column == 0 ? "" : ",") + report.columns[column].key;
  return text += '\n';
}

std::string csvRows(const Report& report) {
  std::string text;
  for (const auto& row : report.rows) {
    for (std::size_t column = 0; column < row.size(); ++column)
      text += (column == 0 ? "" : ",") + csvField(row[column].value_or(std::wstring()));
    text += '\n';
  }
  return text;
}

void ReportPage::add(const Report& report) {
  begin(report);
  addRows(report);
  end(report);
}

void ReportPage::begin(const Report& report) {
  if (!std::exchange(isBegun_, true))
    text_ = "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"><title>" + htmlText(report.title) +
            "</title>\n<style>body{font-family:sans-serif;font-size:10pt}"
            "table{border-collapse:collapse}td,th{border:1px solid #888;padding:2px 6px;text-align:left}"
            "td.n{text-align:right}</style></head><body>\n";
  text_ += "<h1>" + htmlText(report.title) + "</h1>\n<table><thead><tr>";
  for (const ReportColumn& column : report.columns)
    text_ += "<th>" + htmlText(column.title) + "</th>";
  text_ += "</tr></thead><tbody>\n";
}

void ReportPage::addRows(const Report& report) {
  for (const auto& row : report.rows) {
    text_ += "<tr>";
    for (std::size_t column = 0; column < row.size(); ++column)
      text_ += (report.columns[column].isNumber ? "<td class=\"n\">" : "<td>") +
               htmlText(row[column].value_or(std::wstring())) + "</td>";
    text_ += "</tr>\n";
  }
}

void ReportPage::end(const Report& report) {
  text_ += "</tbody></table>\n";
  for (const ReportNote& note : report.notes)
    text_ += "<p>" + htmlText(note.text) + "</p>\n";
}

std::string reportPage(const std::vector<Report>& reports) {
  ReportPage page;
  for (const Report& report : reports)
    page.add(report);
  return page.take() + ReportPage::ending();
}

std::string reportText(const Report& report, ReportFormat format) {
  switch (format) {
  case ReportFormat::csv:
    return csvHeading(report) + csvRows(report);
  case ReportFormat::json:
    return asJson(report);
  case ReportFormat::html:
    return reportPage({report});
  case ReportFormat::xls:
    break;
  }
  return {};
}

std::optional<std::wstring> writeWorkbook(const Report& report, const std::wstring& path) {
  constexpr int workbookType = 1;
  brenvolt::CDBClass workbook;
  std::vector<std::wstring> titles;
  for (const ReportColumn& column : report.columns)
    titles.push_back(column.title);
  bool isDone =
      workbook.CreateDB(path, workbookType, L"") && workbook.AddTable(report.title, titles, {}, {}, 0);
  int number = 0;
  for (const auto& row : report.rows) {
    if (!isDone) break;
    std::vector<std::wstring> texts;
    for (const auto& cell : row)
      texts.push_back(cell.value_or(std::wstring()));
    isDone = workbook.AddRecords(report.title, titles, texts, number++);
  }
  if (isDone && workbook.CloseDB()) return std::nullopt;
  return path + L": " + workbook.error();
}

} // namespace circuits
