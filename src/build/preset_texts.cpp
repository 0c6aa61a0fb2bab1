#include "build/preset_texts.h"

#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <numeric>

namespace brenvolt {

namespace {

constexpr std::int32_t keepsSelection = -1;

std::wstring withoutBracketed(std::wstring_view text) {
  std::wstring kept;
  while (!text.empty()) {
    const std::size_t open = text.find(L'[');
    const std::size_t close = open == std::wstring_view::npos ? open : text.find(L']', open);
    if (close == std::wstring_view::npos) break;
    kept.append(text.substr(0, open));
    text.remove_prefix(close + 1);
  }
  return kept.append(text);
}

std::wstring withoutBrackets(std::wstring_view text) {
  std::wstring kept(text);
  std::erase_if(kept, [](wchar_t each) { return each == L'[' || each == L']'; });
  return kept;
}

std::vector<std::int32_t> integersOf(std::wstring_view text) {
  std::vector<std::int32_t> values;
  for (const std::wstring& item : splitSkippingEmpty(text, L','))
    if (const std::wstring_view number = trimView(item); !number.empty()) values.push_back(toInt(number));
  return values;
}

void selectOrKeep(ZanOptionGroup& group, std::int32_t value) {
  if (value == keepsSelection || group.options.empty() || group.selectValue(value)) return;
  // No option has the value: the last selected one stays alone, or the first one is taken.
  auto kept = std::find_if(
      group.options.rbegin(), group.options.rend(), [](const ZanOption& option) { return option.selected; });
  ZanOption& stays = kept == group.options.rend() ? group.options.front() : *kept;
  for (ZanOption& option : group.options)
    option.selected = &option == &stays;
}

void select(ZanCodeRecord& record, const std::vector<std::int32_t>& values) {
  for (std::size_t i = 0; i < record.groups.size() && i < values.size(); ++i)
    selectOrKeep(record.groups[i], values[i]);
}

/// Calls `visit` with the CODE and the values of each part that has one "=".
template <class Visit>
void forEachPresetPart(std::wstring_view presetText, Visit&& visit) {
  for (const std::wstring& part : splitSkippingEmpty(withoutBracketed(presetText), L';')) {
    const std::vector<std::wstring> sides = splitKeepingEmpty(part, L'=');
    if (sides.size() == 2) visit(trimView(sides[0]), integersOf(sides[1]));
  }
}

std::wstring unquoted(std::wstring_view text) {
  return trim(text, L"\"");
}

} // namespace

void applyPresetDefaults(std::wstring_view presetText, ZanCircuitCatalog& catalog) {
  forEachPresetPart(presetText, [&catalog](std::wstring_view code, const std::vector<std::int32_t>& values) {
    if (ZanCodeRecord* const record = catalog.findRecord(code)) select(*record, values);
  });
}

void applyPresetOptions(std::wstring_view presetText, std::wstring_view code, ZanCodeRecord& record) {
  forEachPresetPart(presetText, [&](std::wstring_view each, const std::vector<std::int32_t>& values) {
    if (equalsOrdinalNoCase(each, code)) select(record, values);
  });
}

std::vector<MarkerPreset> parseMarkerPresets(std::wstring_view presetText) {
  std::vector<MarkerPreset> presets;
  for (const std::wstring& part : splitSkippingEmpty(withoutBrackets(presetText), L';')) {
    const std::vector<std::wstring> pieces = splitKeepingEmpty(part, L'=');
    if (pieces.size() != 3) continue;
    MarkerPreset preset{trim(pieces[0]), trim(pieces[1]), integersOf(pieces[2]), 0};
    preset.sum = std::accumulate(preset.values.begin(), preset.values.end(), std::int32_t{0});
    presets.push_back(std::move(preset));
  }
  return presets;
}

std::vector<std::wstring> parseCodeHandles(std::wstring_view codeHandleText) {
  constexpr std::wstring_view delimiter = L"\";\"";
  std::wstring_view text = codeHandleText;
  if (text.starts_with(L'"')) text.remove_prefix(1);
  if (text.ends_with(L'"')) text.remove_suffix(1);
  std::vector<std::wstring> fields;
  if (text.empty()) return fields;
  for (std::size_t end = text.find(delimiter); end != std::wstring_view::npos; end = text.find(delimiter)) {
    fields.emplace_back(text.substr(0, end));
    text.remove_prefix(end + delimiter.size());
  }
  fields.emplace_back(text);
  return fields;
}

std::vector<PresetWire> parsePresetWires(std::wstring_view wireText) {
  std::vector<PresetWire> wires;
  for (const std::wstring_view group : wrappedGroups(wireText)) {
    const std::size_t last = group.rfind(L' ');
    if (last == std::wstring_view::npos) continue;
    const std::wstring_view words = trimView(group.substr(0, last));
    const std::size_t first = std::min(words.find(L' '), words.size());
    wires.push_back(
        {unquoted(words.substr(0, first)), unquoted(trimView(words.substr(first))),
         unquoted(group.substr(last + 1))});
  }
  return wires;
}

} // namespace brenvolt
