// Reading of answer files. Everything is checked here, so that a run never stops half way over a spelling.
#include "simhost/ui/answers.h"

#include <nlohmann/json.hpp>

#include <set>
#include <utility>

namespace simhost {

namespace {

using nlohmann::json;

/// Checks and takes apart one file; knows where it is for its messages.
class Parser final {
public:
  explicit Parser(std::string fileName) : place_(std::move(fileName)) {}

  [[nodiscard]] std::vector<AnswerStep> parse(std::string_view bytes) {
    json file;
    try {
      file = json::parse(bytes);
    } catch (const json::parse_error& error) {
      fail(std::string("is no JSON: ") + error.what());
    }
    if (!file.is_object()) fail("is no object");
    allowMembers(file, {"$schema", "format", "version", "steps"});
    if (file.value("format", json()) != std::string(answerFormat))
      fail("\"format\" is not \"" + std::string(answerFormat) + "\"");
    if (file.value("version", json()) != answerVersion) fail("\"version\" is not 1");
    if (!file.contains("steps") || !file["steps"].is_array()) fail("\"steps\" is no list");

    std::vector<AnswerStep> steps;
    const std::string fileName = place_;
    for (const json& step : file["steps"]) {
      ++number_;
      place_ = fileName + ": step " + std::to_string(number_);
      AnswerStep parsed = parseStep(step);
      if (parsed.dialog != messageDialog && parsed.dialog != helpDialog) steps.push_back(std::move(parsed));
    }
    return steps;
  }

private:
  [[noreturn]] void fail(const std::string& message) const { throw AnswerError(place_ + ": " + message); }

  void allowMembers(const json& object, const std::set<std::string>& known) const {
    for (const auto& [name, value] : object.items())
      if (!known.contains(name)) fail("unknown member \"" + name + "\"");
  }

  [[nodiscard]] AnswerStep parseStep(const json& step) const {
    if (!step.is_object() || !step.contains("dialog") || !step["dialog"].is_string())
      fail("needs \"dialog\", the name of what is answered");
    allowMembers(step, {"dialog", "shown", "do"});
    AnswerStep parsed;
    parsed.number = number_;
    parsed.dialog = step["dialog"];
    const json actions = step.value("do", json::array());
    if (!actions.is_array()) fail("\"do\" is no list");
    for (const json& action : actions)
      parsed.actions.push_back(parseAction(action));
    return parsed;
  }

  [[nodiscard]] AnswerAction parseAction(const json& action) const {
    if (!action.is_object()) fail("an action is no object");
    AnswerAction parsed;
    for (const char* verb : {"press", "tick", "set", "pick"})
      if (action.contains(verb)) {
        if (!parsed.verb.empty()) fail("an action has two verbs");
        parsed.verb = verb;
      }
    if (parsed.verb.empty()) fail("an action needs \"press\", \"tick\", \"set\" or \"pick\"");
    if (parsed.verb == "pick") {
      parsePick(action, parsed);
      return parsed;
    }
    const json& subject = action[parsed.verb];
    if (parsed.verb == "press" && subject.is_number_integer()) {
      parsed.number = subject;
      parsed.subject = std::to_string(parsed.number);
    } else if (subject.is_string()) {
      parsed.subject = subject;
    } else {
      fail("\"" + parsed.verb + "\" does not say what");
    }
    if (parsed.verb == "press") {
      allowMembers(action, {"press"});
      return parsed;
    }
    allowMembers(action, {parsed.verb, "to"});
    const json value = action.value("to", json());
    if (parsed.verb == "tick") {
      if (!value.is_boolean()) fail("\"tick\" needs \"to\": true or false");
      parsed.isOn = value;
    } else if (value.is_number_integer()) {
      parsed.number = value;
      parsed.text = std::to_string(parsed.number);
    } else if (value.is_string()) {
      parsed.text = value;
    } else {
      fail("\"set\" needs \"to\", a text or an integer");
    }
    return parsed;
  }

  void parsePick(const json& action, AnswerAction& parsed) const {
    allowMembers(action, {"pick", "point"});
    if (!action["pick"].is_null()) {
      if (!action["pick"].is_string()) fail("\"pick\" is neither a handle nor null");
      parsed.subject = action["pick"];
    }
    if (!action.contains("point")) return;
    const json& point = action["point"];
    if (!point.is_array() || point.size() < 2 || point.size() > 3)
      fail("\"point\" is no list of two or three numbers");
    for (std::size_t axis = 0; axis < point.size(); ++axis) {
      if (!point[axis].is_number()) fail("\"point\" is no list of two or three numbers");
      parsed.point[axis] = point[axis];
    }
  }

  std::string place_;
  std::size_t number_ = 0;
};

} // namespace

std::vector<AnswerStep> parseAnswers(std::string_view bytes, const std::string& fileName) {
  return Parser(fileName).parse(bytes);
}

} // namespace simhost
