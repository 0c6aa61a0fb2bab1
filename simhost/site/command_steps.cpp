// Commands and their steps of undo.
#include "simhost/site/command_steps.h"

#include "simhost/host/session.h"
#include "simhost/site/project_database.h"
#include "simhost/site/site_run.h"
#include "text/encoding.h"

#include <cstdint>
#include <exception>
#include <utility>

namespace simhost {

bool CommandSteps::isBusy() const {
  return isRunning_ || windows_.isBusy();
}

CommandOutcome CommandSteps::run(const std::wstring& name, const std::wstring& form) {
  return runSteps(name, [&form](const Evaluate& evaluate) { return evaluate(form); });
}

CommandOutcome CommandSteps::runSteps(const std::wstring& name, const Steps& steps) {
  if (isBusy()) return {};
  isRunning_ = true;
  if (onBusyChanged) onBusyChanged();
  windows_.beginRun();
  site_.session().clearCancel();
  UndoLog& log = site_.session().documents().current()->drawing().undoLog();
  log.closeGroup();
  const int before = log.undoCount();
  const std::uint64_t changesBefore = log.changeCount();
  UndoLog::KeptRedo redo(log);
  SessionCommand command;
  bool endsInForm = false;
  const Evaluate evaluate = [&](const std::wstring& form) {
    command.forms.push_back(brenvolt::toUtf8(form));
    endsInForm = true;
    lisp::Value value = site_.interpreter().run(form, L"input");
    site_.session().endIfCancelled();
    endsInForm = false;
    return value;
  };
  CommandOutcome outcome = guarded([&] { return steps(evaluate); });
  site_.session().circuits().sealBuilt();
  log.closeGroup();
  // Nobody is left to look at half a circuit; the LISP that would take it back does not run any more.
  if (windows_.hasLeft() && log.undoCount() > before) static_cast<void>(log.undo(log.undoCount() - before));
  followDrawing(changesBefore);
  dropStaleSteps();
  if (const int after = log.undoCount(); after > before) {
    done_.push_back({name, before, after});
    undone_.clear();
  } else if (after == before && log.changeCount() != changesBefore) {
    // Undone by itself, like a cancelled circuit: not a step that redo may restore, but those before it are.
    if (!redo.restore()) {
      log.forgetUndone();
      undone_.clear();
    }
  }
  if (endsInForm) {
    const bool isFailed = outcome.kind == CommandOutcome::Kind::failed;
    command.end = isFailed ? SessionCommand::End::failed : SessionCommand::End::cancelled;
    command.fault = brenvolt::toUtf8(outcome.message);
  }
  if (!command.forms.empty()) tell(command);
  isRunning_ = false;
  if (onBusyChanged) onBusyChanged();
  return outcome;
}

CommandOutcome CommandSteps::guarded(const std::function<std::optional<lisp::Value>()>& action) {
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

void CommandSteps::dropStaleSteps() {
  const int count = site_.session().documents().current()->drawing().undoLog().undoCount();
  while (!done_.empty() && done_.back().before >= count)
    done_.pop_back();
}

std::wstring CommandSteps::undoName() {
  dropStaleSteps();
  return done_.empty() ? std::wstring() : done_.back().name;
}

std::wstring CommandSteps::redoName() {
  const UndoLog& log = site_.session().documents().current()->drawing().undoLog();
  if (log.redoCount() == 0) undone_.clear();
  return undone_.empty() ? std::wstring() : undone_.back().name;
}

std::wstring CommandSteps::undo() {
  if (isBusy() || undoName().empty()) return {};
  UndoLog& log = site_.session().documents().current()->drawing().undoLog();
  const std::uint64_t changesBefore = log.changeCount();
  Step step = done_.back();
  step.after = log.undoCount();
  if (log.undo(step.after - step.before) != 0) return {};
  followDrawing(changesBefore);
  done_.pop_back();
  undone_.push_back(step);
  tell({SessionCommand::Kind::undo});
  return step.name;
}

std::wstring CommandSteps::redo() {
  if (isBusy() || redoName().empty()) return {};
  UndoLog& log = site_.session().documents().current()->drawing().undoLog();
  const std::uint64_t changesBefore = log.changeCount();
  const Step step = undone_.back();
  if (log.redo(step.after - step.before) != 0) return {};
  followDrawing(changesBefore);
  undone_.pop_back();
  done_.push_back(step);
  tell({SessionCommand::Kind::redo});
  return step.name;
}

void CommandSteps::followDrawing(std::uint64_t changesBefore) {
  const UndoLog& log = site_.session().documents().current()->drawing().undoLog();
  if (log.changeCount() != changesBefore) site_.callSite(L"site-sync-records");
}

void CommandSteps::openProject(const std::string& file) {
  if (!file.empty()) checkProject(file);
  site_.setProject(file);
  tell({SessionCommand::Kind::project, {}, file});
}

void CommandSteps::noteSaved() {
  site_.callSite(L"site-records-saved");
}

void CommandSteps::noteDropped() {
  site_.callSite(L"site-records-dropped");
}

void CommandSteps::open(const std::string& file) {
  site_.openDrawing(file);
  done_.clear();
  undone_.clear();
  tell({SessionCommand::Kind::open, {}, file});
}

void CommandSteps::tell(const SessionCommand& command) const {
  if (onCommand) onCommand(command);
}

} // namespace simhost
