// Acts in the windows instead of a user, through the same widgets.
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
  /// Each is called when the window waits, and returns when it has been answered. For windows that are not dialogs it
  /// may add to the step that has begun.
  virtual void drive(QtDialog& dialog) = 0;
  virtual void drive(TaskBox& box, const TaskQuestion& question) = 0;
  virtual void drive(FileWindow& window, DialogRecord& record) = 0;
  virtual void drive(QMessageBox& box) = 0;
};

} // namespace simhost
