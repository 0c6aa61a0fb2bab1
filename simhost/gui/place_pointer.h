// The pointer while a place is picked: it snaps to the grid and to the rails of neighbours, keys move it, coordinates can
// be typed, and the outline of what is to be placed is drawn at it.
#pragma once

#include "simhost/gui/entity_marks.h"
#include "simhost/gui/viewport.h"

class QKeyEvent;

namespace simhost {

class PlacePointer final {
public:
  /// All must outlive it.
  PlacePointer(const Scene& scene, const EntityMarks& marks, Viewport& port)
      : scene_(scene), marks_(marks), port_(port) {}
  PlacePointer(const PlacePointer&) = delete;
  PlacePointer& operator=(const PlacePointer&) = delete;

  /// In pixels of the device.
  [[nodiscard]] const QPointF& pixel() const { return pixel_; }
  /// The place that a pick would return now.
  [[nodiscard]] KvPoint3d point() const { return moved_ ? *moved_ : snapped(); }
  /// Whether the outline with its point here overlaps something of the drawing.
  [[nodiscard]] bool overlaps(const KvPoint3d& point) const;
  /// What has been typed of coordinates, empty for nothing.
  [[nodiscard]] const QString& typed() const { return typed_; }

  /// What is to be placed, around the point that is picked.
  void setOutline(const std::optional<Box>& outline);
  /// Whether it may overlap the selected group, as a moved circuit may.
  void setIgnoresGroup(bool ignores) { ignoresGroup_ = ignores; }
  /// The mouse is here.
  void follow(const QPointF& pixel);
  /// Moves it there, and the view so that it is seen with its outline and the whole drawing.
  void propose(const KvPoint3d& point);
  /// Nothing is typed, and the mouse leads again.
  void reset();
  /// After a change of the view: where keys have moved it, it stays in the drawing.
  void viewChanged();

  enum class Key {
    other,    ///< a key without a meaning here
    taken,    ///< it moved the pointer or typed
    chosen,   ///< the place is `point()`
    notAPoint ///< what is typed is not a pair of coordinates
  };
  [[nodiscard]] Key press(const QKeyEvent& event);
  void paint(QPainter& painter) const;

  std::function<void()> onChanged;
  /// Keys have moved it.
  std::function<void(const KvPoint3d& point)> onMoved;

private:
  [[nodiscard]] KvPoint3d snapped() const;
  /// The outline with its point here; the point alone without one.
  [[nodiscard]] Box outlineAt(const KvPoint3d& point) const;
  void moveTo(const KvPoint3d& point);
  [[nodiscard]] Key enter();
  void changed();

  const Scene& scene_;
  const EntityMarks& marks_;
  Viewport& port_;
  QPointF pixel_;
  std::optional<KvPoint3d> moved_; ///< where keys have moved it, which no pixel says as exactly
  std::optional<Box> outline_;
  QString typed_;
  bool ignoresGroup_ = false;
};

} // namespace simhost
