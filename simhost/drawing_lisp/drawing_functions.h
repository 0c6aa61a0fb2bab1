// What LISP programs do with a drawing: draw, define and place blocks, read and change entities, layers, variables,
// undo. The functions are described in docs/lisp_drawing.md.
#pragma once

#include "simhost/drawing/drawing_database.h"
#include "simhost/lisp/evaluator.h"

#include <functional>
#include <memory>
#include <string>

namespace simhost {

/// A drawing to be inserted, or the reason why it cannot be.
struct SharedDrawing {
  std::shared_ptr<const DrawingDatabase> drawing; ///< null on a failure
  std::wstring error;                             ///< names the file, the place in it and the reason
};

/// How the functions reach drawings.
struct DrawingAccess {
  /// The drawing to work on; null makes every function an error. Must outlive the call.
  std::function<DrawingDatabase*()> current;
  /// Reads the drawing for a file name as a program wrote it.
  std::function<SharedDrawing(const std::wstring& name)> load;
};

void defineDrawingFunctions(lisp::Interpreter& interpreter, DrawingAccess access);

} // namespace simhost
