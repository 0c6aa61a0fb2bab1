// One way from shapes to a picture: the window, SVG files, pages of a printer and PDF are all painted by this walk, which
// decides colours, line widths, dashes, the places of texts and what is left out because it is too small. A sink only puts
// finished strokes and texts where its picture is kept.
#pragma once

#include "simhost/drawing/display_list.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simhost {

/// The letters of all pictures; their measures are in the display list.
inline constexpr const char* pictureFont = "DejaVu Sans";

/// A place in a picture, in its units: x to the right, y downwards.
struct PicturePoint {
  double x = 0.0;
  double y = 0.0;
};

/// Where the drawing is in the picture: the point `origin` of the drawing is at (left, top).
struct PicturePlace {
  double scale = 1.0; ///< units of the picture for a drawing unit
  KvPoint3d origin{};
  double left = 0.0;
  double top = 0.0;

  [[nodiscard]] PicturePoint at(const KvPoint3d& point) const {
    return {(point.x - origin.x) * scale + left, (origin.y - point.y) * scale + top};
  }
};

/// How a line is drawn; lengths are in units of the picture.
struct Stroke {
  Colour colour;
  double width = 0.0;
  /// Dash, gap, dash, gap; null for a continuous line. Lives as long as the painter.
  const std::vector<double>* dashes = nullptr;
  double opacity = 1.0;

  bool operator==(const Stroke&) const = default;
};

struct PictureArc {
  PicturePoint centre;
  double radius = 0.0;
  double startDegrees = 0.0; ///< counter-clockwise, as the user sees it
  double turnDegrees = 0.0;  ///< above 0, below 360
  PicturePoint from;
  PicturePoint to;
};

struct PictureText {
  std::wstring_view text;       ///< one line, without control characters; never empty
  PicturePoint position;        ///< on the base line
  double size = 0.0;            ///< of the font
  double anchor = 0.0;          ///< the part of its length before the position: 0, 0.5 or 1
  double rotationDegrees = 0.0; ///< counter-clockwise, as the user sees it
  Colour colour;
};

/// Where a picture is kept.
class PictureSink {
public:
  virtual ~PictureSink();
  virtual void line(const PicturePoint& from, const PicturePoint& to, const Stroke& stroke) = 0;
  virtual void path(const std::vector<PicturePoint>& points, bool isClosed, const Stroke& stroke) = 0;
  virtual void circle(const PicturePoint& centre, double radius, const Stroke& stroke) = 0;
  virtual void arc(const PictureArc& arc, const Stroke& stroke) = 0;
  virtual void text(const PictureText& text) = 0;
};

/// How small things are treated.
enum class Detail : std::uint8_t {
  full,  ///< everything as it is
  screen ///< what is smaller than a pixel is a dot, a text too small to be read is a line
};

struct PictureStyle {
  Paper paper = Paper::light;
  Detail detail = Detail::full;
  /// Of a picture on a screen, in units of this picture: line widths and dashes are given in pixels.
  double pixel = 1.0;
  /// In place of all colours, wider: what is pointed at.
  std::optional<Colour> highlight{};
};

/// A pixel on paper in millimetres: the thinnest line is that of a plotter's fine pen, 0.25 mm.
inline constexpr double pixelMillimetres = 0.25 / thinnestPixels;

class PicturePainter final {
public:
  /// The sink must outlive it.
  PicturePainter(PictureSink& sink, const PicturePlace& place, const PictureStyle& style);
  PicturePainter(const PicturePainter&) = delete;
  PicturePainter& operator=(const PicturePainter&) = delete;

  /// `box`: of the item's shape, as `boxOf` returns it.
  void paint(const DisplayItem& item, const Box& box);
  /// In full detail.
  void paint(const DisplayItem& item);

private:
  [[nodiscard]] Stroke strokeOf(const DisplayItem& item, double width) const;
  [[nodiscard]] Colour colourOf(const DisplayItem& item) const;
  void paintShape(const DisplayItem& item, const Line& line);
  void paintShape(const DisplayItem& item, const Polyline& polyline);
  void paintShape(const DisplayItem& item, const Circle& circle);
  void paintShape(const DisplayItem& item, const Arc& arc);
  void paintShape(const DisplayItem& item, const Text& text);
  /// A text that is too small to be read.
  void paintUnreadable(const DisplayItem& item, const Text& text);
  // The display list has resolved these.
  void paintShape(const DisplayItem& /*item*/, const BlockReference& /*reference*/) {}
  void paintShape(const DisplayItem& /*item*/, const Attribute& /*attribute*/) {}
  void paintShape(const DisplayItem& /*item*/, const AttributeDefinition& /*definition*/) {}

  PictureSink& sink_;
  PicturePlace place_;
  PictureStyle style_;
  std::array<std::vector<double>, lineTypeCount> dashes_; ///< in units of the picture
  std::vector<PicturePoint> points_;                      ///< of the path that is painted
};

} // namespace simhost
