// A set of drawings as a window sees it: its sheets in their order, with the circuits on each.
#pragma once

#include <QString>

#include <optional>
#include <vector>

namespace simhost {

struct SetSheet {
  QString file;     ///< full path
  QString number;   ///< of the file's name: "001"
  QString circuits; ///< tags, with commas
};

struct DrawingSet {
  QString file; ///< full path of set.json
  QString title;
  std::vector<SetSheet> sheets;
};

/// Nothing for a file that is not a set, or has no sheets.
[[nodiscard]] std::optional<DrawingSet> readSet(const QString& file);

} // namespace simhost
