// Answers from steps, and the recording.
#include "simhost/ui/scripted_windows.h"

#include "simhost/json/json_text.h"
#include "simhost/ui/scripted_dialog.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <utility>

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;
using brenvolt::fromUtf8;
using brenvolt::toUtf8;

bool offers(const TaskQuestion& question, int button) {
  const bool isThere =
      std::any_of(question.buttons.begin(), question.buttons.end(), [button](const TaskButton& row) {
        return row.id == button;
      });
  return isThere || button == kvui::cancel; // the frame closes every dialog
}

struct NamedText {
  const char* name;
  std::wstring text;
};

/// Why a question does not match an "expect", nothing when it matches.
std::optional<std::string> unmetText(const AnswerAction& expect, const std::vector<NamedText>& texts) {
  for (const Expectation& expected : expect.expected) {
    const auto row = std::find_if(
        texts.begin(), texts.end(), [&](const NamedText& text) { return expected.what == text.name; });
    if (row == texts.end()) return "has no \"" + expected.what + "\"";
    const std::string found = toUtf8(row->text);
    if (found != expected.text)
      return "\"" + expected.what + "\" should be \"" + expected.text + "\" but is \"" + found + "\"";
  }
  return std::nullopt;
}

Json pointAsJson(const double (&point)[3]) {
  return Json::array({point[0], point[1], point[2]});
}

} // namespace

ScriptedWindows::ScriptedWindows(std::vector<AnswerStep> steps, std::string source)
    : steps_(std::move(steps), std::move(source)), recorder_(std::make_unique<Recorder>()) {}

ScriptedWindows::~ScriptedWindows() = default;

TaskAnswer ScriptedWindows::askTask(const TaskQuestion& question) {
  const std::string key = toUtf8(question.key);
  Json& record = recorder_->step(recorder_->begin(key, shownOf(question)));

  TaskAnswer answer;
  const AnswerStep* step = steps_.take(key, toUtf8(question.text));
  if (step == nullptr) return answer;
  for (const AnswerAction& action : step->actions) {
    if (action.verb == "tick" && action.subject == "hide" && question.isHideable) {
      answer.hideForGood = action.isOn;
      record["do"].push_back({{"tick", "hide"}, {"to", action.isOn}});
      continue;
    }
    if (action.verb == "expect") {
      record["do"].push_back(parseJson(action.written));
      const auto unmet = unmetText(action, {{"title", question.title}, {"text", question.text}});
      if (!unmet) continue;
      steps_.failAt(*step, "\"" + key + "\": " + *unmet);
      return TaskAnswer{};
    }
    const bool answers = action.verb == "press" || action.verb == "close";
    const int button = answers ? pressedButton(action) : 0;
    if (button == 0 || !offers(question, button)) {
      steps_.failAt(
          *step, "\"" + key + "\" has nothing to " + action.verb + " named \"" + action.subject + "\"");
      return TaskAnswer{};
    }
    answer.button = button;
    record["do"].push_back({{"press", button}});
    return answer;
  }
  steps_.failAt(*step, "leaves \"" + key + "\" open: no button is pressed");
  return TaskAnswer{};
}

EntityPick ScriptedWindows::pickEntity(const std::wstring& prompt, bool emptyIsAllowed) {
  Json& record = recorder_->step(recorder_->begin(pickDialog, {{"prompt", toUtf8(prompt)}}));
  const AnswerStep* step = steps_.take(pickDialog);
  if (step == nullptr) return EntityPick{};
  if (step->actions.size() != 1) {
    steps_.failAt(*step, "a pick is answered by exactly one action");
    return EntityPick{};
  }
  const AnswerAction& action = step->actions.front();
  const bool leaves = action.verb == "press" || action.verb == "close";
  if (leaves && pressedButton(action) == kvui::cancel) {
    record["do"].push_back({{"press", "cancel"}});
    return EntityPick{};
  }
  if (action.verb != "pick") {
    steps_.failAt(*step, "a pick is answered by \"pick\" or by pressing \"cancel\"");
    return EntityPick{};
  }
  EntityPick pick;
  pick.point = {action.point[0], action.point[1], action.point[2]};
  if (action.subject.empty()) {
    if (!emptyIsAllowed) {
      steps_.failAt(*step, "the prompt does not allow an empty pick");
      return EntityPick{};
    }
    record["do"].push_back({{"pick", nullptr}});
    pick.kind = EntityPick::Kind::nothing;
    return pick;
  }
  std::uint64_t handle = 0;
  const char* const last = action.subject.data() + action.subject.size();
  const auto [end, error] = std::from_chars(action.subject.data(), last, handle, 16);
  if (error != std::errc() || end != last || handle == 0) {
    steps_.failAt(*step, "\"" + action.subject + "\" is not a handle");
    return EntityPick{};
  }
  record["do"].push_back({{"pick", action.subject}, {"point", pointAsJson(action.point)}});
  pick.kind = EntityPick::Kind::entity;
  pick.handle = KvDbHandle(handle);
  return pick;
}

FileAnswer ScriptedWindows::askFile(const FileQuestion& question, const FileEvents& events) {
  DialogRecord record(*recorder_, std::string(fileDialog));
  record.open(shownOf(question));
  const auto note = [&record](Json action) { record.addAction(std::move(action)); };

  FileAnswer answer;
  answer.path = question.fileName;
  // A question in between, such as whether to replace a file, parts the steps.
  const std::string dialog(fileDialog);
  for (const AnswerStep* step = steps_.takeNext(dialog, nullptr); step != nullptr;
       step = steps_.takeNext(dialog, step))
    for (const AnswerAction& action : step->actions) {
      if (action.verb == "set" && action.subject == "path") {
        answer.path = fromUtf8(action.text);
        note({{"set", "path"}, {"to", action.text}});
      } else if (
          action.verb == "set" && action.subject == "type" && action.number >= 1 &&
          static_cast<std::size_t>(action.number) <= question.types.size()) {
        answer.type = action.number;
        note({{"set", "type"}, {"to", action.number}});
        if (events.typeChanged) answer.path = events.typeChanged(answer.type, answer.path);
        record.addToLast("then", {{"name", toUtf8(answer.path)}});
      } else if (
          action.verb == "close" || (action.verb == "press" && pressedButton(action) == kvui::cancel)) {
        note(parseJson(action.written));
        return answer;
      } else if (action.verb == "press" && pressedButton(action) == kvui::ok) {
        note({{"press", "ok"}});
        answer.isOk = true;
        if (!events.accept || events.accept(answer)) return answer;
        answer.isOk = false;
      } else if (action.verb == "expect") {
        note(parseJson(action.written));
        if (const auto unmet = unmetText(action, {{"text", answer.path}}))
          steps_.failAt(*step, "the file dialog: " + *unmet);
      } else {
        steps_.failAt(
            *step, "a file dialog has nothing to " + action.verb + " named \"" + action.subject + "\"");
      }
      if (steps_.hasFailed()) return answer;
    }
  return answer;
}

std::unique_ptr<DialogWindow> ScriptedWindows::openDialog(const std::wstring& form, CKvUiDialog& dialog) {
  if (steps_.hasFailed()) return nullptr;
  try {
    return std::make_unique<ScriptedDialog>(
        loadForm(formFolder(), form, language()), dialog, steps_, *recorder_);
  } catch (const FormError& error) {
    recorder_->note(toUtf8(form), {{"fault", error.what()}});
    steps_.fail(error.what());
    return nullptr;
  }
}

bool ScriptedWindows::showMessage(const std::wstring& text) {
  recorder_->note(messageDialog, {{"text", toUtf8(text)}});
  return false;
}

bool ScriptedWindows::showHelp(const std::wstring& topic) {
  recorder_->note(helpDialog, {{"topic", toUtf8(topic)}});
  return false;
}

void ScriptedWindows::setRun(const SessionRun& run) {
  recorder_->setRun(run);
}

std::string ScriptedWindows::recording() const {
  return recorder_->text();
}

} // namespace simhost
