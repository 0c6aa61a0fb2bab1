// All that shows of an entity goes into one number, points as seen from the circuit's own.
#include "simhost/drawing/circuit_seal.h"

#include "simhost/drawing/circuit_edit.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>
#include <variant>

namespace simhost {

namespace {

constexpr std::wstring_view digestField = L"digest";
/// Parts of a unit that count: a move adds rounding errors far below.
constexpr double partsOfUnit = 1000.0;

class Digest final {
public:
  Digest(const DrawingDatabase& drawing, const KvPoint3d& origin) : drawing_(drawing), origin_(origin) {}

  void add(const EntityNode& node) {
    add(node.value.shape.index());
    add(node.value.layer);
    if (const auto& colour = node.value.colour)
      add(std::uint64_t{colour->red} << 16U | std::uint64_t{colour->green} << 8U | colour->blue);
    std::visit([this](const auto& shape) { addShape(shape); }, node.value.shape);
    for (const KvDbHandle attribute : node.attributes)
      if (const EntityNode* text = drawing_.find(attribute)) add(*text);
  }
  [[nodiscard]] std::uint64_t value() const { return hash_; }

private:
  void add(std::uint64_t number) {
    // FNV-1a.
    for (unsigned shift = 0; shift < 64; shift += 8)
      hash_ = (hash_ ^ ((number >> shift) & 255U)) * 1099511628211U;
  }
  void add(std::wstring_view text) {
    add(text.size());
    for (const wchar_t character : text)
      add(static_cast<std::uint64_t>(character));
  }
  void add(double number) { add(static_cast<std::uint64_t>(std::llround(number * partsOfUnit))); }
  void add(const KvPoint3d& point) {
    add(point.x - origin_.x);
    add(point.y - origin_.y);
  }

  void addShape(const Line& line) {
    add(line.from);
    add(line.to);
  }
  void addShape(const Polyline& polyline) {
    for (const KvPoint3d& point : polyline.points)
      add(point);
    add(polyline.width);
    add(std::uint64_t{polyline.isClosed});
  }
  void addShape(const Circle& circle) {
    add(circle.centre);
    add(circle.radius);
  }
  void addShape(const Arc& arc) {
    add(arc.centre);
    for (const double number : {arc.radius, arc.startDegrees, arc.endDegrees})
      add(number);
  }
  void addShape(const Text& text) {
    add(text.position);
    add(text.text);
    add(text.height);
    add(text.rotationDegrees);
    add(static_cast<std::uint64_t>(text.justification));
  }
  void addShape(const BlockReference& reference) {
    // Handles of blocks differ from drawing to drawing.
    add(drawing_.store().findBlock(reference.block)->name);
    add(reference.position);
    add(reference.scale);
    add(reference.rotationDegrees);
  }
  void addShape(const Attribute& attribute) {
    add(attribute.tag);
    addShape(attribute.text);
    add(std::uint64_t{attribute.isVisible});
  }
  void addShape(const AttributeDefinition& definition) {
    add(definition.tag);
    addShape(definition.text);
  }

  const DrawingDatabase& drawing_;
  KvPoint3d origin_;
  std::uint64_t hash_ = 14695981039346656037U;
};

std::wstring digestOf(const DrawingDatabase& drawing, const std::wstring& circuit) {
  const KvPoint3d origin = circuitPoint(drawing.store().circuits().at(circuit)).value_or(KvPoint3d{});
  // A sum, since the order of entities shows nowhere: the dialog draws in another one than a direct build.
  std::uint64_t all = 0;
  for (const KvDbHandle handle : entitiesOfCircuit(drawing, circuit)) {
    Digest digest(drawing, origin);
    digest.add(*drawing.find(handle));
    all += digest.value();
  }
  std::wstring digits;
  for (int shift = 60; shift >= 0; shift -= 4)
    digits += L"0123456789abcdef"[(all >> static_cast<unsigned>(shift)) & 15U];
  return digits;
}

} // namespace

void sealCircuit(DrawingDatabase& drawing, const std::wstring& circuit) {
  const auto record = drawing.store().circuits().find(circuit);
  if (record == drawing.store().circuits().end()) return;
  CircuitFields fields = record->second;
  std::erase_if(fields, [](const auto& field) { return field.first == digestField; });
  fields.emplace_back(digestField, digestOf(drawing, circuit));
  drawing.putCircuit(circuit, std::move(fields));
}

std::optional<bool> isChangedSinceBuilt(const DrawingDatabase& drawing, const std::wstring& circuit) {
  const auto record = drawing.store().circuits().find(circuit);
  if (record == drawing.store().circuits().end()) return std::nullopt;
  const std::wstring kept = circuitField(record->second, digestField);
  if (kept.empty()) return std::nullopt;
  return kept != digestOf(drawing, circuit);
}

} // namespace simhost
