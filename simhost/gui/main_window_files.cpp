// The main window's commands on files: drawings, pictures, pages, and what was open last.
#include "simhost/gui/main_window.h"

#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/svg.h"
#include "simhost/gui/open_file.h"
#include "simhost/gui/set_panel.h"
#include "simhost/host/session.h"
#include "simhost/qt/qt_text.h"
#include "simhost/site/site_run.h"

#include <QClipboard>
#include <QDateTime>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QLocale>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPushButton>
#include <QSvgRenderer>

#include <algorithm>
#include <limits>
#include <vector>

namespace simhost {
namespace {

constexpr qsizetype rememberedFiles = 8;

} // namespace

bool MainWindow::takeDrawing(const QString& file) {
  try {
    runner_.open(file.toStdString());
  } catch (const BadInput& error) {
    tellFault(error.what());
    return false;
  }
  open_->removeCopy();
  file_ = file;
  open_->take(file);
  isReadOnly_ = false;
  savedState_ = drawing().undoLog().state();
  shownChange_ = drawing().undoLog().changeCount() + 1;
  shownCircuits_ = shownChange_;
  view_->select(std::nullopt);
  selectCircuit({});
  refreshScene();
  refreshCircuits();
  view_->zoomExtents();
  setPanel_->showOpen(file_);
  refreshActions();
  return true;
}

bool MainWindow::openFile(const QString& file) {
  if (runner_.isBusy()) {
    say(texts_(HostText::busy));
    return false;
  }
  if (!mayOpen(file)) return false;
  const bool isReadOnly = isReadOnly_;
  if (!takeDrawing(file)) return false;
  isReadOnly_ = isReadOnly;
  refreshTitle();
  recoverCopy();
  remember(L"recent", file);
  say(texts_(HostText::opened, {file}));
  return true;
}

bool MainWindow::saveFile(const QString& file) {
  if (!report(saveDrawing(drawing(), fromQt(file)), HostText::saved, file)) return false;
  open_->removeCopy();
  file_ = file;
  isReadOnly_ = false;
  open_->take(file);
  savedState_ = drawing().undoLog().state();
  runner_.noteSaved();
  remember(L"recent", file);
  refreshTitle();
  return true;
}

bool MainWindow::exportSvg(const QString& file) {
  return report(saveSvg(drawing(), fromQt(file)), HostText::exported, file);
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
  if (readSet(file))
    openSet(file);
  else if (!file.isEmpty())
    openFile(file);
}

void MainWindow::save() {
  if (file_.isEmpty() || isReadOnly_) return saveAs();
  if (mayOverwrite()) saveFile(file_);
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

void MainWindow::copyPicture() {
  QSvgRenderer renderer(QByteArray::fromStdString(renderSvg(drawing(), drawing().currentSpace()).svg));
  if (!renderer.isValid()) return say(texts_(HostText::tooManyShapes));
  constexpr int longSide = 3000; // sharp on a page
  QImage picture(
      renderer.defaultSize().scaled(longSide, longSide, Qt::KeepAspectRatio), QImage::Format_RGB32);
  picture.fill(Qt::white);
  QPainter painter(&picture);
  renderer.render(&painter);
  painter.end();
  QGuiApplication::clipboard()->setImage(picture);
  say(texts_(HostText::pictureCopied));
}

int MainWindow::ask(HostText title, const QString& text, std::initializer_list<HostText> answers) {
  QMessageBox box(QMessageBox::Question, texts_(title), text, QMessageBox::NoButton, this);
  box.setTextFormat(Qt::PlainText);
  std::vector<QAbstractButton*> buttons;
  for (const HostText answer : answers)
    buttons.push_back(box.addButton(
        texts_(answer), answer == HostText::keepEditing ? QMessageBox::RejectRole : QMessageBox::ActionRole));
  box.setDefaultButton(qobject_cast<QPushButton*>(buttons.front()));
  isAsking_ = true;
  box.exec();
  isAsking_ = false;
  const auto clicked = std::find(buttons.begin(), buttons.end(), box.clickedButton());
  return clicked == buttons.end() ? -1 : static_cast<int>(clicked - buttons.begin());
}

bool MainWindow::mayOpen(const QString& file) {
  isReadOnly_ = false;
  if (QFileInfo(file).absoluteFilePath() == QFileInfo(file_).absoluteFilePath()) return true;
  const QString user = OpenFile::userElsewhere(file);
  if (user.isEmpty()) return true;
  const int answer =
      ask(HostText::openElsewhereTitle, texts_(HostText::openElsewhere, {QFileInfo(file).fileName(), user}),
          {HostText::openReadOnly, HostText::openAnyway, HostText::keepEditing});
  isReadOnly_ = answer == 0;
  return answer == 0 || answer == 1;
}

void MainWindow::askAboutFile() {
  // The window already has the file: only a lock of another program means another window.
  if (!file_.isEmpty() && open_->copy().isEmpty() && !OpenFile::userElsewhere(file_).isEmpty()) {
    const int answer =
        ask(HostText::openElsewhereTitle,
            texts_(HostText::openElsewhere, {QFileInfo(file_).fileName(), OpenFile::userElsewhere(file_)}),
            {HostText::openReadOnly, HostText::openAnyway});
    isReadOnly_ = answer != 1;
    refreshTitle();
  }
  recoverCopy();
}

void MainWindow::recoverCopy() {
  const QFileInfo copy(open_->copy());
  if (open_->copy().isEmpty() || !copy.exists()) return;
  const QString name = file_.isEmpty() ? texts_(HostText::untitled) : QFileInfo(file_).fileName();
  const int answer = ask(
      HostText::recoverTitle,
      texts_(
          HostText::recoverQuestion, {name, QLocale().toString(copy.lastModified(), QLocale::ShortFormat)}),
      {HostText::recover, HostText::dropCopy});
  // Escape decides nothing: the program asks about the copy again next time; this run uses another name.
  if (answer < 0) {
    QFile::rename(open_->copy(), open_->copy() + QLatin1Char('~'));
    return;
  }
  open_->claimCopy();
  if (answer == 1) return open_->removeCopy();
  const QString file = file_;
  try {
    runner_.open(open_->copy().toStdString());
  } catch (const BadInput& error) {
    return tellFault(error.what());
  }
  file_ = file;
  savedState_ = {}; // no state of this drawing's log: it is not what the file holds
  savedState_.unlogged = std::numeric_limits<std::uint64_t>::max();
  shownChange_ = drawing().undoLog().changeCount() + 1;
  shownCircuits_ = shownChange_;
  view_->select(std::nullopt);
  selectCircuit({});
  refreshScene();
  refreshCircuits();
  view_->zoomExtents();
  refreshActions();
}

void MainWindow::keepCopy() {
  const UndoLog::State state = drawing().undoLog().state();
  // Unsaved work of an earlier run is not overwritten while the user is asked about it.
  if (open_->copy().isEmpty() || runner_.isBusy() || isAsking_) return;
  if (!isChanged()) {
    // Undone to what the file holds: nothing to recover.
    open_->removeCopy();
    copiedState_ = state;
    return;
  }
  if (state == copiedState_ && QFileInfo::exists(open_->copy())) return;
  copiedState_ = state;
  open_->claimCopy();
  if (const Fault fault = saveDrawing(drawing(), fromQt(open_->copy())))
    site_.session().commandLine().printLine(*fault);
}

bool MainWindow::mayOverwrite() {
  if (!open_->isChangedElsewhere()) return true;
  const int answer =
      ask(HostText::changedElsewhereTitle, texts_(HostText::changedElsewhere, {QFileInfo(file_).fileName()}),
          {HostText::saveAs, HostText::reload, HostText::overwrite, HostText::keepEditing});
  if (answer == 0) saveAs();
  if (answer == 1) static_cast<void>(takeDrawing(file_));
  return answer == 2;
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
  if (box.clickedButton() == discards) {
    runner_.noteDropped();
    return true;
  }
  if (box.clickedButton() != saves) return false;
  save();
  return !isChanged();
}

void MainWindow::remember(const wchar_t* list, const QString& file) {
  const QString full = QFileInfo(file).absoluteFilePath();
  QStringList files = setting(list).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  files.removeAll(full);
  files.prepend(full);
  setSetting(list, files.mid(0, rememberedFiles).join(QLatin1Char('\n')));
  fillRecent();
}

void MainWindow::fillRecent() {
  fillMenu(*recent_, L"recent", [this](const QString& file) {
    if (mayLeaveDrawing()) openFile(file);
  });
  fillMenu(*recentProjects_, L"recentProjects", [this](const QString& file) { openProject(file); });
}

void MainWindow::fillMenu(QMenu& menu, const wchar_t* list, const std::function<void(const QString&)>& open) {
  menu.clear();
  for (const QString& file : setting(list).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
    menu.addAction(
        QString(file).replace(QLatin1Char('&'), QStringLiteral("&&")), this, [open, file] { open(file); });
  menu.setEnabled(!menu.isEmpty());
}

} // namespace simhost
