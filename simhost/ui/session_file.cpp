// Reading and writing of what a session runs.
#include "simhost/ui/session_file.h"

#include "simhost/json/json_text.h"
#include "simhost/ui/answers.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>

namespace simhost {

namespace fs = std::filesystem;
using Json = nlohmann::ordered_json;

namespace {

struct TextMember {
  const char* name;
  std::string SessionRun::*field;
  bool isOfCircuit; ///< and not of forms or commands
};

constexpr TextMember textMembers[] = {
    {"circuit", &SessionRun::circuit, true},
    {"type", &SessionRun::type, true},
    {"history", &SessionRun::history, true},
    {"preset", &SessionRun::preset, true},
    {"params", &SessionRun::params, true},
    {"wires", &SessionRun::wires, true},
    {"presetDrawing", &SessionRun::presetDrawing, true},
    {"scale", &SessionRun::scale, true},
    {"componentScale", &SessionRun::componentScale, true},
    {"drawing", &SessionRun::drawing, false},
    {"project", &SessionRun::project, false},
    {"language", &SessionRun::language, false}};

[[noreturn]] void failSession(const std::string& message) {
  throw AnswerError("run: " + message);
}

const TextMember* textMember(const std::string& name) {
  for (const TextMember& member : textMembers)
    if (name == member.name) return &member;
  return nullptr;
}

std::vector<std::string> readForms(const Json& value) {
  if (!value.is_array() || value.empty()) failSession("\"forms\" must be a list of LISP forms");
  std::vector<std::string> forms;
  for (const Json& form : value) {
    if (!form.is_string()) failSession("\"forms\" must be a list of LISP forms");
    forms.push_back(form);
  }
  return forms;
}

struct EndName {
  const char* name;
  SessionCommand::End end;
};
constexpr EndName endNames[] = {
    {"cancelled", SessionCommand::End::cancelled}, {"failed", SessionCommand::End::failed}};

SessionCommand readCommand(const Json& value) {
  using Kind = SessionCommand::Kind;
  if (!value.is_object()) failSession("a command must be an object");
  SessionCommand command;
  int kinds = 0;
  for (const auto& [name, member] : value.items()) {
    const bool isKind = name != "ends" && name != "fault";
    if (isKind) ++kinds;
    if (name == "forms") {
      command.forms = readForms(member);
    } else if ((name == "undo" || name == "redo") && member == true) {
      command.kind = name == "undo" ? Kind::undo : Kind::redo;
    } else if ((name == "open" || name == "project") && (member.is_string() || member.is_null())) {
      command.kind = name == "open" ? Kind::open : Kind::project;
      if (member.is_string()) command.file = member;
    } else if (name == "ends" && member.is_string()) {
      const std::string end = member;
      const auto* row = std::find_if(
          std::begin(endNames), std::end(endNames), [&](const EndName& known) { return end == known.name; });
      if (row == std::end(endNames)) failSession("a command \"ends\" neither \"cancelled\" nor \"failed\"");
      command.end = row->end;
    } else if (name == "fault" && member.is_string()) {
      command.fault = member;
    } else {
      failSession("a command cannot have \"" + name + "\": " + jsonText(member));
    }
  }
  if (kinds != 1) failSession("a command has one of \"forms\", \"undo\", \"redo\", \"open\" and \"project\"");
  if (command.kind != Kind::lisp && (command.end != SessionCommand::End::done || !command.fault.empty()))
    failSession("only LISP \"ends\" otherwise than done");
  return command;
}

Json commandAsJson(const SessionCommand& command) {
  switch (command.kind) {
  case SessionCommand::Kind::undo:
    return {{"undo", true}};
  case SessionCommand::Kind::redo:
    return {{"redo", true}};
  case SessionCommand::Kind::open:
    return {{"open", command.file.empty() ? Json() : Json(command.file)}};
  case SessionCommand::Kind::project:
    return {{"project", command.file.empty() ? Json() : Json(command.file)}};
  case SessionCommand::Kind::lisp:
    break;
  }
  Json value = {{"forms", command.forms}};
  for (const EndName& row : endNames)
    if (row.end == command.end) value["ends"] = row.name;
  if (!command.fault.empty()) value["fault"] = command.fault;
  return value;
}

void readCommands(const Json& value, SessionRun& run) {
  if (!value.is_array()) failSession("\"commands\" must be a list of commands");
  for (const Json& command : value)
    run.commands.push_back(readCommand(command));
}

void readPoint(const Json& value, SessionRun& run) {
  if (!value.is_array() || value.size() != 2 || !value[0].is_number() || !value[1].is_number())
    failSession("\"at\" must be a point of two numbers");
  run.at = {value[0].get<double>(), value[1].get<double>()};
}

} // namespace

SessionRun readSessionRun(const Json& value) {
  if (!value.is_object()) failSession("must be an object");
  SessionRun run;
  for (const auto& [name, member] : value.items()) {
    const TextMember* text = textMember(name);
    if (name == "forms") {
      run.forms = readForms(member);
    } else if (name == "commands") {
      readCommands(member, run);
    } else if (name == "at") {
      readPoint(member, run);
    } else if (text == nullptr) {
      failSession("unknown member \"" + name + "\"");
    } else if (!member.is_string()) {
      failSession("\"" + name + "\" must be a text");
    } else {
      run.*text->field = member;
    }
  }
  const char* const list = value.contains("forms")      ? "forms"
                           : value.contains("commands") ? "commands"
                                                        : nullptr;
  if (list == nullptr) {
    if (run.circuit.empty() || run.type.empty())
      failSession("needs \"circuit\" and \"type\", or \"forms\" or \"commands\"");
    return run;
  }
  for (const auto& [name, member] : value.items()) {
    const TextMember* text = textMember(name);
    const bool isSecond = name == "commands" && !run.forms.empty();
    if (name == "at" || isSecond || (text != nullptr && text->isOfCircuit))
      failSession("has \"" + name + "\" beside \"" + list + "\"");
  }
  return run;
}

Json sessionRunAsJson(const SessionRun& run) {
  Json value = Json::object();
  if (!run.forms.empty()) {
    value["forms"] = run.forms;
  } else if (!run.isCircuit()) {
    value["commands"] = Json::array();
    for (const SessionCommand& command : run.commands)
      value["commands"].push_back(commandAsJson(command));
  }
  for (const TextMember& member : textMembers) {
    const std::string& text = run.*member.field;
    if (!text.empty()) value[member.name] = text;
  }
  if (run.isCircuit()) value["at"] = run.at;
  return value;
}

SessionRun seenFrom(SessionRun run, const fs::path& from, const fs::path& to) {
  const fs::path base = fs::weakly_canonical(to.empty() ? fs::path(".") : to);
  std::vector<std::string*> paths = {&run.drawing, &run.project};
  for (SessionCommand& command : run.commands)
    paths.push_back(&command.file);
  for (std::string* path : paths)
    if (!path->empty()) *path = fs::weakly_canonical(from / *path).lexically_proximate(base).generic_string();
  return run;
}

} // namespace simhost
