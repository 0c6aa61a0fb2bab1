#include "flows/dlg_config.h"

#include "build/host_session.h"
#include "flows/config_names.h"
#include "flows/config_pick.h"
#include "flows/config_walk.h"
#include "host/alerts.h"
#include "host/host_api_documents.h"
#include "host/host_api_lisp.h"
#include "host/resources.h"
#include "text/compare.h"
#include "text/split.h"
#include "widgets/roles_config.h"

#include <algorithm>
#include <utility>

namespace brenvolt {

namespace {

constexpr wchar_t configForm[] = L"ZanDlgConfig";
constexpr wchar_t configDialog[] = L"ZanBrenvolt::ZanDlgConfig";
constexpr wchar_t configHelpTopic[] = L"circuit_configuration_dialog";

struct InsertButton {
  std::wstring_view role;
  ImageId image;
  InsertScope scope;
};
constexpr InsertButton insertButtons[] = {
    {role::insertCurrent, ImageId::insertCurrent, InsertScope::current},
    {role::insertUpToCurrent, ImageId::insertUpToCurrent, InsertScope::upToCurrent},
    {role::insertAll, ImageId::insertAll, InsertScope::all},
};

/// A question that does not load counts as agreed to.
bool isRefused(const std::optional<int>& answer) {
  return answer && (*answer == kvui::no || *answer == kvui::cancel);
}

void tell(TextId text) {
  kvutPrintf((loadText(text) + L"\n").c_str());
}

/// The document in which the user draws, its view brought to the front; false without one.
bool focusDrawing() {
  KvApDocManager* documents = kvDocManagerPtr();
  KvApDocument* document = documents == nullptr ? nullptr : documents->activeDocument();
  if (document == nullptr || !document->hasView()) return false;
  document->focusView();
  return true;
}

} // namespace

/// The host has the editor for a scope, exceptions included.
class ZanDlgConfig::EditorScope final {
public:
  explicit EditorScope(ZanDlgConfig& dialog) : dialog_(dialog), isGiven_(dialog.BeginEditorCommand()) {}
  ~EditorScope() {
    if (isGiven_) dialog_.CompleteEditorCommand();
  }
  EditorScope(const EditorScope&) = delete;
  EditorScope& operator=(const EditorScope&) = delete;
  [[nodiscard]] bool isGiven() const { return isGiven_; }

private:
  ZanDlgConfig& dialog_;
  bool isGiven_;
};

ZanDlgConfig::ZanDlgConfig(ZanBrenvolt& build, KvWindow* parent)
    : CKvUiDialog(configForm, parent), build_(build) {}

bool ZanDlgConfig::OnInitDialog() {
  SetDialogName(configDialog);
  SetTooltips(tooltipResource, tooltipPrefix, tooltipsBelow);
  for (const InsertButton& button : insertButtons)
    Button(button.role).SetImage(static_cast<unsigned>(button.image));
  Button(role::undoInsertion).SetImage(static_cast<unsigned>(ImageId::undoInsertion));
  showNames();
  pages_.emplace(
      build_.units(), Tree(role::units), Pages(role::optionPages), Pages(role::settingsPages),
      static_cast<ZanConfigDialogService&>(*this));
  pages_->Open();
  UpdateButtons();
  return true;
}

void ZanDlgConfig::showNames() {
  const ZanBuildArgs& args = build_.args();
  Text(role::circuitType).SetText(args.type);
  Text(role::circuitName).SetText(args.circuit);
  Text(role::historyName).SetText(args.historyName.empty() ? ProposeName() : args.historyName);
}

std::vector<std::wstring> ZanDlgConfig::takenNames() {
  ZanXmlHistory& history = build_.history();
  std::vector<std::wstring> names;
  // Without a file no name is taken.
  if (history.hasDocument() || history.Reload())
    history.GetHistoryNames(build_.args().circuit, build_.args().type, names);
  return names;
}

std::wstring ZanDlgConfig::ProposeName() {
  return proposeName(build_.args().circuit, takenNames());
}

void ZanDlgConfig::OnEvent(const KvUiEvent& event) {
  if (!pages_) return;
  if (event.role == role::units && event.kind == KvUiEventKind::selected) {
    pages_->ShowPage(pages_->tree().PageOf(event.row));
    UpdateButtons();
    return;
  }
  if (event.kind == KvUiEventKind::clicked) {
    for (const InsertButton& button : insertButtons)
      if (event.role == button.role) return Insert(button.scope);
    if (event.role == role::undoInsertion) return Undo();
  }
  if (const std::optional<std::int32_t> code = pages_->selectWindow().ChangedCode(event))
    pages_->OnOptionChanged(*code);
  else
    pages_->settingsWindow().OnEvent(event);
}

void ZanDlgConfig::OnTimer(int timer) {
  if (pages_) pages_->settingsWindow().OnTimer(timer);
}

bool ZanDlgConfig::OnValidateCell(std::wstring_view role, int row, int, std::wstring_view text) {
  return !pages_ || pages_->settingsWindow().OnValidateCell(role, row, text);
}

bool ZanDlgConfig::OnCellChoices(std::wstring_view role, int row, int, std::vector<std::wstring>& choices) {
  return pages_ && pages_->settingsWindow().OnCellChoices(role, row, choices);
}

void ZanDlgConfig::OnHelp() {
  kvedHelp(configHelpTopic);
}

void ZanDlgConfig::Insert(InsertScope scope) {
  pages_->CommitPage();
  // A run that failed has its mark as well: it can be taken back.
  if (const std::optional<RunResult> result = RunInsertion(scope)) adoptRun(build_.units(), *pages_, *result);
  UpdateButtons();
}

/// Nothing when there was no run.
std::optional<RunResult> ZanDlgConfig::RunInsertion(InsertScope scope) {
  if (!focusDrawing() || !markUnits(build_.units(), pages_->CurrentUnit(), scope)) return std::nullopt;
  const EditorScope editor(*this);
  if (!editor.isGiven()) return std::nullopt;
  const bool goesOn = pumpMessages();
  const bool succeeded = goesOn && build_.runLevel();
  if (!goesOn || build_.state().hasQuit) {
    end_ = BuildEnd::quit;
    EndDialog(kvui::cancel);
  }
  return succeeded ? RunResult::succeeded : RunResult::failed;
}

void ZanDlgConfig::Undo() {
  if (!build_.canGoBack()) return;
  if (!takeBackRun(build_, *pages_)) tell(TextId::undoRefused);
  UpdateButtons();
}

void ZanDlgConfig::UpdateButtons() {
  const ZanConfigUnit* current = pages_->CurrentUnit();
  const bool canInsert = current != nullptr && !pages_->IsLocked(*current);
  bool isAnyAhead = false;
  bool isAny = false;
  bool isBehind = false;
  forEachUnit(build_.units(), [&](const ZanConfigUnit& unit, const ZanConfigUnit*) {
    isBehind = isBehind || &unit == current;
    if (!waits(unit)) return;
    isAny = true;
    isAnyAhead = isAnyAhead || !isBehind;
  });
  Button(role::insertCurrent).Enable(canInsert);
  Button(role::insertUpToCurrent).Enable(canInsert || (current != nullptr && isAnyAhead));
  Button(role::insertAll).Enable(canInsert || isAny);
  Button(role::undoInsertion).Enable(build_.canGoBack());
}

void ZanDlgConfig::OnOK() {
  const std::optional<std::wstring> name = acceptName();
  if (!name || !confirmRest()) return;
  pages_->CommitPage();
  takeRest(build_);
  // Ahead of the end steps: once the markers are gone there is nothing left to try again with.
  if (!keepConfiguration(*name)) return;
  // From here on, drawing and history file agree on the circuit in any case.
  end_ = BuildEnd::finished;
  build_.finish();
  EndDialog(kvui::ok);
}

/// The name that the configuration is to have; nothing when the user has to think again.
std::optional<std::wstring> ZanDlgConfig::acceptName() {
  KvUiText& edit = Text(role::historyName);
  std::wstring name = trim(edit.Text());
  const std::wstring noName = loadText(TextId::newConfiguration);
  if (name.empty() || name == noName) {
    static_cast<void>(showTaskDialog(L"ZanBrenvolt.InvalidCircuitName", {{L"circname", noName}}, window()));
    edit.SetFocus();
    return std::nullopt;
  }
  if (!build_.args().historyName.empty()) {
    const std::vector<std::wstring> taken = takenNames();
    if (std::any_of(taken.begin(), taken.end(), [&name](const std::wstring& each) {
          return equalsCollating(each, name);
        })) {
      const std::optional<int> answer =
          showTaskDialog(L"ZanBrenvolt.DuplicateCircuitName", {{L"circname", name}}, window());
      if (!answer || answer == kvui::cancel) return std::nullopt;
      if (answer != kvui::secondCommand) return name;
      name = ProposeName();
    }
  }
  name = longName(name, build_.circuit().circuit);
  edit.SetText(name);
  return name;
}

bool ZanDlgConfig::confirmRest() {
  return isEachInserted(build_.units()) ||
         !isRefused(showTaskDialog(L"ZanBrenvolt.CircuitConfigurationDone", {}, window()));
}

/// False when the configuration is not saved and the user does not want to finish without it.
bool ZanDlgConfig::keepConfiguration(const std::wstring& name) {
  return build_.saveHistory(name) ||
         !isRefused(showTaskDialog(L"ZanBrenvolt.HistoryNotSaved", {{L"circname", name}}, window()));
}

void ZanDlgConfig::OnCancel() {
  if (isRefused(showTaskDialog(L"ZanBrenvolt.CircuitConfigurationCancel", {}, window()))) return;
  takeBack();
  EndDialog(kvui::cancel);
}

void ZanDlgConfig::takeBack() {
  end_ = BuildEnd::takenBack;
  if (!build_.rollback()) tell(TextId::rollbackRefused);
}

void ZanDlgConfig::LeaveBuild() {
  pages_.reset(); // its controls are gone
  if (end_ == BuildEnd::open) takeBack();
}

bool ZanDlgConfig::PickMotor(std::vector<std::wstring>& values) {
  return pick(pickMotorRatings, values);
}

bool ZanDlgConfig::PickLoad(std::vector<std::wstring>& values) {
  return pick(pickLoadRatings, values);
}

bool ZanDlgConfig::pick(
    std::optional<std::vector<std::wstring>> (*ask)(ZanCircuitData&), std::vector<std::wstring>& values) {
  const EditorScope editor(*this);
  if (!editor.isGiven()) return false;
  std::optional<std::vector<std::wstring>> picked = ask(build_.circuit().circuit);
  if (picked) values = std::move(*picked);
  return picked.has_value();
}

void ZanDlgConfig::HandOverEditor(EditorOwner owner) {
  if (owner == EditorOwner::host) {
    // A refused lookup is noticed there: its requests to the host are refused as well.
    hasLentEditor_ = BeginEditorCommand();
  } else if (std::exchange(hasLentEditor_, false)) {
    CompleteEditorCommand();
  }
}

bool runConfiguration(ZanBrenvolt& build, KvWindow* parent) {
  ZanDlgConfig dialog(build, parent);
  try {
    static_cast<void>(dialog.DoModal());
  } catch (...) {
    dialog.LeaveBuild();
    throw;
  }
  dialog.LeaveBuild();
  return dialog.isFinished();
}

} // namespace brenvolt
