// The user's actions in a dialog as they are recorded: those that are one for the user are joined, and the time between
// them is noted where timers of the dialog count it.
#pragma once

#include "simhost/qt/dialog_clock.h"
#include "simhost/ui/recorder.h"

#include <memory>
#include <string>

namespace simhost {

class ActionRecord final {
public:
  using Json = DialogRecord::Json;

  /// Both must outlive it. `dialog`: the name of its form.
  ActionRecord(Recorder& recorder, const std::string& dialog, const DialogClock& clock);
  ~ActionRecord();

  void open(Json shown);
  void add(Json action);
  /// The last action was refused: it is taken back. `focus`: the role of the control that has got the focus by it,
  /// since leaving the control before may have had its own consequences; empty for none.
  void refuse(const std::string& focus);
  /// The user leaves the program while the dialog is open.
  void close();
  /// Beside the last action.
  void addToLast(const char* member, Json value);
  /// What followed from the last action, or from the opening.
  void addChanges(const Json& changes);

private:
  DialogRecord record_;
  const DialogClock& clock_;
  std::unique_ptr<Json> last_; ///< with what later actions may be joined
};

} // namespace simhost
