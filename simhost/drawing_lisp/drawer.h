// What the functions on drawings share: the drawing and the place where new entities go, and checked readings of
// arguments in the drawing's terms.
#pragma once

#include "simhost/drawing_lisp/drawing_functions.h"
#include "simhost/lisp/arguments.h"
#include "simhost/lisp/value.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace simhost {

class Drawer final {
public:
  explicit Drawer(DrawingAccess access) : access_(std::move(access)) {}
  Drawer(const Drawer&) = delete;
  Drawer& operator=(const Drawer&) = delete;

  [[nodiscard]] DrawingDatabase& drawing(const lisp::Arguments& arguments) const;
  [[nodiscard]] SharedDrawing load(const std::wstring& name) const { return access_.load(name); }
  /// The block being defined, else the current space.
  [[nodiscard]] KvDbHandle target(const DrawingDatabase& drawing) const;
  /// Adds to the target; a fault is the function's error. Answers the entity's name.
  lisp::Value add(const lisp::Arguments& arguments, Entity entity) const;

  /// Makes a block the target for a scope.
  class Definition final {
  public:
    Definition(Drawer& drawer, const DrawingDatabase& drawing, KvDbHandle block);
    ~Definition();
    Definition(const Definition&) = delete;
    Definition& operator=(const Definition&) = delete;

  private:
    Drawer& drawer_;
    KvDbObjectId outer_;
  };

private:
  DrawingAccess access_;
  KvDbObjectId block_; ///< null outside of a definition
};

/// @name Arguments. Each complains through the call when the value is of another kind; positions count from 0.
/// @{

/// Whether an optional argument is given: nil is the same as none.
[[nodiscard]] bool isGiven(const lisp::Arguments& arguments, std::size_t position);
[[nodiscard]] KvPoint3d pointArgument(const lisp::Arguments& arguments, std::size_t position);
[[nodiscard]] std::vector<KvPoint3d> pointsArgument(const lisp::Arguments& arguments, std::size_t position);
[[nodiscard]] double numberArgument(const lisp::Arguments& arguments, std::size_t position, double usual);
[[nodiscard]] std::wstring textArgument(
    const lisp::Arguments& arguments, std::size_t position, std::wstring_view usual);
[[nodiscard]] Justification justificationArgument(const lisp::Arguments& arguments, std::size_t position);
[[nodiscard]] Colour colourArgument(const lisp::Arguments& arguments, std::size_t position);
/// A string or a symbol, the latter in lower case.
[[nodiscard]] std::wstring wordArgument(const lisp::Arguments& arguments, std::size_t position);
/// An entity of the drawing that is not erased.
[[nodiscard]] const EntityNode& entityArgument(
    const lisp::Arguments& arguments, std::size_t position, const DrawingDatabase& drawing);
/// @}

/// Makes a fault of the drawing the call's error.
void requirePossible(const lisp::Arguments& arguments, const Fault& fault);

[[nodiscard]] lisp::Value pointValue(const KvPoint3d& point);
[[nodiscard]] lisp::Value entityValue(const DrawingDatabase& drawing, KvDbHandle handle);

using SharedDrawer = std::shared_ptr<Drawer>;

/// @name The groups of functions, one file each.
/// @{
void defineDrawingVerbs(lisp::Interpreter& interpreter, const SharedDrawer& drawer);
void defineBlockFunctions(lisp::Interpreter& interpreter, const SharedDrawer& drawer);
void defineEntityFunctions(lisp::Interpreter& interpreter, const SharedDrawer& drawer);
void defineSettingFunctions(lisp::Interpreter& interpreter, const SharedDrawer& drawer);
void defineCircuitFunctions(lisp::Interpreter& interpreter, const SharedDrawer& drawer);
/// @}

} // namespace simhost
