// The main window's part in the check of a site: the panel, the offer, and the places that findings name.
#include "simhost/gui/check_panel.h"
#include "simhost/gui/main_window.h"
#include "simhost/host/session.h"
#include "simhost/site/site_run.h"

#include <QAction>
#include <QDesktopServices>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QStatusBar>
#include <QToolButton>
#include <QUrl>

namespace simhost {

namespace {

constexpr double shownAround = 60.0; ///< drawing units on each side of a place

} // namespace

void MainWindow::buildCheckPanel() {
  const QString folder = QString::fromStdString(site_.session().options().siteFolder.string());
  const QString site = folder.isEmpty() ? QString() : QFileInfo(folder).absoluteFilePath();
  checkPanel_ =
      new CheckPanel(texts_, site, QString::fromStdString(site_.session().options().language), this);
  auto* dock = new QDockWidget(texts_(HostText::checkTitle), this);
  dock->setObjectName(QStringLiteral("checkDock"));
  dock->setWidget(checkPanel_);
  addDockWidget(Qt::BottomDockWidgetArea, dock);
  dock->hide();
  actions_[HostText::checkPanel] = dock->toggleViewAction();
  actions_[HostText::checkPanel]->setText(texts_(HostText::checkPanel));
  actions_[HostText::checkPanel]->setWhatsThis(texts_(helpOf(HostText::checkPanel)));
  checkPanel_->setWhatsThis(texts_(helpOf(HostText::checkPanel)));

  auto* offer = new QToolButton(this);
  offer->setObjectName(QStringLiteral("offerCheck"));
  offer->setText(texts_(HostText::checkOffer));
  offer->setAccessibleName(texts_(HostText::checkOffer));
  offer->setAutoRaise(true);
  statusBar()->addPermanentWidget(offer);
  connect(offer, &QToolButton::clicked, this, [this] { checkSite(); });
  const std::wstring key = L"checked " + site.toStdWString();
  offer->setVisible(!site.isEmpty() && setting(key.c_str()) != siteFingerprint(site));

  checkPanel_->onOpen = [this, site](const SiteFinding& finding) {
    openFinding(QDir(site).filePath(finding.file), finding.place, finding.position);
  };
  checkPanel_->onDone = [this, offer, key, site](bool isClean) {
    offer->hide();
    if (isClean) setSetting(key.c_str(), siteFingerprint(site));
  };
}

void MainWindow::checkSite() {
  auto* dock = qobject_cast<QDockWidget*>(checkPanel_->parentWidget());
  dock->show();
  dock->raise();
  if (!checkPanel_->isRunning()) checkPanel_->start();
}

/// A drawing is opened here; what another program writes is opened there, and the status bar names the place.
void MainWindow::openFinding(
    const QString& file, const QString& place, const std::optional<QPointF>& position) {
  if (!QFileInfo::exists(file)) return say(texts_(HostText::checkNoFile, {file}));
  if (!file.endsWith(QStringLiteral(".json"))) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(file));
    return say(place);
  }
  if (!mayLeaveDrawing() || !openFile(file)) return;
  if (position)
    view_->zoomTo(
        {position->x() - shownAround, position->y() - shownAround, position->x() + shownAround,
         position->y() + shownAround});
  say(place);
}

} // namespace simhost
