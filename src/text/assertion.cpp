#include "text/assertion.h"

#include <cstdio>
#include <cstdlib>

namespace brenvolt {

void assertionFailed(const char* sentence, const char* file, int line) {
  std::fprintf(stderr, "brenvolt: broken promise: %s (%s:%d)\n", sentence, file, line);
  std::abort();
}

} // namespace brenvolt
