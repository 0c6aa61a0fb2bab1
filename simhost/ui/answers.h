// Answer files: what a user would do at each question of a run, step by step, so that a run needs nobody and can be
// repeated. A recording has the same format, with what was shown put beside each answer.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace simhost {

/// An answer file that cannot be used; the message names file and step.
class AnswerError final : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// One thing that the user does: a verb with its subject, and a value where the verb takes one.
struct AnswerAction {
  std::string verb;    ///< "press", "tick", "set" or "pick"
  std::string subject; ///< of "press": a number as text or a name; of "pick": a handle, empty for nothing
  std::string text;    ///< what a "set" puts in
  int number = 0;      ///< the same as a number; for "press" the button's id, 0 for a name
  bool isOn = false;   ///< what a "tick" puts in
  double point[3] = {0.0, 0.0, 0.0}; ///< where a "pick" happens
};

/// All that is done at one question.
struct AnswerStep {
  std::size_t number = 0; ///< in the file, from 1
  std::string dialog;     ///< key of a task dialog, name of a form, "pick" or "file"
  std::vector<AnswerAction> actions;
};

/// What is only shown has steps in a recording and asks nothing.
inline constexpr std::string_view messageDialog = "message";
inline constexpr std::string_view helpDialog = "help";
inline constexpr std::string_view pickDialog = "pick";
inline constexpr std::string_view fileDialog = "file";

/// The first members of every answer file.
inline constexpr std::string_view answerFormat = "brenvolt-answers";
inline constexpr int answerVersion = 1;

/// The steps of an answer file that answer a question. Throws AnswerError.
[[nodiscard]] std::vector<AnswerStep> parseAnswers(std::string_view bytes, const std::string& fileName);

} // namespace simhost
