// The main window's commands that put the drawing on paper: page setup, preview, print and PDF share one page.
#include "simhost/gui/main_window.h"

#include "simhost/gui/paper_output.h"
#include "simhost/host/errors.h"
#include "simhost/host/session.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/window_places.h"
#include "simhost/site/site_run.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>

namespace simhost {
namespace {

QString titleKey(const QString& file) {
  return QStringLiteral("title ") + QFileInfo(file).absoluteFilePath();
}

} // namespace

QString MainWindow::pageTitle() const {
  const QString name = file_.isEmpty() ? texts_(HostText::untitled) : QFileInfo(file_).completeBaseName();
  const QString given = file_.isEmpty() ? QString() : setting(fromQt(titleKey(file_)).c_str());
  return given.isEmpty() ? name : given;
}

std::optional<PaperPage> MainWindow::paperPage() {
  const QString today = QDate::currentDate().toString(Qt::ISODate);
  try {
    return makePage(
        drawing(), PageSetup::of(setting(L"page")), site_.session().options().siteFolder / "frames",
        pageTitle(), today);
  } catch (const BadInput& error) {
    tellFault(error.what());
    return std::nullopt;
  }
}

bool MainWindow::exportPdf(const QString& file) {
  const std::optional<PaperPage> page = paperPage();
  if (!page) return false;
  PageResult result = PageResult::whole;
  if (!report(savePdf(drawing(), fromQt(file), *page, &result), HostText::exported, file)) return false;
  if (result == PageResult::cutOff) say(texts_(HostText::pageCutOff, {texts_(HostText::exported, {file})}));
  return true;
}

void MainWindow::print() {
  if (QPrinterInfo::availablePrinters().isEmpty()) return say(texts_(HostText::cannotPrint));
  const std::optional<PaperPage> page = paperPage();
  if (!page) return;
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageLayout(page->layout);
  printer.setFullPage(page->frame != nullptr || page->isSheet);
  printer.setDocName(page->title);
  QPrintDialog dialog(&printer, this);
  if (dialog.exec() == QDialog::Accepted) tellPage(paintPage(drawing(), printer, *page));
}

void MainWindow::tellPage(PageResult result) {
  if (result == PageResult::notPainted) say(texts_(HostText::cannotPrint));
  if (result == PageResult::cutOff) say(texts_(HostText::pageCutOff, {texts_(HostText::previewTitle)}));
}

void MainWindow::askPageSetup() {
  const std::filesystem::path& site = site_.session().options().siteFolder;
  QStringList frames;
  if (!site.empty())
    for (const QString& name : QDir(QString::fromStdString((site / "frames").string()))
                                   .entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name))
      frames.append(QFileInfo(name).completeBaseName());
  PageTitle title{pageTitle(), hasOwnFrame(drawing())};
  const auto chosen = simhost::askPageSetup(PageSetup::of(setting(L"page")), frames, title, texts_, this);
  if (!chosen) return;
  setSetting(L"page", chosen->text());
  // A drawing without a file has no name to keep its title under.
  if (!file_.isEmpty() && title.title != pageTitle())
    setSetting(fromQt(titleKey(file_)).c_str(), title.title);
}

void MainWindow::previewPrint() {
  const std::optional<PaperPage> page = paperPage();
  if (!page) return;
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageLayout(page->layout);
  printer.setFullPage(page->frame != nullptr || page->isSheet);
  QPrintPreviewDialog preview(&printer, this);
  preview.setObjectName(QStringLiteral("printPreview"));
  preview.setWindowTitle(texts_(HostText::previewTitle));
  connect(&preview, &QPrintPreviewDialog::paintRequested, this, [this, &page](QPrinter* paper) {
    tellPage(paintPage(drawing(), *paper, *page));
  });
  preview.resize(size());
  fitToScreen(preview);
  preview.exec();
}

} // namespace simhost
