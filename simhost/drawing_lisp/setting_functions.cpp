// The functions on layers, variables, the current space and undo.
#include "simhost/drawing_lisp/drawer.h"
#include "simhost/lisp/list.h"
#include "text/compare.h"

namespace simhost {
namespace {

using lisp::Arguments;
using lisp::Value;

/// Pairs (code . value); T is a wire layer without settings, nil no wire layer.
std::optional<std::vector<WireSetting>> wireSettingsArgument(
    const Arguments& arguments, std::size_t position) {
  if (!isGiven(arguments, position)) return std::nullopt;
  std::vector<WireSetting> settings;
  if (arguments[position].isSame(Value::truth(true))) return settings;
  constexpr std::wstring_view what = L"a list of pairs (code . value)";
  for (const Value& pair : lisp::Elements(arguments.list(position))) {
    if (!pair.isCons() || !pair.asCons().car().isInteger()) arguments.expected(position, what);
    WireSetting setting{pair.asCons().car().asInteger(), {}};
    const Value& value = pair.asCons().cdr();
    if (value.isInteger()) {
      setting.value = value.asInteger();
    } else if (value.isString()) {
      setting.value = value.asString();
    } else {
      arguments.expected(position, what);
    }
    settings.push_back(std::move(setting));
  }
  return settings;
}

/// An existing layer keeps what is not given.
Value defineLayer(Drawer& drawer, Arguments& arguments) {
  DrawingDatabase& drawing = drawer.drawing(arguments);
  Layer layer{arguments.text(0)};
  if (const Layer* known = drawing.store().findLayer(layer.name)) layer = *known;
  if (isGiven(arguments, 1)) layer.colour = colourArgument(arguments, 1);
  if (isGiven(arguments, 2)) {
    const std::optional<LineType> type = lineTypeOf(wordArgument(arguments, 2));
    if (!type) arguments.expected(2, L"continuous, dashed, dotted or dash-dot");
    layer.lineType = *type;
  }
  if (isGiven(arguments, 3)) layer.wireSettings = wireSettingsArgument(arguments, 3);
  requirePossible(arguments, DrawingDatabase::layerFault(layer));
  drawing.putLayer(std::move(layer));
  return arguments[0];
}

Value layerNames(const DrawingDatabase& drawing, bool (*isWanted)(const Layer&)) {
  lisp::ListBuilder names;
  for (const Layer& layer : drawing.store().layers()) {
    if (isWanted(layer)) names.add(Value::string(layer.name));
  }
  return names.take();
}

Value layers(Drawer& drawer, Arguments& arguments) {
  return layerNames(drawer.drawing(arguments), [](const Layer& /*layer*/) { return true; });
}

Value wireLayers(Drawer& drawer, Arguments& arguments) {
  return layerNames(
      drawer.drawing(arguments), [](const Layer& layer) { return layer.wireSettings.has_value(); });
}

Value wireLayerSettings(Drawer& drawer, Arguments& arguments) {
  const Layer* layer = drawer.drawing(arguments).store().findLayer(arguments.text(0));
  lisp::ListBuilder list;
  if (layer == nullptr || !layer->wireSettings) return list.take();
  for (const WireSetting& setting : *layer->wireSettings) {
    const auto* number = std::get_if<std::int32_t>(&setting.value);
    list.add(Value::cons(
        Value::integer(setting.code),
        number != nullptr ? Value::integer(*number) : Value::string(std::get<std::wstring>(setting.value))));
  }
  return list.take();
}

Value currentSpace(Drawer& drawer, Arguments& arguments) {
  const DrawingDatabase& drawing = drawer.drawing(arguments);
  return Value::string(drawing.store().findBlock(drawing.currentSpace())->name);
}

Value getVariable(Drawer& drawer, Arguments& arguments) {
  const VariableValue* value = drawer.drawing(arguments).variable(arguments.text(0));
  if (value == nullptr) return {};
  if (const auto* integer = std::get_if<std::int32_t>(value)) return Value::integer(*integer);
  if (const auto* real = std::get_if<double>(value)) return Value::real(*real);
  return Value::string(std::get<std::wstring>(*value));
}

Value setVariable(Drawer& drawer, Arguments& arguments) {
  DrawingDatabase& drawing = drawer.drawing(arguments);
  const std::wstring& name = arguments.text(0);
  VariableValue value;
  if (arguments[1].isInteger()) {
    value = arguments[1].asInteger();
  } else if (arguments[1].isReal()) {
    value = arguments[1].asReal();
  } else if (arguments[1].isString()) {
    value = arguments[1].asString();
  } else {
    arguments.expected(1, L"a number or a string");
  }
  requirePossible(arguments, DrawingDatabase::variableFault(name, value));
  drawing.setVariable(name, std::move(value));
  return arguments[1];
}

Value undoCount(Drawer& drawer, Arguments& arguments) {
  return Value::integer(drawer.drawing(arguments).undoLog().undoCount());
}

Value undo(Drawer& drawer, Arguments& arguments) {
  return Value::truth(drawer.drawing(arguments).undoLog().undo(arguments.integer(0)) == 0);
}

Value redo(Drawer& drawer, Arguments& arguments) {
  return Value::truth(drawer.drawing(arguments).undoLog().redo(arguments.integer(0)) == 0);
}

} // namespace

void defineSettingFunctions(lisp::Interpreter& interpreter, const SharedDrawer& drawer) {
  const auto define = [&](std::wstring_view name, std::size_t minimum, std::size_t maximum,
                          Value (*function)(Drawer&, Arguments&)) {
    interpreter.define(name, minimum, maximum, [drawer, function](Arguments& arguments) {
      return function(*drawer, arguments);
    });
  };
  define(L"layer-define", 1, 4, defineLayer);
  define(L"layers", 0, 0, layers);
  define(L"wire-layers", 0, 0, wireLayers);
  define(L"wire-layer-settings", 1, 1, wireLayerSettings);
  define(L"current-space", 0, 0, currentSpace);
  define(L"get-variable", 1, 1, getVariable);
  define(L"set-variable", 2, 2, setVariable);
  define(L"undo-count", 0, 0, undoCount);
  define(L"undo", 1, 1, undo);
  define(L"redo", 1, 1, redo);
}

} // namespace simhost
