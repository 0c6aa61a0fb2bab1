// The main window's commands on projects: the database in which circuits leave their records.
#include "simhost/gui/main_window.h"
#include "simhost/host/errors.h"
#include "simhost/host/session.h"
#include "simhost/qt/qt_text.h"
#include "simhost/site/project_database.h"
#include "simhost/site/site_run.h"

#include <QFileDialog>
#include <QFileInfo>

namespace simhost {

void MainWindow::tellFault(const char* reason) {
  const QString text = QString::fromUtf8(reason);
  site_.session().commandLine().printLine(fromQt(text));
  say(texts_(HostText::notDone, {text}));
}

bool MainWindow::openProject(const QString& file) {
  if (runner_.isBusy()) {
    say(texts_(HostText::busy));
    return false;
  }
  const QString full = file.isEmpty() ? QString() : QFileInfo(file).absoluteFilePath();
  try {
    runner_.openProject(full.toStdString());
  } catch (const BadInput& error) {
    tellFault(error.what());
    return false;
  }
  if (!full.isEmpty()) remember(L"recentProjects", full);
  refreshActions();
  say(full.isEmpty() ? texts_(HostText::projectClosed) : texts_(HostText::projectOpened, {full}));
  return true;
}

void MainWindow::askOpenProject() {
  const QString file = QFileDialog::getOpenFileName(
      this, texts_(HostText::openProjectTitle), QFileInfo(QString::fromStdString(site_.project())).path(),
      texts_(HostText::projects));
  if (!file.isEmpty()) openProject(file);
}

void MainWindow::askNewProject() {
  QFileDialog dialog(this, texts_(HostText::newProjectTitle));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setNameFilter(texts_(HostText::projects));
  dialog.setDefaultSuffix(QStringLiteral("db"));
  // A project that exists is never written over, so there is nothing to confirm.
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  if (dialog.exec() != QDialog::Accepted) return;
  const QString file = dialog.selectedFiles().value(0);
  try {
    makeProject(site_.session().options().siteFolder, file.toStdString());
  } catch (const std::runtime_error& error) {
    return tellFault(error.what());
  }
  openProject(file);
}

void MainWindow::closeProject() {
  openProject({});
}

} // namespace simhost
