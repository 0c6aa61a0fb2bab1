// The checked readings of arguments, in the same words for all functions.
#include "simhost/drawing_lisp/drawer.h"

#include "simhost/lisp/list.h"
#include "simhost/lisp/symbol.h"
#include "text/compare.h"

#include <optional>
#include <utility>

namespace simhost {
namespace {

using lisp::Arguments;
using lisp::Value;

std::optional<KvPoint3d> pointOf(const Value& value) {
  const auto length = lisp::listLength(value);
  if (!length || *length < 2 || *length > 3) return std::nullopt;
  KvPoint3d point;
  double* parts[] = {&point.x, &point.y, &point.z};
  std::size_t index = 0;
  for (const Value& part : lisp::Elements(value)) {
    if (!part.isNumber()) return std::nullopt;
    *parts[index++] = part.asNumber();
  }
  return point;
}

} // namespace

DrawingDatabase& Drawer::drawing(const Arguments& arguments) const {
  DrawingDatabase* drawing = access_.current();
  if (drawing == nullptr) arguments.fail(L"no drawing is open");
  return *drawing;
}

KvDbHandle Drawer::target(const DrawingDatabase& drawing) const {
  const bool isDefining = !block_.isNull() && DrawingDatabase::of(block_) == &drawing;
  return isDefining ? DrawingDatabase::handleOf(block_) : drawing.currentSpace();
}

Value Drawer::add(const Arguments& arguments, Entity entity) const {
  DrawingDatabase& database = drawing(arguments);
  const KvDbHandle owner = target(database);
  requirePossible(arguments, database.entityFault(owner, entity));
  return entityValue(database, database.addEntity(owner, std::move(entity)));
}

Drawer::Definition::Definition(Drawer& drawer, const DrawingDatabase& drawing, KvDbHandle block)
    : drawer_(drawer), outer_(std::exchange(drawer.block_, drawing.idOf(block))) {}

Drawer::Definition::~Definition() {
  drawer_.block_ = outer_;
}

bool isGiven(const Arguments& arguments, std::size_t position) {
  return arguments.has(position) && !arguments[position].isNil();
}

KvPoint3d pointArgument(const Arguments& arguments, std::size_t position) {
  const std::optional<KvPoint3d> point =
      arguments.has(position) ? pointOf(arguments[position]) : std::nullopt;
  if (!point) arguments.expected(position, L"a point");
  return *point;
}

std::vector<KvPoint3d> pointsArgument(const Arguments& arguments, std::size_t position) {
  std::vector<KvPoint3d> points;
  for (const Value& value : lisp::Elements(arguments.list(position))) {
    const std::optional<KvPoint3d> point = pointOf(value);
    if (!point) arguments.expected(position, L"a list of points");
    points.push_back(*point);
  }
  return points;
}

double numberArgument(const Arguments& arguments, std::size_t position, double usual) {
  return isGiven(arguments, position) ? arguments.number(position) : usual;
}

std::wstring textArgument(const Arguments& arguments, std::size_t position, std::wstring_view usual) {
  return isGiven(arguments, position) ? arguments.text(position) : std::wstring(usual);
}

Justification justificationArgument(const Arguments& arguments, std::size_t position) {
  if (!isGiven(arguments, position)) return Justification::left;
  const std::optional<Justification> justification = justificationOf(wordArgument(arguments, position));
  if (!justification) arguments.expected(position, L"left, centre, right or middle");
  return *justification;
}

Colour colourArgument(const Arguments& arguments, std::size_t position) {
  const std::optional<Colour> colour = parseColour(arguments.text(position));
  if (!colour) arguments.expected(position, L"a colour of the form \"#rrggbb\"");
  return *colour;
}

std::wstring wordArgument(const Arguments& arguments, std::size_t position) {
  const bool isString = arguments.has(position) && arguments[position].isString();
  return brenvolt::toLower(isString ? arguments.text(position) : arguments.symbol(position).name);
}

const EntityNode& entityArgument(
    const Arguments& arguments, std::size_t position, const DrawingDatabase& drawing) {
  if (!arguments.has(position) || !arguments[position].isEntity()) arguments.expected(position, L"an entity");
  const KvDbObjectId id(arguments[position].asEntity());
  const EntityNode* entity =
      DrawingDatabase::of(id) == &drawing ? drawing.find(DrawingDatabase::handleOf(id)) : nullptr;
  if (entity == nullptr) arguments.fail(L"the entity is erased or not of this drawing");
  return *entity;
}

void requirePossible(const Arguments& arguments, const Fault& fault) {
  if (fault) arguments.fail(*fault);
}

Value pointValue(const KvPoint3d& point) {
  return lisp::makePoint(point.x, point.y, point.z);
}

Value entityValue(const DrawingDatabase& drawing, KvDbHandle handle) {
  return Value::entity(drawing.idOf(handle).value());
}

void defineDrawingFunctions(lisp::Interpreter& interpreter, DrawingAccess access) {
  const auto drawer = std::make_shared<Drawer>(std::move(access));
  defineDrawingVerbs(interpreter, drawer);
  defineBlockFunctions(interpreter, drawer);
  defineEntityFunctions(interpreter, drawer);
  defineSettingFunctions(interpreter, drawer);
  defineCircuitFunctions(interpreter, drawer);
}

} // namespace simhost
