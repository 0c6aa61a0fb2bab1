// Counting what is open.
#include "simhost/lisp/input.h"

#include <cstddef>

namespace simhost::lisp {

bool isCompleteInput(std::wstring_view text) {
  int depth = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] == L';') {
      at = text.find(L'\n', at);
      if (at == std::wstring_view::npos) break;
    } else if (text[at] == L'"') {
      for (++at; at < text.size() && text[at] != L'"'; ++at)
        if (text[at] == L'\\') ++at;
      if (at >= text.size()) return false;
    } else if (text[at] == L'(') {
      ++depth;
    } else if (text[at] == L')') {
      --depth;
    }
  }
  return depth <= 0;
}

} // namespace simhost::lisp
