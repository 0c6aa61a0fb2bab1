// A dialog that a script answers: its steps can do what a user can do, and nothing else.
#pragma once

#include "simhost/ui/dialog_script.h"

namespace simhost {

class ScriptedDialog final : public DialogModel {
public:
  ScriptedDialog(const Form& form, CKvUiDialog& dialog, StepQueue& steps, Recorder& recorder)
      : DialogModel(form, dialog), gestures_(*this), script_(*this, gestures_, timers_, steps, recorder) {}

  void startTimer(int timer, int milliseconds) override { timers_.start(timer, milliseconds); }
  void killTimer(int timer) override { timers_.kill(timer); }
  void run() override { script_.run(); }

private:
  Gestures gestures_;
  VirtualTimers timers_;
  DialogScript script_;
};

} // namespace simhost
