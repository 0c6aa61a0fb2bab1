// A bug ends the program with one sentence, in every build: continuing with a broken promise could put a wrong figure
// into a drawing.
#pragma once

namespace brenvolt {

[[noreturn]] void assertionFailed(const char* sentence, const char* file, int line);

} // namespace brenvolt

#define BRENVOLT_ASSERT(condition, sentence)                                                                 \
  ((condition) ? static_cast<void>(0) : ::brenvolt::assertionFailed((sentence), __FILE__, __LINE__))
