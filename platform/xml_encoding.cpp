#include "platform/xml_encoding.h"

#include "text/compare.h"
#include "text/encoding.h"

#include <algorithm>
#include <array>

namespace brenvolt {

namespace {

using namespace std::string_view_literals;

enum class Form { utf8, utf16Little, utf16Big, ascii, latin1 };

struct Start {
  std::string_view bytes;
  Form form;
  std::size_t markSize; ///< bytes of the mark, which are not part of the text
};
constexpr std::array<Start, 5> starts{{
    {"\xEF\xBB\xBF"sv, Form::utf8, 3},
    {"\xFF\xFE"sv, Form::utf16Little, 2},
    {"\xFE\xFF"sv, Form::utf16Big, 2},
    {"<\0"sv, Form::utf16Little, 0},
    {"\0<"sv, Form::utf16Big, 0},
}};

struct Declared {
  std::wstring_view name;
  Form form;
};
constexpr std::array<Declared, 7> encodings{{
    {L"UTF-8", Form::utf8},
    {L"UTF-16", Form::utf16Little},
    {L"UTF-16LE", Form::utf16Little},
    {L"UTF-16BE", Form::utf16Big},
    {L"US-ASCII", Form::ascii},
    {L"ISO-8859-1", Form::latin1},
    {L"LATIN1", Form::latin1},
}};

bool isWide(Form form) {
  return form == Form::utf16Little || form == Form::utf16Big;
}

std::string swapped(std::string_view bytes) {
  std::string text(bytes.substr(0, bytes.size() / 2 * 2));
  for (std::size_t i = 0; i + 1 < text.size(); i += 2)
    std::swap(text[i], text[i + 1]);
  return text;
}

std::string fromLatin1(std::string_view bytes) {
  std::wstring text;
  for (const char byte : bytes)
    text.push_back(static_cast<wchar_t>(static_cast<unsigned char>(byte)));
  return toUtf8(text);
}

/// Nothing for invalid units. In slices: the text of a large file is not in memory in a third form as a whole.
std::optional<std::string> fromUtf16(std::string_view bytes, Form form) {
  if (bytes.size() % 2 != 0) return std::nullopt;
  const std::string turned = form == Form::utf16Big ? swapped(bytes) : std::string();
  std::string_view left = form == Form::utf16Big ? turned : bytes;
  std::string text;
  text.reserve(left.size() / 2);
  while (!left.empty()) {
    constexpr std::size_t sliceSize = 1U << 16U;
    std::string_view slice = left.substr(0, sliceSize);
    // The two units of a character stay together.
    const bool endsInPair = (static_cast<unsigned char>(slice.back()) & 0xFCU) == 0xD8;
    if (endsInPair && slice.size() < left.size()) slice = left.substr(0, sliceSize + 2);
    left.remove_prefix(slice.size());
    const std::wstring units = fromUtf16Le(slice);
    // Invalid units become the replacement character; a slice that contains that one itself is compared.
    constexpr wchar_t replacement = 0xFFFD;
    if (units.find(replacement) != std::wstring::npos && toUtf16Le(units) != slice) return std::nullopt;
    text += toUtf8(units);
  }
  return text;
}

/// The value of `encoding` in a declaration; empty without one.
std::wstring declaredEncoding(std::string_view text) {
  if (!text.starts_with("<?xml")) return {};
  const std::string_view declaration = text.substr(0, text.find("?>"));
  const std::size_t word = declaration.find("encoding");
  const std::size_t open = declaration.find_first_of("\"'", word);
  if (word == std::string_view::npos || open == std::string_view::npos) return {};
  const std::size_t close = declaration.find(declaration[open], open + 1);
  if (close == std::string_view::npos) return {};
  return fromUtf8(declaration.substr(open + 1, close - open - 1));
}

std::size_t firstForbidden(std::string_view text) {
  const auto place = std::find_if(text.begin(), text.end(), [](char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n' && c != '\r';
  });
  return place == text.end() ? std::string_view::npos : static_cast<std::size_t>(place - text.begin());
}

std::optional<std::string> decode(std::string_view bytes, Form form) {
  switch (form) {
  case Form::utf8:
    return fromUtf8Strict(bytes) ? std::optional(std::string(bytes)) : std::nullopt;
  case Form::utf16Little:
  case Form::utf16Big:
    return fromUtf16(bytes, form);
  case Form::ascii:
    if (std::any_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) > 0x7F; }))
      return std::nullopt;
    return std::string(bytes);
  case Form::latin1:
    return fromLatin1(bytes);
  }
  return std::nullopt;
}

/// The encoding by the first bytes; UTF-8 covers all encodings with one byte for a basic character.
const Start* startOf(std::string_view bytes) {
  const auto found = std::find_if(
      starts.begin(), starts.end(), [&](const Start& start) { return bytes.starts_with(start.bytes); });
  return found == starts.end() ? nullptr : &*found;
}

} // namespace

XmlText decodeXml(std::string_view bytes) {
  const Start* const start = startOf(bytes);
  const std::string_view content = bytes.substr(start == nullptr ? 0 : start->markSize);
  const Form shown = start == nullptr ? Form::utf8 : start->form;
  const bool hasMark = start != nullptr && start->markSize > 0;

  // The declaration itself is plain letters in each of the encodings.
  const std::string head = isWide(shown) ? toUtf8(fromUtf16Le(
                                               shown == Form::utf16Big ? swapped(content.substr(0, 400))
                                                                       : std::string(content.substr(0, 400))))
                                         : std::string(content.substr(0, 200));
  Form form = shown;
  if (const std::wstring name = declaredEncoding(head); !name.empty()) {
    const auto known = std::find_if(encodings.begin(), encodings.end(), [&](const Declared& each) {
      return equalsOrdinalNoCase(each.name, name);
    });
    if (known == encodings.end()) return {{}, L"The encoding " + name + L" is not supported."};
    const bool fits =
        isWide(known->form) == isWide(shown) && (!hasMark || isWide(shown) || known->form == Form::utf8);
    if (!fits) return {{}, L"The file declares the encoding " + name + L", but its bytes are another one."};
    if (!isWide(shown)) form = known->form;
  }
  std::optional<std::string> text = decode(content, form);
  if (!text) return {{}, L"There are bytes that do not fit the encoding of the file."};
  if (const std::size_t place = firstForbidden(*text); place != std::string_view::npos)
    return {{}, L"There is a control character (at byte " + std::to_wstring(place) + L")."};
  return {std::move(*text), std::nullopt};
}

namespace {

/// Replaces any number of control characters: the text around them is worth more.
std::string withoutForbidden(std::string_view text) {
  std::string clean;
  while (!text.empty()) {
    const std::size_t place = firstForbidden(text);
    clean += text.substr(0, place);
    if (place == std::string_view::npos) break;
    clean += "\xEF\xBF\xBD";
    text.remove_prefix(place + 1);
  }
  return clean;
}

} // namespace

std::string decodeDamagedXml(std::string_view bytes) {
  const Start* const start = startOf(bytes);
  const std::string_view content = bytes.substr(start == nullptr ? 0 : start->markSize);
  const Form shown = start == nullptr ? Form::utf8 : start->form;
  if (shown == Form::utf16Big) return withoutForbidden(toUtf8(fromUtf16Le(swapped(content))));
  if (shown == Form::utf16Little) return withoutForbidden(toUtf8(fromUtf16Le(content)));
  return withoutForbidden(fromUtf8Strict(content) ? std::string(content) : fromLatin1(content));
}

} // namespace brenvolt
