// Reading and writing of CSV lines.
#include "simhost/cli/csv_text.h"

#include "simhost/host/errors.h"

#include <utility>

namespace simhost {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

std::string csvField(const std::string& field) {
  if (field.find_first_of(",\"\r\n") == std::string::npos) return field;
  std::string text = "\"";
  for (const char c : field)
    text.append(c == '"' ? 2 : 1, c);
  return text + '"';
}

} // namespace

std::vector<CsvRecord> parseCsv(std::string_view text, const std::string& file) {
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  std::vector<CsvRecord> records;
  std::size_t line = 1;
  CsvRecord record{line, {}};
  std::string field;
  bool isQuoted = false;
  std::size_t quoteLine = 0;
  bool hasText = false;
  const auto endRecord = [&] {
    record.fields.push_back(std::exchange(field, {}));
    if (hasText || record.fields.size() > 1) records.push_back(std::move(record));
    record = {line, {}};
    hasText = false;
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '\n') ++line;
    if (isQuoted) {
      const bool isDoubled = c == '"' && i + 1 < text.size() && text[i + 1] == '"';
      if (c != '"' || isDoubled) field += c;
      if (isDoubled) ++i;
      isQuoted = c != '"' || isDoubled;
    } else if (c == '"' && field.empty()) {
      isQuoted = hasText = true;
      quoteLine = line;
    } else if (c == ',') {
      record.fields.push_back(std::exchange(field, {}));
    } else if (c == '\n') {
      endRecord();
    } else if (c != '\r') {
      field += c;
      hasText = true;
    }
  }
  if (isQuoted) throw BadInput(file + ", line " + std::to_string(quoteLine) + ": a closing quote is missing");
  endRecord();
  return records;
}

std::string csvLine(const std::vector<std::string>& fields) {
  std::string line;
  for (std::size_t i = 0; i < fields.size(); ++i)
    line.append(i == 0 ? "" : ",").append(csvField(fields[i]));
  return line + '\n';
}

} // namespace simhost
