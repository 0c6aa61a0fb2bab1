// The commands of the main window, named by Qt's texts.
#pragma once

#include "simhost/qt/qt_text.h"
#include "simhost/site/command_steps.h"

#include <QString>

namespace simhost {

class CommandRunner final : public CommandSteps {
public:
  using CommandSteps::CommandSteps;

  CommandOutcome run(const QString& name, const std::wstring& form) {
    return CommandSteps::run(fromQt(name), form);
  }
  CommandOutcome runSteps(const QString& name, const Steps& steps) {
    return CommandSteps::runSteps(fromQt(name), steps);
  }
  [[nodiscard]] QString undoName() { return toQt(CommandSteps::undoName()); }
  [[nodiscard]] QString redoName() { return toQt(CommandSteps::redoName()); }
  QString undo() { return toQt(CommandSteps::undo()); }
  QString redo() { return toQt(CommandSteps::redo()); }
};

} // namespace simhost
