// Which motor's or load's rows a marker's scripts get as their group data. Markers of several motors stand in one list;
// their order texts tell where the rows of the next motor begin.
#pragma once

#include "drawing/annotation_rows.h"
#include "drawing/markers.h"

#include <string>
#include <vector>

namespace brenvolt {

/// The group data of one walk. It does not leak into the walk of a parent or of a nested template.
class MarkerSettings final {
public:
  /// A direct build starts with the rows of the circuit as a whole.
  explicit MarkerSettings(const ZanAnnotationDataList& circuitRows) : groupData_(circuitRows) {}
  /// An interactive build takes two entries of `source` for each motor; `orders` holds the order text of each.
  MarkerSettings(ZanAnnotationDataList source, std::vector<std::wstring> orders)
      : source_(std::move(source)), orders_(std::move(orders)) {}

  [[nodiscard]] const ZanAnnotationDataList& groupData() const { return groupData_; }

  /// A direct build: a marker's own rows stand from it on. True when the group data changed.
  bool takeOwnRows(const ZanDwgMarker& marker);
  /// An interactive build: goes on to the rows of the motor that the marker's order belongs to. True when the group
  /// data changed.
  bool advanceTo(const ZanDwgMarker& marker);

private:
  ZanAnnotationDataList source_;
  std::vector<std::wstring> orders_;
  std::size_t group_ = 0;
  std::size_t position_ = 0; ///< of the group's first entry in the source
  double threshold_ = 0.0;
  ZanAnnotationDataList groupData_;
};

} // namespace brenvolt
