// The functions that draw one entity.
#include "simhost/drawing_lisp/drawer.h"

#include <utility>

namespace simhost {
namespace {

using lisp::Arguments;

std::wstring layerArgument(const Arguments& arguments, std::size_t position) {
  return textArgument(arguments, position, defaultLayer);
}

Entity line(const Arguments& arguments) {
  return {Line{pointArgument(arguments, 0), pointArgument(arguments, 1)}, layerArgument(arguments, 2)};
}

Entity polyline(const Arguments& arguments) {
  return {
      Polyline{pointsArgument(arguments, 0), isGiven(arguments, 2), numberArgument(arguments, 3, 0.0)},
      layerArgument(arguments, 1)};
}

Entity circle(const Arguments& arguments) {
  return {Circle{pointArgument(arguments, 0), arguments.number(1)}, layerArgument(arguments, 2)};
}

Entity arc(const Arguments& arguments) {
  return {
      Arc{pointArgument(arguments, 0), arguments.number(1), arguments.number(2), arguments.number(3)},
      layerArgument(arguments, 4)};
}

Entity text(const Arguments& arguments) {
  Text value{pointArgument(arguments, 0), arguments.text(1), arguments.number(2)};
  value.justification = justificationArgument(arguments, 4);
  value.rotationDegrees = numberArgument(arguments, 5, 0.0);
  return {std::move(value), layerArgument(arguments, 3)};
}

Entity attributeDefinition(const Arguments& arguments) {
  Text value{pointArgument(arguments, 1), arguments.text(2), arguments.number(3)};
  value.justification = justificationArgument(arguments, 7);
  value.rotationDegrees = numberArgument(arguments, 8, 0.0);
  return {
      AttributeDefinition{
          arguments.text(0), textArgument(arguments, 6, L""), std::move(value), !isGiven(arguments, 5)},
      layerArgument(arguments, 4)};
}

struct Verb {
  std::wstring_view name;
  std::size_t minimumArguments;
  std::size_t maximumArguments;
  Entity (*make)(const Arguments&);
};

constexpr Verb verbs[] = {
    {L"draw-line", 2, 3, line},     {L"draw-polyline", 1, 4, polyline},
    {L"draw-circle", 2, 3, circle}, {L"draw-arc", 4, 5, arc},
    {L"draw-text", 3, 6, text},     {L"draw-attribute-definition", 4, 9, attributeDefinition},
};

} // namespace

void defineDrawingVerbs(lisp::Interpreter& interpreter, const SharedDrawer& drawer) {
  for (const Verb& verb : verbs) {
    interpreter.define(
        verb.name, verb.minimumArguments, verb.maximumArguments,
        [drawer, make = verb.make](Arguments& arguments) { return drawer->add(arguments, make(arguments)); });
  }
}

} // namespace simhost
