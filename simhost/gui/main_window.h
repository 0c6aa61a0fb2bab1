// The main window: the drawing and its panes. It starts commands and shows their results; the commands themselves are
// in the site's LISP and in the plug-in.
#pragma once

#include "circuits/provenance/circuit_objects.h"
#include "simhost/gui/command_runner.h"
#include "simhost/gui/drawing_set.h"
#include "simhost/gui/drawing_view.h"
#include "simhost/gui/host_texts.h"
#include "simhost/gui/page_setup.h"
#include "simhost/gui/paper_output.h"
#include "simhost/gui/pick_filter.h"
#include "simhost/qt/qt_windows.h"

#include <QMainWindow>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QAction;
class QEventLoop;
class QLabel;
class QToolButton;

namespace brenvolt {
struct SavedConfiguration;
}

namespace simhost {

class CheckPanel;
class CircuitPanel;
class ContextHelp;
class LayerPanel;
class OpenFile;
class PromptPane;
class PropertiesPanel;
class SetPanel;
class SiteCircuits;
class SiteRun;
class UnitMarkers;
struct OfferedCircuit;
struct SiteConfigurations;
class UserSettings;

class MainWindow final : public QMainWindow, public DrawingPicker {
public:
  /// All three must outlive it. The site's document is shown. It is the windows' main window and picker while it
  /// lives.
  MainWindow(SiteRun& site, QtWindows& windows, HostTexts& texts);
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;
  ~MainWindow() override;

  [[nodiscard]] DrawingView& view() { return *view_; }
  [[nodiscard]] PromptPane& prompt() { return *prompt_; }
  [[nodiscard]] LayerPanel& layers() { return *layers_; }
  [[nodiscard]] CircuitPanel& circuitPanel() { return *circuitPanel_; }
  /// The id of the circuit that commands are about, empty for none.
  [[nodiscard]] const std::wstring& selectedCircuit() const { return selectedCircuit_; }
  [[nodiscard]] CommandRunner& runner() { return runner_; }
  /// The action of a command.
  [[nodiscard]] QAction& action(HostText command) { return *actions_.at(command); }
  /// The text of the status bar.
  [[nodiscard]] QString status() const;
  /// What is shown of the entity under the pointer.
  [[nodiscard]] QString hoverText() const;
  /// The prompt of the current pick, empty for none.
  [[nodiscard]] QString pickPrompt() const;

  /// Dark or light paper and windows.
  void setPaper(Paper paper);
  /// Asks the questions about the drawing with which the program was started: whether to open it although it is open
  /// elsewhere, and whether to recover unsaved work.
  void askAboutFile();
  /// Keeps a copy of what is not saved yet, for the case of a crash; the window does so by itself from time to time.
  void keepCopy();
  /// Opens a drawing; false, with the reason in the status bar and the prompt's pane, when it cannot be read.
  bool openFile(const QString& file);
  bool saveFile(const QString& file);
  /// Opens a project's database, none for an empty name; false for another file, with the reason reported as above.
  bool openProject(const QString& file);
  /// Shows the sheets of a set; false, with the reason in the status bar, for another file.
  bool openSet(const QString& file);
  bool exportSvg(const QString& file);
  bool exportPdf(const QString& file);
  /// Whether the drawing differs from its file.
  [[nodiscard]] bool isChanged() const;

  [[nodiscard]] EntityPick pickEntity(const std::wstring& prompt, bool emptyIsAllowed) override;
  /// Lets the user choose a position with mouse or keys, starting with the next free one for this outline; nothing
  /// when the user presses Escape.
  [[nodiscard]] std::optional<KvPoint3d> pickPoint(
      const QString& prompt, const std::optional<Box>& outline = {});
  /// The same, starting there.
  [[nodiscard]] std::optional<KvPoint3d> pickPointFrom(
      const QString& prompt, const std::optional<Box>& outline, const KvPoint3d& start);

protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  struct CommandRow;
  struct MenuRow;
  static const std::vector<MenuRow>& menuRows();

  // Building up, main_window.cpp.
  void buildView();
  void buildParts();
  void buildPanels();
  void buildStatusBar();
  void buildMenus();
  void addCommand(const CommandRow& row, QWidget& menu);
  void restorePlace();
  void storePlace();

  // What is shown, main_window.cpp.
  void refreshScene();
  void refreshTitle();
  void refreshActions();
  void showPointer(const KvPoint3d& point);
  void say(const QString& text);
  void tell(const CommandOutcome& outcome, HostText command = HostText::none);
  [[nodiscard]] QString factsText(KvDbHandle entity) const;
  void showProperties();

  // Commands, main_window_commands.cpp.
  void start(const CommandRow& row);
  void runForm(const QString& name, const std::wstring& form, HostText command = HostText::none);
  void editWireSize();
  void newCircuit();
  void buildFromHistory();
  void buildSaved(const brenvolt::SavedConfiguration& saved, const std::wstring& workbookPath);
  /// Asks for the position of a template, lets `build` make the LISP that builds it there, and shows the result.
  [[nodiscard]] std::optional<lisp::Value> placeCircuit(
      const CommandRunner::Evaluate& evaluate, const std::wstring& drawingTemplate,
      const OfferedCircuit& offered, const std::function<std::wstring(const std::wstring& point)>& build);
  /// Makes the outline of the current pick that of the finished circuit, as soon as this is known.
  void refineOutline(const OfferedCircuit& offered);
  [[nodiscard]] std::optional<Box> outlineOf(const std::wstring& drawingTemplate);
  [[nodiscard]] KvPoint3d nextFreePlace(const std::optional<Box>& outline);
  /// What the last command has added to the drawing, seen whole.
  [[nodiscard]] Box extentsSince(std::uint64_t firstHandle);
  // Circuits, main_window_circuits.cpp.
  /// Steps of a command on a circuit: returns a line that reports the change, nothing when the user cancels.
  using CircuitSteps = std::function<std::optional<QString>(
      const CommandRunner::Evaluate& evaluate, const circuits::CircuitObject& circuit)>;
  /// Runs a command on the selected circuit, or on one that the user picks. What fails leaves the drawing as it was.
  void onCircuit(HostText command, const CircuitSteps& steps);
  void refreshCircuits();
  [[nodiscard]] const SiteConfigurations* siteConfigurations();
  [[nodiscard]] const circuits::CircuitObject* knownCircuit(std::wstring_view id) const;
  void selectCircuit(const std::wstring& id);
  void selectCircuitOf(std::optional<KvDbHandle> entity);
  /// Selects it and shows it in the view.
  void showCircuit(const std::wstring& id);
  /// The entity whose wires are edited: the selected one, else the motor or load of the selected circuit.
  [[nodiscard]] std::optional<KvDbHandle> selectedControl() const;
  /// What a build of the site takes to build it there with its choices; nothing, with the reason in the status bar,
  /// when it cannot be built again.
  [[nodiscard]] std::optional<std::wstring> buildArguments(
      const circuits::CircuitObject& circuit, const KvPoint3d& point);
  void configureCircuit();
  void saveConfiguration();
  void moveSelected();
  void copySelected();
  void deleteSelected();
  void reportOnCircuit();
  void findCircuit();
  void showCircuitMenu(const QPoint& place);

  // The check of the site, main_window_check.cpp.
  void buildCheckPanel();
  void checkSite();
  void openFinding(const QString& file, const QString& place, const std::optional<QPointF>& position);

  void undo();
  void redo();
  void zoomExtents();
  void zoomWindow();
  void zoomIn();
  void zoomOut();
  void toggleGrid();
  void toggleDark();
  void leave();
  void showAbout();
  void answerPick(const EntityPick& pick);
  void cancelPick();
  void runPick(const QString& prompt, const QString& hint, DrawingView::Mode mode);

  // Files, main_window_files.cpp.
  void newDrawing();
  void open();
  void save();
  void saveAs();
  void askExportSvg();
  void askExportPdf();
  void copyPicture();
  [[nodiscard]] bool takeDrawing(const QString& file);
  /// Whether the file may be opened; the user is asked when it is open elsewhere.
  [[nodiscard]] bool mayOpen(const QString& file);
  /// Recovers unsaved work of an earlier run, if the user agrees.
  void recoverCopy();
  /// Whether the file may be written; the user is asked when another program has changed it.
  [[nodiscard]] bool mayOverwrite();
  [[nodiscard]] int ask(HostText title, const QString& text, std::initializer_list<HostText> answers);
  [[nodiscard]] bool mayLeaveDrawing();
  [[nodiscard]] QString askSaveName(HostText title, HostText type, const QString& ending);
  bool report(const Fault& fault, HostText text, const QString& file);
  /// Puts a file at the head of a list that the settings keep.
  void remember(const wchar_t* list, const QString& file);
  void fillRecent();
  void fillMenu(QMenu& menu, const wchar_t* list, const std::function<void(const QString&)>& open);
  // Sets, main_window_sets.cpp.
  void buildSetPanel();
  void askOpenSet();
  // Paper, main_window_paper.cpp.
  void askPageSetup();
  void previewPrint();
  void print();
  /// Of the drawing in its title block: as the user gave it, else the name of its file.
  [[nodiscard]] QString pageTitle() const;
  /// Nothing, with the reason in the status bar, for a frame that cannot be used.
  [[nodiscard]] std::optional<PaperPage> paperPage();
  void tellPage(PageResult result);
  // Projects, main_window_projects.cpp.
  void askOpenProject();
  void askNewProject();
  void closeProject();
  void tellFault(const char* reason);
  // Help and language, main_window_language.cpp.
  void showHelp();
  void showFirstCircuit();
  void explainNext();
  void chooseLanguage(const QString& language);
  void takeLanguage(const QString& language);
  void removeParts();

  [[nodiscard]] DrawingDatabase& drawing() const;
  [[nodiscard]] UserSettings& settings() const;
  [[nodiscard]] QString setting(const wchar_t* name) const;
  void setSetting(const wchar_t* name, const QString& value);

  SiteRun& site_;
  QtWindows& windows_;
  HostTexts& texts_;
  CommandRunner runner_;
  DrawingView* view_ = nullptr;
  ContextHelp* help_ = nullptr;
  QLabel* banner_ = nullptr;
  PromptPane* prompt_ = nullptr;
  LayerPanel* layers_ = nullptr;
  CircuitPanel* circuitPanel_ = nullptr;
  CheckPanel* checkPanel_ = nullptr;
  PropertiesPanel* properties_ = nullptr;
  SetPanel* setPanel_ = nullptr;
  std::optional<DrawingSet> set_;
  QLabel* hover_ = nullptr;
  QLabel* place_ = nullptr;
  QToolButton* copyResult_ = nullptr; ///< of the result line of a command
  QMenu* recent_ = nullptr;
  QMenu* recentProjects_ = nullptr;
  std::map<HostText, QAction*> actions_;
  std::unique_ptr<OpenFile> open_;
  bool isReadOnly_ = false;
  bool isAsking_ = false;      ///< about the drawing's file
  UndoLog::State copiedState_; ///< of the copy that is kept
  QTimer copying_;
  std::unique_ptr<UnitMarkers> units_;
  std::unique_ptr<SiteCircuits> siteCircuits_;
  QTimer watch_; ///< looks whether the running command has changed the drawing
  std::uint64_t shownChange_ = 0;
  std::uint64_t shownCircuits_ = 0; ///< the change that the list of circuits is of
  std::vector<circuits::CircuitObject> circuits_;
  std::wstring selectedCircuit_;
  std::unique_ptr<SiteConfigurations> configurations_;
  UndoLog::State savedState_;
  QString file_;
  KvPoint3d lastPlace_;                  ///< of the circuit that was placed last
  std::map<std::wstring, Box> outlines_; ///< of templates, as they were built last; around their point

  QEventLoop* pickLoop_ = nullptr;    ///< of the current pick
  PickKind pickKind_ = PickKind::any; ///< of a command that picks without a dialog
  EntityPick pick_;                   ///< its result
  std::optional<Box> pickOutline_;    ///< of a pick of a place
  KvPoint3d pickStart_;
  bool isEmptyPickAllowed_ = false;
  bool closesAfterRun_ = false;
};

} // namespace simhost
