#include "project/annotation_presets.h"

#include "text/compare.h"

#include <algorithm>

namespace brenvolt {

namespace {

constexpr std::size_t usedCells = 6;
constexpr std::size_t valueCell = 4;

} // namespace

bool ZanAnnotationExList::AddRow(std::wstring_view key, const std::vector<std::wstring>& cells) {
  if (cells.size() < usedCells) return false;
  if (std::all_of(cells.begin() + 1, cells.end(), [](const std::wstring& cell) { return cell.empty(); }))
    return false;
  ZanAnnotationPreset preset{!cells[valueCell].empty(), cells[1], cells[2], cells[3],
                             cells[valueCell],          cells[5]};
  const auto repeats = [&preset](const ZanAnnotationPreset& each) {
    return equalsOrdinalNoCase(each.label, preset.label) &&
           equalsOrdinalNoCase(each.attribute, preset.attribute);
  };
  const auto known = presets_.find(key);
  if (known != presets_.end() && std::any_of(known->second.begin(), known->second.end(), repeats))
    return false;
  presets_[std::wstring(key)].push_back(std::move(preset));
  return true;
}

ZanAnnotationExList::Presets* ZanAnnotationExList::Find(std::wstring_view key) {
  if (key.empty()) return nullptr;
  const auto presets = presets_.find(key);
  return presets == presets_.end() ? nullptr : &presets->second;
}

std::vector<AnnotationRow> enabledRows(const ZanAnnotationExList::Presets& presets) {
  std::vector<AnnotationRow> rows;
  for (const ZanAnnotationPreset& preset : presets)
    if (preset.enabled) rows.push_back({preset.label, preset.attribute, preset.value, preset.extra});
  return rows;
}

} // namespace brenvolt
