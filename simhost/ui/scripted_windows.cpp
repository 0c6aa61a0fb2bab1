// Answers from steps, and the recording.
#include "simhost/ui/scripted_windows.h"

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

struct ButtonName {
  const char* name;
  int id;
};
constexpr ButtonName buttonNames[] = {
    {"ok", kvui::ok}, {"cancel", kvui::cancel}, {"yes", kvui::yes}, {"no", kvui::no}};

/// The id that a "press" means, 0 when its name is none.
int pressedButton(const AnswerAction& press) {
  if (press.number != 0) return press.number;
  for (const ButtonName& row : buttonNames)
    if (press.subject == row.name) return row.id;
  return 0;
}

bool offers(const TaskQuestion& question, int button) {
  const bool isThere =
      std::any_of(question.buttons.begin(), question.buttons.end(), [button](const TaskButton& row) {
        return row.id == button;
      });
  return isThere || button == kvui::cancel; // the frame closes every dialog
}

Json pointAsJson(const double (&point)[3]) {
  return Json::array({point[0], point[1], point[2]});
}

} // namespace

/// Steps in the order in which they came up.
struct ScriptedWindows::Recorder {
  Json steps = Json::array();

  /// Notes what is shown; the actions are noted into the answer as they happen.
  Json& begin(std::string_view dialog, Json shown) {
    Json step = Json::object();
    step["dialog"] = dialog;
    step["shown"] = std::move(shown);
    steps.push_back(std::move(step));
    return steps.back();
  }
};

ScriptedWindows::ScriptedWindows(std::vector<AnswerStep> steps, std::string source)
    : steps_(std::move(steps)), source_(std::move(source)), recorder_(std::make_unique<Recorder>()) {}

ScriptedWindows::~ScriptedWindows() = default;

const AnswerStep* ScriptedWindows::take(std::string_view dialog) {
  if (!failure_.empty()) return nullptr;
  const std::string name(dialog);
  if (next_ == steps_.size()) {
    fail("\"" + name + "\" has no answer: " + source_ + (steps_.empty() ? "" : " has no further step"));
    return nullptr;
  }
  const AnswerStep& step = steps_[next_];
  if (step.dialog != dialog) {
    failAt(step, "answers \"" + step.dialog + "\", but \"" + name + "\" asks");
    return nullptr;
  }
  ++next_;
  return &step;
}

void ScriptedWindows::fail(const std::string& message) {
  if (failure_.empty()) failure_ = fromUtf8(message);
}

void ScriptedWindows::failAt(const AnswerStep& step, const std::string& message) {
  fail(source_ + ": step " + std::to_string(step.number) + ": " + message);
}

TaskAnswer ScriptedWindows::askTask(const TaskQuestion& question) {
  const std::string key = toUtf8(question.key);
  Json shown = {
      {"title", toUtf8(question.title)}, {"text", toUtf8(question.text)}, {"buttons", Json::array()}};
  for (const TaskButton& button : question.buttons)
    shown["buttons"].push_back({{"id", button.id}, {"label", toUtf8(button.label)}});
  if (question.isHideable) shown["hideable"] = true;
  Json& record = recorder_->begin(key, std::move(shown));
  record["do"] = Json::array();

  TaskAnswer answer;
  const AnswerStep* step = take(key);
  if (step == nullptr) return answer;
  for (const AnswerAction& action : step->actions) {
    if (action.verb == "tick" && action.subject == "hide" && question.isHideable) {
      answer.hideForGood = action.isOn;
      record["do"].push_back({{"tick", "hide"}, {"to", action.isOn}});
      continue;
    }
    const int button = action.verb == "press" ? pressedButton(action) : 0;
    if (button == 0 || !offers(question, button)) {
      failAt(*step, "\"" + key + "\" has nothing to " + action.verb + " named \"" + action.subject + "\"");
      return TaskAnswer{};
    }
    answer.button = button;
    record["do"].push_back({{"press", button}});
    return answer;
  }
  failAt(*step, "leaves \"" + key + "\" open: no button is pressed");
  return TaskAnswer{};
}

EntityPick ScriptedWindows::pickEntity(const std::wstring& prompt, bool emptyIsAllowed) {
  Json& record = recorder_->begin(pickDialog, {{"prompt", toUtf8(prompt)}});
  record["do"] = Json::array();
  const AnswerStep* step = take(pickDialog);
  if (step == nullptr) return EntityPick{};
  if (step->actions.size() != 1) {
    failAt(*step, "a pick is answered by exactly one action");
    return EntityPick{};
  }
  const AnswerAction& action = step->actions.front();
  if (action.verb == "press" && pressedButton(action) == kvui::cancel) {
    record["do"].push_back({{"press", "cancel"}});
    return EntityPick{};
  }
  if (action.verb != "pick") {
    failAt(*step, "a pick is answered by \"pick\" or by pressing \"cancel\"");
    return EntityPick{};
  }
  EntityPick pick;
  pick.point = {action.point[0], action.point[1], action.point[2]};
  if (action.subject.empty()) {
    if (!emptyIsAllowed) {
      failAt(*step, "the prompt takes no empty answer");
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
    failAt(*step, "\"" + action.subject + "\" is no handle");
    return EntityPick{};
  }
  record["do"].push_back({{"pick", action.subject}, {"point", pointAsJson(action.point)}});
  pick.kind = EntityPick::Kind::entity;
  pick.handle = KvDbHandle(handle);
  return pick;
}

FileAnswer ScriptedWindows::askFile(const FileQuestion& question, const FileEvents& events) {
  Json shown = {
      {"purpose", question.isSave ? "save" : "open"},
      {"name", toUtf8(question.fileName)},
      {"folder", toUtf8(question.folder)},
      {"types", Json::array()}};
  for (const std::wstring& type : question.types)
    shown["types"].push_back(toUtf8(type));
  Json& record = recorder_->begin(fileDialog, std::move(shown));
  record["do"] = Json::array();
  // Questions that come up while the dialog is open are recorded behind it and move the list.
  const std::size_t place = recorder_->steps.size() - 1;
  const auto note = [this, place](Json action) {
    recorder_->steps[place]["do"].push_back(std::move(action));
  };

  FileAnswer answer;
  answer.path = question.fileName;
  const AnswerStep* step = take(fileDialog);
  if (step == nullptr) return answer;
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
    } else if (action.verb == "press" && pressedButton(action) == kvui::cancel) {
      note({{"press", "cancel"}});
      return answer;
    } else if (action.verb == "press" && pressedButton(action) == kvui::ok) {
      note({{"press", "ok"}});
      answer.isOk = true;
      if (!events.accept || events.accept(answer)) return answer;
      answer.isOk = false;
      if (!failure_.empty()) return answer;
    } else {
      failAt(*step, "a file dialog has nothing to " + action.verb + " named \"" + action.subject + "\"");
      return answer;
    }
  }
  failAt(*step, "leaves the file dialog open");
  return answer;
}

std::unique_ptr<DialogWindow> ScriptedWindows::openDialog(const std::wstring& form, CKvUiDialog&) {
  const std::string name = toUtf8(form);
  recorder_->begin(name, Json::object())["do"] = Json::array();
  fail("the form \"" + name + "\" is unknown");
  return nullptr;
}

bool ScriptedWindows::showMessage(const std::wstring& text) {
  recorder_->begin(messageDialog, {{"text", toUtf8(text)}});
  return false;
}

bool ScriptedWindows::showHelp(const std::wstring& topic) {
  recorder_->begin(helpDialog, {{"topic", toUtf8(topic)}});
  return false;
}

std::string ScriptedWindows::recording() const {
  Json file = Json::object();
  file["format"] = answerFormat;
  file["version"] = answerVersion;
  file["steps"] = recorder_->steps;
  return file.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace simhost
