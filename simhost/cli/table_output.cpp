// One table in three forms.
#include "simhost/cli/table_output.h"

#include "simhost/cli/csv_text.h"
#include "simhost/json/json_text.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

constexpr std::wstring_view columnGap = L"  ";

std::wstring shown(const OutputCell& cell) {
  return cell.value_or(std::wstring());
}

std::string asText(const OutputTable& table) {
  std::vector<std::size_t> widths;
  for (std::size_t column = 0; column < table.columns.size(); ++column) {
    std::size_t width = fromUtf8(table.columns[column].title).size();
    for (const auto& row : table.rows)
      width = std::max(width, shown(row[column]).size());
    widths.push_back(width);
  }
  const auto line = [&](const auto& cellOf) {
    std::wstring text;
    for (std::size_t column = 0; column < widths.size(); ++column) {
      const std::wstring cell = cellOf(column);
      const std::wstring padding(widths[column] - cell.size(), L' ');
      if (column != 0) text += columnGap;
      text += table.columns[column].kind == ColumnKind::number ? padding + cell : cell + padding;
    }
    text.erase(text.find_last_not_of(L' ') + 1);
    return toUtf8(text) + '\n';
  };
  std::string text = line([&](std::size_t column) { return fromUtf8(table.columns[column].title); });
  text += line([&](std::size_t column) { return std::wstring(widths[column], L'-'); });
  for (const auto& row : table.rows)
    text += line([&](std::size_t column) { return shown(row[column]); });
  return text;
}

std::string asCsv(const OutputTable& table) {
  std::vector<std::string> fields;
  for (const OutputColumn& column : table.columns)
    fields.push_back(column.key);
  std::string text = csvLine(fields);
  for (const auto& row : table.rows) {
    fields.clear();
    for (const OutputCell& cell : row)
      fields.push_back(toUtf8(shown(cell)));
    text += csvLine(fields);
  }
  return text;
}

nlohmann::ordered_json jsonCell(const OutputCell& cell, ColumnKind kind) {
  if (!cell) return nullptr;
  std::string text = toUtf8(*cell);
  if (kind == ColumnKind::number || cell.isNumber) {
    nlohmann::ordered_json number = tryParseJson(text);
    if (number.is_number()) return number;
  }
  return text;
}

} // namespace

OptionRows OutputOptions::rows() {
  return {
      {"--csv", &isCsv, "Print comma-separated values"},
      {"--json", &isJson, "Print JSON", {}, {.excludes = {"--csv"}}},
  };
}

OutputForm OutputOptions::form() const {
  return isCsv ? OutputForm::csv : isJson ? OutputForm::json : OutputForm::text;
}

std::string jsonRows(const OutputTable& table) {
  nlohmann::ordered_json rows = nlohmann::ordered_json::array();
  for (const auto& row : table.rows) {
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    for (std::size_t column = 0; column < table.columns.size(); ++column)
      object[table.columns[column].key] = jsonCell(row[column], table.columns[column].kind);
    rows.push_back(std::move(object));
  }
  return jsonText(rows, 2);
}

std::string formatTable(const OutputTable& table, OutputForm form) {
  if (table.columns.empty()) return {};
  switch (form) {
  case OutputForm::text:
    return asText(table);
  case OutputForm::csv:
    return asCsv(table);
  case OutputForm::json:
    return jsonRows(table) + '\n';
  }
  return {};
}

void printOut(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
}

} // namespace simhost
