#include "drawing/wire_formatter.h"

#include "host/host_api_lisp.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <optional>

namespace brenvolt {

namespace {

constexpr std::wstring_view wireTypeKeyword = L"_WIRETYPE=";
constexpr std::wstring_view wireNumbersKeyword = L"_WIRENUMBERS=";
constexpr std::wstring_view placeholder = L"%s";
constexpr std::wstring_view wireLetters = L"WT";
constexpr std::wstring_view groundPattern = L"WT*E*";
constexpr wchar_t settingEnd = L';';
constexpr wchar_t placeholderMark = L'@';

bool matches(std::wstring_view text, std::wstring_view pattern) {
  return kvutWcMatch(std::wstring(text).c_str(), std::wstring(pattern).c_str()) == kvstatus::normal;
}

/// The text after a keyword, unbounded; nothing when the keyword does not occur.
std::optional<std::wstring_view> textBehind(std::wstring_view text, std::wstring_view keyword) {
  const std::size_t at = text.find(keyword);
  if (at == std::wstring_view::npos) return std::nullopt;
  return text.substr(at + keyword.size());
}

/// "MOTOR_@SIZE@;..." to "MOTOR_%s". A ";" ends the text also inside a placeholder.
std::wstring layerFormat(std::wstring_view setting) {
  std::wstring format;
  bool inPlaceholder = false;
  for (const wchar_t character : setting.substr(0, setting.find(settingEnd))) {
    if (character == placeholderMark) {
      if (!inPlaceholder) format += placeholder;
      inPlaceholder = !inPlaceholder;
    } else if (!inPlaceholder) {
      format += character;
    }
  }
  return format;
}

/// The placeholder is replaced and not formatted: the rest of a layer name may contain anything. A second placeholder
/// stays, because one value cannot fill it.
std::wstring fillFormat(std::wstring format, std::wstring_view value) {
  const std::size_t at = format.find(placeholder);
  if (at != std::wstring::npos) format.replace(at, placeholder.size(), value);
  return format;
}

enum class Position { wire, ground };

/// `suffix` absent: codes of every suffix.
std::vector<std::wstring> codesOf(
    const ZanWireFormatter::Entries& types, Position position, std::optional<std::wstring_view> suffix) {
  std::vector<std::wstring> codes;
  for (const auto& [format, code] : types) {
    if (suffix && !equalsCollating(wireSuffix(code), *suffix)) continue;
    if (ZanWireFormatter::IsGroundCode(code) == (position == Position::ground)) codes.push_back(code);
  }
  std::sort(codes.begin(), codes.end());
  return codes;
}

} // namespace

std::wstring wireSuffix(std::wstring_view code) {
  const std::size_t dash = code.rfind(L'-');
  return dash == std::wstring_view::npos ? std::wstring() : std::wstring(code.substr(dash));
}

std::wstring wireCode(int number, std::wstring_view suffix) {
  std::wstring code = number < 10 ? L"WT0" : L"WT";
  code += formatInt(number);
  code += suffix;
  return code;
}

std::wstring groundCode(int number, std::wstring_view suffix) {
  std::wstring code = L"WT0";
  code += formatInt(number);
  code += L'E';
  code += suffix;
  return code;
}

bool ZanWireFormatter::IsGroundCode(std::wstring_view code) {
  return matches(code, groundPattern);
}

WireFormat ZanWireFormatter::GetWireFormat(std::wstring_view code) const {
  const auto type = std::find_if(types_.begin(), types_.end(), [code](const auto& entry) {
    return !entry.first.empty() && equalsCollating(entry.second, code);
  });
  const auto number = std::find_if(numbers_.begin(), numbers_.end(), [code](const auto& entry) {
    return equalsCollating(entry.second, code);
  });
  WireFormat format;
  if (type != types_.end()) format.pattern = replaceAll(type->first, placeholder, L"*");
  if (number != numbers_.end()) format.numbers = number->first;
  if (format.pattern.empty()) format.pattern = L"*";
  if (format.numbers.empty()) format.numbers = L"1";
  return format;
}

std::optional<std::vector<std::wstring>> ZanWireFormatter::GetLayerNames(
    const WireSizes& sizes, std::wstring_view code) const {
  const auto hasCode = [code](const auto& entry) { return equalsCollating(entry.second, code); };
  if (std::none_of(types_.begin(), types_.end(), hasCode)) return std::nullopt;

  std::vector<std::wstring> names;
  std::optional<std::wstring> preferred;
  for (const auto& entry : types_) {
    if (entry.first.empty()) continue;
    const bool isGround = IsGroundCode(entry.second);
    std::wstring name = fillFormat(entry.first, isGround ? sizes.grounding : sizes.conductors);
    if (!preferred && hasCode(entry))
      preferred = std::move(name);
    else
      names.push_back(std::move(name));
  }
  std::stable_sort(names.begin(), names.end(), CollatingLess());
  if (preferred) names.insert(names.begin(), std::move(*preferred));
  return names;
}

std::vector<std::wstring> ZanWireFormatter::GetGroundCodes() const {
  return codesOf(types_, Position::ground, std::nullopt);
}

std::vector<std::wstring> ZanWireFormatter::GetGroundCodes(std::wstring_view suffix) const {
  return codesOf(types_, Position::ground, suffix);
}

std::vector<std::wstring> ZanWireFormatter::GetWireCodes(std::wstring_view suffix) const {
  return codesOf(types_, Position::wire, suffix);
}

void ZanWireFormatter::AddMarker(std::wstring_view code, std::wstring_view misc1) {
  const bool isWire = equalsOrdinalNoCase(code.substr(0, wireLetters.size()), wireLetters);
  if (const auto setting = textBehind(misc1, wireTypeKeyword)) {
    const std::wstring format = layerFormat(*setting);
    if (!format.empty()) {
      const bool known = std::any_of(types_.begin(), types_.end(), [&](const auto& entry) {
        return equalsCollating(entry.first, format) && equalsCollating(entry.second, code);
      });
      // A marker met again changes nothing, its numbering included.
      if (known) return;
      AddWireType(format, code);
    }
  } else if (isWire) {
    AddWireType(L"", code);
  }

  if (!isWire) return;
  std::wstring number;
  if (const auto setting = textBehind(misc1, wireNumbersKeyword)) {
    number = setting->substr(0, setting->find(settingEnd));
    if (number != L"0") number = L"1";
  }
  AddWireNumbers(number, code);
}

void ZanWireFormatter::AddWireType(std::wstring_view format, std::wstring_view code) {
  types_.emplace(format, code);
}

void ZanWireFormatter::AddWireNumbers(std::wstring_view value, std::wstring_view code) {
  numbers_.emplace(value, code);
}

void ZanWireFormatter::Merge(const ZanWireFormatter& other) {
  if (this == &other) return;
  types_.insert(other.types_.begin(), other.types_.end());
  numbers_.insert(other.numbers_.begin(), other.numbers_.end());
}

} // namespace brenvolt
