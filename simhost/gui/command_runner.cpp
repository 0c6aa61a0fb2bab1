// Commands and their steps of undo.
#include "simhost/gui/command_runner.h"

#include "simhost/host/session.h"
#include "simhost/qt/qt_windows.h"
#include "simhost/site/site_run.h"
#include "text/encoding.h"

#include <exception>
#include <utility>

namespace simhost {

bool CommandRunner::isBusy() const {
  return isRunning_ || windows_.isBusy();
}

CommandOutcome CommandRunner::run(const QString& name, const std::wstring& form) {
  return runSteps(name, [&form](const Evaluate& evaluate) { return evaluate(form); });
}

CommandOutcome CommandRunner::runSteps(
    const QString& name, const std::function<std::optional<lisp::Value>(const Evaluate&)>& steps) {
  if (isBusy()) return {};
  isRunning_ = true;
  if (onBusyChanged) onBusyChanged();
  windows_.beginRun();
  site_.session().clearCancel();
  UndoLog& log = site_.session().documents().current()->drawing().undoLog();
  log.closeGroup();
  const int before = log.undoCount();
  const Evaluate evaluate = [this](const std::wstring& form) {
    if (onForm) onForm(form);
    lisp::Value value = site_.interpreter().run(form, L"input");
    site_.session().endIfCancelled();
    return value;
  };
  CommandOutcome outcome = guarded([&] { return steps(evaluate); });
  log.closeGroup();
  dropStaleSteps();
  if (const int after = log.undoCount(); after > before) {
    done_.push_back({name, before, after});
    undone_.clear();
  }
  isRunning_ = false;
  if (onBusyChanged) onBusyChanged();
  return outcome;
}

CommandOutcome CommandRunner::guarded(const std::function<std::optional<lisp::Value>()>& action) {
  using Kind = CommandOutcome::Kind;
  const auto failed = [](std::wstring message) {
    return CommandOutcome{Kind::failed, {}, std::move(message)};
  };
  try {
    std::optional<lisp::Value> value = action();
    if (!value) return {Kind::cancelled};
    return {Kind::done, std::move(*value)};
  } catch (const lisp::Cancelled&) {
    if (!windows_.failure().empty()) return failed(windows_.failure());
    return {Kind::cancelled};
  } catch (const std::exception& error) {
    return failed(brenvolt::fromUtf8(error.what()));
  }
}

void CommandRunner::dropStaleSteps() {
  const int count = site_.session().documents().current()->drawing().undoLog().undoCount();
  while (!done_.empty() && done_.back().before >= count)
    done_.pop_back();
}

QString CommandRunner::undoName() {
  dropStaleSteps();
  return done_.empty() ? QString() : done_.back().name;
}

QString CommandRunner::redoName() {
  const UndoLog& log = site_.session().documents().current()->drawing().undoLog();
  if (log.redoCount() == 0) undone_.clear();
  return undone_.empty() ? QString() : undone_.back().name;
}

QString CommandRunner::undo() {
  if (isBusy() || undoName().isEmpty()) return {};
  UndoLog& log = site_.session().documents().current()->drawing().undoLog();
  Step step = done_.back();
  step.after = log.undoCount();
  if (log.undo(step.after - step.before) != 0) return {};
  done_.pop_back();
  undone_.push_back(step);
  return step.name;
}

QString CommandRunner::redo() {
  if (isBusy() || redoName().isEmpty()) return {};
  UndoLog& log = site_.session().documents().current()->drawing().undoLog();
  const Step step = undone_.back();
  if (log.redo(step.after - step.before) != 0) return {};
  undone_.pop_back();
  done_.push_back(step);
  return step.name;
}

void CommandRunner::forgetSteps() {
  done_.clear();
  undone_.clear();
}

} // namespace simhost
