// Building up the steps of a recording.
#include "simhost/ui/recorder.h"

#include "simhost/json/json_text.h"
#include "simhost/ui/answers.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace simhost {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

Json shownOf(const TaskQuestion& question) {
  Json shown = {
      {"title", toUtf8(question.title)}, {"text", toUtf8(question.text)}, {"buttons", Json::array()}};
  for (const TaskButton& button : question.buttons)
    shown["buttons"].push_back({{"id", button.id}, {"label", toUtf8(button.label)}});
  if (question.isHideable) shown["hideable"] = true;
  return shown;
}

Json shownOf(const FileQuestion& question) {
  Json shown = {
      {"purpose", question.isSave ? "save" : "open"},
      {"name", toUtf8(question.fileName)},
      {"folder", toUtf8(question.folder)},
      {"types", Json::array()}};
  for (const std::wstring& type : question.types)
    shown["types"].push_back(toUtf8(type));
  return shown;
}

Recorder::Recorder() : run_(std::make_unique<Json>()), steps_(std::make_unique<Json>(Json::array())) {}

Recorder::~Recorder() = default;

void Recorder::setRun(const SessionRun& run) {
  *run_ = sessionRunAsJson(run);
}

std::size_t Recorder::count() const {
  return steps_->size();
}

Json& Recorder::step(std::size_t number) {
  return (*steps_)[number];
}

std::size_t Recorder::begin(std::string_view dialog, Json shown) {
  note(dialog, std::move(shown));
  steps_->back()["do"] = Json::array();
  return steps_->size() - 1;
}

void Recorder::note(std::string_view dialog, Json shown) {
  Json step = Json::object();
  step["dialog"] = dialog;
  step["shown"] = std::move(shown);
  steps_->push_back(std::move(step));
}

std::size_t Recorder::resume(std::string_view dialog) {
  Json step = Json::object();
  step["dialog"] = dialog;
  step["do"] = Json::array();
  steps_->push_back(std::move(step));
  return steps_->size() - 1;
}

std::string Recorder::text() const {
  Json file = Json::object();
  file["format"] = answerFormat;
  file["version"] = answerVersion;
  if (!run_->is_null()) file["run"] = *run_;
  file["steps"] = *steps_;
  return jsonText(file, 2) + "\n";
}

void DialogRecord::open(Json shown) {
  step_ = recorder_.begin(dialog_, std::move(shown));
}

void DialogRecord::addAction(Json action) {
  if (recorder_.count() != step_ + 1) step_ = recorder_.resume(dialog_);
  Json& actions = recorder_.step(step_)["do"];
  actions.push_back(std::move(action));
  actionStep_ = step_;
  action_ = actions.size() - 1;
  hasAction_ = true;
}

bool DialogRecord::replaceLast(Json action) {
  if (!hasAction_ || recorder_.count() != actionStep_ + 1) return false;
  Json& last = recorder_.step(actionStep_)["do"][action_];
  if (last.contains("then")) action["then"] = std::move(last["then"]);
  last = std::move(action);
  return true;
}

void DialogRecord::dropLast() {
  if (!hasAction_ || recorder_.count() != actionStep_ + 1) return;
  Json& actions = recorder_.step(actionStep_)["do"];
  actions.erase(action_);
  hasAction_ = action_ > 0;
  if (hasAction_) --action_;
}

void DialogRecord::addToLast(const char* member, Json value) {
  Json& last = hasAction_ ? recorder_.step(actionStep_)["do"][action_] : recorder_.step(step_)["shown"];
  last[member] = std::move(value);
}

void DialogRecord::addChanges(const Json& changes) {
  if (changes.empty()) return;
  Json& told = hasAction_ ? recorder_.step(actionStep_)["do"][action_]["then"]
                          : recorder_.step(step_)["shown"]["then"];
  if (told.is_null()) told = Json::object();
  for (const auto& [role, members] : changes.items())
    for (const auto& [member, value] : members.items())
      told[role][member] = value;
}

} // namespace simhost
