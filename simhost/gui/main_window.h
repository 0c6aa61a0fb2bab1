// The main window: it puts view, panels, menus and the parts that do the work together, and passes the system's events to
// them. Each part has one topic, and knows the others only as far as its constructor says; what several parts follow from
// (another drawing, a command that ends, a new language) is connected here.
#pragma once

#include "simhost/gui/check_commands.h"
#include "simhost/gui/circuit_commands.h"
#include "simhost/gui/circuit_placing.h"
#include "simhost/gui/circuit_selection.h"
#include "simhost/gui/command_menus.h"
#include "simhost/gui/drawing_files.h"
#include "simhost/gui/drawing_view.h"
#include "simhost/gui/paper_commands.h"
#include "simhost/gui/project_commands.h"
#include "simhost/gui/set_commands.h"
#include "simhost/gui/shown_drawing.h"
#include "simhost/gui/unit_markers.h"
#include "simhost/gui/view_picks.h"
#include "simhost/gui/window_panels.h"

#include <QMainWindow>
#include <QTimer>

#include <memory>

class QLabel;

namespace simhost {

class ContextHelp;
class SiteCircuits;

class MainWindow final : public QMainWindow {
public:
  /// All three must outlive it. The site's document is shown. It is the windows' main window while it lives.
  MainWindow(SiteRun& site, QtWindows& windows, HostTexts& texts);
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;
  ~MainWindow() override;

  [[nodiscard]] DrawingView& view() { return *view_; }
  [[nodiscard]] WindowPanels& panels() { return panels_; }
  [[nodiscard]] CommandRunner& runner() { return runner_; }
  [[nodiscard]] const StatusLine& status() const { return status_; }
  [[nodiscard]] DrawingFiles& files() { return files_; }
  [[nodiscard]] ViewPicks& picks() { return picks_; }
  [[nodiscard]] CircuitSelection& circuits() { return selection_; }
  [[nodiscard]] CircuitPlacing& placing() { return placing_; }
  [[nodiscard]] PaperCommands& paper() { return paper_; }
  [[nodiscard]] ProjectCommands& projects() { return projects_; }
  [[nodiscard]] SetCommands& sets() { return sets_; }
  /// The action of a command.
  [[nodiscard]] QAction& action(HostText command) { return menus_.action(command); }

  /// Dark or light paper and windows.
  void setPaper(Paper paper);

protected:
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

private:
  // Building up, main_window.cpp.
  void buildView();
  void connectParts();
  /// All that shows words, again when the language changes.
  void buildParts();
  void connectPanels();
  void bindCommands(); // main_window_commands.cpp

  // What is shown, main_window.cpp.
  void refreshAll();
  void refreshTitle();
  void refreshActions();
  void showProperties();

  // The language, main_window_language.cpp.
  void chooseLanguage(const QString& language);
  void takeLanguage(const QString& language);

  SiteRun& site_;
  QtWindows& windows_;
  HostTexts& texts_;
  CommandRunner runner_;
  WindowSettings settings_;
  StatusLine status_;
  WindowServices services_;
  DrawingView* view_;
  QLabel* banner_;
  ContextHelp* help_;
  UnitMarkers units_;
  std::unique_ptr<SiteCircuits> siteCircuits_; ///< null without a site
  ShownDrawing shown_;
  DrawingFiles files_;
  CircuitSelection selection_;
  ViewPicks picks_;
  CircuitPlacing placing_;
  CircuitCommands circuitCommands_;
  PaperCommands paper_;
  ProjectCommands projects_;
  SetCommands sets_;
  CheckCommands check_;
  WindowPanels panels_;
  CommandMenus menus_;
  QTimer watch_; ///< looks whether the running command has changed the drawing
  bool closesAfterRun_ = false;
};

} // namespace simhost
