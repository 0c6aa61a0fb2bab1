// What the commands of the table do that are not LISP of the site.
#include "simhost/gui/main_window.h"

#include "simhost/gui/circuit_panel.h"
#include "simhost/qt/context_help.h"

#include <QAction>
#include <QMessageBox>

namespace simhost {
namespace {

constexpr double menuZoom = 1.5;

} // namespace

void MainWindow::bindCommands() {
  const auto bind = [this](HostText command, std::function<void()> action) {
    menus_.bind(command, std::move(action));
  };
  bind(HostText::newDrawing, [this] { files_.startNew(); });
  bind(HostText::open, [this] {
    if (!files_.mayLeave()) return;
    const QString file = files_.chooseFile();
    if (readSet(file))
      sets_.open(file);
    else if (!file.isEmpty())
      files_.open(file);
  });
  bind(HostText::openSet, [this] { sets_.askOpen(); });
  bind(HostText::save, [this] { files_.save(); });
  bind(HostText::saveAs, [this] { files_.saveAs(); });
  bind(HostText::exportSvg, [this] { paper_.askExportSvg(); });
  bind(HostText::exportPdf, [this] { paper_.askExportPdf(); });
  bind(HostText::pageSetup, [this] { paper_.askPageSetup(); });
  bind(HostText::printPreview, [this] { paper_.preview(); });
  bind(HostText::print, [this] { paper_.print(); });
  bind(HostText::quit, [this] { close(); });

  const auto showStep = [this](const QString& name, HostText nothing, HostText done) {
    refreshAll();
    status_.say(name.isEmpty() ? texts_(nothing) : texts_(done, {name}));
  };
  bind(HostText::undo, [=, this] { showStep(runner_.undo(), HostText::nothingToUndo, HostText::undone); });
  bind(HostText::redo, [=, this] { showStep(runner_.redo(), HostText::nothingToRedo, HostText::redone); });
  bind(HostText::copyPicture, [this] { paper_.copyPicture(); });

  bind(HostText::zoomExtents, [this] { view_->port().fit(); });
  bind(HostText::zoomWindow, [this] {
    view_->setMode(DrawingView::Mode::zoomWindow);
    status_.say(texts_(HostText::corner));
  });
  bind(HostText::zoomIn, [this] { view_->port().zoomBy(menuZoom); });
  bind(HostText::zoomOut, [this] { view_->port().zoomBy(1.0 / menuZoom); });
  bind(HostText::grid, [this] { view_->port().setGrid(action(HostText::grid).isChecked()); });
  bind(HostText::darkPaper, [this] {
    const bool isDark = action(HostText::darkPaper).isChecked();
    setPaper(isDark ? Paper::dark : Paper::light);
    settings_.setValue(L"paper", isDark ? QStringLiteral("dark") : QStringLiteral("light"));
  });

  bind(HostText::newCircuit, [this] { placing_.newCircuit(); });
  bind(HostText::buildFromHistory, [this] { placing_.buildFromHistory(); });
  bind(HostText::editWireSize, [this] { circuitCommands_.editWireSize(); });
  bind(HostText::configureCircuit, [this] { circuitCommands_.configure(); });
  bind(HostText::moveCircuit, [this] { circuitCommands_.move(); });
  bind(HostText::copyCircuit, [this] { circuitCommands_.copy(); });
  bind(HostText::deleteCircuit, [this] { circuitCommands_.erase(); });
  bind(HostText::saveConfiguration, [this] { circuitCommands_.saveConfiguration(); });
  bind(HostText::circuitReport, [this] { circuitCommands_.report(); });
  bind(HostText::findCircuit, [this] {
    WindowPanels::show(panels_.circuits());
    panels_.circuits().startSearch();
  });
  bind(HostText::checkSite, [this] { check_.check(); });

  bind(HostText::openProject, [this] { projects_.askOpen(); });
  bind(HostText::newProject, [this] { projects_.askNew(); });
  bind(HostText::closeProject, [this] { projects_.open({}); });

  bind(HostText::help, [this] { static_cast<void>(windows_.showHelp(L"main_window")); });
  bind(HostText::firstCircuit, [this] { static_cast<void>(windows_.openManual(L"first_circuit", this)); });
  bind(HostText::whatsThis, [] { ContextHelp::begin(); });
  bind(HostText::about, [this] {
    QMessageBox::about(this, QStringLiteral("ZanBrenvolt"), texts_(HostText::aboutText));
  });
}

} // namespace simhost
