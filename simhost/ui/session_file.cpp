// Reading and writing of what a session runs.
#include "simhost/ui/session_file.h"

#include "simhost/ui/answers.h"

#include <nlohmann/json.hpp>

namespace simhost {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

namespace {

struct TextMember {
  const char* name;
  std::string SessionRun::*field;
  bool isOfCircuit; ///< and not of forms
};

constexpr TextMember textMembers[] = {
    {"circuit", &SessionRun::circuit, true},   {"type", &SessionRun::type, true},
    {"history", &SessionRun::history, true},   {"preset", &SessionRun::preset, true},
    {"params", &SessionRun::params, true},     {"wires", &SessionRun::wires, true},
    {"drawing", &SessionRun::drawing, false},  {"project", &SessionRun::project, false},
    {"language", &SessionRun::language, false}};

[[noreturn]] void fail(const std::string& message) {
  throw AnswerError("run: " + message);
}

const TextMember* textMember(const std::string& name) {
  for (const TextMember& member : textMembers)
    if (name == member.name) return &member;
  return nullptr;
}

void readForms(const Json& value, SessionRun& run) {
  if (!value.is_array() || value.empty()) fail("\"forms\" is no list of LISP forms");
  for (const Json& form : value) {
    if (!form.is_string()) fail("\"forms\" is no list of LISP forms");
    run.forms.push_back(form);
  }
}

void readPoint(const Json& value, SessionRun& run) {
  if (!value.is_array() || value.size() != 2 || !value[0].is_number() || !value[1].is_number())
    fail("\"at\" is no point of two numbers");
  run.at = {value[0].get<double>(), value[1].get<double>()};
}

} // namespace

SessionRun readSessionRun(const Json& value) {
  if (!value.is_object()) fail("is no object");
  SessionRun run;
  for (const auto& [name, member] : value.items()) {
    const TextMember* text = textMember(name);
    if (name == "forms") {
      readForms(member, run);
    } else if (name == "at") {
      readPoint(member, run);
    } else if (text == nullptr) {
      fail("unknown member \"" + name + "\"");
    } else if (!member.is_string()) {
      fail("\"" + name + "\" is no text");
    } else {
      run.*text->field = member;
    }
  }
  if (run.forms.empty()) {
    if (run.circuit.empty() || run.type.empty()) fail("needs \"circuit\" and \"type\", or \"forms\"");
    return run;
  }
  for (const auto& [name, member] : value.items()) {
    const TextMember* text = textMember(name);
    if (name == "at" || (text != nullptr && text->isOfCircuit)) fail("has \"" + name + "\" beside \"forms\"");
  }
  return run;
}

Json sessionRunAsJson(const SessionRun& run) {
  Json value = Json::object();
  if (!run.forms.empty()) value["forms"] = run.forms;
  for (const TextMember& member : textMembers) {
    const std::string& text = run.*member.field;
    if (!text.empty()) value[member.name] = text;
  }
  if (run.isCircuit()) value["at"] = run.at;
  return value;
}

SessionRun seenFrom(SessionRun run, const fs::path& from, const fs::path& to) {
  const fs::path base = fs::weakly_canonical(to.empty() ? fs::path(".") : to);
  for (std::string* path : {&run.drawing, &run.project})
    if (!path->empty()) *path = fs::weakly_canonical(from / *path).lexically_proximate(base).generic_string();
  return run;
}

} // namespace simhost
