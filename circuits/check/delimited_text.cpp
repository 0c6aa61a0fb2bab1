#include "circuits/check/delimited_text.h"

#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <algorithm>
#include <set>
#include <vector>

namespace circuits {

using brenvolt::formatInt;

namespace {

struct Records {
  std::vector<std::vector<std::wstring>> rows;
  bool hasOpenQuote = false;
};

/// The end of the letters from here on that end no cell: they are taken at once, not one by one.
std::size_t endOfPlain(std::wstring_view text, std::size_t from) {
  while (from < text.size() && text[from] != L',' && text[from] != L'\n' && text[from] != L'\r')
    ++from;
  return from;
}

/// A cell in double quotes may hold commas, line ends and doubled quotes.
Records recordsOf(std::wstring_view text) {
  Records records;
  std::vector<std::wstring> row;
  std::wstring cell;
  bool isQuoted = false;
  const auto endCell = [&] {
    row.push_back(std::move(cell));
    cell.clear();
  };
  const auto endRow = [&] {
    endCell();
    records.rows.push_back(std::move(row));
    row.clear();
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    const wchar_t letter = text[i];
    if (isQuoted) {
      if (letter != L'"') {
        const std::size_t end = std::min(text.find(L'"', i), text.size());
        cell.append(text, i, end - i);
        i = end - 1;
      } else if (i + 1 < text.size() && text[i + 1] == L'"') {
        cell += text[++i];
      } else {
        isQuoted = false;
      }
    } else if (letter == L'"' && cell.empty()) {
      isQuoted = true;
    } else if (letter == L',') {
      endCell();
    } else if (letter == L'\n') {
      endRow();
    } else if (letter != L'\r') {
      const std::size_t end = endOfPlain(text, i);
      cell.append(text, i, end - i);
      i = end - 1;
    }
  }
  records.hasOpenQuote = isQuoted;
  if (!cell.empty() || !row.empty()) endRow();
  return records;
}

void checkHeader(const std::wstring& file, const std::vector<std::wstring>& header, Findings& findings) {
  std::set<std::wstring> seen;
  int column = 0;
  for (const std::wstring& name : header) {
    ++column;
    const FindingPlace place = {.file = file, .row = 1, .column = column};
    if (name.empty())
      findings.add(L"table-header-empty", place, {{L"column", formatInt(column)}});
    else if (!seen.insert(brenvolt::toUpper(name)).second)
      findings.add(L"table-header-twice", place, {name}, {{L"column", name}});
    else if (name.front() == L' ' || name.back() == L' ')
      findings.add(L"table-header-blank", place, {name}, {{L"column", name}});
  }
  if (header.size() != 1) return;
  for (const wchar_t separator : {L';', L'\t'})
    if (header.front().find(separator) != std::wstring::npos)
      findings.add(
          L"table-separator", {.file = file, .row = 1}, {header.front()},
          {{L"separator", separator == L'\t' ? L"tabs" : L"semicolons"}});
}

} // namespace

bool readDelimited(std::string_view bytes, const std::wstring& file, TableText& table, Findings& findings) {
  constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
  if (bytes.starts_with(byteOrderMark)) bytes.remove_prefix(byteOrderMark.size());
  if (bytes.find('\0') != std::string_view::npos || bytes.starts_with("\xFF\xFE") ||
      bytes.starts_with("\xFE\xFF")) {
    findings.add(L"table-encoding", {.file = file}, {{L"row", L"1"}});
    return false;
  }
  const std::optional<std::wstring> whole = brenvolt::fromUtf8Strict(bytes);
  if (!whole) {
    std::size_t row = 1;
    std::string_view rest = bytes;
    while (!rest.empty()) { // the first line that is not UTF-8
      const std::string_view line = rest.substr(0, rest.find('\n'));
      if (!brenvolt::fromUtf8Strict(line)) break;
      rest.remove_prefix(std::min(line.size() + 1, rest.size()));
      ++row;
    }
    findings.add(
        L"table-encoding", {.file = file, .row = static_cast<int>(row)},
        {{L"row", formatInt(static_cast<std::int64_t>(row))}});
  }
  Records records = recordsOf(whole ? *whole : brenvolt::fromUtf8(bytes));
  const auto last = static_cast<int>(records.rows.size());
  if (records.hasOpenQuote) {
    findings.add(L"table-open-quote", {.file = file, .row = last}, {});
    return false; // what follows the quote is one cell
  }
  if (records.rows.empty() || records.rows.front() == std::vector<std::wstring>{L""}) {
    findings.add(L"table-empty", {.file = file}, {});
    return false;
  }
  table.columns = std::move(records.rows.front());
  checkHeader(file, table.columns, findings);
  for (int number = 2; number <= last; ++number) {
    std::vector<std::wstring>& cells = records.rows[static_cast<std::size_t>(number) - 1];
    if (cells == std::vector<std::wstring>{L""}) continue; // an empty line is not a row
    const auto count = [](std::size_t size) { return formatInt(static_cast<std::int64_t>(size)); };
    if (cells.size() != table.columns.size())
      findings.add(
          L"table-row-length", {.file = file, .row = number},
          {{L"count", count(cells.size())}, {L"columns", count(table.columns.size())}});
    table.rows.push_back({number, std::move(cells)});
  }
  return true;
}

} // namespace circuits
