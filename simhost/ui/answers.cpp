// Reads answer files. Everything is checked here, so that a run never stops in the middle because of a misspelling.
#include "simhost/ui/answers.h"

#include "host/host_api_ui.h"
#include "simhost/json/json_text.h"
#include "simhost/ui/action_reader.h"

#include <nlohmann/json.hpp>

#include <set>
#include <utility>

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

/// Checks and takes apart one file; knows where it is for its messages.
class Parser final {
public:
  explicit Parser(std::string fileName) : place_(std::move(fileName)) {}

  [[nodiscard]] AnswerFile parse(std::string_view bytes) {
    Json file;
    try {
      file = parseJson(bytes);
    } catch (const Json::exception& error) {
      fail(std::string("invalid JSON: ") + error.what());
    }
    if (!file.is_object()) fail("must be an object");
    allowMembers(file, {"$schema", "format", "version", "run", "steps"});
    if (file.value("format", Json()) != std::string(answerFormat))
      fail("\"format\" is not \"" + std::string(answerFormat) + "\"");
    if (file.value("version", Json()) != answerVersion) fail("\"version\" is not 1");
    if (!file.contains("steps") || !file["steps"].is_array()) fail("\"steps\" must be a list");

    AnswerFile answers;
    if (file.contains("run")) answers.run = parseRun(file["run"]);
    const std::string fileName = place_;
    for (const Json& step : file["steps"]) {
      ++number_;
      place_ = fileName + ": step " + std::to_string(number_);
      AnswerStep parsed = parseStep(step);
      const bool asks = parsed.dialog != messageDialog && parsed.dialog != helpDialog && step.contains("do");
      if (asks) answers.steps.push_back(std::move(parsed));
    }
    return answers;
  }

private:
  [[noreturn]] void fail(const std::string& message) const { throw AnswerError(place_ + ": " + message); }

  void allowMembers(const Json& object, const std::set<std::string>& known) const {
    for (const auto& [name, value] : object.items())
      if (!known.contains(name)) fail("unknown member \"" + name + "\"");
  }

  [[nodiscard]] SessionRun parseRun(const Json& run) const {
    try {
      return readSessionRun(run);
    } catch (const AnswerError& error) {
      fail(error.what());
    }
  }

  [[nodiscard]] AnswerStep parseStep(const Json& step) const {
    if (!step.is_object() || !step.contains("dialog") || !step["dialog"].is_string())
      fail("needs \"dialog\", the name of what is answered");
    allowMembers(step, {"dialog", "shown", "do"});
    AnswerStep parsed;
    parsed.number = number_;
    parsed.dialog = step["dialog"];
    const Json actions = step.value("do", Json::array());
    if (!actions.is_array()) fail("\"do\" must be a list");
    for (const Json& action : actions) {
      try {
        parsed.actions.push_back(readAction(action));
      } catch (const AnswerError& error) {
        fail("action " + std::to_string(parsed.actions.size() + 1) + ": " + error.what());
      }
    }
    return parsed;
  }

  std::string place_;
  std::size_t number_ = 0;
};

} // namespace

std::string inQuotes(const std::string& text) {
  return "\"" + text + "\"";
}

int pressedButton(const AnswerAction& action) {
  struct Row {
    const char* name;
    int id;
  };
  constexpr Row rows[] = {{"ok", kvui::ok}, {"cancel", kvui::cancel}, {"yes", kvui::yes}, {"no", kvui::no}};
  if (action.verb == "close") return kvui::cancel;
  if (action.number != 0) return action.number;
  for (const Row& row : rows)
    if (action.subject == row.name) return row.id;
  return 0;
}

AnswerFile parseAnswerFile(std::string_view bytes, const std::string& fileName) {
  return Parser(fileName).parse(bytes);
}

std::vector<AnswerStep> parseAnswers(std::string_view bytes, const std::string& fileName) {
  return parseAnswerFile(bytes, fileName).steps;
}

} // namespace simhost
