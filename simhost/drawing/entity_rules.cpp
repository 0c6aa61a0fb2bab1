// The rules of shapes, kind by kind.
#include "simhost/drawing/entity_rules.h"

#include "text/compare.h"
#include "text/split.h"

#include <cmath>
#include <initializer_list>
#include <limits>

namespace simhost {
namespace {

using Fault = std::optional<std::wstring>;

Fault positiveFault(std::wstring_view what, double value) {
  if (std::isfinite(value) && value > 0.0) return std::nullopt;
  return std::wstring(what) + L" must be above 0";
}

Fault firstFault(std::initializer_list<Fault> faults) {
  for (const Fault& fault : faults) {
    if (fault) return fault;
  }
  return std::nullopt;
}

Fault textFault(const Text& text) {
  return firstFault(
      {pointFault(text.position), positiveFault(L"the height", text.height),
       numberFault(text.rotationDegrees)});
}

struct ShapeRules {
  Fault operator()(const Line& line) const {
    return firstFault({pointFault(line.from), pointFault(line.to)});
  }

  Fault operator()(const Polyline& polyline) const {
    if (polyline.points.size() < 2) return L"a polyline has at least two points";
    for (const KvPoint3d& point : polyline.points) {
      if (Fault fault = pointFault(point)) return fault;
    }
    if (!(std::isfinite(polyline.width) && polyline.width >= 0.0)) return L"the width must not be below 0";
    return std::nullopt;
  }

  Fault operator()(const Circle& circle) const {
    return firstFault({pointFault(circle.centre), positiveFault(L"the radius", circle.radius)});
  }

  Fault operator()(const Arc& arc) const {
    return firstFault(
        {pointFault(arc.centre), positiveFault(L"the radius", arc.radius), numberFault(arc.startDegrees),
         numberFault(arc.endDegrees)});
  }

  Fault operator()(const Text& text) const { return textFault(text); }

  Fault operator()(const BlockReference& reference) const {
    if (!std::isfinite(reference.scale) || reference.scale == 0.0) return L"the scale must not be 0";
    return firstFault({pointFault(reference.position), numberFault(reference.rotationDegrees)});
  }

  Fault operator()(const Attribute& attribute) const {
    return firstFault({nameFault(L"an attribute's tag", attribute.tag), textFault(attribute.text)});
  }

  Fault operator()(const AttributeDefinition& definition) const {
    return firstFault({nameFault(L"an attribute's tag", definition.tag), textFault(definition.text)});
  }
};

} // namespace

Fault numberFault(double value) {
  if (std::isfinite(value)) return std::nullopt;
  return L"a number must be finite";
}

Fault pointFault(const KvPoint3d& point) {
  if (std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z)) return std::nullopt;
  return numberFault(std::numeric_limits<double>::infinity());
}

Fault nameFault(std::wstring_view what, std::wstring_view name) {
  if (name.empty()) return std::wstring(what) + L" must not be empty";
  if (brenvolt::trimView(name) != name) return std::wstring(what) + L" must not begin or end with a blank";
  return std::nullopt;
}

Fault shapeFault(const Entity& entity) {
  if (Fault fault = nameFault(L"a layer's name", entity.layer)) return fault;
  for (std::size_t index = 0; index < entity.data.size(); ++index) {
    const ApplicationData& data = entity.data[index];
    if (Fault fault = nameFault(L"an application's name", data.application)) return fault;
    if (data.texts.empty()) return L"entity data must contain a text";
    for (std::size_t earlier = 0; earlier < index; ++earlier) {
      if (brenvolt::equalsOrdinalNoCase(entity.data[earlier].application, data.application)) {
        return L"entity data of " + data.application + L" is given twice";
      }
    }
  }
  return std::visit(ShapeRules{}, entity.shape);
}

} // namespace simhost
