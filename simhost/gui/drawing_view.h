// The part of the main window that shows the drawing. It passes mouse and keys to what moves the view, marks entities and
// points at places, and to the pick that is open.
#pragma once

#include "simhost/gui/entity_marks.h"
#include "simhost/gui/place_pointer.h"
#include "simhost/gui/viewport.h"

#include <QWidget>

#include <functional>
#include <optional>

namespace simhost {

class DrawingView final : public QWidget {
public:
  /// What a click with the left button means.
  enum class Mode {
    select,     ///< selects the entity under the pointer
    pickEntity, ///< a prompt for an entity
    pickPoint,  ///< a prompt for a point: it snaps to the grid and to wires, keys move it
    zoomWindow  ///< the first of two corners
  };

  explicit DrawingView(QWidget* parent = nullptr);

  [[nodiscard]] Scene& scene() { return scene_; }
  [[nodiscard]] const ViewTransform& view() const { return port_.view(); }
  [[nodiscard]] Viewport& port() { return port_; }
  [[nodiscard]] EntityMarks& marks() { return marks_; }
  [[nodiscard]] PlacePointer& place() { return place_; }
  [[nodiscard]] Mode mode() const { return mode_; }

  /// The scene has other content now.
  void sceneChanged();
  void setMode(Mode mode);

  /// The pointer has moved: where it is in the drawing. What it is over has been found by then.
  std::function<void(const KvPoint3d& point)> onPointer;
  /// Coordinates have been typed that are none.
  std::function<void()> onBadCoordinates;
  /// The selection has changed by a click.
  std::function<void()> onSelected;
  /// A click in one of the picking modes: the point and the entity under it.
  std::function<void(const KvPoint3d& point, std::optional<KvDbHandle> entity)> onPick;
  /// Enter and Escape, in any mode.
  std::function<void()> onEnter;
  std::function<void()> onEscape;

protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void leaveEvent(QEvent* event) override;

private:
  void updateCursor();
  /// In pixels of the device, as all places here.
  void point(const QPointF& pixel);
  void click(const QPointF& pixel);
  void finishZoomWindow(const QPointF& pixel);
  /// Keys that move or end a pick; false for any other.
  [[nodiscard]] bool pickKey(const QKeyEvent& event);
  void stepEntity(int step);
  void pick(const KvPoint3d& point, std::optional<KvDbHandle> entity) const;
  void escape();

  Scene scene_;
  Viewport port_{scene_};
  EntityMarks marks_{scene_};
  PlacePointer place_{scene_, marks_, port_};
  Mode mode_ = Mode::select;
  Mode modeBehindWindow_ = Mode::select; ///< what comes back after a zoom window
  std::optional<QPointF> dragStart_;     ///< last place of a drag that pans
  std::optional<QPointF> corner_;        ///< first corner of a zoom window
  bool isSpaceDown_ = false;
};

} // namespace simhost
