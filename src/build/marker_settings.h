// Which motor's or load's rows a marker's scripts get as their group data. A template may hold several motors, and a
// marker of it may insert a template with markers, and motors, of its own.
#pragma once

#include "config/widget_manager_maker.h"
#include "drawing/annotation_rows.h"
#include "drawing/markers.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace brenvolt {

/// The rows that are in force at a marker.
struct RowsInForce {
  std::int32_t motor = 0; ///< id of the motor's or load's marker; 0: the circuit as a whole
  const ZanAnnotationDataList* rows = nullptr;
};

/// A marker gets the rows of the last motor of its own template whose order is not above the marker's; before the
/// first motor, those that are in force at the marker that inserted the template. If there are none, the first motor
/// of the nearest template with a motor is used. The result depends only on the position in the tree, not on what has
/// run before, so a direct build and the dialog, with any order of insertion, agree.
class MarkerSettings final {
public:
  /// The rows of the motor or load at a marker; null when there is none. The result must live as long as the
  /// tree.
  using RowsOfMotor = std::function<const ZanAnnotationDataList*(const ZanDwgMarker&)>;

  /// `circuitRows` are used for a circuit without motors.
  MarkerSettings(
      const ZanDwgMarkerList& tree, RowsOfMotor rowsOfMotor, const ZanAnnotationDataList& circuitRows)
      : tree_(tree), rowsOfMotor_(std::move(rowsOfMotor)), circuitRows_(circuitRows) {}

  [[nodiscard]] RowsInForce at(const ZanDwgMarker& marker);

private:
  struct Motor {
    double order;
    std::int32_t markerId;
    const ZanAnnotationDataList* rows;
  };
  /// The motors of one list in its order; a list that grew is read again.
  struct MotorsOfList {
    std::size_t markers = 0;
    std::vector<Motor> motors;
  };
  [[nodiscard]] const std::vector<Motor>& motorsOf(const ZanDwgMarkerList& list);

  const ZanDwgMarkerList& tree_;
  RowsOfMotor rowsOfMotor_;
  const ZanAnnotationDataList& circuitRows_;
  /// By id of the marker whose child list it is: searched, never walked.
  std::unordered_map<std::int32_t, MotorsOfList> lists_;
};

/// Whether a marker is a motor's or load's. One of which nothing is known is one as well: its wires must not get the size
/// of another's.
[[nodiscard]] bool isMotorOrLoad(const ZanDwgMarker& marker);

/// For a direct build: the rows that a saved configuration or a preset gives a marker.
[[nodiscard]] MarkerSettings::RowsOfMotor rowsOfMarkers();
/// For the dialog: what its pages show.
[[nodiscard]] MarkerSettings::RowsOfMotor rowsOfPages(const std::vector<MotorRows>& pages);

} // namespace brenvolt
