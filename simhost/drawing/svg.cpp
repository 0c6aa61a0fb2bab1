// A picture in three passes: collect what is to be seen, measure it, paint it in pixels.
#include "simhost/drawing/svg.h"

#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/geometry.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

namespace simhost {
namespace {

constexpr double longerSidePixels = 1200.0;
constexpr double marginPixels = 24.0;
constexpr double thinnestPixels = 1.2;
/// Height of a capital letter of DejaVu Sans in units of the font size: drawings give the letter's height.
constexpr double capitalHeight = 0.729;
/// Mean advance of its letters in the same unit, for the extents of texts.
constexpr double meanAdvance = 0.6;
constexpr std::size_t shapeLimit = 500'000;
constexpr int nestingLimit = 200;

/// In pixels; empty for a continuous line.
constexpr std::array<std::string_view, 4> dashes{"", "9 5", "1.5 4", "10 4 1.5 4"};

/// A shape in drawing coordinates with the look that its layer gives it.
struct Mark {
  Shape shape; ///< never a block reference
  Colour colour;
  LineType lineType;
};

class Collector final {
public:
  explicit Collector(const DrawingDatabase& drawing) : drawing_(drawing) {}

  /// False when there is too much to show.
  [[nodiscard]] bool collect(const BlockNode& block, const Placement& placement, int nesting = 0) {
    if (nesting > nestingLimit) return false;
    for (const EntityNode* entity = block.first; entity != nullptr; entity = entity->next) {
      if (++visited_ > shapeLimit) return false;
      const auto* reference = std::get_if<BlockReference>(&entity->value.shape);
      if (reference == nullptr) {
        if (nesting == 0 || entity->value.kind() != EntityKind::attributeDefinition) {
          add(entity->value, placement);
        }
        continue;
      }
      const BlockNode& inner = *drawing_.store().findBlock(reference->block);
      const Placement innerPlacement(
          inner.basePoint, reference->position, reference->scale, reference->rotationDegrees);
      if (!collect(inner, placement.of(innerPlacement), nesting + 1)) return false;
      for (const KvDbHandle handle : entity->attributes) {
        if (const EntityNode* attribute = drawing_.find(handle)) add(attribute->value, placement);
      }
    }
    return true;
  }

  [[nodiscard]] const std::vector<Mark>& marks() const { return marks_; }

private:
  void add(const Entity& entity, const Placement& placement) {
    Shape shape = placed(entity.shape, placement);
    if (auto* attribute = std::get_if<Attribute>(&shape)) {
      if (!attribute->isVisible) return;
      shape = Text(attribute->text);
    } else if (auto* definition = std::get_if<AttributeDefinition>(&shape)) {
      Text text = definition->text;
      text.text = definition->tag;
      shape = text;
    }
    const Layer& layer = *drawing_.store().findLayer(entity.layer);
    marks_.push_back({std::move(shape), entity.colour.value_or(layer.colour), layer.lineType});
  }

  const DrawingDatabase& drawing_;
  std::vector<Mark> marks_;
  std::size_t visited_ = 0;
};

struct Extents {
  double left = std::numeric_limits<double>::infinity();
  double bottom = std::numeric_limits<double>::infinity();
  double right = -std::numeric_limits<double>::infinity();
  double top = -std::numeric_limits<double>::infinity();

  void include(const KvPoint3d& point) {
    left = std::min(left, point.x);
    bottom = std::min(bottom, point.y);
    right = std::max(right, point.x);
    top = std::max(top, point.y);
  }
  void includeAround(const KvPoint3d& centre, double distance) {
    include({centre.x - distance, centre.y - distance, 0.0});
    include({centre.x + distance, centre.y + distance, 0.0});
  }

  void operator()(const Line& line) {
    include(line.from);
    include(line.to);
  }
  void operator()(const Polyline& polyline) {
    for (const KvPoint3d& point : polyline.points) {
      includeAround(point, polyline.width / 2.0);
    }
  }
  void operator()(const Circle& circle) { includeAround(circle.centre, circle.radius); }
  void operator()(const Arc& arc) {
    include(pointAt(arc.centre, arc.radius, arc.startDegrees));
    include(pointAt(arc.centre, arc.radius, arc.endDegrees));
    for (const double quarter : {0.0, 90.0, 180.0, 270.0}) {
      if (std::fmod(quarter - arc.startDegrees + 720.0, 360.0) < turnOf(arc)) {
        include(pointAt(arc.centre, arc.radius, quarter));
      }
    }
  }
  void operator()(const Text& text) {
    const double length = static_cast<double>(text.text.size()) * text.height / capitalHeight * meanAdvance;
    double start = 0.0;
    if (text.justification == Justification::right) start = -length;
    if (text.justification == Justification::centre || text.justification == Justification::middle) {
      start = -length / 2.0;
    }
    const double low = text.justification == Justification::middle ? -0.75 : -0.25; // descenders
    for (const double along : {start, start + length}) {
      for (const double up : {low * text.height, (low + 1.5) * text.height}) {
        const KvPoint3d base = pointAt(text.position, along, text.rotationDegrees);
        include(pointAt(base, up, text.rotationDegrees + 90.0));
      }
    }
  }
  void operator()(const BlockReference& /*reference*/) {}
  void operator()(const Attribute& /*attribute*/) {}
  void operator()(const AttributeDefinition& /*definition*/) {}

  /// Degrees from start to end, counter-clockwise; equal angles are the whole circle.
  [[nodiscard]] static double turnOf(const Arc& arc) {
    const double turn = std::fmod(arc.endDegrees - arc.startDegrees, 360.0);
    return turn <= 0.0 ? turn + 360.0 : turn;
  }
};

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
      // Control characters may not stand in XML; line ends and tabs have no width in a drawing's text.
      result += character < L' ' || character == 0xfffe || character == 0xffff ? L' ' : character;
    }
  }
  return brenvolt::toUtf8(result);
}

/// On white paper a light colour would not be seen; it keeps its hue and gets darker.
Colour readable(Colour colour) {
  const double brightness = 0.299 * colour.red + 0.587 * colour.green + 0.114 * colour.blue;
  constexpr double brightest = 110.0;
  if (brightness <= brightest) return colour;
  const auto darker = [&](std::uint8_t part) {
    return static_cast<std::uint8_t>(part * brightest / brightness);
  };
  return {darker(colour.red), darker(colour.green), darker(colour.blue)};
}

/// Writes marks in pixels, y downwards.
class Painter final {
public:
  explicit Painter(const Extents& extents) : extents_(extents) {
    const double width = extents.right - extents.left;
    const double height = extents.top - extents.bottom;
    const double longer = std::max(width, height);
    scale_ = longer > 0.0 ? (longerSidePixels - 2.0 * marginPixels) / longer : 1.0;
    width_ = width * scale_ + 2.0 * marginPixels;
    height_ = height * scale_ + 2.0 * marginPixels;
  }

  std::string paint(const std::vector<Mark>& marks) {
    const std::string size = "width=\"" + number(width_) + "\" height=\"" + number(height_) + "\"";
    text_ = "<svg xmlns=\"http://www.w3.org/2000/svg\" " + size + " viewBox=\"0 0 " + number(width_) + " " +
            number(height_) + "\" font-family=\"DejaVu Sans\" fill=\"none\" stroke-linecap=\"round\" " +
            "stroke-linejoin=\"round\">\n<rect " + size + " fill=\"#ffffff\"/>\n";
    for (const Mark& mark : marks) {
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
    const double turn = Extents::turnOf(arc);
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
    KvPoint3d position = text.position;
    if (text.justification == Justification::middle) {
      position = pointAt(position, -text.height / 2.0, text.rotationDegrees + 90.0);
    }
    text_ += "<text x=\"" + number(x(position)) + "\" y=\"" + number(y(position)) + "\" font-size=\"" +
             number(text.height / capitalHeight * scale_) + "\"";
    if (text.justification == Justification::right) {
      text_ += " text-anchor=\"end\"";
    } else if (text.justification != Justification::left) {
      text_ += " text-anchor=\"middle\"";
    }
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
  [[nodiscard]] std::string colour() const { return brenvolt::toUtf8(formatColour(readable(mark_->colour))); }
  [[nodiscard]] std::string stroke(double width) const {
    std::string text = " stroke=\"" + colour() + "\" stroke-width=\"" +
                       number(std::max(thinnestPixels, width * scale_)) + "\"";
    const std::string_view dash = dashes[static_cast<std::size_t>(mark_->lineType)];
    if (!dash.empty()) text += " stroke-dasharray=\"" + std::string(dash) + "\"";
    return text;
  }

  Extents extents_;
  double scale_ = 1.0;
  double width_ = 0.0;
  double height_ = 0.0;
  std::string text_;
  const Mark* mark_ = nullptr;
};

} // namespace

SvgPicture renderSvg(const DrawingDatabase& drawing, KvDbHandle block) {
  const BlockNode* node = drawing.store().findBlock(block);
  if (node == nullptr) return {"", L"there is no such block"};
  Collector collector(drawing);
  if (!collector.collect(*node, Placement())) return {"", L"the drawing has too many shapes for a picture"};
  Extents extents;
  for (const Mark& mark : collector.marks()) {
    std::visit(extents, mark.shape);
  }
  if (collector.marks().empty()) extents.includeAround({}, 0.5);
  const bool isFinite =
      std::isfinite(extents.right - extents.left) && std::isfinite(extents.top - extents.bottom);
  if (!isFinite) return {"", L"the drawing is too large for a picture"};
  return {Painter(extents).paint(collector.marks()), L""};
}

Fault saveSvg(const DrawingDatabase& drawing, const std::wstring& path) {
  const SvgPicture picture = renderSvg(drawing, drawing.currentSpace());
  if (!picture.error.empty()) return path + L": " + picture.error;
  return writeFileWhole(path, picture.svg);
}

} // namespace simhost
