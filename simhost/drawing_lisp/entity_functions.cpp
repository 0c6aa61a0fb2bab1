// The functions that find, read, change and erase entities.
#include "simhost/drawing_lisp/drawer.h"
#include "simhost/drawing_lisp/entity_properties.h"
#include "simhost/lisp/list.h"
#include "text/compare.h"

namespace simhost {
namespace {

using lisp::Arguments;
using lisp::Value;

Value eraseEntity(Drawer& drawer, Arguments& arguments) {
  DrawingDatabase& drawing = drawer.drawing(arguments);
  drawing.eraseEntity(entityArgument(arguments, 0, drawing).handle);
  return Value::truth(true);
}

Value lastEntity(Drawer& drawer, Arguments& arguments) {
  const DrawingDatabase& drawing = drawer.drawing(arguments);
  const BlockNode* block = drawing.store().findBlock(drawer.target(drawing));
  return block == nullptr || block->last == nullptr ? Value() : entityValue(drawing, block->last->handle);
}

Value entitiesInSpace(Drawer& drawer, Arguments& arguments) {
  const DrawingDatabase& drawing = drawer.drawing(arguments);
  lisp::ListBuilder entities;
  const EntityNode* entity = drawing.store().findBlock(drawing.currentSpace())->first;
  for (; entity != nullptr; entity = entity->next) {
    entities.add(entityValue(drawing, entity->handle));
  }
  return entities.take();
}

/// Of a block reference, its position counts.
Value entitiesInBox(Drawer& drawer, Arguments& arguments) {
  const DrawingDatabase& drawing = drawer.drawing(arguments);
  Box area;
  area.include(pointArgument(arguments, 0));
  area.include(pointArgument(arguments, 1));
  lisp::ListBuilder entities;
  const BlockNode& space = *drawing.store().findBlock(drawing.currentSpace());
  for (const EntityNode* entity : drawing.store().meeting(space, area))
    entities.add(entityValue(drawing, entity->handle));
  return entities.take();
}

Value getProperty(Drawer& drawer, Arguments& arguments) {
  const DrawingDatabase& drawing = drawer.drawing(arguments);
  const EntityNode& entity = entityArgument(arguments, 0, drawing);
  const std::wstring key = wordArgument(arguments, 1);
  const std::optional<Value> value = propertyOf(drawing, entity, key);
  if (!value) {
    arguments.fail(L"a " + std::wstring(entityKindName(entity.value.kind())) + L" has no property " + key);
  }
  return *value;
}

Value setProperty(Drawer& drawer, Arguments& arguments) {
  DrawingDatabase& drawing = drawer.drawing(arguments);
  const EntityNode& entity = entityArgument(arguments, 0, drawing);
  const std::wstring key = wordArgument(arguments, 1);
  Entity value = entity.value;
  switch (changeProperty(value, key, arguments, 2)) {
  case PropertyChange::done:
    break;
  case PropertyChange::readOnly:
    arguments.fail(L"the property " + key + L" cannot be changed");
  case PropertyChange::unknown:
    arguments.fail(L"a " + std::wstring(entityKindName(value.kind())) + L" has no property " + key);
  }
  requirePossible(arguments, drawing.changeFault(entity.handle, value));
  drawing.changeEntity(entity.handle, std::move(value));
  return arguments[2];
}

Value getData(Drawer& drawer, Arguments& arguments) {
  const EntityNode& entity = entityArgument(arguments, 0, drawer.drawing(arguments));
  lisp::ListBuilder list;
  if (const std::vector<std::wstring>* texts = findData(entity.value, arguments.text(1))) {
    for (const std::wstring& text : *texts) {
      list.add(Value::string(text));
    }
  }
  return list.take();
}

Value setEntityData(Drawer& drawer, Arguments& arguments) {
  DrawingDatabase& drawing = drawer.drawing(arguments);
  const EntityNode& entity = entityArgument(arguments, 0, drawing);
  const std::wstring& application = arguments.text(1);
  std::vector<std::wstring> texts;
  if (arguments[2].isString()) {
    texts.push_back(arguments.text(2));
  } else {
    for (const Value& text : lisp::Elements(arguments.list(2))) {
      if (!text.isString()) arguments.expected(2, L"a string or a list of strings");
      texts.push_back(text.asString());
    }
  }
  Entity value = entity.value;
  setData(value, application, std::move(texts));
  requirePossible(arguments, drawing.changeFault(entity.handle, value));
  drawing.changeEntity(entity.handle, std::move(value));
  return arguments[2];
}

const EntityNode& referenceArgument(
    const Arguments& arguments, std::size_t position, const DrawingDatabase& drawing) {
  const EntityNode& entity = entityArgument(arguments, position, drawing);
  if (entity.value.kind() != EntityKind::blockReference) arguments.expected(position, L"a block reference");
  return entity;
}

Value attributeTexts(Drawer& drawer, Arguments& arguments) {
  const DrawingDatabase& drawing = drawer.drawing(arguments);
  lisp::ListBuilder list;
  for (const KvDbHandle handle : referenceArgument(arguments, 0, drawing).attributes) {
    const EntityNode* attribute = drawing.find(handle);
    if (attribute == nullptr) continue;
    const auto& value = std::get<Attribute>(attribute->value.shape);
    list.add(Value::cons(Value::string(value.tag), Value::string(value.text.text)));
  }
  return list.take();
}

/// The attribute as an entity, nil when the reference has none of the tag.
Value findAttribute(Drawer& drawer, Arguments& arguments) {
  const DrawingDatabase& drawing = drawer.drawing(arguments);
  const std::wstring& tag = arguments.text(1);
  for (const KvDbHandle handle : referenceArgument(arguments, 0, drawing).attributes) {
    const EntityNode* attribute = drawing.find(handle);
    const bool isIt = attribute != nullptr &&
                      brenvolt::equalsOrdinalNoCase(std::get<Attribute>(attribute->value.shape).tag, tag);
    if (isIt) return entityValue(drawing, handle);
  }
  return {};
}

Value entityOfHandle(Drawer& drawer, Arguments& arguments) {
  const DrawingDatabase& drawing = drawer.drawing(arguments);
  const std::optional<KvDbHandle> handle = parseHandle(arguments.text(0));
  return handle && drawing.find(*handle) != nullptr ? entityValue(drawing, *handle) : Value();
}

Value handleOfEntity(Drawer& drawer, Arguments& arguments) {
  return Value::string(formatHandle(entityArgument(arguments, 0, drawer.drawing(arguments)).handle));
}

} // namespace

void defineEntityFunctions(lisp::Interpreter& interpreter, const SharedDrawer& drawer) {
  const auto define = [&](std::wstring_view name, std::size_t count, Value (*function)(Drawer&, Arguments&)) {
    interpreter.define(name, count, count, [drawer, function](Arguments& arguments) {
      return function(*drawer, arguments);
    });
  };
  define(L"entity-erase", 1, eraseEntity);
  define(L"entity-last", 0, lastEntity);
  define(L"entities-in-space", 0, entitiesInSpace);
  define(L"entities-in-box", 2, entitiesInBox);
  define(L"entity-get", 2, getProperty);
  define(L"entity-set!", 3, setProperty);
  define(L"entity-data", 2, getData);
  define(L"entity-data-set!", 3, setEntityData);
  define(L"entity-attributes", 1, attributeTexts);
  define(L"entity-attribute", 2, findAttribute);
  define(L"handle->entity", 1, entityOfHandle);
  define(L"entity-handle", 1, handleOfEntity);
}

} // namespace simhost
