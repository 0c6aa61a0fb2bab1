// Pages, and pictures of drawings.
#include "simhost/gui/paper_commands.h"

#include "simhost/drawing/svg.h"
#include "simhost/gui/drawing_files.h"
#include "simhost/host/errors.h"
#include "simhost/host/session.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/window_places.h"
#include "simhost/site/code_standard.h"
#include "simhost/site/site_run.h"

#include <QClipboard>
#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QSvgRenderer>

namespace simhost {
namespace {

QString titleKey(const QString& file) {
  return QStringLiteral("title ") + QFileInfo(file).absoluteFilePath();
}

} // namespace

QString PaperCommands::title() const {
  const QString& file = files_.file();
  const QString given = file.isEmpty() ? QString() : services_.settings.value(fromQt(titleKey(file)).c_str());
  return given.isEmpty() ? files_.baseName() : given;
}

std::optional<PaperPage> PaperCommands::page() const {
  const QString today = QDate::currentDate().toString(Qt::ISODate);
  try {
    return makePage(
        services_.drawing(), PageSetup::of(services_.settings.value(L"page")),
        services_.site.session().options().siteFolder / "frames", title(), today,
        toQt(sessionStandard(services_.site.interpreter())));
  } catch (const BadInput& error) {
    services_.status.showFault(QString::fromUtf8(error.what()));
    return std::nullopt;
  }
}

bool PaperCommands::exportSvg(const QString& file) {
  return services_.status.showWritten(saveSvg(services_.drawing(), fromQt(file)), HostText::exported, file);
}

bool PaperCommands::exportPdf(const QString& file) {
  const std::optional<PaperPage> shown = page();
  if (!shown) return false;
  PageResult result = PageResult::whole;
  if (!services_.status.showWritten(
          savePdf(services_.drawing(), fromQt(file), *shown, &result), HostText::exported, file))
    return false;
  if (result == PageResult::cutOff)
    services_.status.say(
        services_.texts(HostText::pageCutOff, {services_.texts(HostText::exported, {file})}));
  return true;
}

void PaperCommands::askExportSvg() {
  const QString file = files_.askSaveName(HostText::exportSvg, HostText::pictures, QStringLiteral("svg"));
  if (!file.isEmpty()) exportSvg(file);
}

void PaperCommands::askExportPdf() {
  const QString file = files_.askSaveName(HostText::exportPdf, HostText::documents, QStringLiteral("pdf"));
  if (!file.isEmpty()) exportPdf(file);
}

void PaperCommands::askPageSetup() {
  const std::filesystem::path& site = services_.site.session().options().siteFolder;
  QStringList frames;
  if (!site.empty())
    for (const QString& name : QDir(QString::fromStdString((site / "frames").string()))
                                   .entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name))
      frames.append(QFileInfo(name).completeBaseName());
  PageTitle given{title(), hasOwnFrame(services_.drawing())};
  const auto chosen = simhost::askPageSetup(
      PageSetup::of(services_.settings.value(L"page")), frames, given, services_.texts, &services_.window);
  if (!chosen) return;
  services_.settings.setValue(L"page", chosen->text());
  // A drawing without a file has no name to keep its title under.
  if (const QString& file = files_.file(); !file.isEmpty() && given.title != title())
    services_.settings.setValue(fromQt(titleKey(file)).c_str(), given.title);
}

void PaperCommands::preview() {
  const std::optional<PaperPage> shown = page();
  if (!shown) return;
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageLayout(shown->layout);
  printer.setFullPage(shown->frame != nullptr || shown->isSheet);
  QPrintPreviewDialog preview(&printer, &services_.window);
  preview.setObjectName(QStringLiteral("printPreview"));
  preview.setWindowTitle(services_.texts(HostText::previewTitle));
  QObject::connect(&preview, &QPrintPreviewDialog::paintRequested, &preview, [this, &shown](QPrinter* paper) {
    showResult(paintPage(services_.drawing(), *paper, *shown));
  });
  preview.resize(services_.window.size());
  fitToScreen(preview);
  preview.exec();
}

void PaperCommands::print() {
  if (QPrinterInfo::availablePrinters().isEmpty())
    return services_.status.say(services_.texts(HostText::cannotPrint));
  const std::optional<PaperPage> shown = page();
  if (!shown) return;
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageLayout(shown->layout);
  printer.setFullPage(shown->frame != nullptr || shown->isSheet);
  printer.setDocName(shown->title);
  QPrintDialog dialog(&printer, &services_.window);
  if (dialog.exec() == QDialog::Accepted) showResult(paintPage(services_.drawing(), printer, *shown));
}

void PaperCommands::showResult(PageResult result) {
  if (result == PageResult::notPainted) services_.status.say(services_.texts(HostText::cannotPrint));
  if (result == PageResult::cutOff)
    services_.status.say(services_.texts(HostText::pageCutOff, {services_.texts(HostText::previewTitle)}));
}

void PaperCommands::copyPicture() {
  QSvgRenderer renderer(
      QByteArray::fromStdString(renderSvg(services_.drawing(), services_.drawing().currentSpace()).svg));
  if (!renderer.isValid()) return services_.status.say(services_.texts(HostText::tooManyShapes));
  constexpr int longSide = 3000; // sharp on a page
  QImage picture(
      renderer.defaultSize().scaled(longSide, longSide, Qt::KeepAspectRatio), QImage::Format_RGB32);
  picture.fill(Qt::white);
  QPainter painter(&picture);
  renderer.render(&painter);
  painter.end();
  QGuiApplication::clipboard()->setImage(picture);
  services_.status.say(services_.texts(HostText::pictureCopied));
}

} // namespace simhost
