// The functions on circuits as a whole: what a build drew is listed, moved and erased together.
#include "simhost/drawing/circuit_edit.h"
#include "simhost/drawing_lisp/drawer.h"
#include "simhost/lisp/list.h"

namespace simhost {
namespace {

using lisp::Arguments;
using lisp::Value;

/// The id of a circuit that the drawing has; a misspelt one would otherwise change nothing in silence.
const std::wstring& circuitArgument(const Arguments& arguments, const DrawingDatabase& drawing) {
  const std::wstring& id = arguments.text(0);
  if (entitiesOfCircuit(drawing, id).empty()) arguments.fail(L"the drawing has no circuit of the id " + id);
  return id;
}

/// The circuit's id of an entity, nil for one that no build drew.
Value circuitOf(Drawer& drawer, Arguments& arguments) {
  const auto origin = provenanceOf(entityArgument(arguments, 0, drawer.drawing(arguments)).value);
  return origin ? Value::string(origin->circuit) : Value();
}

Value circuitEntities(Drawer& drawer, Arguments& arguments) {
  const DrawingDatabase& drawing = drawer.drawing(arguments);
  lisp::ListBuilder entities;
  for (const KvDbHandle handle : entitiesOfCircuit(drawing, arguments.text(0)))
    entities.add(entityValue(drawing, handle));
  return entities.take();
}

Value erase(Drawer& drawer, Arguments& arguments) {
  DrawingDatabase& drawing = drawer.drawing(arguments);
  eraseCircuit(drawing, circuitArgument(arguments, drawing));
  return Value::truth(true);
}

Value move(Drawer& drawer, Arguments& arguments) {
  DrawingDatabase& drawing = drawer.drawing(arguments);
  const std::wstring& id = circuitArgument(arguments, drawing);
  requirePossible(arguments, moveCircuit(drawing, id, arguments.number(1), arguments.number(2)));
  return Value::truth(true);
}

} // namespace

void defineCircuitFunctions(lisp::Interpreter& interpreter, const SharedDrawer& drawer) {
  const auto define = [&](std::wstring_view name, std::size_t count, Value (*function)(Drawer&, Arguments&)) {
    interpreter.define(name, count, count, [drawer, function](Arguments& arguments) {
      return function(*drawer, arguments);
    });
  };
  define(L"entity-circuit", 1, circuitOf);
  define(L"circuit-entities", 1, circuitEntities);
  define(L"circuit-erase", 1, erase);
  define(L"circuit-move", 3, move);
}

} // namespace simhost
