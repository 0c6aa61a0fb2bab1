// A folder of delimited text: each .csv file is a table, its first row the column names. Cells are texts; an empty one
// is NULL. Everything is read and checked at once, so that one message can name every bad row.
#include "platform/table_source.h"

#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string_view>
#include <utility>

namespace brenvolt::tables {

namespace {

namespace fs = std::filesystem;

struct Record {
  /// Of its first character, from 1.
  std::int64_t line = 1;
  std::vector<std::string> cells;
};

/// Records of comma-separated text: a cell in double quotes may hold commas, line ends and doubled quotes.
class RecordReader final {
public:
  explicit RecordReader(std::string_view text) : text_(text) {}

  [[nodiscard]] bool isAtEnd() const { return at_ >= text_.size(); }
  [[nodiscard]] bool hasOpenQuote() const { return hasOpenQuote_; }

  Record next() {
    Record record;
    record.line = line_;
    do {
      record.cells.push_back(cell());
    } while (take(','));
    take('\r');
    if (take('\n')) ++line_;
    return record;
  }

private:
  bool take(char expected) {
    if (isAtEnd() || text_[at_] != expected) return false;
    ++at_;
    return true;
  }

  std::string cell() {
    if (!take('"')) return plain();
    std::string cell;
    while (true) {
      const std::size_t quote = std::min(text_.find('"', at_), text_.size());
      cell += text_.substr(at_, quote - at_);
      at_ = quote;
      if (isAtEnd()) {
        hasOpenQuote_ = true;
        break;
      }
      ++at_;
      if (!take('"')) break;
      cell += '"';
    }
    line_ += std::count(cell.begin(), cell.end(), '\n');
    // Text between the closing quote and the comma is part of the cell.
    return cell + plain();
  }

  std::string plain() {
    std::size_t end = std::min(text_.find_first_of(",\n", at_), text_.size());
    const std::size_t start = std::exchange(at_, end);
    const bool carriageReturn =
        end > start && text_[end - 1] == '\r' && (end == text_.size() || text_[end] == '\n');
    if (carriageReturn) --at_, --end;
    return std::string(text_.substr(start, end - start));
  }

  std::string_view text_;
  std::size_t at_ = 0;
  std::int64_t line_ = 1;
  bool hasOpenQuote_ = false;
};

struct DelimitedTable {
  std::vector<SourceColumn> columns;
  std::vector<Record> records;
};

std::string readWhole(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  std::string bytes{std::istreambuf_iterator<char>(stream), {}};
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(byteOrderMark)) bytes.erase(0, byteOrderMark.size());
  return bytes;
}

void addFault(std::wstring& faults, const fs::path& file, std::int64_t line, const std::wstring& reason) {
  if (!faults.empty()) faults += L"\n";
  faults += fromUtf8(file.string()) + L", line " + formatInt(line) + L": " + reason;
}

std::wstring cells(std::size_t count) {
  return formatInt(static_cast<std::int64_t>(count)) + (count == 1 ? L" cell" : L" cells");
}

DelimitedTable readTable(const fs::path& file, std::wstring& faults) {
  DelimitedTable table;
  const std::string text = readWhole(file);
  RecordReader reader(text);
  while (!reader.isAtEnd()) {
    Record record = reader.next();
    if (reader.hasOpenQuote()) {
      addFault(faults, file, record.line, L"a quoted cell has no closing quote");
      break;
    }
    for (const std::string& cell : record.cells) {
      if (!fromUtf8Strict(cell)) {
        addFault(faults, file, record.line, L"the text is not UTF-8");
        break;
      }
    }
    if (table.columns.empty()) {
      std::vector<std::wstring> header;
      for (const std::string& cell : record.cells)
        header.push_back(fromUtf8(cell));
      for (std::wstring& name : distinctColumnNames(std::move(header))) {
        table.columns.push_back({std::move(name), ColumnType::text});
      }
      if (record.cells == std::vector<std::string>{""})
        addFault(faults, file, 1, L"the column names are missing");
      continue;
    }
    // An empty line, often the last one, is not a row.
    if (record.cells == std::vector<std::string>{""}) continue;
    if (record.cells.size() != table.columns.size()) {
      addFault(
          faults, file, record.line,
          cells(record.cells.size()) + L", the header has " + cells(table.columns.size()));
    }
    table.records.push_back(std::move(record));
  }
  if (text.empty()) addFault(faults, file, 1, L"the file is empty");
  return table;
}

class DelimitedSource final : public TableSource {
public:
  void add(std::wstring name, DelimitedTable table) {
    names_.push_back(name);
    tables_.emplace(std::move(name), std::move(table));
  }

  [[nodiscard]] const std::vector<std::wstring>& tableNames() const override { return names_; }

  bool read(const std::wstring& name, TableReceiver& receiver, std::wstring&) override {
    const DelimitedTable& table = tables_.at(name);
    if (!receiver.columns(table.columns)) return false;
    for (const Record& record : table.records) {
      TableRow row;
      for (const std::string& cell : record.cells) {
        row.push_back(cell.empty() ? TableValue::null() : TableValue::ofText(cell));
      }
      if (!receiver.row(std::move(row), record.line)) return false;
    }
    return true;
  }

private:
  std::vector<std::wstring> names_;
  std::map<std::wstring, DelimitedTable> tables_;
};

} // namespace

std::unique_ptr<TableSource> openDelimitedSource(const std::wstring& folder, std::wstring& error) {
  std::vector<fs::path> files;
  std::error_code code;
  for (const fs::directory_entry& entry : fs::directory_iterator(fs::path(toUtf8(folder)), code)) {
    const bool isTable =
        entry.is_regular_file() && equalsOrdinalNoCase(fromUtf8(entry.path().extension().string()), L".csv");
    if (isTable) files.push_back(entry.path());
  }
  // Folders list their files in any order.
  std::sort(files.begin(), files.end());
  if (files.empty()) {
    error = folder + L": " + (code ? fromUtf8(code.message()) : L"the folder contains no .csv file");
    return nullptr;
  }
  auto source = std::make_unique<DelimitedSource>();
  std::wstring faults;
  for (const fs::path& file : files)
    source->add(fromUtf8(file.stem().string()), readTable(file, faults));
  if (faults.empty()) return source;
  error = std::move(faults);
  return nullptr;
}

} // namespace brenvolt::tables
