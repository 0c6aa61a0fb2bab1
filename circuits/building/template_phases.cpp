// Reading the markers of wire positions: WT01, WT02-A; WT01E is that of a grounding conductor.
#include "circuits/building/template_phases.h"

#include "simhost/drawing/drawing_file.h"
#include "text/compare.h"
#include "text/encoding.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <system_error>

namespace circuits {

namespace fs = std::filesystem;

namespace {

constexpr std::wstring_view markerBlock = L"ZAN_BV_MARKER_BLOCK";
constexpr std::wstring_view wireMark = L"WT";

std::wstring codeOf(const simhost::DrawingDatabase& drawing, const simhost::EntityNode& marker) {
  for (const KvDbHandle handle : marker.attributes)
    if (const simhost::EntityNode* node = drawing.find(handle)) {
      const auto& attribute = std::get<simhost::Attribute>(node->value.shape);
      if (brenvolt::equalsOrdinalNoCase(attribute.tag, L"CODE"))
        return brenvolt::toUpper(attribute.text.text);
    }
  return {};
}

/// The number of conductors by suffix.
std::map<std::wstring, int> positionsOf(const simhost::DrawingDatabase& drawing) {
  std::map<std::wstring, int> positions;
  for (const simhost::EntityNode* node = drawing.store().findBlock(drawing.modelSpace())->first;
       node != nullptr; node = node->next) {
    const auto* reference = std::get_if<simhost::BlockReference>(&node->value.shape);
    const simhost::BlockNode* block =
        reference == nullptr ? nullptr : drawing.store().findBlock(reference->block);
    if (block == nullptr || !brenvolt::equalsOrdinalNoCase(block->name, markerBlock)) continue;
    const std::wstring code = codeOf(drawing, *node);
    if (!code.starts_with(wireMark)) continue;
    const std::size_t dash = code.rfind(L'-');
    const std::wstring number = code.substr(0, dash).substr(wireMark.size());
    if (number.find(L'E') != std::wstring::npos) continue;
    ++positions[dash == std::wstring::npos ? std::wstring() : code.substr(dash)];
  }
  return positions;
}

} // namespace

std::optional<std::wstring> templatePhases(const std::string& site, const std::wstring& drawing) {
  const fs::path name = brenvolt::toUtf8(drawing);
  std::error_code error;
  for (const fs::path& folder : {fs::path(site), fs::path(site) / "templates"}) {
    if (!fs::is_regular_file(folder / name, error)) continue;
    const simhost::LoadedDrawing loaded = simhost::loadDrawing(brenvolt::fromUtf8((folder / name).string()));
    if (loaded.drawing == nullptr) return std::nullopt;
    int conductors = 0;
    for (const auto& [suffix, count] : positionsOf(*loaded.drawing)) {
      if (conductors != 0 && count != conductors) return std::nullopt;
      conductors = count;
    }
    if (conductors == 2) return L"1";
    if (conductors == 3) return L"3";
    return std::nullopt;
  }
  return std::nullopt;
}

} // namespace circuits
