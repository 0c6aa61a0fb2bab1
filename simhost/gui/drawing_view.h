// The part of the main window that shows the drawing: moving about in it, pointing at entities, and the picks that
// prompts ask for.
#pragma once

#include "simhost/gui/picture_cache.h"
#include "simhost/gui/scene.h"

#include <QTimer>
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
  [[nodiscard]] const ViewTransform& view() const { return picture_.view(); }
  [[nodiscard]] Mode mode() const { return mode_; }
  [[nodiscard]] std::optional<KvDbHandle> hovered() const { return hovered_; }
  [[nodiscard]] std::optional<KvDbHandle> selected() const { return selected_; }

  /// The scene has other content now.
  void sceneChanged();
  void setPaper(Paper paper);
  [[nodiscard]] Paper paper() const { return paper_; }
  void setGrid(bool isShown);
  void setMode(Mode mode);
  void select(std::optional<KvDbHandle> entity);
  /// Marks an entity that something beside the drawing is about.
  void light(std::optional<KvDbHandle> entity);
  [[nodiscard]] std::optional<KvDbHandle> lit() const { return lit_; }
  /// What is selected together with an entity, such as its circuit.
  void selectGroup(std::vector<KvDbHandle> entities);
  [[nodiscard]] const std::vector<KvDbHandle>& group() const { return group_; }
  /// Whether the placed circuit may overlap the selected group, as a moved circuit may.
  void setIgnoresGroup(bool ignores) { ignoresGroup_ = ignores; }

  /// In `pickEntity`, which entities light up under the pointer and are stepped over by keys; null for all.
  void setFilter(std::function<bool(KvDbHandle)> fits) { fits_ = std::move(fits); }

  /// What is to be placed, around the point that is picked: drawn at the pointer in `pickPoint`.
  void setOutline(const std::optional<Box>& outline);
  /// Moves the pointer of `pickPoint` there, and the view so that it is seen.
  void proposePoint(const KvPoint3d& point);
  /// The point that `pickPoint` would return now.
  [[nodiscard]] KvPoint3d pointed() const;
  /// Whether the outline with its point here overlaps something of the drawing.
  [[nodiscard]] bool overlaps(const KvPoint3d& point) const;
  /// What has been typed of coordinates, empty for nothing.
  [[nodiscard]] const QString& typed() const { return typed_; }
  /// Shows the area unless all of it is seen already.
  void showArea(const Box& area);

  void zoomExtents();
  /// Around the middle of the view.
  void zoomBy(double factor);
  void zoomTo(const Box& area);
  void panBy(const QPoint& pixels);
  /// Paints to the end instead of by and by.
  void finishPainting();

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
  void setView(const ViewTransform& view);
  void refresh();
  void paintOn();
  void updateCursor();
  void point(const QPointF& pixel);
  void click(const QPointF& pixel);
  void finishZoomWindow(const QPointF& pixel);
  /// Keys that move or end a pick; false for any other.
  [[nodiscard]] bool pickKey(const QKeyEvent& event);
  [[nodiscard]] bool pointKey(const QKeyEvent& event);
  void moveTo(const KvPoint3d& point);
  /// The outline with its point here; the point alone without one.
  [[nodiscard]] Box outlineAt(const KvPoint3d& point) const;
  void stepEntity(int step);
  void answerTyped();
  [[nodiscard]] KvPoint3d snapped(const QPointF& pixel) const;
  void paintPlace(QPainter& painter) const;
  [[nodiscard]] bool isOffered(KvDbHandle entity) const;
  void paintLit(QPainter& painter);
  void paintHighlight(QPainter& painter, const std::vector<std::uint32_t>& numbers, const QColor& colour);
  void findGroupItems();
  /// Pixels of the device for one of the window.
  [[nodiscard]] double ratio() const { return devicePixelRatioF(); }

  Scene scene_;
  PictureCache picture_{scene_};
  QTimer painting_; ///< runs while pieces of the picture are missing
  Paper paper_ = Paper::light;
  Mode mode_ = Mode::select;
  Mode modeBehindWindow_ = Mode::select; ///< what comes back after a zoom window
  bool isFitted_ = true; ///< the view still shows the extents, so that a resize keeps doing so
  std::optional<KvDbHandle> hovered_;
  std::optional<KvDbHandle> selected_;
  std::optional<KvDbHandle> lit_;
  std::function<bool(KvDbHandle)> fits_;
  std::vector<KvDbHandle> group_;
  std::vector<std::uint32_t> groupItems_; ///< of the scene
  bool ignoresGroup_ = false;
  std::optional<QPointF> dragStart_; ///< last place of a drag that pans
  std::optional<QPointF> corner_;    ///< first corner of a zoom window
  QPointF pointer_;
  std::optional<KvPoint3d>
      moved_; ///< where keys have moved the pointer of a pick, which no pixel says as exactly
  std::optional<Box> outline_;
  QString typed_;
  bool isSpaceDown_ = false;
};

} // namespace simhost
