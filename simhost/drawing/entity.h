// The contents of a drawing as plain values: the shapes in a block, layers with their wire settings, and host
// variables. The database stores and changes whole values.
#pragma once

#include "host/host_api_database.h"

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace simhost {

struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  friend bool operator==(const Colour&, const Colour&) = default;
};

/// "#rrggbb" in lower case.
[[nodiscard]] std::wstring formatColour(Colour colour);
/// Reads "#rrggbb" in either case; nothing for any other text.
[[nodiscard]] std::optional<Colour> parseColour(std::wstring_view text);

enum class LineType : std::uint8_t { continuous, dashed, dotted, dashDot };
[[nodiscard]] std::wstring_view lineTypeName(LineType type);
[[nodiscard]] std::optional<LineType> lineTypeOf(std::wstring_view name);

/// Which point of a text its position names: on the base line at the left, middle or right, or the very middle.
enum class Justification : std::uint8_t { left, centre, right, middle };
[[nodiscard]] std::wstring_view justificationName(Justification justification);
[[nodiscard]] std::optional<Justification> justificationOf(std::wstring_view name);

// Lengths are drawing units, angles degrees counter-clockwise from the x axis.

struct Line {
  KvPoint3d from;
  KvPoint3d to;
  friend bool operator==(const Line&, const Line&) = default;
};

struct Polyline {
  std::vector<KvPoint3d> points; ///< two or more
  bool isClosed = false;
  double width = 0.0; ///< 0 is the thinnest line
  friend bool operator==(const Polyline&, const Polyline&) = default;
};

struct Circle {
  KvPoint3d centre;
  double radius = 0.0; ///< above 0
  friend bool operator==(const Circle&, const Circle&) = default;
};

/// Runs counter-clockwise from the start to the end angle.
struct Arc {
  KvPoint3d centre;
  double radius = 0.0; ///< above 0
  double startDegrees = 0.0;
  double endDegrees = 0.0;
  friend bool operator==(const Arc&, const Arc&) = default;
};

struct Text {
  KvPoint3d position;
  std::wstring text;
  double height = 0.0; ///< above 0
  double rotationDegrees = 0.0;
  Justification justification = Justification::left;
  friend bool operator==(const Text&, const Text&) = default;
};

struct BlockReference {
  KvDbHandle block; ///< the record of a named block, never of a space
  KvPoint3d position;
  double scale = 1.0; ///< not 0; the same along all axes
  double rotationDegrees = 0.0;
  friend bool operator==(const BlockReference&, const BlockReference&) = default;
};

/// The value of a tag in one block reference; has its own position in the drawing, not relative to the reference.
struct Attribute {
  std::wstring tag; ///< not empty
  Text text;
  bool isVisible = true;
  friend bool operator==(const Attribute&, const Attribute&) = default;
};

struct AttributeDefinition {
  std::wstring tag; ///< not empty
  std::wstring prompt;
  Text text; ///< holds the default value
  bool isVisible = true;
  friend bool operator==(const AttributeDefinition&, const AttributeDefinition&) = default;
};

/// The alternatives are in the order of `EntityKind`.
using Shape = std::variant<Line, Polyline, Circle, Arc, Text, BlockReference, Attribute, AttributeDefinition>;

enum class EntityKind : std::uint8_t {
  line,
  polyline,
  circle,
  arc,
  text,
  blockReference,
  attribute,
  attributeDefinition
};
[[nodiscard]] std::wstring_view entityKindName(EntityKind kind);
[[nodiscard]] std::optional<EntityKind> entityKindOf(std::wstring_view name);

/// What one application has attached to an entity: its texts in order.
struct ApplicationData {
  std::wstring application; ///< unique in an entity, without case
  std::vector<std::wstring> texts;
  friend bool operator==(const ApplicationData&, const ApplicationData&) = default;
};

inline constexpr std::wstring_view defaultLayer = L"0";

struct Entity {
  Shape shape;
  std::wstring layer{defaultLayer};
  std::optional<Colour> colour{}; ///< without one the layer's colour holds
  std::vector<ApplicationData> data{};

  [[nodiscard]] EntityKind kind() const { return static_cast<EntityKind>(shape.index()); }
  friend bool operator==(const Entity&, const Entity&) = default;
};

/// The texts of one application (name without case), null when the entity carries none of it.
[[nodiscard]] const std::vector<std::wstring>* findData(const Entity& entity, std::wstring_view application);
/// Attaches the texts for an application in place of earlier ones; no texts takes the application off.
void setData(Entity& entity, std::wstring_view application, std::vector<std::wstring> texts);

/// One value of a wire layer's settings. Codes 1 to 4 carry a text, 90 a 32-bit and 290 a 16-bit integer.
struct WireSetting {
  int code = 1;
  std::variant<std::wstring, std::int32_t> value;
  friend bool operator==(const WireSetting&, const WireSetting&) = default;
};
/// Whether the code is known and the value has the kind and range of the code.
[[nodiscard]] bool isValid(const WireSetting& setting);

struct Layer {
  std::wstring name;
  Colour colour{};
  LineType lineType = LineType::continuous;
  /// Present on wire layers only; may be empty there.
  std::optional<std::vector<WireSetting>> wireSettings{};
  friend bool operator==(const Layer&, const Layer&) = default;
};

using VariableValue = std::variant<std::int32_t, double, std::wstring>;

} // namespace simhost
