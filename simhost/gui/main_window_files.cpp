// The main window's commands on files: drawings, pictures, pages, and what was open last.
#include "simhost/gui/main_window.h"

#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/svg.h"
#include "simhost/gui/paper_output.h"
#include "simhost/host/session.h"
#include "simhost/qt/qt_text.h"
#include "simhost/site/site_run.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QPushButton>

namespace simhost {
namespace {

constexpr qsizetype rememberedFiles = 8;

} // namespace

bool MainWindow::takeDrawing(const QString& file) {
  try {
    runner_.open(file.toStdString());
  } catch (const BadInput& error) {
    site_.session().commandLine().printLine(fromQt(QString::fromUtf8(error.what())));
    say(texts_(HostText::notDone, {QString::fromUtf8(error.what())}));
    return false;
  }
  file_ = file;
  savedChange_ = drawing().undoLog().changeCount();
  shownChange_ = savedChange_ + 1;
  view_->select(std::nullopt);
  refreshScene();
  view_->zoomExtents();
  refreshActions();
  return true;
}

bool MainWindow::openFile(const QString& file) {
  if (runner_.isBusy()) {
    say(texts_(HostText::busy));
    return false;
  }
  if (!takeDrawing(file)) return false;
  remember(file);
  say(texts_(HostText::opened, {file}));
  return true;
}

bool MainWindow::saveFile(const QString& file) {
  if (!report(saveDrawing(drawing(), fromQt(file)), HostText::saved, file)) return false;
  file_ = file;
  savedChange_ = drawing().undoLog().changeCount();
  remember(file);
  refreshTitle();
  return true;
}

bool MainWindow::exportSvg(const QString& file) {
  return report(saveSvg(drawing(), fromQt(file)), HostText::exported, file);
}

bool MainWindow::exportPdf(const QString& file) {
  return report(savePdf(drawing(), fromQt(file)), HostText::exported, file);
}

bool MainWindow::report(const Fault& fault, HostText text, const QString& file) {
  if (fault) site_.session().commandLine().printLine(*fault);
  say(fault ? texts_(HostText::notDone, {toQt(*fault)}) : texts_(text, {file}));
  return !fault;
}

void MainWindow::newDrawing() {
  if (mayLeaveDrawing()) static_cast<void>(takeDrawing({}));
}

void MainWindow::open() {
  if (!mayLeaveDrawing()) return;
  const QString file = QFileDialog::getOpenFileName(
      this, texts_(HostText::openTitle), QFileInfo(file_).path(), texts_(HostText::drawings));
  if (!file.isEmpty()) openFile(file);
}

void MainWindow::save() {
  if (file_.isEmpty()) return saveAs();
  saveFile(file_);
}

void MainWindow::saveAs() {
  const QString file = askSaveName(HostText::saveTitle, HostText::drawings, QStringLiteral("json"));
  if (!file.isEmpty()) saveFile(file);
}

void MainWindow::askExportSvg() {
  const QString file = askSaveName(HostText::exportSvg, HostText::pictures, QStringLiteral("svg"));
  if (!file.isEmpty()) exportSvg(file);
}

void MainWindow::askExportPdf() {
  const QString file = askSaveName(HostText::exportPdf, HostText::documents, QStringLiteral("pdf"));
  if (!file.isEmpty()) exportPdf(file);
}

QString MainWindow::askSaveName(HostText title, HostText type, const QString& ending) {
  const QFileInfo known(file_);
  const QString base = file_.isEmpty() ? texts_(HostText::untitled) : known.completeBaseName();
  QFileDialog dialog(
      this, texts_(title).remove(QLatin1Char('&')).remove(QStringLiteral("...")), known.path());
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setNameFilter(texts_(type));
  dialog.setDefaultSuffix(ending);
  dialog.selectFile(base + QLatin1Char('.') + ending);
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

void MainWindow::print() {
  if (QPrinterInfo::availablePrinters().isEmpty()) return say(texts_(HostText::cannotPrint));
  QPrinter printer(QPrinter::HighResolution);
  printer.setPageOrientation(QPageLayout::Landscape);
  QPrintDialog dialog(&printer, this);
  if (dialog.exec() != QDialog::Accepted) return;
  if (!paintPage(drawing(), printer)) say(texts_(HostText::cannotPrint));
}

bool MainWindow::mayLeaveDrawing() {
  if (!isChanged()) return true;
  QMessageBox box(this);
  box.setIcon(QMessageBox::Question);
  box.setWindowTitle(texts_(HostText::unsavedTitle));
  const QString name = file_.isEmpty() ? texts_(HostText::untitled) : QFileInfo(file_).fileName();
  box.setText(texts_(HostText::unsavedQuestion, {name}));
  QPushButton* saves = box.addButton(texts_(HostText::save), QMessageBox::AcceptRole);
  QPushButton* discards = box.addButton(texts_(HostText::discard), QMessageBox::DestructiveRole);
  box.addButton(texts_(HostText::keepEditing), QMessageBox::RejectRole);
  box.setDefaultButton(saves);
  box.exec();
  if (box.clickedButton() == discards) return true;
  if (box.clickedButton() != saves) return false;
  save();
  return !isChanged();
}

void MainWindow::remember(const QString& file) {
  const QString full = QFileInfo(file).absoluteFilePath();
  QStringList files = setting(L"recent").split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  files.removeAll(full);
  files.prepend(full);
  setSetting(L"recent", files.mid(0, rememberedFiles).join(QLatin1Char('\n')));
  fillRecent();
}

void MainWindow::fillRecent() {
  recent_->clear();
  for (const QString& file : setting(L"recent").split(QLatin1Char('\n'), Qt::SkipEmptyParts))
    recent_->addAction(QString(file).replace(QLatin1Char('&'), QStringLiteral("&&")), this, [this, file] {
      if (mayLeaveDrawing()) openFile(file);
    });
  recent_->setEnabled(!recent_->isEmpty());
}

void MainWindow::chooseLanguage(const QString& language) {
  setSetting(L"language", language);
  say(texts_(HostText::languageLater));
}

} // namespace simhost
