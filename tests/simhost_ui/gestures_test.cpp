// What a step can do to a dialog: which events follow, and what is refused and why.
#include "test_dialogs.h"

#include <doctest/doctest.h>

#include <string>
#include <vector>

using simhost::EverythingDialog;
using simhost::Outcome;
using simhost::runActions;

namespace {

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines)
    text += (text.empty() ? "" : "; ") + line;
  return text;
}

constexpr const char* closing = R"({"close": "frame"})";

void showGroupPage(EverythingDialog& dialog) {
  dialog.onEvent = [](EverythingDialog& flow, const std::string& line) {
    if (line == "clicked report") flow.Pages(L"options").ShowPage(2);
  };
}

} // namespace

TEST_CASE("each gesture raises its events, in order, and nothing else") {
  struct Row {
    const char* actions;
    const char* events;
  };
  const Row rows[] = {
      {R"({"set": "length", "to": "120"})", "committed length 120"},
      {R"({"set": "length", "to": 7})", "committed length 7"},
      {R"({"type": "length", "to": "120"}, {"key": "Enter"})", "committed length 120"},
      {R"({"type": "length", "to": "1"}, {"press": "report"})", "committed length 1; clicked report"},
      {R"({"focus": "length"}, {"key": "Tab"})", "committed length 100"},
      {R"({"choose": "voltage", "to": "575"})", "changed voltage 2,0"},
      {R"({"choose": "voltage", "index": 0})", "changed voltage"},
      {R"({"choose": "voltage", "to": "460"})", ""},
      {R"({"set": "factor", "to": "0.85"})", "committed factor 0.85"},
      {R"({"choose": "factor", "to": "0.9"}, {"key": "Tab"})", "changed factor 1,0; committed factor 0.9"},
      {R"({"tick": "drop", "to": true}, {"tick": "drop", "to": true}, {"tick": "drop", "to": false})",
       "changed drop; changed drop"},
      {R"({"tick": "existing", "to": true}, {"expect": "new", "checked": false})", "changed existing"},
      {R"({"select": "units", "path": ["Motor", "Overload"]})", "selected units 2,0"},
      {R"({"doubleClick": "units", "path": [1]}, {"key": "Delete", "in": "units"})",
       "selected units 3,0; doubleClicked units 3,0; deleteKey units 3,0"},
      {R"({"key": "Delete", "in": "voltage"})", "deleteKey voltage 1,0"},
      {R"({"select": "sizes", "row": 1, "column": 1}, {"key": "Delete", "in": "sizes"})",
       "selected sizes 1,1"},
      {R"({"edit": "sizes", "row": 1, "column": 3, "to": true}, {"key": "Delete", "in": "sizes"},
          {"select": "sizes", "row": 1, "column": 2}, {"key": "Delete", "in": "sizes"}, {"press": "report"})",
       "selected sizes 1,3; editBegun sizes 1,3; cellEdited sizes 1,3 1; cellEdited sizes 1,3 0; cellEdited "
       "sizes 1,2; rowCommitted sizes 1,1; clicked report"},
      {R"({"select": "sizes", "row": 2}, {"select": "sizes", "row": 2}, {"doubleClick": "sizes", "row": 2})",
       "selected sizes 2,0; doubleClicked sizes 2,0"},
      {R"({"select": "sizes", "row": {"Size": "12 AWG", "Ampacity": "30"}, "column": "Ampacity"})",
       "selected sizes 3,2"},
      {R"({"edit": "sizes", "row": 1, "column": "Ampacity", "to": "21"}, {"key": "Enter"}, {"select": "sizes", "row": 2})",
       "selected sizes 1,2; editBegun sizes 1,2; cellEdited sizes 1,2 21; rowCommitted sizes 1,1; selected "
       "sizes 2,0"},
      {R"({"edit": "sizes", "row": 1, "column": 3, "to": true}, {"edit": "sizes", "row": 1, "column": 2, "to": "5"},
          {"press": "report"})",
       "selected sizes 1,3; editBegun sizes 1,3; cellEdited sizes 1,3 1; cellEdited sizes 1,2 5; "
       "rowCommitted "
       "sizes 1,1; clicked report"},
      {R"({"edit": "sizes", "row": 1, "column": 2, "to": "2x", "refused": true}, {"key": "Tab"},
          {"expect": "sizes", "row": 1, "column": 2, "is": "20"})",
       "selected sizes 1,2; editBegun sizes 1,2; rowCommitted sizes 1,0"},
      {R"({"choose": "options/Overload", "to": "Class 20"})", "changed options.1.0 1,0"},
      {R"({"press": "report"}, {"press": "options/Motor", "button": 1}, {"press": "options.2.0.button.0"})",
       "clicked report; clicked options.2.0.button.1; clicked options.2.0.button.0"},
      {R"_({"press": "report"}, {"edit": "options/Motor", "row": "Voltage (V)", "to": "460"}, {"key": "Tab"})_",
       "clicked report; selected options.2.0 1,1; editBegun options.2.0 1,1; cellEdited options.2.0 1,1 460; "
       "rowCommitted options.2.0 1,1"},
      {R"({"key": "F1"}, {"press": "help"})", "help; help"},
  };
  for (const Row& row : rows) {
    CAPTURE(std::string(row.actions));
    const Outcome outcome = runActions(std::string(row.actions) + ", " + closing, showGroupPage);
    CHECK(outcome.failure == "");
    std::string events = joined(outcome.events);
    REQUIRE(events.ends_with("cancel"));
    events.resize(events.size() - 6);
    CHECK(events == (*row.events == '\0' ? "" : row.events + std::string("; ")));
    CHECK(outcome.result == kvui::cancel);
  }
}

TEST_CASE("a dialog ends by OK, by Enter on the default button and by Escape") {
  CHECK(runActions(R"({"press": "ok"})").result == kvui::ok);
  CHECK(runActions(R"({"press": 1})").result == kvui::ok);
  CHECK(runActions(R"({"key": "Enter"})").result == kvui::ok);
  CHECK(runActions(R"({"key": "Escape"})").result == kvui::cancel);
  CHECK(runActions(R"({"press": "cancel"})").result == kvui::cancel);
  const Outcome committed = runActions(R"({"type": "length", "to": "3"}, {"press": "ok"})");
  CHECK(joined(committed.events) == "committed length 3; ok");
}

TEST_CASE("what a person could not do ends the run and is told with dialog, role and reason") {
  struct Row {
    const char* actions;
    const char* reason;
  };
  const Row rows[] = {
      {R"({"set": "extra", "to": "1"})", "action 1, set \"extra\": it is disabled"},
      {R"({"press": "secret"})", "it is hidden"},
      {R"({"set": "path", "to": "x"})", "it is read-only"},
      {R"({"set": "voltage", "to": "500"})", "it has no field to type in"},
      {R"({"choose": "voltage", "to": "500"})", "it has no entry \"500\", only: \"230\", \"460\", \"575\""},
      {R"({"choose": "voltage", "index": 3})", "it has no entry 3"},
      {R"({"choose": "length", "to": "1"})", "it is not a list"},
      {R"({"press": "nothing"})", "press \"nothing\": the dialog has no such control"},
      {R"({"press": "length"})", "it is not a button"},
      {R"({"tick": "new", "to": false})", "a radio button is left by ticking another one"},
      {R"({"select": "units", "path": ["Motor", "Pilot"]})", "it has no item \"Pilot\" in this path"},
      {R"({"select": "units", "row": 1})", "a tree item is chosen by \"path\""},
      {R"({"key": "Delete", "in": "units"})", "nothing is selected that the key could mean"},
      {R"({"key": "Delete", "in": "sizes"})", "nothing is selected that the key could mean"},
      {R"({"select": "sizes", "row": 4})", "it has no row 4"},
      {R"({"select": "sizes", "row": {"Size": "12 AWG"}})", "rows 2 and 3 are both Size = \"12 AWG\""},
      {R"({"select": "sizes", "row": {"Weight": "1"}})", "it shows no column \"Weight\""},
      {R"({"edit": "sizes", "row": 1, "column": 1, "to": "x"})", "the cell cannot be edited"},
      {R"({"edit": "sizes", "row": 1, "column": 2, "to": "x"})", "the dialog does not take \"x\""},
      {R"({"edit": "sizes", "row": 1, "column": 2, "to": "1", "refused": true})",
       "the dialog takes \"1\", which it should refuse"},
      {R"({"edit": "sizes", "row": 1, "column": 3, "to": "yes"})",
       "the cell is a check box: use true or false"},
      {R"({"edit": "sizes", "row": 4, "column": 2, "to": "1"})", "it has no row 4"},
      {R"({"edit": "options.2.0", "row": 1, "to": "460"})", "it is on page 2, which is not shown"},
      {R"({"choose": "options/Motor", "to": "x"})", "page 1, which is shown, has no such control"},
      {R"_({"press": "report"}, {"edit": "options/Motor", "row": "Voltage (V)", "to": "1"})_",
       "action 2, edit \"options/Motor\": the list of the cell has no \"1\""},
      {R"({"press": "report"}, {"press": "options/Motor", "button": 2})", "it has no button 2"},
      {R"({"pick": "2A"})", "is an answer to a prompt"},
      {R"({"expect": "length", "text": "99"})", "\"text\" should be \"99\" but is \"100\""},
      {R"({"press": "report"})", "a.json: step 1: leaves \"everything\" open"},
      {R"({"press": "ok"}, {"press": "ok"})", "action 2, press \"ok\": the dialog has ended before it"},
  };
  for (const Row& row : rows) {
    CAPTURE(std::string(row.actions));
    const Outcome outcome = runActions(row.actions, showGroupPage);
    CHECK(outcome.result == kvui::cancel);
    CHECK(outcome.failure.starts_with("a.json: step 1: "));
    CHECK_MESSAGE(outcome.failure.find(row.reason) != std::string::npos, outcome.failure);
    // The flow is not asked whether to cancel: it could ask the user.
    CHECK(joined(outcome.events).find("cancel") == std::string::npos);
  }
}
