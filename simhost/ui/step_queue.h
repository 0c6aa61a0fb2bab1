// The steps of an answer file while they are used up, and why they cannot continue. All window systems take their
// steps here, without a screen or with real windows.
#pragma once

#include "simhost/ui/answers.h"
#include "simhost/ui/window_system.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace simhost {

/// A window system answered by an answer file.
class AnsweredWindows : public WindowSystem {
public:
  /// The number of steps that were not used yet.
  [[nodiscard]] virtual std::size_t unusedSteps() const = 0;
  /// Makes the recording a session.
  virtual void setRun(const SessionRun& run) = 0;
  /// All questions, displays and answers so far as the text of an answer file.
  [[nodiscard]] virtual std::string recording() const = 0;
};

class StepQueue final {
public:
  /// `source` names the steps in messages.
  StepQueue(std::vector<AnswerStep> steps, std::string source);

  /// The next step when it answers this dialog; null, with the reason in `failure`, when it does not. `says` is the
  /// text of a question without an answer.
  const AnswerStep* take(std::string_view dialog, std::string_view says = {});
  /// The same for a dialog that stays open over many steps; `last` is the one that it had before, null at first.
  const AnswerStep* takeNext(const std::string& dialog, const AnswerStep* last);

  /// The first failure counts.
  void fail(const std::string& message);
  /// The user leaves the program in the middle of a question, until the next run begins.
  void leave() { hasLeft_ = true; }
  void beginRun() { hasLeft_ = false; }
  [[nodiscard]] bool hasLeft() const { return hasLeft_; }
  void failAt(const AnswerStep& step, const std::string& message);
  [[nodiscard]] bool hasFailed() const { return !failure_.empty(); }
  [[nodiscard]] const std::wstring& failure() const { return failure_; }
  [[nodiscard]] std::size_t unused() const { return steps_.size() - next_; }

private:
  std::vector<AnswerStep> steps_;
  std::string source_;
  std::size_t next_ = 0;
  bool hasLeft_ = false;
  std::wstring failure_;
};

} // namespace simhost
