// The words by which kinds, line types, justifications and colours are written, and entity data by application.
#include "simhost/drawing/entity.h"

#include "text/compare.h"

#include <algorithm>
#include <array>
#include <limits>

namespace simhost {
namespace {

constexpr std::array<std::wstring_view, 4> lineTypeNames{L"continuous", L"dashed", L"dotted", L"dash-dot"};
constexpr std::array<std::wstring_view, 4> justificationNames{L"left", L"centre", L"right", L"middle"};
constexpr std::array<std::wstring_view, 8> entityKindNames{
    L"line", L"polyline",        L"circle",    L"arc",
    L"text", L"block-reference", L"attribute", L"attribute-definition"};
static_assert(entityKindNames.size() == std::variant_size_v<Shape>);

template <typename Value, std::size_t count>
std::optional<Value> valueOf(const std::array<std::wstring_view, count>& names, std::wstring_view name) {
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) return std::nullopt;
  return static_cast<Value>(found - names.begin());
}

std::optional<int> hexDigit(wchar_t character) {
  if (character >= L'0' && character <= L'9') return character - L'0';
  if (character >= L'a' && character <= L'f') return character - L'a' + 10;
  if (character >= L'A' && character <= L'F') return character - L'A' + 10;
  return std::nullopt;
}

} // namespace

std::wstring formatColour(Colour colour) {
  constexpr std::wstring_view digits = L"0123456789abcdef";
  std::wstring text = L"#";
  for (const std::uint8_t part : {colour.red, colour.green, colour.blue}) {
    text += digits[part >> 4U];
    text += digits[part & 15U];
  }
  return text;
}

std::optional<Colour> parseColour(std::wstring_view text) {
  if (text.size() != 7 || text[0] != L'#') return std::nullopt;
  std::array<std::uint8_t, 3> parts{};
  for (std::size_t part = 0; part < parts.size(); ++part) {
    const auto high = hexDigit(text[1 + 2 * part]);
    const auto low = hexDigit(text[2 + 2 * part]);
    if (!high || !low) return std::nullopt;
    parts[part] = static_cast<std::uint8_t>(*high * 16 + *low);
  }
  return Colour{parts[0], parts[1], parts[2]};
}

std::wstring_view lineTypeName(LineType type) {
  return lineTypeNames[static_cast<std::size_t>(type)];
}

std::optional<LineType> lineTypeOf(std::wstring_view name) {
  return valueOf<LineType>(lineTypeNames, name);
}

std::wstring_view justificationName(Justification justification) {
  return justificationNames[static_cast<std::size_t>(justification)];
}

std::optional<Justification> justificationOf(std::wstring_view name) {
  return valueOf<Justification>(justificationNames, name);
}

std::wstring_view entityKindName(EntityKind kind) {
  return entityKindNames[static_cast<std::size_t>(kind)];
}

std::optional<EntityKind> entityKindOf(std::wstring_view name) {
  return valueOf<EntityKind>(entityKindNames, name);
}

const std::vector<std::wstring>* findData(const Entity& entity, std::wstring_view application) {
  for (const ApplicationData& data : entity.data) {
    if (brenvolt::equalsOrdinalNoCase(data.application, application)) return &data.texts;
  }
  return nullptr;
}

void setData(Entity& entity, std::wstring_view application, std::vector<std::wstring> texts) {
  const auto found = std::find_if(entity.data.begin(), entity.data.end(), [&](const ApplicationData& data) {
    return brenvolt::equalsOrdinalNoCase(data.application, application);
  });
  if (found == entity.data.end()) {
    if (!texts.empty()) entity.data.push_back({std::wstring(application), std::move(texts)});
  } else if (texts.empty()) {
    entity.data.erase(found);
  } else {
    found->texts = std::move(texts);
  }
}

bool isValid(const WireSetting& setting) {
  const std::int32_t* number = std::get_if<std::int32_t>(&setting.value);
  if (setting.code >= 1 && setting.code <= 4) return number == nullptr;
  if (setting.code == 90) return number != nullptr;
  if (setting.code != 290 || number == nullptr) return false;
  return *number >= std::numeric_limits<std::int16_t>::min() &&
         *number <= std::numeric_limits<std::int16_t>::max();
}

} // namespace simhost
