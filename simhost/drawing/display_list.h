// What of a drawing is to be seen, in the order in which it is drawn: block references resolved, each shape with the
// look that its layer gives it. Every picture of a drawing is painted from this one list (picture_painter.h).
#pragma once

#include "simhost/drawing/box.h"
#include "simhost/drawing/drawing_database.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace simhost {

/// A shape in drawing coordinates.
struct DisplayItem {
  Shape shape; ///< never a block reference, an attribute or its definition: those have become what they show
  Colour colour;
  LineType lineType = LineType::continuous;
  std::uint32_t layer = 0; ///< place among the drawing's layers
  /// The entity of the space that it belongs to: for what a block reference shows, attributes included, the reference.
  KvDbHandle entity;
};

/// The block's entities: visible attributes as texts, attribute definitions as their tag in a space and as nothing
/// inside a placed block. Nothing when blocks are so nested that there would be more than half a million shapes.
[[nodiscard]] std::optional<std::vector<DisplayItem>> displayList(
    const DrawingDatabase& drawing, KvDbHandle block);

/// The box around a shape, its width included. Letters are taken to have their mean advance.
[[nodiscard]] Box boxOf(const Shape& shape);

/// Degrees from start to end, counter-clockwise; equal angles are the whole circle.
[[nodiscard]] double turnOf(const Arc& arc);

/// How a text is drawn: its size is a font's, and its position is on a base line.
struct TextPlace {
  KvPoint3d position; ///< on the base line
  double fontSize = 0.0;
  double anchor = 0.0; ///< the part of its length before the position: 0, 0.5 or 1
};
[[nodiscard]] TextPlace textPlace(const Text& text);
/// The corners of the box that a text is taken to fill, in their turn.
[[nodiscard]] std::array<KvPoint3d, 4> textCorners(const Text& text);

inline constexpr std::size_t lineTypeCount = 4;
/// What dashed lines are made of: lengths in pixels of dash, gap, dash, gap; none for a continuous line.
[[nodiscard]] const std::vector<double>& dashesOf(LineType type);

enum class Paper : std::uint8_t { light, dark };
/// The colour with sufficient contrast to the paper: same hue, darker on light paper, lighter on dark paper.
[[nodiscard]] Colour readable(Colour colour, Paper paper);

/// The thinnest line of a picture, in pixels.
inline constexpr double thinnestPixels = 1.2;

} // namespace simhost
