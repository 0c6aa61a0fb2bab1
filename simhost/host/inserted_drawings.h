// Drawings that a site's LISP inserts, such as templates: one whose file has the same bytes as before is not parsed
// again.
#pragma once

#include "simhost/drawing_lisp/drawing_functions.h"

#include <cstddef>
#include <map>
#include <string>

namespace simhost {

class InsertedDrawings final {
public:
  /// Compares the bytes and not the time of the file: a file that was saved twice within a second counts as changed.
  [[nodiscard]] SharedDrawing read(const std::wstring& path);

private:
  /// More than the templates of a large site; beyond it all are forgotten.
  static constexpr std::size_t mostDrawings = 200;

  struct Known {
    std::string bytes;
    SharedDrawing drawing;
  };
  std::map<std::wstring, Known> known_;
};

} // namespace simhost
