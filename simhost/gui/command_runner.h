// Runs what the user asks for: one command at a time, each one step of undo, and tells how it ended.
#pragma once

#include "simhost/lisp/value.h"

#include <QString>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace simhost {

class QtWindows;
class SiteRun;

/// How a command ended.
struct CommandOutcome {
  enum class Kind { done, cancelled, failed, refused };
  Kind kind = Kind::refused; ///< refused: another one is at work
  lisp::Value value{};
  std::wstring message{}; ///< of a failure
};

class CommandRunner final {
public:
  CommandRunner(SiteRun& site, QtWindows& windows) : site_(site), windows_(windows) {}

  /// A command runs or one of its windows is open.
  [[nodiscard]] bool isBusy() const;

  /// Runs a LISP text as a command of this name.
  CommandOutcome run(const QString& name, const std::wstring& form);
  /// A command of several forms: `steps` calls `evaluate` for each, and its answer is the command's value. Nothing
  /// means that the user left.
  using Evaluate = std::function<lisp::Value(const std::wstring& form)>;
  CommandOutcome runSteps(
      const QString& name, const std::function<std::optional<lisp::Value>(const Evaluate&)>& steps);

  /// The command that undo would take back, empty for none. Changes that no command made count with the one before.
  [[nodiscard]] QString undoName();
  [[nodiscard]] QString redoName();
  /// Takes the drawing back to where it stood before the last command; its name, empty when there is none.
  QString undo();
  QString redo();
  /// Another drawing is open now.
  void forgetSteps();

  /// When a command begins and when it has ended.
  std::function<void()> onBusyChanged;
  /// A form is about to run.
  std::function<void(const std::wstring& form)> onForm;

private:
  /// A command that changed the drawing: where the undo log stood before, and behind it.
  struct Step {
    QString name;
    int before = 0;
    int after = 0;
  };
  void dropStaleSteps();
  [[nodiscard]] CommandOutcome guarded(const std::function<std::optional<lisp::Value>()>& action);

  SiteRun& site_;
  QtWindows& windows_;
  bool isRunning_ = false;
  std::vector<Step> done_;
  std::vector<Step> undone_;
};

} // namespace simhost
