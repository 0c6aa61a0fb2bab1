#include "build/marker_settings.h"

#include "text/compare.h"
#include "text/numbers.h"

namespace brenvolt {

bool MarkerSettings::takeOwnRows(const ZanDwgMarker& marker) {
  if (marker.controls.isEmpty()) return false;
  groupData_ = marker.controls;
  return true;
}

bool MarkerSettings::advanceTo(const ZanDwgMarker& marker) {
  if (orders_.size() >= 2 && group_ + 1 < orders_.size()) {
    if (groupData_.isEmpty()) threshold_ = toDouble(orders_[group_ + 1]);
    const double order = toDouble(marker.order);
    bool goesOn = order > threshold_ || equalsOrdinalNoCase(orders_[group_ + 1], marker.order);
    if (goesOn) {
      // The test behind the step looks at the group just reached, not at the one ahead, so with three motors a marker
      // behind the second one's order reaches the third. Kept: workbooks are written for it.
      while (goesOn && group_ + 1 < orders_.size()) {
        ++group_;
        threshold_ = toDouble(orders_[group_]);
        goesOn = order > threshold_;
      }
      position_ = 2 * group_;
      groupData_.Clear();
    }
  }
  if (!groupData_.isEmpty() || position_ + 1 >= source_.size()) return false;
  groupData_.AddItem(source_.items()[position_]);
  groupData_.AddItem(source_.items()[position_ + 1]);
  return true;
}

} // namespace brenvolt
