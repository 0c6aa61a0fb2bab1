#include "platform/cell_check.h"

#include "text/numbers.h"

#include <cmath>
#include <string_view>
#include <utility>

namespace brenvolt::tables {

namespace {

std::string_view withoutBlanks(std::string_view text) {
  constexpr std::string_view blanks = " \t\r\n";
  const std::size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

TableValue numberOf(std::string_view text) {
  return TableValue::ofNumber(withoutBlanks(text));
}

bool isNumber(std::string_view text) {
  return numberOf(text).kind != TableValue::Kind::null;
}

bool isNumberPair(std::string_view text) {
  const std::size_t separator = text.find(';');
  return separator != std::string_view::npos && isNumber(text.substr(0, separator)) &&
         isNumber(text.substr(separator + 1));
}

/// Makes a number of a text that is one. False when the cell holds anything but a number or NULL.
bool toNumber(TableValue& value) {
  // An empty text in a number column would count as a value.
  if (value.kind == TableValue::Kind::text && value.bytes.empty()) value = TableValue::null();
  if (value.kind == TableValue::Kind::text) {
    TableValue number = numberOf(value.bytes);
    if (number.kind == TableValue::Kind::null) return false;
    value = std::move(number);
  }
  return value.kind != TableValue::Kind::real || std::isfinite(value.real);
}

/// What the cell should be and is not; null for a good one.
const wchar_t* neededInstead(TableValue& value, ColumnUse use) {
  constexpr const wchar_t* number = L"a number";
  constexpr const wchar_t* wholeNumber = L"a whole number";
  constexpr const wchar_t* pair = L"two numbers with \";\" between";
  const bool isFilledText = value.kind == TableValue::Kind::text && !value.bytes.empty();
  switch (use) {
  case ColumnUse::text:
    return nullptr;
  case ColumnUse::number:
    return toNumber(value) ? nullptr : number;
  case ColumnUse::key:
    return toNumber(value) && value.kind != TableValue::Kind::real ? nullptr : wholeNumber;
  case ColumnUse::numberAsText:
  case ColumnUse::limit:
    return isFilledText && !isNumber(value.bytes) ? number : nullptr;
  case ColumnUse::numberPair:
    return isFilledText && !isNumberPair(value.bytes) ? pair : nullptr;
  }
  return nullptr;
}

} // namespace

std::wstring BadCell::told() const {
  return L"row " + formatInt(place) + L", column " + column + L": \"" + text + L"\" is not " + needed;
}

void CellCheck::check(TableRow& row, std::int64_t place, Last last, BadCells badCells) {
  for (std::size_t column = 0; column < row.size(); ++column) {
    const ColumnUse use = uses_[column];
    if (use == ColumnUse::text || (use == ColumnUse::limit && last == Last::yes)) continue;
    std::wstring text = valueText(row[column]);
    if (text.empty()) text = L"infinity"; // of the cells that hold something, only this one has no text
    const wchar_t* needed = neededInstead(row[column], use);
    if (needed == nullptr) continue;
    found_.push_back({place, columns_[column].name, std::move(text), needed});
    if (badCells == BadCells::makeNull) row[column] = TableValue::null();
  }
}

} // namespace brenvolt::tables
