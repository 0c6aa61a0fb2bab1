// The dialog classes that flows derive from: they hold the state and leave the window to the window system.
#include "simhost/ui/dialog_access.h"
#include "simhost/ui/file_names.h"
#include "text/assertion.h"
#include "text/encoding.h"
#include "text/split.h"

#include <filesystem>
#include <utility>

using simhost::FileAnswer;
using simhost::FileEvents;
using simhost::FileQuestion;
using simhost::pathOf;
using simhost::textOfPath;
using simhost::windowSystem;

// The destructors are defined here so that the host, not the module, contains the tables of virtual functions.
KvUiControl::~KvUiControl() = default;
KvUiText::~KvUiText() = default;
KvUiList::~KvUiList() = default;
KvUiTick::~KvUiTick() = default;
KvUiButton::~KvUiButton() = default;
KvUiTree::~KvUiTree() = default;
KvUiGrid::~KvUiGrid() = default;
KvUiGroup::~KvUiGroup() = default;
KvUiPages::~KvUiPages() = default;
CKvUiGroupChildDialog::~CKvUiGroupChildDialog() = default;

CKvUiDialog::CKvUiDialog(const wchar_t* form, KvWindow* parent) : state_(std::make_unique<State>()) {
  if (form != nullptr) state_->form = form;
  state_->parent = parent;
}

CKvUiDialog::~CKvUiDialog() = default;

int CKvUiDialog::DoModal() {
  BRENVOLT_ASSERT(state_->window == nullptr, "a dialog that runs is started again");
  if (windowSystem() == nullptr) return kvui::cancel;
  state_->result.reset();
  state_->window = windowSystem()->openDialog(state_->form, *this);
  if (state_->window == nullptr) return kvui::cancel;
  if (OnInitDialog()) {
    if (!state_->result) state_->window->run();
  } else {
    state_->result = kvui::cancel;
  }
  state_->window.reset();
  return state_->result.value_or(kvui::cancel);
}

KvWindow* CKvUiDialog::window() const {
  return state_->window.get();
}

bool CKvUiDialog::OnInitDialog() {
  return true;
}

void CKvUiDialog::OnEvent(const KvUiEvent&) {}

void CKvUiDialog::OnOK() {
  EndDialog(kvui::ok);
}

void CKvUiDialog::OnCancel() {
  EndDialog(kvui::cancel);
}

void CKvUiDialog::OnHelp() {}

void CKvUiDialog::OnTimer(int) {}

bool CKvUiDialog::OnValidateCell(std::wstring_view, int, int, std::wstring_view) {
  return true;
}

bool CKvUiDialog::OnCellChoices(std::wstring_view, int, int, std::vector<std::wstring>&) {
  return false;
}

void CKvUiDialog::EndDialog(int result) {
  state_->result = result;
}

void CKvUiDialog::SetDialogName(const wchar_t* name) {
  state_->name = name == nullptr ? L"" : name;
}

void CKvUiDialog::SetTitle(std::wstring_view title) {
  if (state_->window) state_->window->setTitle(title);
}

void CKvUiDialog::SetSplit(const KvUiSplit& split) {
  if (state_->window) state_->window->setSplit(split);
}

KvUiSplit CKvUiDialog::Split() const {
  return state_->window ? state_->window->split() : KvUiSplit{};
}

void CKvUiDialog::SetTooltips(const wchar_t* file, const wchar_t* prefix, int mode) {
  if (state_->window && file != nullptr && prefix != nullptr) state_->window->setTooltips(file, prefix, mode);
}

void CKvUiDialog::StartTimer(int timer, int milliseconds) {
  if (state_->window) state_->window->startTimer(timer, milliseconds);
}

void CKvUiDialog::KillTimer(int timer) {
  if (state_->window) state_->window->killTimer(timer);
}

bool CKvUiDialog::BeginEditorCommand() {
  return state_->window != nullptr && state_->window->beginEditorCommand();
}

void CKvUiDialog::CompleteEditorCommand() {
  if (state_->window) state_->window->completeEditorCommand();
}

bool CKvUiDialog::HasControl(std::wstring_view role) const {
  return state_->window != nullptr && state_->window->control(role) != nullptr;
}

namespace {

/// The control of a role in its kind. A form without it is a fault of the host, not of the user.
template <typename Control>
Control& controlOf(simhost::DialogWindow* window, const std::wstring& form, std::wstring_view role) {
  KvUiControl* found = window == nullptr ? nullptr : window->control(role);
  if (auto* control = dynamic_cast<Control*>(found)) return *control;
  const char* const fault = window == nullptr  ? "\" is not open, so it has no control \""
                            : found == nullptr ? "\" lacks the control \""
                                               : "\" has in another kind the control \"";
  const std::string sentence = "the form \"" + brenvolt::toUtf8(form) + fault + brenvolt::toUtf8(role) + "\"";
  brenvolt::assertionFailed(sentence.c_str(), __FILE__, __LINE__);
}

} // namespace

KvUiText& CKvUiDialog::Text(std::wstring_view role) const {
  return controlOf<KvUiText>(state_->window.get(), state_->form, role);
}

KvUiList& CKvUiDialog::List(std::wstring_view role) const {
  return controlOf<KvUiList>(state_->window.get(), state_->form, role);
}

KvUiTick& CKvUiDialog::Tick(std::wstring_view role) const {
  return controlOf<KvUiTick>(state_->window.get(), state_->form, role);
}

KvUiButton& CKvUiDialog::Button(std::wstring_view role) const {
  return controlOf<KvUiButton>(state_->window.get(), state_->form, role);
}

KvUiTree& CKvUiDialog::Tree(std::wstring_view role) const {
  return controlOf<KvUiTree>(state_->window.get(), state_->form, role);
}

KvUiGrid& CKvUiDialog::Grid(std::wstring_view role) const {
  return controlOf<KvUiGrid>(state_->window.get(), state_->form, role);
}

KvUiPages& CKvUiDialog::Pages(std::wstring_view role) const {
  return controlOf<KvUiPages>(state_->window.get(), state_->form, role);
}

struct CKvUiFileDialog::State {
  FileQuestion question;
  FileAnswer answer;
};

CKvUiFileDialog::CKvUiFileDialog(
    bool save, const wchar_t* defaultExtension, const wchar_t* fileName, const wchar_t* folder,
    const wchar_t* filter, KvWindow*)
    : state_(std::make_unique<State>()) {
  const auto textOf = [](const wchar_t* text) {
    return text == nullptr ? std::wstring() : std::wstring(text);
  };
  FileQuestion& question = state_->question;
  question.isSave = save;
  question.defaultExtension = textOf(defaultExtension);
  question.fileName = textOf(fileName);
  question.folder = textOf(folder);
  const std::vector<std::wstring> fields = brenvolt::splitKeepingEmpty(textOf(filter), L'|');
  for (std::size_t title = 0; title + 1 < fields.size(); title += 2)
    question.types.push_back(fields[title]);
  state_->answer.path = question.fileName;
}

CKvUiFileDialog::~CKvUiFileDialog() = default;

int CKvUiFileDialog::DoModal() {
  if (windowSystem() == nullptr) return kvui::cancel;
  FileEvents events;
  events.typeChanged = [this](int type, const std::wstring& path) {
    state_->answer.type = type;
    state_->answer.path = path;
    OnTypeChange();
    return state_->answer.path;
  };
  events.accept = [this](const FileAnswer& answer) {
    state_->answer = answer;
    return OnFileNameOK();
  };
  state_->answer = windowSystem()->askFile(state_->question, events);
  return state_->answer.isOk ? kvui::ok : kvui::cancel;
}

std::wstring CKvUiFileDialog::GetPathName() const {
  const std::filesystem::path path = pathOf(state_->answer.path);
  if (path.empty() || path.is_absolute()) return textOfPath(path);
  const std::wstring& folderText = state_->question.folder;
  const std::filesystem::path folder =
      folderText.empty() ? std::filesystem::current_path() : std::filesystem::absolute(pathOf(folderText));
  return textOfPath((folder / path).lexically_normal());
}

std::wstring CKvUiFileDialog::GetFileName() const {
  return textOfPath(pathOf(state_->answer.path).filename());
}

std::wstring CKvUiFileDialog::GetFolder() const {
  return textOfPath(pathOf(GetPathName()).parent_path());
}

int CKvUiFileDialog::GetFilterIndex() const {
  return state_->answer.type;
}

bool CKvUiFileDialog::OnFileNameOK() {
  return true;
}

void CKvUiFileDialog::OnTypeChange() {}

void CKvUiFileDialog::SetFileName(std::wstring_view name) {
  state_->answer.path = textOfPath(pathOf(state_->answer.path).replace_filename(pathOf(name)));
}
