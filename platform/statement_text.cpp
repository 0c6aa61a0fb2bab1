#include "platform/statement_text.h"

#include "text/split.h"

#include <algorithm>

namespace brenvolt {

namespace {

bool holdsSingleQuote(std::wstring_view value) {
  for (std::size_t at = 0; at < value.size(); ++at) {
    if (value[at] != L'\'') continue;
    if (at + 1 >= value.size() || value[at + 1] != L'\'') return true;
    ++at;
  }
  return false;
}

bool isInteger(std::wstring_view value) {
  if (!value.empty() && (value.front() == L'-' || value.front() == L'+')) value.remove_prefix(1);
  return !value.empty() &&
         std::all_of(value.begin(), value.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

/// The text around a placeholder decides which values are allowed.
enum class Place { open, text, name };

std::wstring refusal(Place place, wchar_t letter, const std::wstring& value) {
  if (letter == L'd' && !isInteger(value)) return L"\"" + value + L"\" is not an integer";
  if (place == Place::text && holdsSingleQuote(value)) {
    return L"a value with a single quote cannot be used in a statement: " + value;
  }
  if (place == Place::name && (value.empty() || value.find_first_of(L"[]") != std::wstring::npos)) {
    return value.empty() ? L"an empty name cannot be used in a statement"
                         : L"a name with a bracket cannot be used in a statement: " + value;
  }
  return {};
}

Place placeAfter(Place place, wchar_t character) {
  switch (place) {
  case Place::open:
    return character == L'\'' ? Place::text : character == L'[' ? Place::name : Place::open;
  case Place::text:
    return character == L'\'' ? Place::open : Place::text;
  case Place::name:
    return character == L']' ? Place::open : Place::name;
  }
  return place;
}

} // namespace

StatementText buildStatement(std::wstring_view format, const std::vector<std::wstring>& values) {
  StatementText result;
  Place place = Place::open;
  std::size_t used = 0;
  for (std::size_t at = 0; at < format.size(); ++at) {
    const wchar_t next = at + 1 < format.size() ? format[at + 1] : L'\0';
    if (format[at] != L'%' || (next != L's' && next != L'd' && next != L'%')) {
      place = placeAfter(place, format[at]);
      result.text += format[at];
      continue;
    }
    ++at;
    if (next == L'%') {
      result.text += L'%';
      continue;
    }
    if (used == values.size()) return {{}, L"a statement lacks a value: " + std::wstring(format)};
    const std::wstring& value = values[used++];
    if (std::wstring error = refusal(place, next, value); !error.empty()) return {{}, std::move(error)};
    result.text += value;
  }
  if (used != values.size()) return {{}, L"a statement has more values than places: " + std::wstring(format)};
  return result;
}

} // namespace brenvolt
