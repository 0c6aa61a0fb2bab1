#include "tests/config/page_dialog.h"

#include "host/resources.h"
#include "tests/support/answer_steps.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

namespace brenvolt::test {

namespace {

std::vector<simhost::AnswerStep> stepOf(std::string_view actions) {
  return answerSteps(
      R"({"dialog": "page", "do": [)" + std::string(actions) + (actions.empty() ? "" : ", ") +
      R"({"press": "ok"}]})");
}

} // namespace

bool PageDialog::pick(const char* what, std::vector<std::wstring>& values) {
  calls.push_back(std::string("pick ") + what);
  if (!picked) return false;
  values = *picked;
  return true;
}

bool PageDialog::PickMotor(std::vector<std::wstring>& values) {
  return pick("motor", values);
}

bool PageDialog::PickLoad(std::vector<std::wstring>& values) {
  return pick("load", values);
}

void PageDialog::HandOverEditor(EditorOwner owner) {
  calls.push_back(owner == EditorOwner::host ? "editor host" : "editor dialog");
}

void PageDialog::StartWindowTimer(int timer, int milliseconds) {
  calls.push_back("timer " + std::to_string(timer) + " " + std::to_string(milliseconds));
  StartTimer(timer, milliseconds);
}

void PageDialog::KillWindowTimer(int timer) {
  calls.push_back("kill " + std::to_string(timer));
  KillTimer(timer);
}

bool PageDialog::OnInitDialog() {
  window_ = std::make_unique<ZanSettingsWnd>(Pages(L"settings"), L"settings", *this);
  if (onOpen) onOpen(*window_);
  return true;
}

void PageDialog::OnOK() {
  if (onOk) onOk(*window_);
  CKvUiDialog::OnOK();
}

PageSession::PageSession(std::string_view actions) : SampleSession(stepOf(actions)) {
  lisp().windows().setFormFolder("tests/config/forms");
}

void PageSession::run(PageDialog& dialog) {
  const ResourceScope resources;
  static_cast<void>(dialog.DoModal());
  dialog.dropWindow();
}

std::string describeGroup(const ZanGroupCtrl* group) {
  if (group == nullptr) return "no group";
  std::string text;
  for (const ZanGroupRow& row : group->ReadRows())
    text += (text.empty() ? "" : " | ") + toUtf8(row.label) + "=" + toUtf8(row.value());
  return text;
}

} // namespace brenvolt::test
