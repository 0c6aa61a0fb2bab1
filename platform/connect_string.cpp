#include "platform/connect_string.h"

#include "text/compare.h"
#include "text/split.h"

#include <algorithm>
#include <vector>

namespace brenvolt::tables {

namespace {

struct Entry {
  std::wstring key;
  std::wstring value;
  /// Unchanged from the string, without the separator.
  std::wstring_view whole;
};

/// The value that starts at `at`, which moves past it. Quotes count only as the first character, and braces as for
/// servers; inside, a doubled closing character means itself.
std::wstring readValue(std::wstring_view text, std::size_t& at) {
  while (at < text.size() && text[at] == L' ')
    ++at;
  const wchar_t first = at < text.size() ? text[at] : L';';
  if (first != L'"' && first != L'\'' && first != L'{') {
    const std::size_t end = std::min(text.find(L';', at), text.size());
    std::wstring value = trim(text.substr(at, end - at));
    at = end;
    return value;
  }
  const wchar_t close = first == L'{' ? L'}' : first;
  std::wstring value;
  for (++at; at < text.size(); ++at) {
    if (text[at] == close) {
      if (at + 1 >= text.size() || text[at + 1] != close) break;
      ++at;
    }
    value += text[at];
  }
  at = std::min(text.find(L';', at), text.size());
  return value;
}

std::vector<Entry> readEntries(std::wstring_view text) {
  std::vector<Entry> entries;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::size_t start = at;
    const std::size_t equals = text.find(L'=', at);
    const std::size_t end = std::min(text.find(L';', at), text.size());
    if (equals == std::wstring_view::npos || equals > end) {
      at = end;
      continue;
    }
    Entry entry;
    entry.key = trim(text.substr(start, equals - start));
    at = equals + 1;
    entry.value = readValue(text, at);
    entry.whole = text.substr(start, at - start);
    entries.push_back(std::move(entry));
  }
  return entries;
}

} // namespace

std::wstring connectValue(std::wstring_view init, std::wstring_view key) {
  for (const Entry& entry : readEntries(init)) {
    if (equalsOrdinalNoCase(entry.key, key)) return entry.value;
  }
  return {};
}

std::wstring connectQuoted(std::wstring_view value) {
  const bool isPlain = value.find_first_of(L";\"'{}") == std::wstring_view::npos && trim(value) == value;
  if (isPlain) return std::wstring(value);
  return L"\"" + replaceAll(value, L"\"", L"\"\"") + L"\"";
}

std::wstring withoutPassword(std::wstring_view connectionString) {
  std::wstring text;
  for (const Entry& entry : readEntries(connectionString)) {
    if (equalsOrdinalNoCase(entry.key, L"PWD") || equalsOrdinalNoCase(entry.key, L"Password")) continue;
    if (!text.empty()) text += L';';
    text += entry.whole;
  }
  return text;
}

} // namespace brenvolt::tables
