// Task dialogs: their texts come from the resource module on top of the stack, their results from the window system,
// or from the user's settings for a hidden one.
#include "host/host_api_ui.h"
#include "simhost/host/session.h"

#include <algorithm>
#include <string>
#include <string_view>

using simhost::Session;
using simhost::TaskQuestion;

struct CKdTaskDialog::State {
  TaskQuestion question;
  bool isLoaded = false;
};

namespace {

/// The text with each "{name}" replaced; the inserted values are not searched again.
std::wstring fill(std::wstring_view text, const KdTaskDialogParameter* parameters, int count) {
  std::wstring filled;
  while (!text.empty()) {
    const std::size_t open = text.find(L'{');
    filled += text.substr(0, open);
    if (open == std::wstring_view::npos) break;
    text.remove_prefix(open);
    const std::size_t close = text.find(L'}');
    const std::wstring_view name =
        close == std::wstring_view::npos ? std::wstring_view() : text.substr(1, close - 1);
    const KdTaskDialogParameter* const end = parameters + count;
    const KdTaskDialogParameter* const parameter =
        std::find_if(parameters, end, [name](const KdTaskDialogParameter& row) { return row.name == name; });
    if (name.empty() || parameter == end) {
      filled += text.front();
      text.remove_prefix(1);
      continue;
    }
    filled += parameter->text;
    text.remove_prefix(close + 1);
  }
  return filled;
}

class HiddenAnswers final : public CKdHideableDialogSettingsDictionary {
public:
  [[nodiscard]] int GetResult(const wchar_t* key) const override {
    Session* session = Session::current();
    return session == nullptr || key == nullptr ? 0 : session->settings().hiddenAnswer(key);
  }
};

bool hasButton(const TaskQuestion& question, int id) {
  return std::any_of(
      question.buttons.begin(), question.buttons.end(),
      [id](const simhost::TaskButton& button) { return button.id == id; });
}

} // namespace

CKdHideableDialogSettingsDictionary::~CKdHideableDialogSettingsDictionary() = default;

CKdTaskDialog::CKdTaskDialog() : state_(std::make_unique<State>()) {}
CKdTaskDialog::~CKdTaskDialog() = default;

bool CKdTaskDialog::LoadFromFile(
    const wchar_t*, const wchar_t* key, const KdTaskDialogParameter* parameters, int count) {
  *state_ = State();
  Session* session = Session::current();
  const KvResourceModule* module = session == nullptr ? nullptr : session->documents().topResources();
  if (module == nullptr || key == nullptr) return false;
  const auto found = module->dialogs.find(std::wstring_view(key));
  if (found == module->dialogs.end()) return false;
  if (parameters == nullptr) count = 0;
  const simhost::DialogText& text = found->second;
  TaskQuestion& question = state_->question;
  question.key = key;
  question.title = fill(text.title, parameters, count);
  question.text = fill(text.text, parameters, count);
  for (const simhost::DialogButtonText& button : text.buttons)
    question.buttons.push_back({button.id, fill(button.label, parameters, count)});
  question.isHideable = text.isHideable;
  question.parameters.assign(parameters, parameters + count);
  state_->isLoaded = true;
  return true;
}

int CKdTaskDialog::ShowDialog(KvWindow*) {
  Session* session = Session::current();
  if (session == nullptr || !state_->isLoaded) return kvui::cancel;
  const TaskQuestion& question = state_->question;
  const int kept = question.isHideable ? session->settings().hiddenAnswer(question.key) : 0;
  if (hasButton(question, kept)) return kept;
  if (const Session::StandingAnswer* answer = session->standingAnswer(question.key)) {
    if (answer->note) answer->note(question);
    return answer->button;
  }
  const simhost::TaskAnswer answer = session->windows().askTask(question);
  if (answer.hideForGood && question.isHideable && hasButton(question, answer.button))
    session->settings().setHiddenAnswer(question.key, answer.button);
  return answer.button;
}

CKdHideableDialogSettingsDictionary* CKdTaskDialog::GetHideableDialogSettingsDictionary() {
  static HiddenAnswers answers;
  return Session::current() == nullptr ? nullptr : &answers;
}
