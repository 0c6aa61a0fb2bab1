// Opening and making projects.
#include "simhost/gui/project_commands.h"

#include "simhost/host/errors.h"
#include "simhost/host/session.h"
#include "simhost/site/project_database.h"
#include "simhost/site/site_run.h"

#include <QFileDialog>
#include <QFileInfo>

namespace simhost {

bool ProjectCommands::open(const QString& file) {
  if (services_.runner.isBusy()) {
    services_.status.sayBusy();
    return false;
  }
  const QString full = file.isEmpty() ? QString() : QFileInfo(file).absoluteFilePath();
  try {
    services_.runner.openProject(full.toStdString());
  } catch (const BadInput& error) {
    services_.status.showFault(QString::fromUtf8(error.what()));
    return false;
  }
  if (!full.isEmpty()) services_.settings.remember(L"recentProjects", full);
  onChanged();
  services_.status.say(
      full.isEmpty() ? services_.texts(HostText::projectClosed)
                     : services_.texts(HostText::projectOpened, {full}));
  return true;
}

void ProjectCommands::askOpen() {
  const QString file = QFileDialog::getOpenFileName(
      &services_.window, services_.texts(HostText::openProjectTitle),
      QFileInfo(QString::fromStdString(services_.site.project())).path(),
      services_.texts(HostText::projects));
  if (!file.isEmpty()) open(file);
}

void ProjectCommands::askNew() {
  QFileDialog dialog(&services_.window, services_.texts(HostText::newProjectTitle));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setNameFilter(services_.texts(HostText::projects));
  dialog.setDefaultSuffix(QStringLiteral("db"));
  // A project that exists is never written over, so there is nothing to confirm.
  dialog.setOption(QFileDialog::DontConfirmOverwrite);
  if (dialog.exec() != QDialog::Accepted) return;
  const QString file = dialog.selectedFiles().value(0);
  try {
    makeProject(services_.site.session().options().siteFolder, file.toStdString());
  } catch (const std::runtime_error& error) {
    return services_.status.showFault(QString::fromUtf8(error.what()));
  }
  open(file);
}

} // namespace simhost
