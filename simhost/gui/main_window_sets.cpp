// The main window's part in sets: one is opened as a list of its sheets, beside the sheet at work.
#include "simhost/gui/main_window.h"
#include "simhost/gui/set_panel.h"

#include <QAction>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>

namespace simhost {

void MainWindow::buildSetPanel() {
  setPanel_ = new SetPanel(texts_, this);
  setPanel_->setWhatsThis(texts_(helpOf(HostText::setPanel)));
  auto* dock = new QDockWidget(texts_(HostText::setTitle), this);
  dock->setObjectName(QStringLiteral("setDock"));
  dock->setWidget(setPanel_);
  addDockWidget(Qt::LeftDockWidgetArea, dock);
  dock->hide();
  QAction* toggle = dock->toggleViewAction();
  toggle->setText(texts_(HostText::setPanel));
  toggle->setWhatsThis(texts_(helpOf(HostText::setPanel)));
  actions_[HostText::setPanel] = toggle;
  setPanel_->onOpen = [this](const QString& file) {
    if (!mayLeaveDrawing() || !openFile(file)) return;
    view_->setFocus();
  };
  if (set_) setPanel_->setSheets(*set_);
  setPanel_->showOpen(file_);
}

bool MainWindow::openSet(const QString& file) {
  const std::optional<DrawingSet> found = readSet(file);
  if (!found) {
    say(texts_(HostText::notASet, {file}));
    return false;
  }
  set_ = found;
  setPanel_->setSheets(*set_);
  setPanel_->showOpen(file_);
  qobject_cast<QDockWidget*>(setPanel_->parentWidget())->show();
  remember(L"recentSets", set_->file);
  const QString name = set_->title.isEmpty() ? QFileInfo(file).dir().dirName() : set_->title;
  say(texts_(HostText::setOpened, {name, QString::number(set_->sheets.size())}));
  return true;
}

void MainWindow::askOpenSet() {
  const QString file = QFileDialog::getOpenFileName(
      this, texts_(HostText::openSetTitle), set_ ? set_->file : QFileInfo(file_).path(),
      texts_(HostText::sets));
  if (!file.isEmpty()) openSet(file);
}

} // namespace simhost
