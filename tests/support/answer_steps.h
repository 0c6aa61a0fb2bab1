// The steps of an answer file from a short text.
#pragma once

#include "simhost/ui/answers.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt::test {

/// An answer file with these steps, which are separated by commas.
[[nodiscard]] inline std::string answerFile(std::string_view steps) {
  return R"({"format": "brenvolt-answers", "version": 1, "steps": [)" + std::string(steps) + "]}";
}

[[nodiscard]] inline std::vector<simhost::AnswerStep> answerSteps(std::string_view steps) {
  return simhost::parseAnswers(answerFile(steps), "the test");
}

} // namespace brenvolt::test
