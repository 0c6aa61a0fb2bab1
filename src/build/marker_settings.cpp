#include "build/marker_settings.h"

#include "text/numbers.h"

#include <algorithm>

namespace brenvolt {

const std::vector<MarkerSettings::Motor>& MarkerSettings::motorsOf(const ZanDwgMarkerList& list) {
  MotorsOfList& known = lists_[list.ownerId()];
  if (known.markers == list.size()) return known.motors;
  known.markers = list.size();
  known.motors.clear();
  for (const ZanDwgMarker& marker : list.markers())
    if (const ZanAnnotationDataList* rows = rowsOfMotor_(marker))
      known.motors.push_back({toDouble(marker.order), marker.id, rows});
  return known.motors;
}

RowsInForce MarkerSettings::at(const ZanDwgMarker& marker) {
  RowsInForce first;
  for (const ZanDwgMarker* each = &marker; each != nullptr;) {
    const auto place = tree_.placeOf(each->id);
    if (!place) break;
    const std::vector<Motor>& motors = motorsOf(*place->list);
    const double order = toDouble(each->order);
    const auto isNotAbove = [order](const Motor& motor) { return motor.order <= order; };
    const auto last = std::find_if(motors.rbegin(), motors.rend(), isNotAbove);
    if (last != motors.rend()) return {last->markerId, last->rows};
    if (first.rows == nullptr && !motors.empty()) first = {motors.front().markerId, motors.front().rows};
    each = tree_.findById(place->list->ownerId());
  }
  return first.rows != nullptr ? first : RowsInForce{0, &circuitRows_};
}

bool isMotorOrLoad(const ZanDwgMarker& marker) {
  return !marker.controls.isEmpty() || marker.record.controlGroup() != nullptr;
}

MarkerSettings::RowsOfMotor rowsOfMarkers() {
  return [](const ZanDwgMarker& marker) { return isMotorOrLoad(marker) ? &marker.controls : nullptr; };
}

MarkerSettings::RowsOfMotor rowsOfPages(const std::vector<MotorRows>& pages) {
  return [&pages](const ZanDwgMarker& marker) -> const ZanAnnotationDataList* {
    const auto page = std::find_if(
        pages.begin(), pages.end(), [&marker](const MotorRows& each) { return each.markerId == marker.id; });
    return page == pages.end() ? nullptr : &page->rows;
  };
}

} // namespace brenvolt
