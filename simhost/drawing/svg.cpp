// An SVG as the place where a picture is kept.
#include "simhost/drawing/svg.h"

#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/picture_painter.h"
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

std::string escaped(std::wstring_view text) {
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
    case 0xfffe:
    case 0xffff:
      result += L' '; // not allowed in XML
      break;
    default:
      result += character;
    }
  }
  return brenvolt::toUtf8(result);
}

/// Elements of an SVG, in pixels.
class SvgSink final : public PictureSink {
public:
  void line(const PicturePoint& from, const PicturePoint& to, const Stroke& stroke) override {
    text_ += "<path d=\"M" + pair(from) + " L" + pair(to) + "\"" + attributes(stroke) + "/>\n";
  }

  void path(const std::vector<PicturePoint>& points, bool isClosed, const Stroke& stroke) override {
    text_ += "<path d=\"";
    for (std::size_t index = 0; index < points.size(); ++index)
      text_ += (index == 0 ? "M" : " L") + pair(points[index]);
    text_ += std::string(isClosed ? " Z\"" : "\"") + attributes(stroke) + "/>\n";
  }

  void circle(const PicturePoint& centre, double radius, const Stroke& stroke) override {
    text_ += "<circle cx=\"" + number(centre.x) + "\" cy=\"" + number(centre.y) + "\" r=\"" + number(radius) +
             "\"" + attributes(stroke) + "/>\n";
  }

  void arc(const PictureArc& arc, const Stroke& stroke) override {
    const std::string radius = number(arc.radius);
    text_ += "<path d=\"M" + pair(arc.from) + " A" + radius + " " + radius + " 0 " +
             (arc.turnDegrees > 180.0 ? "1" : "0") + " 0 " + pair(arc.to) + "\"" + attributes(stroke) +
             "/>\n";
  }

  void text(const PictureText& text) override {
    text_ += "<text x=\"" + number(text.position.x) + "\" y=\"" + number(text.position.y) +
             "\" font-size=\"" + number(text.size) + "\"";
    if (text.anchor > 0.0) text_ += text.anchor < 1.0 ? " text-anchor=\"middle\"" : " text-anchor=\"end\"";
    if (text.rotationDegrees != 0.0)
      text_ += " transform=\"rotate(" + number(-text.rotationDegrees) + " " + pair(text.position) + ")\"";
    text_ += " fill=\"" + brenvolt::toUtf8(formatColour(text.colour)) + "\" xml:space=\"preserve\">" +
             escaped(text.text) + "</text>\n";
  }

  [[nodiscard]] const std::string& elements() const { return text_; }

private:
  [[nodiscard]] static std::string pair(const PicturePoint& at) { return number(at.x) + " " + number(at.y); }
  [[nodiscard]] static std::string attributes(const Stroke& stroke) {
    std::string text = " stroke=\"" + brenvolt::toUtf8(formatColour(stroke.colour)) + "\" stroke-width=\"" +
                       number(stroke.width) + "\"";
    std::string dashes;
    if (stroke.dashes != nullptr)
      for (const double length : *stroke.dashes)
        dashes += (dashes.empty() ? "" : " ") + number(length);
    if (!dashes.empty()) text += " stroke-dasharray=\"" + dashes + "\"";
    if (stroke.opacity < 1.0) text += " stroke-opacity=\"" + number(stroke.opacity) + "\"";
    return text;
  }

  std::string text_;
};

/// The whole file. `isSheet`: a unit of the drawing is a millimetre; printed, the picture has the sheet's own size.
std::string svgOf(const std::vector<DisplayItem>& items, const Box& extents, bool isSheet) {
  const double longer = std::max(extents.width(), extents.height());
  // A drawing without extents, or with extents too small to be divided by, is shown as it is.
  const double fitting = (longerSidePixels - 2.0 * marginPixels) / longer;
  const double scale = longer > 0.0 && std::isfinite(fitting) ? fitting : 1.0;
  const double width = extents.width() * scale + 2.0 * marginPixels;
  const double height = extents.height() * scale + 2.0 * marginPixels;
  SvgSink sink;
  PicturePainter painter(
      sink, {scale, {extents.left, extents.top, 0.0}, marginPixels, marginPixels}, PictureStyle());
  for (const DisplayItem& item : items)
    painter.paint(item);
  const std::string size = "width=\"" + number(width) + "\" height=\"" + number(height) + "\"";
  const std::string physical =
      "width=\"" + number(width / scale) + "mm\" height=\"" + number(height / scale) + "mm\"";
  std::string text = "<svg xmlns=\"http://www.w3.org/2000/svg\" " + (isSheet ? physical : size) +
                     " viewBox=\"0 0 " + number(width) + " " + number(height) + "\" font-family=\"" +
                     pictureFont + "\" fill=\"none\" stroke-linecap=\"round\" " +
                     "stroke-linejoin=\"round\">\n<rect " + size + " fill=\"#ffffff\"/>\n";
  text += sink.elements();
  return text + "</svg>\n";
}

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
  return {svgOf(*items, extents, drawing.variable(L"PAPER_WIDTH") != nullptr), L""};
}

Fault saveSvg(const DrawingDatabase& drawing, const std::wstring& path) {
  const SvgPicture picture = renderSvg(drawing, drawing.currentSpace());
  if (!picture.error.empty()) return path + L": " + picture.error;
  return writeFileWhole(path, picture.svg);
}

} // namespace simhost
