// The services of the configuration dialog for its windows and for their widget managers.
#pragma once

#include <string>
#include <vector>

namespace brenvolt {

/// Who may use the drawing's editor.
enum class EditorOwner { host, dialog };

class ZanConfigDialogService {
public:
  virtual ~ZanConfigDialogService() = default;

  /// Lets the user pick a motor in the drawing. Its data are in the order of a motor group's rows: type, load, units,
  /// voltage, phase, frequency, speed, full-load current (A), multiplier; the current circuit takes them over. False,
  /// and nothing changed, when the user cancels.
  [[nodiscard]] virtual bool PickMotor(std::vector<std::wstring>& values) = 0;
  /// The same for a load, which has no speed.
  [[nodiscard]] virtual bool PickLoad(std::vector<std::wstring>& values) = 0;
  /// Gives the editor to the host, so that a lookup can draw and ask, or takes it back.
  virtual void HandOverEditor(EditorOwner owner) = 0;
  /// Starts a timer of the dialog; starting a running one restarts it.
  virtual void StartWindowTimer(int timer, int milliseconds) = 0;
  virtual void KillWindowTimer(int timer) = 0;
};

} // namespace brenvolt
