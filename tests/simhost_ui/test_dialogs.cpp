// Fills the test dialog and runs it.
#include "test_dialogs.h"

#include "simhost/ui/answers.h"
#include "simhost/ui/scripted_windows.h"
#include "tests/support/answer_steps.h"
#include "text/encoding.h"

namespace simhost {

namespace {

using brenvolt::toUtf8;

constexpr const char* kindNames[] = {"clicked",    "changed",   "committed",    "selected", "doubleClicked",
                                     "cellEdited", "editBegun", "rowCommitted", "deleteKey"};

} // namespace

EverythingDialog::EverythingDialog() : CKvUiDialog(L"everything", nullptr) {}

bool EverythingDialog::OnInitDialog() {
  Text(L"length").SetText(L"100");
  for (const wchar_t* volts : {L"230", L"460", L"575"})
    List(L"voltage").Insert(-1, volts, 0);
  List(L"voltage").Select(1);
  List(L"factor").Insert(-1, L"0.8", 0);
  List(L"factor").Insert(-1, L"0.9", 0);
  KvUiTree& units = Tree(L"units");
  const int motor = units.Insert(0, L"Motor", 0, 7);
  units.Insert(motor, L"Overload", 0, 8);
  units.Insert(0, L"Pilot", 2, 9);

  KvUiGrid& sizes = Grid(L"sizes");
  sizes.SetSize(3, 4);
  const wchar_t* const cells[4][4] = {
      {L"", L"Size", L"Ampacity", L"Used"},
      {L"", L"14 AWG", L"20", L"0"},
      {L"", L"12 AWG", L"25", L"0"},
      {L"", L"12 AWG", L"30", L"0"}};
  for (int row = 0; row < 4; ++row)
    for (int column = 0; column < 4; ++column)
      sizes.SetCell(row, column, cells[row][column]);
  for (int row = 1; row <= 3; ++row) {
    sizes.SetCellKind(row, 1, KvUiCellKind::fixed);
    sizes.SetCellKind(row, 3, KvUiCellKind::tick);
  }

  KvUiPages& options = Pages(L"options");
  const int first = options.AddPage(0);
  KvUiList& overload = options.AddList(first, L"Overload");
  overload.Insert(-1, L"Class 10", 10);
  overload.Insert(-1, L"Class 20", 20);
  const int second = options.AddPage(first);
  KvUiGroup& group = options.AddGroup(second, L"Motor");
  group.SetButtons({{10028, L"Look up"}, {10059, L"Pick"}});
  group.Grid().SetSize(2, 2);
  group.Grid().SetCell(1, 0, L"Voltage (V)");
  group.Grid().SetCellKind(1, 1, KvUiCellKind::dropDown);
  group.Grid().SetCell(2, 0, L"Full-load current (A)");
  options.ShowPage(first);
  return initialAnswer;
}

void EverythingDialog::note(const std::string& line) {
  events.push_back(line);
  if (onEvent) onEvent(*this, line);
}

void EverythingDialog::OnEvent(const KvUiEvent& event) {
  std::string line = kindNames[static_cast<int>(event.kind)] + (" " + toUtf8(event.role));
  if (event.row != 0 || event.column != 0)
    line += " " + std::to_string(event.row) + "," + std::to_string(event.column);
  if (!event.text.empty()) line += " " + toUtf8(event.text);
  note(line);
}

void EverythingDialog::OnOK() {
  note("ok");
  CKvUiDialog::OnOK();
}

void EverythingDialog::OnCancel() {
  note("cancel");
  CKvUiDialog::OnCancel();
}

bool EverythingDialog::OnValidateCell(std::wstring_view role, int, int, std::wstring_view text) {
  return role != L"sizes" || text.find_first_not_of(L"0123456789") == std::wstring_view::npos;
}

bool EverythingDialog::OnCellChoices(
    std::wstring_view role, int row, int, std::vector<std::wstring>& choices) {
  if (role != L"options.2.0" || row != 1) return false;
  choices = {L"230", L"460"};
  return true;
}

WindowsMaker& windowsMaker() {
  static WindowsMaker maker = [](std::vector<AnswerStep> steps, std::string source) {
    return std::make_unique<ScriptedWindows>(std::move(steps), std::move(source));
  };
  return maker;
}

Outcome runFile(const std::string& file, const Prepare& prepare) {
  const std::unique_ptr<AnsweredWindows> made = windowsMaker()(parseAnswers(file, "a.json"), "a.json");
  AnsweredWindows& windows = *made;
  windows.setFormFolder("tests/simhost_ui/forms");
  setWindowSystem(&windows);
  Outcome outcome;
  EverythingDialog dialog;
  if (prepare) prepare(dialog);
  outcome.result = dialog.DoModal();
  outcome.events = dialog.events;
  outcome.failure = toUtf8(windows.failure());
  outcome.recording = windows.recording();
  outcome.unusedSteps = windows.unusedSteps();
  setWindowSystem(nullptr);
  return outcome;
}

Outcome runSteps(const std::string& steps, const Prepare& prepare) {
  return runFile(brenvolt::test::answerFile(steps), prepare);
}

Outcome runActions(const std::string& actions, const Prepare& prepare) {
  return runSteps(R"({"dialog": "everything", "do": [)" + actions + "]}", prepare);
}

} // namespace simhost
