// One cell as passed between engines, and the one rule that converts it to text: the same cell reads the same from
// every file and server.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt::tables {

struct TableValue {
  enum class Kind : std::uint8_t { null, integer, real, text, blob };

  Kind kind = Kind::null;
  std::int64_t integer = 0;
  double real = 0.0;
  /// UTF-8 of a text, the bytes of a blob.
  std::string bytes;

  [[nodiscard]] static TableValue null() { return {}; }
  [[nodiscard]] static TableValue ofInteger(std::int64_t value);
  [[nodiscard]] static TableValue ofReal(double value);
  [[nodiscard]] static TableValue ofText(std::string utf8);
  [[nodiscard]] static TableValue ofBlob(std::string data);
  /// The number that a whole text is, an integer where it can be one; null for any other text.
  [[nodiscard]] static TableValue ofNumber(std::string_view text);
};

using TableRow = std::vector<TableValue>;

[[nodiscard]] constexpr bool isNumberKind(TableValue::Kind kind) {
  return kind == TableValue::Kind::integer || kind == TableValue::Kind::real;
}

/// A real as usually written: 15 significant digits, no trailing zeros, never "-0". Not finite gives an empty text.
[[nodiscard]] std::string realText(double value);

/// The text of a cell: empty for NULL, a blob as its bytes in hexadecimal digits.
[[nodiscard]] std::wstring valueText(const TableValue& value);
/// The number of a cell: a text's leading number, 0 for NULL and for a blob.
[[nodiscard]] double valueNumber(const TableValue& value);

/// UTF-8 to wide text; bytes that are ASCII, as most cells are, take a short way.
[[nodiscard]] std::wstring widen(std::string_view utf8);

[[nodiscard]] std::vector<std::byte> blobBytes(std::string_view data);
[[nodiscard]] std::string hexadecimal(std::string_view data);

} // namespace brenvolt::tables
