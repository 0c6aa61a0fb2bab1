#include "text/encoding.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace brenvolt {
namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t lastCodePoint = 0x10FFFF;
constexpr char32_t firstBeyondUnit = 0x10000;

constexpr bool isHighSurrogate(char32_t c) {
  return c >= 0xD800 && c < 0xDC00;
}

constexpr bool isLowSurrogate(char32_t c) {
  return c >= 0xDC00 && c < 0xE000;
}

constexpr bool isCodePoint(char32_t c) {
  return c <= lastCodePoint && !isHighSurrogate(c) && !isLowSurrogate(c);
}

constexpr char32_t joinSurrogates(char32_t high, char32_t low) {
  return firstBeyondUnit + ((high - 0xD800) << 10) + (low - 0xDC00);
}

/// The units in bytes of UTF-16, the low byte first; half a unit at the end does not count.
class UnitsLe final {
public:
  explicit UnitsLe(std::string_view bytes) : bytes_(bytes) {}
  [[nodiscard]] std::size_t size() const { return bytes_.size() / 2; }
  [[nodiscard]] char32_t operator[](std::size_t unit) const {
    const auto byte = [this](std::size_t place) { return static_cast<std::uint8_t>(bytes_[place]); };
    return static_cast<char32_t>(byte(2 * unit) | (byte(2 * unit + 1) << 8));
  }

private:
  std::string_view bytes_;
};

/// The code point at `position`, which moves past it. Surrogate pairs are joined, whatever the size of a unit.
template <class Units>
char32_t nextCodePoint(const Units& text, std::size_t& position) {
  const auto first = static_cast<char32_t>(text[position++]);
  if (isHighSurrogate(first) && position < text.size()) {
    const auto second = static_cast<char32_t>(text[position]);
    if (isLowSurrogate(second)) {
      ++position;
      return joinSurrogates(first, second);
    }
  }
  return isCodePoint(first) ? first : replacement;
}

void appendWide(std::wstring& text, char32_t c) {
  if (sizeof(wchar_t) == 2 && c >= firstBeyondUnit) {
    text.push_back(static_cast<wchar_t>(0xD800 + ((c - firstBeyondUnit) >> 10)));
    text.push_back(static_cast<wchar_t>(0xDC00 + ((c - firstBeyondUnit) & 0x3FF)));
    return;
  }
  text.push_back(static_cast<wchar_t>(c));
}

void appendUtf8(std::string& bytes, char32_t c) {
  const auto push = [&bytes](char32_t byte) { bytes.push_back(static_cast<char>(byte)); };
  const auto tail = [&push, c](int shift) { push(0x80 | ((c >> shift) & 0x3F)); };
  if (c < 0x80) {
    push(c);
  } else if (c < 0x800) {
    push(0xC0 | (c >> 6));
    tail(0);
  } else if (c < firstBeyondUnit) {
    push(0xE0 | (c >> 12));
    tail(6);
    tail(0);
  } else {
    push(0xF0 | (c >> 18));
    tail(12);
    tail(6);
    tail(0);
  }
}

struct Utf8Lead {
  int tailBytes = -1; ///< -1: no byte that a character can begin with
  char32_t bits = 0;
  std::uint8_t secondFrom = 0x80; ///< range of the second byte: shuts out overlong forms and surrogates
  std::uint8_t secondTo = 0xBF;
};

Utf8Lead leadOf(std::uint8_t byte) {
  if (byte < 0x80) return {0, byte};
  if (byte >= 0xC2 && byte <= 0xDF) return {1, byte & 0x1Fu};
  if (byte >= 0xE0 && byte <= 0xEF) {
    const std::uint8_t from = byte == 0xE0 ? 0xA0 : 0x80;
    const std::uint8_t to = byte == 0xED ? 0x9F : 0xBF;
    return {2, byte & 0x0Fu, from, to};
  }
  if (byte >= 0xF0 && byte <= 0xF4) {
    const std::uint8_t from = byte == 0xF0 ? 0x90 : 0x80;
    const std::uint8_t to = byte == 0xF4 ? 0x8F : 0xBF;
    return {3, byte & 0x07u, from, to};
  }
  return {};
}

/// The character at `position`, which moves past it. Nothing for malformed bytes: then it moves past the longest part
/// that could have begun a character, so one error costs one replacement.
std::optional<char32_t> nextUtf8(std::string_view bytes, std::size_t& position) {
  const Utf8Lead lead = leadOf(static_cast<std::uint8_t>(bytes[position++]));
  if (lead.tailBytes < 0) return std::nullopt;
  char32_t c = lead.bits;
  for (int i = 0; i < lead.tailBytes; ++i) {
    if (position == bytes.size()) return std::nullopt;
    const auto byte = static_cast<std::uint8_t>(bytes[position]);
    const std::uint8_t from = i == 0 ? lead.secondFrom : 0x80;
    const std::uint8_t to = i == 0 ? lead.secondTo : 0xBF;
    if (byte < from || byte > to) return std::nullopt;
    c = (c << 6) | (byte & 0x3Fu);
    ++position;
  }
  return c;
}

void appendUnitLe(std::string& bytes, char32_t unit) {
  bytes.push_back(static_cast<char>(unit & 0xFF));
  bytes.push_back(static_cast<char>((unit >> 8) & 0xFF));
}

/// How many units from the start on are ASCII, the same in both encodings: most texts are all of it.
template <class Text>
std::size_t plainLength(Text text) {
  const auto end = std::find_if(
      text.begin(), text.end(), [](auto unit) { return static_cast<std::uint32_t>(unit) >= 0x80; });
  return static_cast<std::size_t>(end - text.begin());
}

} // namespace

std::string toUtf8(std::wstring_view text) {
  const std::size_t plain = plainLength(text);
  std::string bytes(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(plain));
  for (std::size_t position = plain; position < text.size();) {
    appendUtf8(bytes, nextCodePoint(text, position));
  }
  return bytes;
}

std::wstring fromUtf8(std::string_view bytes) {
  const std::size_t plain = plainLength(bytes);
  std::wstring text(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(plain));
  if (plain != bytes.size()) text.reserve(bytes.size());
  for (std::size_t position = plain; position < bytes.size();) {
    appendWide(text, nextUtf8(bytes, position).value_or(replacement));
  }
  return text;
}

std::optional<std::wstring> fromUtf8Strict(std::string_view bytes) {
  const std::size_t plain = plainLength(bytes);
  std::wstring text(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(plain));
  if (plain != bytes.size()) text.reserve(bytes.size());
  for (std::size_t position = plain; position < bytes.size();) {
    const auto c = nextUtf8(bytes, position);
    if (!c) return std::nullopt;
    appendWide(text, *c);
  }
  return text;
}

std::string toUtf16Le(std::wstring_view text) {
  std::string bytes;
  bytes.reserve(text.size() * 2);
  for (std::size_t position = 0; position < text.size();) {
    const char32_t c = nextCodePoint(text, position);
    if (c < firstBeyondUnit) {
      appendUnitLe(bytes, c);
    } else {
      appendUnitLe(bytes, 0xD800 + ((c - firstBeyondUnit) >> 10));
      appendUnitLe(bytes, 0xDC00 + ((c - firstBeyondUnit) & 0x3FF));
    }
  }
  return bytes;
}

std::wstring fromUtf16Le(std::string_view bytes) {
  const UnitsLe units(bytes);
  std::wstring text;
  text.reserve(units.size());
  for (std::size_t position = 0; position < units.size();)
    appendWide(text, nextCodePoint(units, position));
  return text;
}

} // namespace brenvolt
