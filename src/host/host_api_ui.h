// The host API, windows: task dialogs and the dialogs that flows derive from.
//
// A flow does not depend on a screen. It derives from `CKvUiDialog`, names its form, and knows each control by a role,
// the control's name in the form. The host implements the controls: on a screen, or without one from recorded answers.
// A role that a form lacks is a fault of the host's forms and ends the program with a sentence.
#pragma once

#include "host/host_api_types.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// The values that closing buttons return.
namespace kvui {
inline constexpr int ok = 1;
inline constexpr int cancel = 2;
inline constexpr int yes = 6;
inline constexpr int no = 7;
inline constexpr int firstCommand = 1001; ///< task dialogs: the first command button
inline constexpr int secondCommand = 1002;
} // namespace kvui

struct KdTaskDialogParameter {
  std::wstring name;
  std::wstring text;
};

/// The answers of the user to task dialogs that are permanently hidden.
class KV_HOST_API CKdHideableDialogSettingsDictionary {
public:
  virtual ~CKdHideableDialogSettingsDictionary();
  /// The button id kept for the key, or 0.
  [[nodiscard]] virtual int GetResult(const wchar_t* key) const = 0;
};

/// A question of the resource assembly, loaded by key.
class KV_HOST_API CKdTaskDialog final {
public:
  CKdTaskDialog();
  ~CKdTaskDialog();
  CKdTaskDialog(const CKdTaskDialog&) = delete;
  CKdTaskDialog& operator=(const CKdTaskDialog&) = delete;

  /// Loads the dialog of a key; each parameter replaces its name in braces ("{tablename}") in the texts. False when
  /// the key is unknown.
  bool LoadFromFile(
      const wchar_t* resource, const wchar_t* key, const KdTaskDialogParameter* parameters, int count);
  /// Shows the dialog and returns the id of the button; closing the window is kvui::cancel. A dialog that the user has
  /// hidden returns the stored id without being shown.
  int ShowDialog(KvWindow* parent);
  /// Null when the host keeps none.
  static CKdHideableDialogSettingsDictionary* GetHideableDialogSettingsDictionary();

private:
  struct State;
  std::unique_ptr<State> state_;
};

/// A control of a form. Controls belong to the host and live as long as their dialog runs.
class KV_HOST_API KvUiControl {
public:
  virtual ~KvUiControl();
  virtual void Enable(bool enabled) = 0;
  [[nodiscard]] virtual bool IsEnabled() const = 0;
  virtual void Show(bool visible) = 0;
  virtual void SetFocus() = 0;
  [[nodiscard]] virtual bool HasFocus() const = 0;
  virtual void SetTooltip(std::wstring_view text) = 0;
  /// The text beside or on the control: label, caption, group title.
  virtual void SetLabel(std::wstring_view text) = 0;
  [[nodiscard]] virtual std::wstring Label() const = 0;
};

/// A text field or, when read-only, a text that is shown. Setting the text raises no event.
class KV_HOST_API KvUiText : public KvUiControl {
public:
  ~KvUiText() override;
  virtual void SetText(std::wstring_view text) = 0;
  [[nodiscard]] virtual std::wstring Text() const = 0;
  virtual void SetReadOnly(bool readOnly) = 0;
};

/// A list of choices; with an edit field if the form specifies it. Changes by the program raise no event.
class KV_HOST_API KvUiList : public KvUiControl {
public:
  ~KvUiList() override;
  virtual void Clear() = 0;
  /// Inserts an entry at `index`, or at the end for -1, and returns its index.
  virtual int Insert(int index, std::wstring_view text, int data) = 0;
  virtual void Remove(int index) = 0;
  [[nodiscard]] virtual int Count() const = 0;
  [[nodiscard]] virtual std::wstring TextAt(int index) const = 0;
  [[nodiscard]] virtual int DataAt(int index) const = 0;
  /// -1 selects nothing.
  virtual void Select(int index) = 0;
  [[nodiscard]] virtual int Selected() const = 0;
  /// The edit field's text of an editable list, else the selected entry's text.
  [[nodiscard]] virtual std::wstring Text() const = 0;
  virtual void SetText(std::wstring_view text) = 0;
};

/// A check box or a radio button; radio buttons of one form group exclude each other.
class KV_HOST_API KvUiTick : public KvUiControl {
public:
  ~KvUiTick() override;
  virtual void SetChecked(bool checked) = 0;
  [[nodiscard]] virtual bool IsChecked() const = 0;
};

class KV_HOST_API KvUiButton : public KvUiControl {
public:
  ~KvUiButton() override;
  /// A numbered image of the resource module; 0 for none.
  virtual void SetImage(unsigned image) = 0;
};

/// A tree of items; ids count from 1 and are never used again.
class KV_HOST_API KvUiTree : public KvUiControl {
public:
  ~KvUiTree() override;
  /// Inserts an item after the last child of `parent` (0: the root) and returns its id.
  virtual int Insert(int parent, std::wstring_view text, int image, int data) = 0;
  /// Removes an item with all below it.
  virtual void Remove(int item) = 0;
  virtual void Clear() = 0;
  [[nodiscard]] virtual int Data(int item) const = 0;
  [[nodiscard]] virtual std::wstring TextOf(int item) const = 0;
  [[nodiscard]] virtual int Image(int item) const = 0;
  virtual void SetImage(int item, int image) = 0;
  /// 0 where there is none; `Next` is the next sibling.
  [[nodiscard]] virtual int Parent(int item) const = 0;
  [[nodiscard]] virtual int FirstChild(int item) const = 0;
  [[nodiscard]] virtual int Next(int item) const = 0;
  /// 0 selects nothing. Raises KvUiEventKind::selected when the selection changes, also when the program does it.
  virtual void Select(int item) = 0;
  [[nodiscard]] virtual int Selected() const = 0;
  virtual void Expand(int item) = 0;
};

enum class KvUiCellKind { text, dropDown, tick, fixed };
enum class KvUiCellTone { normal, alert };

/// A grid. Row 0 is the header; data rows count from 1, columns from 0 (the row head). A tick is "1" or "0".
/// The Delete key edits the cell that was clicked last, if it can be edited: a text becomes empty, a tick "0"; any
/// other cell swallows it. Tab leaves the grid for the next control of the form.
class KV_HOST_API KvUiGrid : public KvUiControl {
public:
  ~KvUiGrid() override;
  virtual void SetSize(int rows, int columns) = 0;
  [[nodiscard]] virtual int RowCount() const = 0;
  [[nodiscard]] virtual int ColumnCount() const = 0;
  virtual void SetCell(int row, int column, std::wstring_view text) = 0;
  [[nodiscard]] virtual std::wstring Cell(int row, int column) const = 0;
  virtual void SetCellKind(int row, int column, KvUiCellKind kind) = 0;
  /// The choices of a drop-down cell; for an empty list `OnCellChoices` is called each time the list opens.
  virtual void SetCellChoices(int row, int column, const std::vector<std::wstring>& choices) = 0;
  virtual void SetCellTone(int row, int column, KvUiCellTone tone) = 0;
  virtual void RemoveRow(int row) = 0;
  /// Whether cells may be edited, and whether there is an empty row for a new record at the end, counted once edited.
  virtual void SetEditable(bool editable, bool withNewRow) = 0;
  [[nodiscard]] virtual bool IsEditable() const = 0;
  /// 0 selects no row. Raises no event.
  virtual void SelectRow(int row) = 0;
  [[nodiscard]] virtual int SelectedRow() const = 0;
  virtual void ScrollTo(int row) = 0;
  virtual void HideColumn(int column, bool hidden) = 0;
  /// Relative widths; empty fits each column to its texts.
  virtual void SetColumnWidths(const std::vector<int>& parts) = 0;
  /// Between these calls nothing is drawn. May nest.
  virtual void LockDrawing() = 0;
  virtual void UnlockDrawing() = 0;
};

struct KvUiGroupButton {
  unsigned image = 0;
  std::wstring tip;
};

/// A titled group on a page: a grid of two columns (label, value) and header buttons.
class KV_HOST_API KvUiGroup : public KvUiControl {
public:
  ~KvUiGroup() override;
  [[nodiscard]] virtual KvUiGrid& Grid() = 0;
  virtual void SetButtons(const std::vector<KvUiGroupButton>& buttons) = 0;
};

/// A place of a form that shows one of many pages; pages are made while the dialog runs.
class KV_HOST_API KvUiPages : public KvUiControl {
public:
  ~KvUiPages() override;
  /// A new, empty page; ids count from 1. `parent` is 0 or the page that it belongs under.
  virtual int AddPage(int parent) = 0;
  virtual void RemovePage(int page) = 0;
  /// Page 0 or an unknown one does nothing.
  virtual void ShowPage(int page) = 0;
  [[nodiscard]] virtual int ShownPage() const = 0;
  /// Locks a page: its lists are shown but cannot be changed.
  virtual void LockPage(int page, bool locked) = 0;
  [[nodiscard]] virtual bool IsLocked(int page) const = 0;
  /// Adds a labelled list after the existing ones. Events name it "<role>.<page>.<place>", places from 0.
  virtual KvUiList& AddList(int page, std::wstring_view label) = 0;
  /// Adds a group after the existing ones; named the same way, its buttons "<role>.<page>.<place>.button.<n>".
  virtual KvUiGroup& AddGroup(int page, std::wstring_view title) = 0;
  /// Null when the page has no such place.
  [[nodiscard]] virtual KvUiList* ListAt(int page, int place) = 0;
  [[nodiscard]] virtual KvUiGroup* GroupAt(int page, int place) = 0;
};

enum class KvUiEventKind {
  clicked,       ///< a button was pressed
  changed,       ///< a list's selection or a tick changed
  committed,     ///< a text field or an editable list lost the focus, or Enter was pressed in it
  selected,      ///< a tree item or a grid row was selected; `row` holds it (tree: item id)
  doubleClicked, ///< a grid row or a tree item
  cellEdited,    ///< a cell took a new text that `OnValidateCell` let pass; `row`, `column`, `text`
  editBegun,     ///< a grid row is being edited
  rowCommitted,  ///< the edited row was left; `row` holds it, `column` is 1 when something changed
  deleteKey,     ///< the Delete key on a tree item or a list's entry
};

struct KvUiEvent {
  std::wstring_view role;
  KvUiEventKind kind = KvUiEventKind::clicked;
  int row = 0;
  int column = 0;
  std::wstring_view text;
};

/// How a user has divided a form with a movable bar, in the host's units. 0 leaves a size to the host.
struct KvUiSplit {
  int bar = 0; ///< from the left edge to the bar
  int width = 0;
  int height = 0;
  friend bool operator==(const KvUiSplit&, const KvUiSplit&) = default;
};

/// A dialog's flow. `OnInitDialog` runs when the controls exist; then events arrive until `EndDialog`.
class KV_HOST_API CKvUiDialog {
public:
  CKvUiDialog(const wchar_t* form, KvWindow* parent);
  CKvUiDialog(const CKvUiDialog&) = delete;
  CKvUiDialog& operator=(const CKvUiDialog&) = delete;
  virtual ~CKvUiDialog();

  /// Runs the dialog and returns the value passed to `EndDialog`, kvui::cancel when the window was closed or could not
  /// be created. An exception from one of the events below ends the dialog and reaches the caller.
  int DoModal();
  /// The dialog's window while it runs, for task dialogs and child dialogs.
  [[nodiscard]] KvWindow* window() const;

protected:
  /// Fills the controls. False ends the dialog at once as cancelled.
  virtual bool OnInitDialog();
  virtual void OnEvent(const KvUiEvent& event);
  /// The closing buttons "ok" and "cancel" and the frame's close button. The base class ends the dialog.
  virtual void OnOK();
  virtual void OnCancel();
  /// F1 and the button "help".
  virtual void OnHelp();
  virtual void OnTimer(int timer);
  /// Whether a typed cell text is taken; false puts the old one back.
  virtual bool OnValidateCell(std::wstring_view role, int row, int column, std::wstring_view text);
  /// Returns the choices of a drop-down cell without its own; called each time its list opens.
  virtual bool OnCellChoices(std::wstring_view role, int row, int column, std::vector<std::wstring>& choices);

  void EndDialog(int result);
  /// The name under which the host keeps place and size of the window for the user.
  void SetDialogName(const wchar_t* name);
  void SetTitle(std::wstring_view title);
  /// The position of the form's divider. A host without dividers returns the value set last.
  void SetSplit(const KvUiSplit& split);
  [[nodiscard]] KvUiSplit Split() const;
  /// Tooltips of the form: resource file, prefix of the keys, mode (2: below the control).
  void SetTooltips(const wchar_t* file, const wchar_t* prefix, int mode);
  /// One-shot or repeating until killed; starting a running id restarts it.
  void StartTimer(int timer, int milliseconds);
  void KillTimer(int timer);
  /// Hides the dialog and gives the editor to the host, so that the user can pick and drawing code can run.
  bool BeginEditorCommand();
  /// Takes the editor back and shows the dialog again.
  void CompleteEditorCommand();
  [[nodiscard]] bool HasControl(std::wstring_view role) const;

  /// The control of a role. A role that is missing or of another kind ends the program with a sentence.
  [[nodiscard]] KvUiText& Text(std::wstring_view role) const;
  [[nodiscard]] KvUiList& List(std::wstring_view role) const;
  [[nodiscard]] KvUiTick& Tick(std::wstring_view role) const;
  [[nodiscard]] KvUiButton& Button(std::wstring_view role) const;
  [[nodiscard]] KvUiTree& Tree(std::wstring_view role) const;
  [[nodiscard]] KvUiGrid& Grid(std::wstring_view role) const;
  [[nodiscard]] KvUiPages& Pages(std::wstring_view role) const;

private:
  friend class KvUiDialogAccess;
  struct State;
  std::unique_ptr<State> state_;
};

/// How the host's implementation reaches the events of a dialog.
class KvUiDialogAccess;

/// A dialog that is embedded in another one and ends with it.
class KV_HOST_API CKvUiGroupChildDialog : public CKvUiDialog {
public:
  using CKvUiDialog::CKvUiDialog;
  ~CKvUiGroupChildDialog() override;
};

/// The host's dialog for file names.
class KV_HOST_API CKvUiFileDialog {
public:
  /// `save` true for saving; `filter` holds pairs "title|*.ext|"; `defaultExtension` without a point.
  CKvUiFileDialog(
      bool save, const wchar_t* defaultExtension, const wchar_t* fileName, const wchar_t* folder,
      const wchar_t* filter, KvWindow* parent);
  CKvUiFileDialog(const CKvUiFileDialog&) = delete;
  CKvUiFileDialog& operator=(const CKvUiFileDialog&) = delete;
  virtual ~CKvUiFileDialog();
  /// kvui::ok or kvui::cancel. What an event throws ends the dialog and arrives at the caller.
  int DoModal();
  /// Full path, file title with its extension, folder, as chosen.
  [[nodiscard]] std::wstring GetPathName() const;
  [[nodiscard]] std::wstring GetFileName() const;
  [[nodiscard]] std::wstring GetFolder() const;
  /// The chosen file type, from 1.
  [[nodiscard]] int GetFilterIndex() const;

protected:
  /// Before the dialog closes with OK; false leaves it open.
  virtual bool OnFileNameOK();
  /// The file type changed.
  virtual void OnTypeChange();
  void SetFileName(std::wstring_view name);

private:
  friend class KvUiFileDialogAccess;
  struct State;
  std::unique_ptr<State> state_;
};

class KvUiFileDialogAccess;
