// The functions that define and place blocks and insert other drawings.
#include "simhost/drawing/insertion.h"
#include "simhost/drawing_lisp/drawer.h"
#include "simhost/lisp/list.h"

namespace simhost {
namespace {

using lisp::Arguments;
using lisp::Value;

KvDbHandle blockArgument(const Arguments& arguments, std::size_t position, const DrawingDatabase& drawing) {
  const BlockNode* block = drawing.store().findBlock(arguments.text(position));
  if (block == nullptr) arguments.fail(L"block " + arguments.text(position) + L" is not defined");
  return block->handle;
}

/// Pairs (tag . text) or lists (tag text).
AttributeTexts attributesArgument(const Arguments& arguments, std::size_t position) {
  AttributeTexts texts;
  if (!isGiven(arguments, position)) return texts;
  constexpr std::wstring_view what = L"a list of pairs (tag . text)";
  for (const Value& pair : lisp::Elements(arguments.list(position))) {
    if (!pair.isCons() || !pair.asCons().car().isString()) arguments.expected(position, what);
    const Value& rest = pair.asCons().cdr();
    const Value& text = lisp::listLength(rest) == 1U ? rest.asCons().car() : rest;
    if (!text.isString()) arguments.expected(position, what);
    texts.emplace_back(pair.asCons().car().asString(), text.asString());
  }
  return texts;
}

Value defineBlock(Drawer& drawer, Arguments& arguments) {
  DrawingDatabase& drawing = drawer.drawing(arguments);
  const std::wstring& name = arguments.text(0);
  const KvPoint3d base = pointArgument(arguments, 1);
  const Value thunk = arguments.function(2);
  requirePossible(arguments, drawing.blockFault(name, base));
  const UndoLog::Place before = drawing.undoLog().place();
  try {
    const Drawer::Definition definition(drawer, drawing, drawing.addBlock(name, base));
    arguments.interpreter().call(thunk, {});
  } catch (...) {
    // Half a block would keep its name from the whole one.
    drawing.undoLog().rollBack(before);
    throw;
  }
  return arguments[0];
}

Value isBlockDefined(Drawer& drawer, Arguments& arguments) {
  return Value::truth(drawer.drawing(arguments).store().findBlock(arguments.text(0)) != nullptr);
}

Value placeBlock(Drawer& drawer, Arguments& arguments) {
  DrawingDatabase& drawing = drawer.drawing(arguments);
  const Entity reference{
      BlockReference{
          blockArgument(arguments, 0, drawing), pointArgument(arguments, 1),
          numberArgument(arguments, 2, 1.0), numberArgument(arguments, 3, 0.0)},
      textArgument(arguments, 4, defaultLayer)};
  const AttributeTexts texts = attributesArgument(arguments, 5);
  const KvDbHandle owner = drawer.target(drawing);
  requirePossible(arguments, blockInsertionFault(drawing, owner, reference, texts));
  return entityValue(drawing, insertBlock(drawing, owner, reference, texts));
}

/// The entities of the other drawing's model space, new in this one.
Value placeDrawing(Drawer& drawer, Arguments& arguments) {
  DrawingDatabase& drawing = drawer.drawing(arguments);
  const std::wstring& name = arguments.text(0);
  DrawingInsertion insertion;
  insertion.position = pointArgument(arguments, 1);
  insertion.scale = numberArgument(arguments, 2, 1.0);
  insertion.rotationDegrees = numberArgument(arguments, 3, 0.0);
  const SharedDrawing source = drawer.load(name);
  if (source.drawing == nullptr) arguments.fail(source.error);
  const KvDbHandle owner = drawer.target(drawing);
  requirePossible(arguments, drawingInsertionFault(drawing, owner, *source.drawing, insertion));
  lisp::ListBuilder entities;
  for (const KvDbHandle handle : insertDrawing(drawing, owner, *source.drawing, insertion)) {
    entities.add(entityValue(drawing, handle));
  }
  return entities.take();
}

} // namespace

void defineBlockFunctions(lisp::Interpreter& interpreter, const SharedDrawer& drawer) {
  const auto define = [&](std::wstring_view name, std::size_t minimum, std::size_t maximum,
                          Value (*function)(Drawer&, Arguments&)) {
    interpreter.define(name, minimum, maximum, [drawer, function](Arguments& arguments) {
      return function(*drawer, arguments);
    });
  };
  define(L"define-block", 3, 3, defineBlock);
  define(L"block-defined?", 1, 1, isBlockDefined);
  define(L"insert-block", 2, 6, placeBlock);
  define(L"insert-drawing", 2, 4, placeDrawing);
}

} // namespace simhost
