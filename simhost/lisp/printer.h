// Values as text: in a form that the reader can read back, or for display.
#pragma once

#include "simhost/lisp/value.h"

#include <cstddef>
#include <limits>
#include <string>

namespace simhost::lisp {

enum class PrintStyle {
  readable, ///< strings in quotes with escapes
  display   ///< strings as they are
};

/// The text of a value. Nothing recurses, so length and depth of lists are free; a text longer than `limit`
/// characters is cut there and ends with "...".
[[nodiscard]] std::wstring printValue(
    const Value& value, PrintStyle style = PrintStyle::readable,
    std::size_t limit = std::numeric_limits<std::size_t>::max());

/// A real as text: the shortest that reads back the same, always with a point or an exponent.
[[nodiscard]] std::wstring printReal(double number);

/// A point on the plane z = 0 as a form whose value it is.
[[nodiscard]] std::wstring printPointForm(double x, double y);

} // namespace simhost::lisp
