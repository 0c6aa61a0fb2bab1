// A dialog that a script answers: its steps do what a person would do, and nothing that a person could not.
#pragma once

#include "simhost/ui/answers.h"
#include "simhost/ui/gestures.h"
#include "simhost/ui/recorder.h"
#include "simhost/ui/virtual_timers.h"

#include <functional>
#include <string>

namespace simhost {

/// Where a dialog gets its steps, and where it tells that it cannot go on.
class StepSource {
public:
  virtual ~StepSource() = default;
  /// The next step when it is one of this dialog; null, with the run failed, when it is not. `last` is the step that
  /// the dialog had before, null at first.
  virtual const AnswerStep* takeStep(const std::string& dialog, const AnswerStep* last) = 0;
  virtual void failAt(const AnswerStep& step, const std::string& message) = 0;
  [[nodiscard]] virtual bool hasFailed() const = 0;
};

class ScriptedDialog final : public DialogModel {
public:
  ScriptedDialog(const Form& form, CKvUiDialog& dialog, StepSource& steps, Recorder& recorder);

  void startTimer(int timer, int milliseconds) override { timers_.start(timer, milliseconds); }
  void killTimer(int timer) override { timers_.kill(timer); }
  void run() override;

private:
  /// Does all actions of a step. False when the run has failed.
  bool doStep(const AnswerStep& step);
  void doAction(const AnswerAction& action);
  [[nodiscard]] Refusal perform(const AnswerAction& action);
  [[nodiscard]] Refusal choose(const AnswerAction& action);
  [[nodiscard]] Refusal select(const AnswerAction& action);
  [[nodiscard]] Refusal edit(const AnswerAction& action);
  [[nodiscard]] Refusal press(const AnswerAction& action);
  [[nodiscard]] Refusal pressKey(const AnswerAction& action);
  [[nodiscard]] Refusal letTimePass(std::int64_t milliseconds);

  StepSource& steps_;
  DialogRecord record_;
  Gestures gestures_;
  VirtualTimers timers_;
};

} // namespace simhost
