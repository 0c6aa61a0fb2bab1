// One table of property names and their fields, for reading and changing.
#include "simhost/drawing_lisp/entity_properties.h"

#include "simhost/lisp/list.h"

#include <string>
#include <utility>
#include <variant>

namespace simhost {
namespace {

using lisp::Arguments;
using lisp::Value;

template <typename Owner, typename Field>
Owner ownerOf(Field Owner::*);
template <typename Owner, typename Field>
Field fieldOf(Field Owner::*);

/// The field of a shape, null when the entity is of another shape.
template <auto member>
auto* ofShape(Entity& entity) {
  using Owner = decltype(ownerOf(member));
  auto* shape = std::get_if<Owner>(&entity.shape);
  return shape == nullptr ? nullptr : &(shape->*member);
}

/// The field of the text that texts, attributes and their definitions have.
template <auto member>
auto* ofText(Entity& entity) {
  Text* text = std::get_if<Text>(&entity.shape);
  if (text == nullptr) text = ofShape<&Attribute::text>(entity);
  if (text == nullptr) text = ofShape<&AttributeDefinition::text>(entity);
  return text == nullptr ? nullptr : &(text->*member);
}

std::wstring* layerOf(Entity& entity) {
  return &entity.layer;
}

std::optional<Colour>* colourOf(Entity& entity) {
  return &entity.colour;
}

template <typename Field>
using FieldOf = Field* (*)(Entity&);

struct Property {
  std::wstring_view key;
  std::variant<
      FieldOf<KvPoint3d>, FieldOf<double>, FieldOf<std::wstring>, FieldOf<bool>, FieldOf<Justification>,
      FieldOf<std::vector<KvPoint3d>>, FieldOf<std::optional<Colour>>>
      field;
};

/// If a key occurs more than once, the first field that the entity has is used.
const Property properties[] = {
    {L"layer", layerOf},
    {L"colour", colourOf},
    {L"from", ofShape<&Line::from>},
    {L"to", ofShape<&Line::to>},
    {L"points", ofShape<&Polyline::points>},
    {L"closed", ofShape<&Polyline::isClosed>},
    {L"width", ofShape<&Polyline::width>},
    {L"centre", ofShape<&Circle::centre>},
    {L"centre", ofShape<&Arc::centre>},
    {L"radius", ofShape<&Circle::radius>},
    {L"radius", ofShape<&Arc::radius>},
    {L"start", ofShape<&Arc::startDegrees>},
    {L"end", ofShape<&Arc::endDegrees>},
    {L"position", ofText<&Text::position>},
    {L"position", ofShape<&BlockReference::position>},
    {L"text", ofText<&Text::text>},
    {L"height", ofText<&Text::height>},
    {L"rotation", ofText<&Text::rotationDegrees>},
    {L"rotation", ofShape<&BlockReference::rotationDegrees>},
    {L"justification", ofText<&Text::justification>},
    {L"scale", ofShape<&BlockReference::scale>},
    {L"tag", ofShape<&Attribute::tag>},
    {L"tag", ofShape<&AttributeDefinition::tag>},
    {L"prompt", ofShape<&AttributeDefinition::prompt>},
    {L"visible", ofShape<&Attribute::isVisible>},
    {L"visible", ofShape<&AttributeDefinition::isVisible>},
};

Value toValue(const KvPoint3d& point) {
  return pointValue(point);
}
Value toValue(double number) {
  return Value::real(number);
}
Value toValue(const std::wstring& text) {
  return Value::string(text);
}
Value toValue(bool flag) {
  return Value::truth(flag);
}
Value toValue(Justification justification) {
  return Value::string(std::wstring(justificationName(justification)));
}
Value toValue(const std::vector<KvPoint3d>& points) {
  lisp::ListBuilder list;
  for (const KvPoint3d& point : points) {
    list.add(pointValue(point));
  }
  return list.take();
}
Value toValue(const std::optional<Colour>& colour) {
  return colour ? Value::string(formatColour(*colour)) : Value();
}

void assign(KvPoint3d& field, const Arguments& arguments, std::size_t position) {
  field = pointArgument(arguments, position);
}
void assign(double& field, const Arguments& arguments, std::size_t position) {
  field = arguments.number(position);
}
void assign(std::wstring& field, const Arguments& arguments, std::size_t position) {
  field = arguments.text(position);
}
void assign(bool& field, const Arguments& arguments, std::size_t position) {
  field = isGiven(arguments, position);
}
void assign(Justification& field, const Arguments& arguments, std::size_t position) {
  field = justificationArgument(arguments, position);
}
void assign(std::vector<KvPoint3d>& field, const Arguments& arguments, std::size_t position) {
  field = pointsArgument(arguments, position);
}
void assign(std::optional<Colour>& field, const Arguments& arguments, std::size_t position) {
  field.reset();
  if (isGiven(arguments, position)) field = colourArgument(arguments, position);
}

} // namespace

std::optional<Value> propertyOf(
    const DrawingDatabase& drawing, const EntityNode& entity, std::wstring_view key) {
  if (key == L"kind") return Value::string(std::wstring(entityKindName(entity.value.kind())));
  const auto* reference = std::get_if<BlockReference>(&entity.value.shape);
  if (key == L"block" && reference != nullptr) {
    return Value::string(drawing.store().findBlock(reference->block)->name);
  }
  Entity value = entity.value;
  for (const Property& property : properties) {
    if (property.key != key) continue;
    const auto read = [&](auto field) -> std::optional<Value> {
      const auto* found = field(value);
      if (found == nullptr) return std::nullopt;
      return toValue(*found);
    };
    if (std::optional<Value> result = std::visit(read, property.field)) return result;
  }
  return std::nullopt;
}

PropertyChange changeProperty(
    Entity& entity, std::wstring_view key, const Arguments& arguments, std::size_t position) {
  const bool isReference = entity.kind() == EntityKind::blockReference;
  if (key == L"kind" || (key == L"block" && isReference)) return PropertyChange::readOnly;
  for (const Property& property : properties) {
    if (property.key != key) continue;
    const auto write = [&](auto field) {
      auto* found = field(entity);
      if (found == nullptr) return false;
      assign(*found, arguments, position);
      return true;
    };
    if (std::visit(write, property.field)) return PropertyChange::done;
  }
  return PropertyChange::unknown;
}

} // namespace simhost
