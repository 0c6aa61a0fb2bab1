// Answer files: the user's actions at each question of a run, step by step, so that a run needs no user and can be
// repeated. A recording has the same format, with the shown state next to each answer.
#pragma once

#include "simhost/ui/session_file.h"

#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace simhost {

/// An invalid answer file; the message names file and step.
class AnswerError final : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// A text of an answer file as messages cite it.
[[nodiscard]] std::string inQuotes(const std::string& text);

/// A column of a grid, by number or by the text of its header.
struct ColumnChoice {
  std::optional<int> number;
  std::string title;

  [[nodiscard]] bool isGiven() const { return number.has_value() || !title.empty(); }
};

/// A row of a grid, by number, by its first text, or by the texts of some of its cells.
struct RowChoice {
  std::optional<int> number;
  std::optional<std::string> label;
  std::vector<std::pair<std::string, std::string>> cells; ///< header, text

  [[nodiscard]] bool isGiven() const { return number || label || !cells.empty(); }
};

/// A tree item below the one before it: by its text, or by its place from 0.
struct PathPart {
  std::string text;
  std::optional<int> place;
};

/// One thing that an "expect" compares.
struct Expectation {
  std::string what; ///< "text", "enabled", ...
  std::string text;
  std::vector<std::string> texts;
  int number = 0;
  bool isOn = false;
};

/// One thing that the user does: a verb with its subject, and a value where the verb takes one.
struct AnswerAction {
  std::string verb;
  std::string
      subject; ///< a control's role; of "press": a number as text or a name; of "pick": a handle, empty for
               ///< nothing; of "key": the key
  std::string text; ///< what a "set", "type", "choose" or "edit" puts in
  int number =
      0; ///< the same as a number; for "press" the button's id, 0 for a name; milliseconds of a "wait"
  bool isOn = false;                 ///< what a "tick" puts in
  double point[3] = {0.0, 0.0, 0.0}; ///< where a "pick" happens
  std::optional<int> index;          ///< of a "choose", from 0; of a "press", the button of a group
  std::string in;                    ///< the control that gets a "key"; empty for the one with the focus
  ColumnChoice column;
  RowChoice row;
  std::vector<PathPart> path;
  bool isRefused = false; ///< an "edit" that the dialog must not take
  bool isQuick = false;   ///< no timer is due before it
  std::vector<Expectation> expected;
  std::string written; ///< the action as written in the file, without what recordings add
};

/// The button that a "press" or a "close" means, by its number or its name; 0 when it names none.
[[nodiscard]] int pressedButton(const AnswerAction& action);

/// All that is done at one question.
struct AnswerStep {
  std::size_t number = 0; ///< in the file, from 1
  std::string dialog;     ///< key of a task dialog, name of a form, "pick" or "file"
  std::vector<AnswerAction> actions;
};

/// Messages and help have steps in a recording but need no answer.
inline constexpr std::string_view messageDialog = "message";
inline constexpr std::string_view helpDialog = "help";
inline constexpr std::string_view pickDialog = "pick";
inline constexpr std::string_view fileDialog = "file";

/// The first members of every answer file.
inline constexpr std::string_view answerFormat = "brenvolt-answers";
inline constexpr int answerVersion = 1;

/// An answer file; with something to run it is a session.
struct AnswerFile {
  std::optional<SessionRun> run;
  std::vector<AnswerStep> steps; ///< the steps with an answer
};
/// Throws AnswerError.
[[nodiscard]] AnswerFile parseAnswerFile(std::string_view bytes, const std::string& fileName);

/// Parses the steps alone. Throws AnswerError, also when the run in the same file is wrong.
[[nodiscard]] std::vector<AnswerStep> parseAnswers(std::string_view bytes, const std::string& fileName);

} // namespace simhost
