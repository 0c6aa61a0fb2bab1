// Runs the user's commands: one at a time, each one undo step, and reports how it ended. `brenvolt-gui` and a replay
// of its recordings both use it.
#pragma once

#include "simhost/lisp/value.h"
#include "simhost/ui/session_file.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace simhost {

class SiteRun;
class WindowSystem;

/// How a command ended.
struct CommandOutcome {
  enum class Kind { done, cancelled, failed, refused };
  Kind kind = Kind::refused; ///< refused: another one is running
  lisp::Value value{};
  std::wstring message{}; ///< of a failure
};

class CommandSteps {
public:
  /// Both must outlive it.
  CommandSteps(SiteRun& site, WindowSystem& windows) : site_(site), windows_(windows) {}
  CommandSteps(const CommandSteps&) = delete;
  CommandSteps& operator=(const CommandSteps&) = delete;

  /// A command runs or one of its windows is open.
  [[nodiscard]] bool isBusy() const;

  /// Whether what is done is recorded.
  [[nodiscard]] bool isRecorded() const { return static_cast<bool>(onCommand); }

  /// Runs a LISP text as a command of this name.
  CommandOutcome run(const std::wstring& name, const std::wstring& form);
  /// A command of several forms: `steps` calls `evaluate` for each, and its result is the command's value. Nothing
  /// means that the user cancelled.
  using Evaluate = std::function<lisp::Value(const std::wstring& form)>;
  using Steps = std::function<std::optional<lisp::Value>(const Evaluate& evaluate)>;
  CommandOutcome runSteps(const std::wstring& name, const Steps& steps);

  /// The command that undo would take back, empty for none. Changes that no command made count with the one before.
  [[nodiscard]] std::wstring undoName();
  [[nodiscard]] std::wstring redoName();
  /// Takes the drawing back to where it stood before the last command; its name, empty when there is none.
  std::wstring undo();
  std::wstring redo();
  /// Opens a drawing in place of the current one, or a new one without a file; its list of steps is empty then. Throws
  /// BadInput, and then nothing is changed.
  void open(const std::string& file);
  /// Opens another project, none for no file. Throws BadInput, and then nothing has changed.
  void openProject(const std::string& file);
  /// Called when the drawing was saved: the site's records of it stay, whatever happens to the drawing later.
  void noteSaved();
  /// The drawing is left as it was last saved: so is what the site keeps of it outside.
  void noteDropped();

  /// When a command begins and when it has ended.
  std::function<void()> onBusyChanged;
  /// What was done, once it is done: enough to do it again.
  std::function<void(const SessionCommand& command)> onCommand;

private:
  /// A command that changed the drawing: the position of the undo log before and after it.
  struct Step {
    std::wstring name;
    int before = 0;
    int after = 0;
  };
  void dropStaleSteps();
  /// Lets the site follow what has changed in the drawing, such as with the rows of a project.
  void followDrawing(std::uint64_t changesBefore);
  void tell(const SessionCommand& command) const;
  [[nodiscard]] CommandOutcome guarded(const std::function<std::optional<lisp::Value>()>& action);

  SiteRun& site_;
  WindowSystem& windows_;
  bool isRunning_ = false;
  std::vector<Step> done_;
  std::vector<Step> undone_;
};

} // namespace simhost
