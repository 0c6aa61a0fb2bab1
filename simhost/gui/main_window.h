// The main window: the drawing with what a designer needs around it. It starts commands and shows what comes of them;
// what a command does stands in the site's LISP and in the plug-in.
#pragma once

#include "simhost/gui/command_runner.h"
#include "simhost/gui/drawing_view.h"
#include "simhost/gui/host_texts.h"
#include "simhost/qt/qt_windows.h"

#include <QMainWindow>
#include <QTimer>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QAction;
class QEventLoop;
class QLabel;

namespace brenvolt {
struct SavedConfiguration;
}

namespace simhost {

class LayerPanel;
class PromptPane;
class SiteRun;
class UserSettings;

class MainWindow final : public QMainWindow, public DrawingPicker {
public:
  /// All three must outlive it. The site's document is shown. It is the windows' main window and picker until it goes.
  MainWindow(SiteRun& site, QtWindows& windows, const HostTexts& texts);
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;
  ~MainWindow() override;

  [[nodiscard]] DrawingView& view() { return *view_; }
  [[nodiscard]] PromptPane& prompt() { return *prompt_; }
  [[nodiscard]] LayerPanel& layers() { return *layers_; }
  [[nodiscard]] CommandRunner& runner() { return runner_; }
  /// The action of a command.
  [[nodiscard]] QAction& action(HostText command) { return *actions_.at(command); }
  /// What the status bar says.
  [[nodiscard]] QString status() const;
  /// What is shown of the entity under the pointer.
  [[nodiscard]] QString hoverText() const;
  /// The prompt of the pick that is asked for, empty for none.
  [[nodiscard]] QString pickPrompt() const;

  /// Dark or light paper and windows.
  void setPaper(Paper paper);
  /// Opens a drawing; false, with the reason in the status bar and the prompt's pane, when it cannot be read.
  bool openFile(const QString& file);
  bool saveFile(const QString& file);
  bool exportSvg(const QString& file);
  bool exportPdf(const QString& file);
  /// Whether the drawing differs from its file.
  [[nodiscard]] bool isChanged() const;

  [[nodiscard]] EntityPick pickEntity(const std::wstring& prompt, bool emptyIsAllowed) override;
  /// Lets the user click a place; nothing when he leaves by Escape.
  [[nodiscard]] std::optional<KvPoint3d> pickPoint(const QString& prompt);

protected:
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  struct CommandRow;
  struct MenuRow;
  static const std::vector<MenuRow>& menuRows();

  // Building up, main_window.cpp.
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
  void tell(const CommandOutcome& outcome, const QString& name);
  [[nodiscard]] QString factsText(KvDbHandle entity) const;

  // Commands, main_window_commands.cpp.
  void start(const CommandRow& row);
  void runForm(const QString& name, const std::wstring& form);
  void newCircuit();
  void buildFromHistory();
  void buildSaved(const brenvolt::SavedConfiguration& saved, const std::wstring& workbookPath);
  void undo();
  void redo();
  void zoomExtents();
  void zoomWindow();
  void zoomIn();
  void zoomOut();
  void toggleGrid();
  void toggleDark();
  void leave();
  void showHelp();
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
  void print();
  [[nodiscard]] bool takeDrawing(const QString& file);
  [[nodiscard]] bool mayLeaveDrawing();
  [[nodiscard]] QString askSaveName(HostText title, HostText type, const QString& ending);
  bool report(const Fault& fault, HostText text, const QString& file);
  void remember(const QString& file);
  void fillRecent();
  void chooseLanguage(const QString& language);

  [[nodiscard]] DrawingDatabase& drawing() const;
  [[nodiscard]] UserSettings& settings() const;
  [[nodiscard]] QString setting(const wchar_t* name) const;
  void setSetting(const wchar_t* name, const QString& value);

  SiteRun& site_;
  QtWindows& windows_;
  const HostTexts& texts_;
  CommandRunner runner_;
  DrawingView* view_ = nullptr;
  QLabel* banner_ = nullptr;
  PromptPane* prompt_ = nullptr;
  LayerPanel* layers_ = nullptr;
  QLabel* hover_ = nullptr;
  QLabel* place_ = nullptr;
  QMenu* recent_ = nullptr;
  std::map<HostText, QAction*> actions_;
  QTimer watch_; ///< looks whether the running command has changed the drawing
  std::uint64_t shownChange_ = 0;
  std::uint64_t savedChange_ = 0;
  QString file_;

  QEventLoop* pickLoop_ = nullptr; ///< of the pick that waits for an answer
  EntityPick pick_;                ///< the answer
  bool isEmptyPickAllowed_ = false;
  bool closesAfterRun_ = false;
};

} // namespace simhost
