// The offer and the places.
#include "simhost/gui/check_commands.h"

#include "simhost/gui/check_panel.h"
#include "simhost/gui/drawing_files.h"
#include "simhost/gui/drawing_view.h"
#include "simhost/host/session.h"
#include "simhost/site/site_run.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QStatusBar>
#include <QToolButton>
#include <QUrl>

namespace simhost {
namespace {

constexpr double shownAround = 60.0; ///< drawing units on each side of a place

QString fullPath(const std::filesystem::path& folder) {
  return folder.empty() ? QString() : QFileInfo(QString::fromStdString(folder.string())).absoluteFilePath();
}

} // namespace

CheckCommands::CheckCommands(const WindowServices& services, DrawingView& view, DrawingFiles& files)
    : services_(services), view_(view), files_(files),
      site_(fullPath(services.site.session().options().siteFolder)) {}

void CheckCommands::attach(CheckPanel& panel, QStatusBar& bar) {
  panel_ = &panel;
  auto* offer = new QToolButton(&bar);
  offer->setObjectName(QStringLiteral("offerCheck"));
  offer->setText(services_.texts(HostText::checkOffer));
  offer->setAccessibleName(services_.texts(HostText::checkOffer));
  offer->setAutoRaise(true);
  bar.addPermanentWidget(offer);
  QObject::connect(offer, &QToolButton::clicked, offer, [this] { check(); });
  const std::wstring key = L"checked " + site_.toStdWString();
  offer->setVisible(!site_.isEmpty() && services_.settings.value(key.c_str()) != siteFingerprint(site_));

  panel.onOpen = [this](const SiteFinding& finding) { openFinding(finding); };
  panel.onDone = [this, offer, key](bool isClean) {
    offer->hide();
    if (isClean) services_.settings.setValue(key.c_str(), siteFingerprint(site_));
  };
}

void CheckCommands::check() {
  if (onStarted) onStarted();
  if (!panel_->isRunning()) panel_->start();
}

/// A drawing is opened here; what another program writes is opened there, and the status line names the place.
void CheckCommands::openFinding(const SiteFinding& finding) {
  const QString file = QDir(site_).filePath(finding.file);
  if (!QFileInfo::exists(file)) return services_.status.say(services_.texts(HostText::checkNoFile, {file}));
  if (!file.endsWith(QStringLiteral(".json"))) {
    QDesktopServices::openUrl(QUrl::fromLocalFile(file));
    return services_.status.say(finding.place);
  }
  const QString place = finding.place; // opening the drawing may renew the list
  const std::optional<QPointF> at = finding.position;
  if (!files_.mayLeave() || !files_.open(file)) return;
  if (at)
    view_.port().zoomTo(
        {at->x() - shownAround, at->y() - shownAround, at->x() + shownAround, at->y() + shownAround});
  services_.status.say(place);
}

} // namespace simhost
