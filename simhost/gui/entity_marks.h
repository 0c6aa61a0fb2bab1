// The entities of the drawing that something is about: under the pointer, selected, selected together with one (its
// circuit), or lit by a dialog; and how they are marked in the view.
#pragma once

#include "simhost/gui/painter_sink.h"
#include "simhost/gui/scene.h"
#include "simhost/gui/view_transform.h"

#include <functional>
#include <optional>
#include <vector>

namespace simhost {

class EntityMarks final {
public:
  /// The scene must outlive it.
  explicit EntityMarks(const Scene& scene) : scene_(scene) {}
  EntityMarks(const EntityMarks&) = delete;
  EntityMarks& operator=(const EntityMarks&) = delete;

  [[nodiscard]] std::optional<KvDbHandle> hovered() const { return hovered_; }
  [[nodiscard]] std::optional<KvDbHandle> selected() const { return selected_; }
  [[nodiscard]] std::optional<KvDbHandle> lit() const { return lit_; }
  [[nodiscard]] const std::vector<KvDbHandle>& group() const { return group_; }
  [[nodiscard]] bool isInGroup(KvDbHandle entity) const;
  /// The middle of the entity that keys have reached; nothing when the pointer has found it.
  [[nodiscard]] std::optional<KvPoint3d> stepped() const { return stepped_; }

  /// What the pointer is over.
  void hover(std::optional<KvDbHandle> entity);
  void select(std::optional<KvDbHandle> entity);
  /// Marks an entity that something beside the drawing is about.
  void light(std::optional<KvDbHandle> entity);
  /// What is selected together with an entity, such as its circuit.
  void selectGroup(std::vector<KvDbHandle> entities);
  /// Which entities light up under the pointer and are stepped over by keys; null for all.
  void setFilter(std::function<bool(KvDbHandle)> fits) { fits_ = std::move(fits); }
  /// The next entity (1) or the one before (-1) in drawing order, as if the pointer were over it: the box around it,
  /// nothing when no entity fits.
  [[nodiscard]] std::optional<Box> step(int step);
  void sceneChanged();

  /// `showsHover`: whether what is under the pointer is marked.
  void paint(QPainter& painter, const ViewTransform& view, Paper paper, double ratio, bool showsHover) const;

  std::function<void()> onChanged;

private:
  void changed();
  [[nodiscard]] bool isOffered(KvDbHandle entity) const { return !fits_ || fits_(entity); }
  [[nodiscard]] Box boxOf(KvDbHandle entity) const;
  void findGroupItems();
  void paintLit(QPainter& painter, const ViewTransform& view, Paper paper, double ratio) const;
  void paintItems(
      QPainter& painter, const ViewTransform& view, Paper paper, double ratio,
      const std::vector<std::uint32_t>& numbers, Colour colour) const;

  const Scene& scene_;
  std::optional<KvDbHandle> hovered_;
  std::optional<KvPoint3d> stepped_;
  std::optional<KvDbHandle> selected_;
  std::optional<KvDbHandle> lit_;
  std::function<bool(KvDbHandle)> fits_;
  std::vector<KvDbHandle> group_;
  std::vector<std::uint32_t> groupItems_; ///< of the scene
};

} // namespace simhost
