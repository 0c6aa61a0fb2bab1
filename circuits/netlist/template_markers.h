// The marker blocks of a template drawing: where a build decides or places something.
#pragma once

#include "simhost/drawing/drawing_database.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace circuits {

/// The layer of a wire by its size: what MISC1 has after "_WIRETYPE=", with the placeholder between two "@".
struct LayerFormat {
  std::size_t from = 0; ///< of the setting in MISC1
  std::size_t length = 0;
  std::wstring text;
  std::wstring before;
  std::wstring placeholder;
  std::wstring after;
};

struct TemplateMarker {
  KvDbHandle handle;
  double x = 0.0;
  double y = 0.0;
  std::wstring code;
  std::optional<std::wstring> order; ///< nothing when the reference has no such attribute
  std::optional<std::wstring> misc1;
  // Derived once: many sheets use one template.
  std::wstring key;         ///< CODE in upper case
  std::wstring suffixKey;   ///< the suffix in upper case
  double orderNumber = 0.0; ///< 0 without ORDER

  [[nodiscard]] bool isWire() const;   ///< CODE begins with WT
  [[nodiscard]] bool isGround() const; ///< a wire position of the grounding conductor
  [[nodiscard]] std::wstring suffix() const;
  /// Nothing without a format of one placeholder.
  [[nodiscard]] std::optional<LayerFormat> layerFormat() const;
};

/// Of model space, in drawing order.
[[nodiscard]] std::vector<TemplateMarker> templateMarkers(const simhost::DrawingDatabase& drawing);

} // namespace circuits
