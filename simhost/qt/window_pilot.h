// Somebody who acts in the windows instead of a person, by the very widgets that a person would use.
#pragma once

#include "simhost/ui/recorder.h"
#include "simhost/ui/window_system.h"

class QMessageBox;

namespace simhost {

class FileWindow;
class QtDialog;
class TaskBox;

class WindowPilot {
public:
  virtual ~WindowPilot();
  /// Each is called when the window waits, and returns when it has been answered. Of what is no dialog he may
  /// add to the step that has begun.
  virtual void drive(QtDialog& dialog) = 0;
  virtual void drive(TaskBox& box, const TaskQuestion& question) = 0;
  virtual void drive(FileWindow& window, DialogRecord& record) = 0;
  virtual void drive(QMessageBox& box) = 0;
};

} // namespace simhost
