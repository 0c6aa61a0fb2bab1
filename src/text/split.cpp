#include "text/split.h"

#include <algorithm>

namespace brenvolt {
namespace {

/// Length of the balanced "(...)" form at the start of `text`, 0 when there is none.
std::size_t leadingFormLength(std::wstring_view text) {
  if (!text.starts_with(L'(')) return 0;
  std::size_t depth = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == L'(') ++depth;
    if (text[i] == L')' && --depth == 0) return i + 1;
  }
  return 0;
}

} // namespace

std::wstring trim(std::wstring_view text, std::wstring_view characters) {
  return std::wstring(trimView(text, characters));
}

std::wstring_view trimView(std::wstring_view text, std::wstring_view characters) {
  const std::size_t first = text.find_first_not_of(characters);
  if (first == std::wstring_view::npos) return {};
  return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

std::vector<std::wstring> splitKeepingEmpty(std::wstring_view text, wchar_t separator) {
  std::vector<std::wstring> fields;
  while (true) {
    const std::size_t end = text.find(separator);
    fields.emplace_back(text.substr(0, end));
    if (end == std::wstring_view::npos) return fields;
    text.remove_prefix(end + 1);
  }
}

std::vector<std::wstring> splitSkippingEmpty(std::wstring_view text, wchar_t separator) {
  std::vector<std::wstring> fields = splitKeepingEmpty(text, separator);
  std::erase(fields, std::wstring());
  return fields;
}

std::vector<std::wstring> splitUntilEmpty(std::wstring_view text, wchar_t separator) {
  std::vector<std::wstring> fields = splitKeepingEmpty(text, separator);
  fields.erase(std::ranges::find(fields, std::wstring()), fields.end());
  return fields;
}

std::wstring join(const std::vector<std::wstring>& parts, std::wstring_view separator) {
  std::wstring joined;
  bool isFirst = true;
  for (const std::wstring& part : parts) {
    if (!isFirst) joined += separator;
    joined += part;
    isFirst = false;
  }
  return joined;
}

std::wstring replaceAll(std::wstring_view text, std::wstring_view from, std::wstring_view to) {
  if (from.empty()) return std::wstring(text);
  std::wstring result;
  while (true) {
    const std::size_t hit = text.find(from);
    result += text.substr(0, hit);
    if (hit == std::wstring_view::npos) return result;
    result += to;
    text.remove_prefix(hit + from.size());
  }
}

std::wstring removeBlanks(std::wstring_view text) {
  std::wstring result(text);
  std::erase(result, L' ');
  return result;
}

std::vector<std::wstring> splitForms(std::wstring_view text) {
  std::vector<std::wstring> forms;
  const std::wstring_view whole = trimView(text);
  std::wstring_view rest = whole;
  while (const std::size_t length = leadingFormLength(rest)) {
    forms.emplace_back(rest.substr(0, length));
    rest = trimView(rest.substr(length));
  }
  if (forms.empty()) forms.emplace_back(whole);
  return forms;
}

std::vector<std::wstring_view> wrappedGroups(std::wstring_view text) {
  if (text.starts_with(L'(')) text.remove_prefix(1);
  if (text.ends_with(L')')) text.remove_suffix(1);
  std::vector<std::wstring_view> groups;
  int depth = 0;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == L'(' && ++depth == 1) begin = i + 1;
    if (text[i] == L')' && depth > 0 && --depth == 0) groups.push_back(text.substr(begin, i - begin));
  }
  return groups;
}

} // namespace brenvolt
