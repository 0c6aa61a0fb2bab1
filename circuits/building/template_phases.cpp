// Reading the markers of wire positions: WT01, WT02-A; WT01E is that of a grounding conductor.
#include "circuits/building/template_phases.h"

#include "circuits/netlist/template_markers.h"
#include "simhost/drawing/drawing_file.h"
#include "text/encoding.h"

#include <filesystem>
#include <map>
#include <system_error>

namespace circuits {

namespace fs = std::filesystem;

namespace {

/// The number of conductors by suffix.
std::map<std::wstring, int> positionsOf(const simhost::DrawingDatabase& drawing) {
  std::map<std::wstring, int> positions;
  for (const TemplateMarker& marker : templateMarkers(drawing))
    if (marker.isWire() && !marker.isGround()) ++positions[marker.suffixKey];
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
