// Applies the steps of an answer file to one dialog: each action becomes a user's gesture, and its effects are
// recorded. The gestures decide whether they change the state only or go through widgets.
#pragma once

#include "simhost/ui/answers.h"
#include "simhost/ui/gestures.h"
#include "simhost/ui/recorder.h"
#include "simhost/ui/step_queue.h"
#include "simhost/ui/virtual_timers.h"

#include <cstdint>
#include <functional>
#include <string>
#include <utility>

namespace simhost {

class DialogScript final {
public:
  /// All must outlive the script. The steps advance the time of the timers.
  DialogScript(
      DialogModel& dialog, Gestures& gestures, VirtualTimers& timers, StepQueue& steps, Recorder& recorder);

  /// Called before each action to compare the display with the model; a text from it ends the run.
  void setWatcher(std::function<std::string()> watcher) { watcher_ = std::move(watcher); }

  /// Until the dialog is ended. A step that cannot be done ends it as cancelled, with the reason in the steps.
  void run();

private:
  /// Does all actions of a step. False when the run has failed.
  bool doStep(const AnswerStep& step);
  [[nodiscard]] Refusal perform(const AnswerAction& action);
  [[nodiscard]] Refusal choose(const AnswerAction& action);
  [[nodiscard]] Refusal select(const AnswerAction& action);
  [[nodiscard]] Refusal edit(const AnswerAction& action);
  [[nodiscard]] Refusal press(const AnswerAction& action);
  [[nodiscard]] Refusal pressKey(const AnswerAction& action);
  [[nodiscard]] Refusal letTimePass(std::int64_t milliseconds);

  DialogModel& dialog_;
  Gestures& gestures_;
  VirtualTimers& timers_;
  StepQueue& steps_;
  DialogRecord record_;
  std::function<std::string()> watcher_;
};

} // namespace simhost
