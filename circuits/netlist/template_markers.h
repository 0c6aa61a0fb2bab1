// The marker blocks of a template drawing: where a build decides or places something.
#pragma once

#include "simhost/drawing/drawing_database.h"

#include <optional>
#include <string>
#include <vector>

namespace circuits {

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
};

/// Of model space, in drawing order.
[[nodiscard]] std::vector<TemplateMarker> templateMarkers(const simhost::DrawingDatabase& drawing);

} // namespace circuits
