// Doing the steps.
#include "simhost/ui/dialog_script.h"

#include "simhost/json/json_text.h"
#include "simhost/ui/expectations.h"
#include "simhost/ui/pages_model.h"
#include "simhost/ui/selectors.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>

namespace simhost {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

namespace {

/// The closing buttons by number, as task dialogs have them too.
std::string buttonNamed(const AnswerAction& press) {
  if (press.number == kvui::ok) return "ok";
  if (press.number == kvui::cancel) return "cancel";
  return press.subject;
}

/// Takes "<group>.button.<n>" apart.
bool splitGroupButton(const std::string& subject, std::string& group, int& button) {
  constexpr std::string_view mark = ".button.";
  const std::size_t at = subject.rfind(mark);
  if (at == std::string::npos) return false;
  const char* const first = subject.data() + at + mark.size();
  const char* const last = subject.data() + subject.size();
  group = subject.substr(0, at);
  return std::from_chars(first, last, button).ptr == last && first != last;
}

} // namespace

DialogScript::DialogScript(
    DialogModel& dialog, Gestures& gestures, VirtualTimers& timers, StepQueue& steps, Recorder& recorder)
    : dialog_(dialog), gestures_(gestures), timers_(timers), steps_(steps),
      record_(recorder, toUtf8(dialog.name())) {}

void DialogScript::run() {
  const std::string dialog = toUtf8(dialog_.name());
  record_.open(dialog_.shown());
  const AnswerStep* step = nullptr;
  while (!dialog_.isEnded()) {
    step = steps_.takeNext(dialog, step);
    if (step == nullptr || !doStep(*step)) break;
  }
  // No more answers: the flow does not get a cancel event, since it could ask whether to cancel.
  if (!dialog_.access().isEnded() || steps_.hasFailed()) dialog_.access().end(kvui::cancel);
}

bool DialogScript::doStep(const AnswerStep& step) {
  std::size_t number = 0;
  for (const AnswerAction& action : step.actions) {
    ++number;
    std::string reason;
    try {
      if (!dialog_.isEnded() && !action.isQuick && action.verb != "wait")
        if (const Refusal refusal = letTimePass(timers_.untilAllDue())) reason = *refusal;
      if (!steps_.hasFailed() && reason.empty()) {
        if (dialog_.isEnded()) throw AnswerError("the dialog has ended before it");
        if (watcher_)
          if (const std::string unlike = watcher_(); !unlike.empty()) throw AnswerError(unlike);
        record_.addAction(parseJson(action.written));
        if (const Refusal refusal = perform(action)) reason = *refusal;
      }
    } catch (const AnswerError& error) {
      reason = error.what();
    }
    record_.addChanges(dialog_.changes());
    if (steps_.hasFailed()) return false;
    if (reason.empty()) continue;
    record_.addToLast("fault", reason);
    steps_.failAt(
        step, inQuotes(toUtf8(dialog_.name())) + ", action " + std::to_string(number) + ", " + action.verb +
                  " " + inQuotes(action.subject) + ": " + reason);
    return false;
  }
  return true;
}

Refusal DialogScript::letTimePass(std::int64_t milliseconds) {
  const auto fire = [this](int timer) {
    dialog_.access().timer(timer);
    return !dialog_.isEnded() && !steps_.hasFailed();
  };
  const bool rests = timers_.pass(milliseconds, fire);
  record_.addChanges(dialog_.changes());
  if (!rests) return "the timers of the dialog do not stop";
  return std::nullopt;
}

Refusal DialogScript::perform(const AnswerAction& action) {
  const std::string& verb = action.verb;
  if (verb == "pick") return "\"pick\" is an answer to a prompt, not to a dialog";
  if (verb == "wait") return letTimePass(action.number);
  if (verb == "close" && action.subject == "program") {
    // As without an answer: no question whether to cancel can be answered.
    steps_.leave();
    dialog_.access().end(kvui::cancel);
    return std::nullopt;
  }
  if (verb == "close") return gestures_.close();
  if (verb == "key") return pressKey(action);
  if (verb == "expect") return findUnmet(dialog_, gestures_, action);
  if (verb == "press") return press(action);
  ControlModel& control = findControl(dialog_, action.subject);
  if (verb == "focus") return gestures_.focus(control);
  if (verb == "tick") return gestures_.tick(control, action.isOn);
  if (verb == "choose") return choose(action);
  if (verb == "select" || verb == "doubleClick") return select(action);
  if (verb == "edit") return edit(action);
  if (Refusal refusal = gestures_.type(control, fromUtf8(action.text))) return refusal;
  if (verb == "set" && !dialog_.isEnded()) gestures_.leave();
  return std::nullopt;
}

Refusal DialogScript::choose(const AnswerAction& action) {
  ControlModel& control = findControl(dialog_, action.subject);
  const auto* list = dynamic_cast<ListModel*>(&control);
  if (list == nullptr) return "it is not a list";
  if (action.index) return gestures_.choose(control, *action.index);
  const int index = list->indexOf(fromUtf8(action.text));
  if (index >= 0) return gestures_.choose(control, index);
  // Why it cannot be reached says more than that the entry is not there.
  if (Refusal refusal = gestures_.focus(control)) return refusal;
  std::string entries;
  for (int entry = 0; entry < std::min(list->Count(), 20); ++entry)
    entries += (entry == 0 ? "" : ", ") + inQuotes(toUtf8(list->TextAt(entry)));
  if (list->Count() > 20) entries += ", ...";
  return "it has no entry " + inQuotes(action.text) + ", only: " + (entries.empty() ? "none" : entries);
}

Refusal DialogScript::select(const AnswerAction& action) {
  ControlModel& control = findControl(dialog_, action.subject);
  const bool isDouble = action.verb == "doubleClick";
  if (auto* tree = dynamic_cast<TreeModel*>(&control)) {
    if (action.path.empty()) return "a tree item is chosen by \"path\"";
    const int item = findItem(*tree, action.path);
    return isDouble ? gestures_.doubleClickItem(*tree, item) : gestures_.selectItem(*tree, item);
  }
  GridModel* grid = gridOf(control);
  if (grid == nullptr) return "it has neither rows nor items";
  if (!action.row.isGiven()) return "a grid row is chosen by \"row\"";
  const int row = findRow(*grid, action.row);
  const int column = action.column.isGiven() ? findColumn(*grid, action.column) : 0;
  return isDouble ? gestures_.doubleClickRow(*grid, row, column) : gestures_.selectRow(*grid, row, column);
}

Refusal DialogScript::edit(const AnswerAction& action) {
  ControlModel& control = findControl(dialog_, action.subject);
  GridModel* grid = gridOf(control);
  if (grid == nullptr) return "it has no cells";
  const int row = findRow(*grid, action.row);
  const bool isGroup = grid != &control;
  if (!action.column.isGiven() && !isGroup) return "\"column\" is needed to identify the cell";
  const int column = action.column.isGiven() ? findColumn(*grid, action.column) : grid->ColumnCount() - 1;
  CellAnswer answer = CellAnswer::taken;
  if (Refusal refusal = gestures_.editCell(*grid, row, column, fromUtf8(action.text), answer)) return refusal;
  if (answer == CellAnswer::refused && !action.isRefused)
    return "the dialog does not take " + inQuotes(action.text);
  if (answer == CellAnswer::taken && action.isRefused)
    return "the dialog takes " + inQuotes(action.text) + ", which it should refuse";
  return std::nullopt;
}

Refusal DialogScript::press(const AnswerAction& action) {
  const std::string subject = buttonNamed(action);
  std::string name;
  int button = 0;
  if (splitGroupButton(subject, name, button)) {
    if (auto* group = dynamic_cast<GroupModel*>(&findControl(dialog_, name)))
      return gestures_.pressInGroup(*group, button);
    return "its buttons cannot be pressed by number: it is not a group";
  }
  // What has no button for it can still be left by its frame.
  if (subject == "cancel" && dialog_.find(L"cancel") == nullptr) return gestures_.close();
  ControlModel& control = findControl(dialog_, subject);
  if (!action.index) return gestures_.press(control);
  auto* group = dynamic_cast<GroupModel*>(&control);
  if (group == nullptr) return "it is not a group";
  return gestures_.pressInGroup(*group, *action.index);
}

Refusal DialogScript::pressKey(const AnswerAction& action) {
  if (!action.in.empty()) {
    ControlModel& control = findControl(dialog_, action.in);
    GridModel* grid = gridOf(control);
    if (Refusal refusal = gestures_.focus(grid == nullptr ? control : *grid)) return refusal;
    if (dialog_.isEnded()) return std::nullopt;
  }
  const std::string& key = action.subject;
  if (key == "F1") return gestures_.help();
  if (key == "Escape") return gestures_.close();
  if (key == "Delete") return gestures_.deleteKey();
  if (key == "Enter") return gestures_.enter();
  gestures_.leave();
  return std::nullopt;
}

} // namespace simhost
