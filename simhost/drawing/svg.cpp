// Painting a display list in pixels.
#include "simhost/drawing/svg.h"

#include "simhost/drawing/display_list.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/geometry.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace simhost {
namespace {

constexpr double longerSidePixels = 1200.0;
constexpr double marginPixels = 24.0;
std::string number(double value) {
  return brenvolt::toUtf8(brenvolt::formatTrimmed(value == 0.0 ? 0.0 : value, 2));
}

std::string escaped(const std::wstring& text) {
  std::wstring result;
  for (const wchar_t character : text) {
    switch (character) {
    case L'&':
      result += L"&amp;";
      break;
    case L'<':
      result += L"&lt;";
      break;
    case L'>':
      result += L"&gt;";
      break;
    default:
      // Control characters are not allowed in XML; line ends and tabs have no width in a drawing's text.
      result += character < L' ' || character == 0xfffe || character == 0xffff ? L' ' : character;
    }
  }
  return brenvolt::toUtf8(result);
}

/// Writes marks in pixels, y downwards.
class Painter final {
public:
  Painter(const Box& extents, bool isSheet) : extents_(extents), isSheet_(isSheet) {
    const double width = extents.width();
    const double height = extents.height();
    const double longer = std::max(width, height);
    // A drawing without extents, or with extents too small to be divided by, is shown as it is.
    const double fitting = (longerSidePixels - 2.0 * marginPixels) / longer;
    scale_ = longer > 0.0 && std::isfinite(fitting) ? fitting : 1.0;
    width_ = width * scale_ + 2.0 * marginPixels;
    height_ = height * scale_ + 2.0 * marginPixels;
  }

  std::string paint(const std::vector<DisplayItem>& marks) {
    const std::string size = "width=\"" + number(width_) + "\" height=\"" + number(height_) + "\"";
    // A unit of a sheet is a millimetre: printed, the picture has the sheet's own size.
    const std::string physical =
        "width=\"" + number(width_ / scale_) + "mm\" height=\"" + number(height_ / scale_) + "mm\"";
    text_ = "<svg xmlns=\"http://www.w3.org/2000/svg\" " + (isSheet_ ? physical : size) + " viewBox=\"0 0 " +
            number(width_) + " " + number(height_) +
            "\" font-family=\"DejaVu Sans\" fill=\"none\" stroke-linecap=\"round\" " +
            "stroke-linejoin=\"round\">\n<rect " + size + " fill=\"#ffffff\"/>\n";
    for (const DisplayItem& mark : marks) {
      mark_ = &mark;
      std::visit(*this, mark.shape);
    }
    return text_ + "</svg>\n";
  }

  void operator()(const Line& line) {
    text_ += "<path d=\"M" + point(line.from) + " L" + point(line.to) + "\"" + stroke(0.0) + "/>\n";
  }

  void operator()(const Polyline& polyline) {
    text_ += "<path d=\"";
    for (std::size_t index = 0; index < polyline.points.size(); ++index) {
      text_ += (index == 0 ? "M" : " L") + point(polyline.points[index]);
    }
    text_ += std::string(polyline.isClosed ? " Z\"" : "\"") + stroke(polyline.width) + "/>\n";
  }

  void operator()(const Circle& circle) {
    text_ += "<circle cx=\"" + number(x(circle.centre)) + "\" cy=\"" + number(y(circle.centre)) + "\" r=\"" +
             number(circle.radius * scale_) + "\"" + stroke(0.0) + "/>\n";
  }

  void operator()(const Arc& arc) {
    const double turn = turnOf(arc);
    if (turn >= 360.0) {
      (*this)(Circle{arc.centre, arc.radius});
      return;
    }
    const std::string radius = number(arc.radius * scale_);
    text_ += "<path d=\"M" + point(pointAt(arc.centre, arc.radius, arc.startDegrees)) + " A" + radius + " " +
             radius + " 0 " + (turn > 180.0 ? "1" : "0") + " 0 " +
             point(pointAt(arc.centre, arc.radius, arc.endDegrees)) + "\"" + stroke(0.0) + "/>\n";
  }

  void operator()(const Text& text) {
    if (text.text.empty()) return;
    const TextPlace place = textPlace(text);
    const KvPoint3d& position = place.position;
    text_ += "<text x=\"" + number(x(position)) + "\" y=\"" + number(y(position)) + "\" font-size=\"" +
             number(place.fontSize * scale_) + "\"";
    if (place.anchor > 0.0) text_ += place.anchor < 1.0 ? " text-anchor=\"middle\"" : " text-anchor=\"end\"";
    if (text.rotationDegrees != 0.0) {
      text_ += " transform=\"rotate(" + number(-text.rotationDegrees) + " " + point(position) + ")\"";
    }
    text_ += " fill=\"" + colour() + "\" xml:space=\"preserve\">" + escaped(text.text) + "</text>\n";
  }

  void operator()(const BlockReference& /*reference*/) {}
  void operator()(const Attribute& /*attribute*/) {}
  void operator()(const AttributeDefinition& /*definition*/) {}

private:
  [[nodiscard]] double x(const KvPoint3d& point) const {
    return (point.x - extents_.left) * scale_ + marginPixels;
  }
  [[nodiscard]] double y(const KvPoint3d& point) const {
    return (extents_.top - point.y) * scale_ + marginPixels;
  }
  [[nodiscard]] std::string point(const KvPoint3d& at) const { return number(x(at)) + " " + number(y(at)); }
  [[nodiscard]] std::string colour() const {
    return brenvolt::toUtf8(formatColour(readable(mark_->colour, Paper::light)));
  }
  [[nodiscard]] std::string stroke(double width) const {
    std::string text = " stroke=\"" + colour() + "\" stroke-width=\"" +
                       number(std::max(thinnestPixels, width * scale_)) + "\"";
    std::string dashes;
    for (const double length : dashesOf(mark_->lineType))
      dashes += (dashes.empty() ? "" : " ") + number(length);
    if (!dashes.empty()) text += " stroke-dasharray=\"" + dashes + "\"";
    return text;
  }

  Box extents_;
  bool isSheet_ = false;
  double scale_ = 1.0;
  double width_ = 0.0;
  double height_ = 0.0;
  std::string text_;
  const DisplayItem* mark_ = nullptr;
};

} // namespace

SvgPicture renderSvg(const DrawingDatabase& drawing, KvDbHandle block) {
  if (drawing.store().findBlock(block) == nullptr) return {"", L"no such block"};
  const std::optional<std::vector<DisplayItem>> items = displayList(drawing, block);
  if (!items) return {"", L"the drawing has too many shapes for a picture"};
  Box extents;
  for (const DisplayItem& item : *items)
    extents.include(boxOf(item.shape));
  if (items->empty()) extents.includeAround({}, 0.5);
  const bool isFinite = std::isfinite(extents.width()) && std::isfinite(extents.height());
  if (!isFinite) return {"", L"the drawing is too large for a picture"};
  return {Painter(extents, drawing.variable(L"PAPER_WIDTH") != nullptr).paint(*items), L""};
}

Fault saveSvg(const DrawingDatabase& drawing, const std::wstring& path) {
  const SvgPicture picture = renderSvg(drawing, drawing.currentSpace());
  if (!picture.error.empty()) return path + L": " + picture.error;
  return writeFileWhole(path, picture.svg);
}

} // namespace simhost
