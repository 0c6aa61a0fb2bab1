// A whole run of a dialog: time, questions in between, the editor, and recordings that can be used as answers.
#include "simhost/json/json_text.h"
#include "simhost/ui/scripted_windows.h"
#include "test_dialogs.h"
#include "tests/support/answer_steps.h"

#include <doctest/doctest.h>

#include <nlohmann/json.hpp>

#include <string>
#include <vector>

using brenvolt::test::answerFile;
using simhost::EverythingDialog;
using simhost::Outcome;
using simhost::runActions;
using simhost::runSteps;
using Json = nlohmann::ordered_json;

namespace {

using Lines = std::vector<std::string>;

/// Chooses one value; fails to open when its flow says so.
class ValueDialog final : public CKvUiDialog {
public:
  explicit ValueDialog(KvWindow* parent) : CKvUiDialog(L"value_list", parent) {}
  std::wstring chosen;

protected:
  bool OnInitDialog() override {
    List(L"values").Insert(-1, L"M1", 0);
    List(L"values").Insert(-1, L"M2", 0);
    return true;
  }
  void OnOK() override {
    chosen = List(L"values").Text();
    CKvUiDialog::OnOK();
  }
};

/// "report" opens the value list and takes what was chosen.
void askForValue(EverythingDialog& dialog) {
  dialog.onEvent = [](EverythingDialog& flow, const std::string& line) {
    if (line != "clicked report") return;
    ValueDialog values(flow.window());
    if (values.DoModal() == kvui::ok) flow.Text(L"length").SetText(values.chosen);
  };
}

} // namespace

TEST_CASE("a slow user sees each timer fire, a quick one none") {
  const auto prepare = [](EverythingDialog& dialog) {
    dialog.onEvent = [](EverythingDialog& flow, const std::string& line) {
      if (line.starts_with("committed")) {
        flow.StartTimer(1, 300);
        flow.StartTimer(2, 200);
      }
      if (line == "timer 1") flow.KillTimer(1);
      if (line == "timer 2") flow.KillTimer(2);
    };
  };
  CHECK(
      runActions(R"({"set": "length", "to": "1"}, {"press": "report"}, {"press": "ok"})", prepare).events ==
      Lines{"committed length 1", "timer 2", "timer 1", "clicked report", "ok"});
  CHECK(
      runActions(
          R"({"set": "length", "to": "1"}, {"press": "report", "quick": true}, {"wait": 250},
             {"press": "ok", "quick": true})",
          prepare)
          .events == Lines{"committed length 1", "clicked report", "timer 2", "ok"});
}

TEST_CASE("a question in between is answered by the next step, and the dialog goes on behind it") {
  const char* const nested =
      R"({"dialog": "value_list", "do": [{"choose": "values", "to": "M2"}, {"press": "ok"}]})";
  const std::string expect = R"({"expect": "length", "text": "M2"}, {"press": "ok"})";
  const std::string inOneStep =
      R"({"dialog": "everything", "do": [{"press": "report"}, )" + expect + "]}, " + nested;
  const std::string inTwoSteps = R"({"dialog": "everything", "do": [{"press": "report"}]}, )" +
                                 std::string(nested) + R"(, {"dialog": "everything", "do": [)" + expect +
                                 "]}";
  const Outcome one = runSteps(inOneStep, askForValue);
  const Outcome two = runSteps(inTwoSteps, askForValue);
  CHECK(one.failure == "");
  CHECK(one.result == kvui::ok);
  CHECK(one.recording == two.recording);

  const Outcome wrong = runSteps(R"({"dialog": "everything", "do": [{"press": "report"}]})", askForValue);
  CHECK(wrong.failure == "\"value_list\" has no answer: a.json has no more steps");
  CHECK(wrong.events == Lines{"clicked report"});
  const Outcome open = runSteps(
      R"({"dialog": "everything", "do": [{"press": "help"}]}, {"dialog": "pick", "do": [{"pick": null}]})");
  CHECK(open.failure == "a.json: step 1: leaves \"everything\" open, and step 2 answers \"pick\"");
}

TEST_CASE("a file dialog goes on after a question about the name, and its recording answers again") {
  class FileDialog final : public CKvUiFileDialog {
  public:
    FileDialog() : CKvUiFileDialog(true, L"xls", L"a.xls", L"/tmp", L"Workbook|*.xls|Text|*.csv|", nullptr) {}

  protected:
    void OnTypeChange() override { SetFileName(L"a.csv"); }
    bool OnFileNameOK() override {
      return GetFileName() != L"a.csv" || ValueDialog(nullptr).DoModal() == kvui::ok;
    }
  };
  const auto run = [](const std::string& file) {
    simhost::ScriptedWindows windows(simhost::parseAnswers(file, "a.json"), "a.json");
    windows.setFormFolder("tests/simhost_ui/forms");
    simhost::setWindowSystem(&windows);
    FileDialog dialog;
    CHECK(dialog.DoModal() == kvui::ok);
    CHECK(dialog.GetPathName() == L"/tmp/b.csv");
    CHECK(windows.failure() == L"");
    CHECK(windows.unusedSteps() == 0);
    simhost::setWindowSystem(nullptr);
    return windows.recording();
  };
  const std::string first = run(answerFile(R"(
            {"dialog": "file", "do": [{"set": "type", "to": 2}, {"expect": "path", "text": "a.csv"}, {"press": "ok"}]},
            {"dialog": "value_list", "do": [{"close": "frame"}]},
            {"dialog": "file", "do": [{"set": "path", "to": "b.csv"}, {"press": "ok"}]})"));
  CHECK(run(first) == first);
}

TEST_CASE("what an event throws arrives at the caller of the dialog") {
  struct Thrown {};
  const auto throwing = [](const std::string& event, int timer = 0) {
    return [event, timer](EverythingDialog& dialog) {
      dialog.onEvent = [event, timer](EverythingDialog& flow, const std::string& line) {
        if (timer != 0) flow.StartTimer(timer, 100);
        if (line == event) throw Thrown();
      };
    };
  };
  CHECK_THROWS_AS(
      static_cast<void>(runActions(R"({"press": "report"})", throwing("clicked report"))), Thrown);
  CHECK_THROWS_AS(
      static_cast<void>(runActions(R"({"set": "length", "to": "1"}, {"wait": 200})", throwing("timer 1", 1))),
      Thrown);

  class FileDialog final : public CKvUiFileDialog {
  public:
    FileDialog() : CKvUiFileDialog(true, L"xls", L"a.xls", L"/tmp", L"Workbook|*.xls|", nullptr) {}

  protected:
    bool OnFileNameOK() override { throw Thrown(); }
  };
  const auto windows = simhost::windowsMaker()(
      simhost::parseAnswers(answerFile(R"({"dialog": "file", "do": [{"press": "ok"}]})"), "a.json"),
      "a.json");
  simhost::setWindowSystem(windows.get());
  CHECK_THROWS_AS(FileDialog().DoModal(), Thrown);
  simhost::setWindowSystem(nullptr);
}

TEST_CASE("a dialog inside another one's place ends with it") {
  class Inner final : public CKvUiGroupChildDialog {
  public:
    Inner(EverythingDialog& outer) : CKvUiGroupChildDialog(L"value_list", outer.window()), outer_(outer) {}

  protected:
    void OnOK() override { outer_.EndDialog(kvui::yes); }

  private:
    EverythingDialog& outer_;
  };
  int inner = 0;
  const Outcome outcome = runSteps(
      R"({"dialog": "everything", "do": [{"press": "report"}]}, {"dialog": "value_list", "do": [{"press": "ok"}]})",
      [&inner](EverythingDialog& dialog) {
        dialog.onEvent = [&inner](EverythingDialog& flow, const std::string&) {
          inner = Inner(flow).DoModal();
        };
      });
  CHECK(outcome.failure == "");
  CHECK(outcome.result == kvui::yes);
  CHECK(inner == kvui::cancel);
}

TEST_CASE("a recording of a failed run tells where and why, and is refused as answers") {
  const Outcome failed = runActions(R"({"press": "help"}, {"set": "extra", "to": "1"})");
  const Json steps = simhost::parseJson(failed.recording)["steps"];
  CHECK(steps[0]["do"][1]["fault"] == "it is disabled");
  CHECK_THROWS_AS(static_cast<void>(simhost::parseAnswers(failed.recording, "a.json")), simhost::AnswerError);
}

TEST_CASE("a grid too long to be told whole differs in its sum") {
  const auto withCell = [](const wchar_t* text) {
    return runActions(R"({"press": "ok"})", [text](EverythingDialog& dialog) {
      dialog.onEvent = [text](EverythingDialog& flow, const std::string&) {
        flow.Grid(L"sizes").SetSize(100, 4);
        flow.Grid(L"sizes").SetCell(50, 2, text);
      };
    });
  };
  const std::string one = withCell(L"1").recording;
  CHECK(one.find("\"rowCount\": 100") != std::string::npos);
  CHECK(one.size() == withCell(L"2").recording.size());
  CHECK(one != withCell(L"2").recording);
}

TEST_CASE("nobody reaches a dialog while the host has the editor, or what stands on a locked page") {
  const auto prepare = [](EverythingDialog& dialog) {
    dialog.onEvent = [](EverythingDialog& flow, const std::string& line) {
      if (line != "clicked report") return;
      if (flow.Text(L"length").Text() == L"lock")
        flow.Pages(L"options").LockPage(1, true);
      else
        CHECK(flow.BeginEditorCommand());
    };
  };
  const Outcome hidden = runActions(R"({"press": "report"}, {"set": "length", "to": "1"})", prepare);
  CHECK(hidden.failure.ends_with("the dialog is hidden, the host has the editor"));
  const Outcome locked = runActions(
      R"({"set": "length", "to": "lock"}, {"press": "report"}, {"expect": "options/Overload", "locked": true},
         {"choose": "options/Overload", "to": "Class 10"})",
      prepare);
  CHECK(locked.failure.ends_with("action 4, choose \"options/Overload\": its page is locked"));
}

TEST_CASE("the row behind the last one takes a new record, and vanishes when nothing is typed into it") {
  const auto prepare = [](EverythingDialog& dialog) {
    dialog.onEvent = [](EverythingDialog& flow, const std::string& line) {
      if (line == "clicked report") flow.Grid(L"sizes").SetEditable(true, true);
    };
  };
  const Outcome outcome = runActions(
      R"({"press": "report"},
         {"edit": "sizes", "row": 4, "column": 2, "to": "40"}, {"select": "sizes", "row": 1},
         {"expect": "sizes", "rows": 4},
         {"edit": "sizes", "row": 5, "column": 2, "to": "x", "refused": true}, {"select": "sizes", "row": 1},
         {"expect": "sizes", "rows": 4, "row": 4, "texts": ["", "", "40", ""]}, {"press": "ok"})",
      prepare);
  CHECK(outcome.failure == "");
  CHECK(
      outcome.events == Lines{
                            "clicked report", "selected sizes 4,2", "editBegun sizes 4,2",
                            "cellEdited sizes 4,2 40", "rowCommitted sizes 4,1", "selected sizes 1,0",
                            "selected sizes 5,2", "editBegun sizes 5,2", "rowCommitted sizes 5,0",
                            "selected sizes 1,0", "ok"});
}

TEST_CASE("a flow that refuses to start asks nobody") {
  const Outcome refused = runSteps("", [](EverythingDialog& dialog) { dialog.initialAnswer = false; });
  CHECK(refused.result == kvui::cancel);
  CHECK(refused.failure == "");
}

TEST_CASE("a commit that takes a control away keeps the user from it") {
  const Outcome outcome =
      runActions(R"({"type": "length", "to": "0"}, {"press": "ok"})", [](EverythingDialog& dialog) {
        dialog.onEvent = [](EverythingDialog& flow, const std::string&) { flow.Button(L"ok").Enable(false); };
      });
  CAPTURE(outcome.failure);
  CHECK(outcome.failure.ends_with("action 2, press \"ok\": it is disabled"));
  CHECK(outcome.events == Lines{"committed length 0"});
}
