// The verbs, which members each of them takes, and what an "expect" can compare.
#include "simhost/ui/action_reader.h"

#include "simhost/json/json_text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <limits>
#include <set>
#include <utility>

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

[[noreturn]] void fail(const std::string& message) {
  throw AnswerError(message);
}

std::optional<int> integerOf(const Json& value) {
  if (!value.is_number_integer()) return std::nullopt;
  const auto number = value.get<std::int64_t>();
  if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max())
    return std::nullopt;
  return static_cast<int>(number);
}

std::vector<std::string> textsOf(const Json& value, const std::string& member) {
  if (!value.is_array()) fail(inQuotes(member) + " must be a list of texts");
  std::vector<std::string> texts;
  for (const Json& text : value) {
    if (!text.is_string()) fail(inQuotes(member) + " must be a list of texts");
    texts.push_back(text);
  }
  return texts;
}

void readTo(const Json& value, AnswerAction& action) {
  if (value.is_string()) {
    action.text = value;
  } else if (const std::optional<int> number = integerOf(value)) {
    action.number = *number;
    action.text = std::to_string(*number);
  } else {
    fail(inQuotes(action.verb) + " needs \"to\", a text or an integer");
  }
}

void readSwitch(const Json& value, AnswerAction& action) {
  if (!value.is_boolean()) fail(inQuotes(action.verb) + " needs \"to\": true or false");
  action.isOn = value;
}

/// A cell takes a text, or the state of its check box, stored as 1 or 0.
void readCellText(const Json& value, AnswerAction& action) {
  if (value.is_boolean())
    action.text = value.get<bool>() ? "1" : "0";
  else
    readTo(value, action);
}

void readIndex(const Json& value, AnswerAction& action) {
  action.index = integerOf(value);
  if (!action.index || *action.index < 0) fail("the place in a list is an integer from 0");
}

void readIn(const Json& value, AnswerAction& action) {
  if (!value.is_string()) fail("\"in\" must be a role");
  action.in = value;
}

void readColumn(const Json& value, AnswerAction& action) {
  action.column.number = integerOf(value);
  if (value.is_string()) action.column.title = value;
  if (!action.column.isGiven()) fail("\"column\" is neither a number nor a header");
}

void readRow(const Json& value, AnswerAction& action) {
  action.row.number = integerOf(value);
  if (value.is_string()) action.row.label = value.get<std::string>();
  if (value.is_object())
    for (const auto& [header, text] : value.items()) {
      if (!text.is_string()) fail("\"row\" contains a cell that is not a text");
      action.row.cells.emplace_back(header, text.get<std::string>());
    }
  if (!action.row.isGiven()) fail("\"row\" is neither a number nor a text nor an object of cells");
}

void readPath(const Json& value, AnswerAction& action) {
  if (!value.is_array() || value.empty()) fail("\"path\" must be a list of texts");
  for (const Json& part : value) {
    PathPart parsed;
    parsed.place = integerOf(part);
    if (part.is_string()) parsed.text = part;
    if (!part.is_string() && !parsed.place) fail("\"path\" must contain texts or positions");
    action.path.push_back(parsed);
  }
}

void readRefused(const Json& value, AnswerAction& action) {
  if (!value.is_boolean()) fail("\"refused\" is neither true nor false");
  action.isRefused = value;
}

void readPoint(const Json& value, AnswerAction& action) {
  const bool isPoint =
      value.is_array() && (value.size() == 2 || value.size() == 3) &&
      std::all_of(value.begin(), value.end(), [](const Json& number) { return number.is_number(); });
  if (!isPoint) fail("\"point\" must be a list of two or three numbers");
  for (std::size_t axis = 0; axis < value.size(); ++axis)
    action.point[axis] = value[axis];
}

using Read = void (*)(const Json& value, AnswerAction& action);

struct Member {
  const char* name;
  Read read;
  bool isNeeded;
};

struct Verb {
  const char* name;
  std::vector<Member> members;
};

const std::vector<Verb>& verbs() {
  static const std::vector<Verb> table = {
      {"press", {{"button", readIndex, false}}},
      {"tick", {{"to", readSwitch, true}}},
      {"set", {{"to", readTo, true}}},
      {"type", {{"to", readTo, true}}},
      {"choose", {{"to", readTo, false}, {"index", readIndex, false}}},
      {"focus", {}},
      {"key", {{"in", readIn, false}}},
      {"select", {{"row", readRow, false}, {"column", readColumn, false}, {"path", readPath, false}}},
      {"doubleClick", {{"row", readRow, false}, {"column", readColumn, false}, {"path", readPath, false}}},
      {"edit",
       {{"row", readRow, true},
        {"column", readColumn, false},
        {"to", readCellText, true},
        {"refused", readRefused, false}}},
      {"wait", {}},
      {"close", {}},
      {"pick", {{"point", readPoint, false}}},
      {"expect", {{"row", readRow, false}, {"column", readColumn, false}}},
  };
  return table;
}

enum class Compared { text, texts, number, flag };

struct ExpectedMember {
  const char* name;
  Compared kind;
};

constexpr ExpectedMember expectedMembers[] = {
    {"text", Compared::text},          {"label", Compared::text},
    {"tooltip", Compared::text},       {"title", Compared::text},
    {"enabled", Compared::flag},       {"visible", Compared::flag},
    {"readOnly", Compared::flag},      {"checked", Compared::flag},
    {"focus", Compared::flag},         {"editable", Compared::flag},
    {"locked", Compared::flag},        {"alert", Compared::flag},
    {"choices", Compared::texts},      {"contains", Compared::text},
    {"lacks", Compared::text},         {"rows", Compared::number},
    {"selectedRow", Compared::number}, {"header", Compared::texts},
    {"texts", Compared::texts},        {"is", Compared::text},
    {"items", Compared::texts},        {"path", Compared::texts},
    {"page", Compared::number},        {"image", Compared::number},
    {"buttons", Compared::number},
};

Expectation readExpectation(const ExpectedMember& member, const Json& value) {
  Expectation expected;
  expected.what = member.name;
  switch (member.kind) {
  case Compared::text:
    if (!value.is_string()) fail(inQuotes(expected.what) + " must be a text");
    expected.text = value;
    break;
  case Compared::texts:
    expected.texts = textsOf(value, expected.what);
    break;
  case Compared::number:
    if (!integerOf(value)) fail(inQuotes(expected.what) + " must be an integer");
    expected.number = *integerOf(value);
    break;
  case Compared::flag:
    if (!value.is_boolean()) fail(inQuotes(expected.what) + " is neither true nor false");
    expected.isOn = value;
    break;
  }
  return expected;
}

const Verb& verbOf(const Json& action) {
  const Verb* found = nullptr;
  for (const Verb& verb : verbs()) {
    if (!action.contains(verb.name)) continue;
    // There it is what is compared.
    if (std::string_view(verb.name) == "focus" && action.contains("expect")) continue;
    if (found != nullptr) fail(std::string("an action has two verbs: ") + found->name + ", " + verb.name);
    found = &verb;
  }
  if (found != nullptr) return *found;
  std::string names;
  for (const Verb& verb : verbs())
    names += (names.empty() ? "" : ", ") + std::string(verb.name);
  fail("an action needs one of: " + names);
}

void readSubject(const Json& value, AnswerAction& action) {
  const std::string& verb = action.verb;
  if (verb == "pick") {
    if (value.is_string())
      action.subject = value;
    else if (!value.is_null())
      fail("\"pick\" is neither a handle nor null");
    return;
  }
  if ((verb == "press" || verb == "wait") && integerOf(value)) {
    action.number = *integerOf(value);
    action.subject = std::to_string(action.number);
  } else if (value.is_string() && verb != "wait") {
    action.subject = value;
  } else {
    fail(inQuotes(verb) + " does not say what");
  }
  if (verb == "wait" && action.number < 0) fail("\"wait\" needs milliseconds");
  if (verb == "close" && action.subject != "frame" && action.subject != "program")
    fail("only the \"frame\" and the \"program\" can be closed");
  static const std::set<std::string> keys = {"Enter", "Tab", "Escape", "F1", "Delete"};
  if (verb == "key" && !keys.contains(action.subject))
    fail("\"key\" is none of Enter, Tab, Escape, F1, Delete");
}

/// Rules that bind members together.
void checkTogether(const AnswerAction& action) {
  const std::string& verb = action.verb;
  if ((verb == "select" || verb == "doubleClick") && action.row.isGiven() == !action.path.empty())
    fail(inQuotes(verb) + " needs either \"row\" or \"path\"");
  if (verb == "expect" && action.expected.empty()) fail("\"expect\" compares nothing");
}

} // namespace

AnswerAction readAction(const Json& action) {
  if (!action.is_object()) fail("an action must be an object");
  const Verb& verb = verbOf(action);
  AnswerAction parsed;
  parsed.verb = verb.name;
  Json written = action;
  // What a recording adds is not read.
  written.erase("then");
  written.erase("offered");
  parsed.written = jsonText(written);
  readSubject(action[parsed.verb], parsed);
  std::set<std::string> known = {parsed.verb};
  if (written.contains("quick")) {
    if (!written["quick"].is_boolean()) fail("\"quick\" is neither true nor false");
    parsed.isQuick = written["quick"];
    known.insert("quick");
  }
  for (const Member& member : verb.members) {
    known.insert(member.name);
    if (written.contains(member.name))
      member.read(written[member.name], parsed);
    else if (member.isNeeded)
      fail(inQuotes(parsed.verb) + " needs " + inQuotes(member.name));
  }
  if (parsed.verb == "choose" && written.contains("to") == written.contains("index"))
    fail("\"choose\" needs either \"to\" or \"index\"");
  if (parsed.verb == "expect")
    for (const ExpectedMember& member : expectedMembers) {
      known.insert(member.name);
      if (written.contains(member.name))
        parsed.expected.push_back(readExpectation(member, written[member.name]));
    }
  for (const auto& [name, value] : written.items())
    if (!known.contains(name)) fail("unknown member " + inQuotes(name) + " beside " + inQuotes(parsed.verb));
  checkTogether(parsed);
  return parsed;
}

} // namespace simhost
