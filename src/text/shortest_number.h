// The one rule for numbers in files and in LISP, as bytes: writers of large files need no wide text in between.
#pragma once

#include <string>

namespace brenvolt {

/// Appends the shortest text that reads back as the same number, as `formatShortest` makes it; nothing for one that is
/// not finite.
void appendShortest(std::string& bytes, double value);

} // namespace brenvolt
