#include "platform/table_value.h"

#include "text/encoding.h"
#include "text/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace brenvolt::tables {

TableValue TableValue::ofInteger(std::int64_t value) {
  TableValue result;
  result.kind = Kind::integer;
  result.integer = value;
  return result;
}

TableValue TableValue::ofReal(double value) {
  TableValue result;
  result.kind = Kind::real;
  result.real = value;
  return result;
}

TableValue TableValue::ofText(std::string utf8) {
  TableValue result;
  result.kind = Kind::text;
  result.bytes = std::move(utf8);
  return result;
}

TableValue TableValue::ofBlob(std::string data) {
  TableValue result;
  result.kind = Kind::blob;
  result.bytes = std::move(data);
  return result;
}

TableValue TableValue::ofNumber(std::string_view text) {
  // A leading plus sign is one way to write a number.
  if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
  const char* end = text.data() + text.size();
  std::int64_t integer = 0;
  if (const auto read = std::from_chars(text.data(), end, integer);
      read.ec == std::errc() && read.ptr == end) {
    return ofInteger(integer);
  }
  double real = 0.0;
  const auto read = std::from_chars(text.data(), end, real);
  // "nan" and "inf" are words, not numbers.
  if (read.ec == std::errc() && read.ptr == end && std::isfinite(real)) return ofReal(real);
  return null();
}

std::string realText(double value) {
  if (!std::isfinite(value)) return {};
  if (value == 0.0) return "0";
  std::array<char, 40> buffer{};
  // A double keeps 15 digits of a typed number: 0.1 + 0.2 reads 0.3.
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::general, 15);
  return {buffer.data(), end.ptr};
}

std::wstring widen(std::string_view utf8) {
  const bool ascii =
      std::all_of(utf8.begin(), utf8.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (ascii) return {utf8.begin(), utf8.end()};
  return fromUtf8(utf8);
}

std::wstring valueText(const TableValue& value) {
  switch (value.kind) {
  case TableValue::Kind::null:
    return {};
  case TableValue::Kind::integer:
    return formatInt(value.integer);
  case TableValue::Kind::real:
    return widen(realText(value.real));
  case TableValue::Kind::text:
    return widen(value.bytes);
  case TableValue::Kind::blob:
    return widen(hexadecimal(value.bytes));
  }
  return {};
}

double valueNumber(const TableValue& value) {
  switch (value.kind) {
  case TableValue::Kind::integer:
    return static_cast<double>(value.integer);
  case TableValue::Kind::real:
    return value.real;
  case TableValue::Kind::text:
    return toDouble(widen(value.bytes));
  case TableValue::Kind::null:
  case TableValue::Kind::blob:
    return 0.0;
  }
  return 0.0;
}

std::vector<std::byte> blobBytes(std::string_view data) {
  std::vector<std::byte> bytes(data.size());
  std::transform(data.begin(), data.end(), bytes.begin(), [](char c) { return static_cast<std::byte>(c); });
  return bytes;
}

std::string hexadecimal(std::string_view data) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string text;
  text.reserve(data.size() * 2);
  for (const char c : data) {
    const auto byte = static_cast<unsigned char>(c);
    text += digits[byte >> 4U];
    text += digits[byte & 0x0FU];
  }
  return text;
}

} // namespace brenvolt::tables
