// Opening, saving and recovering, with the questions that protect what is in files.
#include "simhost/gui/drawing_files.h"

#include "simhost/drawing/drawing_file.h"
#include "simhost/host/errors.h"
#include "simhost/host/session.h"
#include "simhost/qt/qt_text.h"
#include "simhost/site/site_run.h"

#include <QDateTime>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>

#include <limits>

namespace simhost {
namespace {

/// How often what is not saved is kept for the case of a crash.
constexpr int copyMilliseconds = 20'000;

/// Where copies of drawings without a file are kept: beside the settings, nowhere without these.
QString copyFolder(SiteRun& site) {
  const std::filesystem::path& settings = site.session().options().settingsFile;
  return settings.empty() ? QString() : QString::fromStdString(settings.parent_path().string());
}

} // namespace

DrawingFiles::DrawingFiles(const WindowServices& services)
    : services_(services), open_(copyFolder(services.site)),
      file_(toQt(services.site.session().documents().current()->fileName())),
      savedState_(services.drawing().undoLog().state()) {
  open_.take(file_);
  copying_.callOnTimeout([this] { keepCopy(); });
  copying_.start(copyMilliseconds);
}

QString DrawingFiles::name() const {
  return file_.isEmpty() ? services_.texts(HostText::untitled) : QFileInfo(file_).fileName();
}

QString DrawingFiles::baseName() const {
  return file_.isEmpty() ? services_.texts(HostText::untitled) : QFileInfo(file_).completeBaseName();
}

bool DrawingFiles::isChanged() const {
  return services_.drawing().undoLog().state() != savedState_;
}

bool DrawingFiles::take(const QString& file) {
  try {
    services_.runner.open(file.toStdString());
  } catch (const BadInput& error) {
    services_.status.showFault(QString::fromUtf8(error.what()));
    return false;
  }
  open_.removeCopy();
  file_ = file;
  open_.take(file);
  isReadOnly_ = false;
  savedState_ = services_.drawing().undoLog().state();
  onTaken();
  return true;
}

bool DrawingFiles::open(const QString& file) {
  if (services_.runner.isBusy()) {
    services_.status.sayBusy();
    return false;
  }
  const std::optional<bool> isReadOnly = mayOpen(file);
  if (!isReadOnly || !take(file)) return false;
  isReadOnly_ = *isReadOnly;
  onState();
  recoverCopy();
  services_.settings.remember(L"recent", file);
  services_.status.say(services_.texts(HostText::opened, {file}));
  return true;
}

bool DrawingFiles::saveTo(const QString& file) {
  const Fault fault = saveDrawing(services_.drawing(), fromQt(file));
  if (!services_.status.showWritten(fault, HostText::saved, file)) return false;
  open_.removeCopy();
  file_ = file;
  isReadOnly_ = false;
  open_.take(file);
  savedState_ = services_.drawing().undoLog().state();
  services_.runner.noteSaved();
  services_.settings.remember(L"recent", file);
  onState();
  return true;
}

void DrawingFiles::startNew() {
  if (mayLeave()) static_cast<void>(take({}));
}

QString DrawingFiles::chooseFile() {
  return QFileDialog::getOpenFileName(
      &services_.window, services_.texts(HostText::openTitle), QFileInfo(file_).path(),
      services_.texts(HostText::drawings));
}

void DrawingFiles::save() {
  if (file_.isEmpty() || isReadOnly_) return saveAs();
  if (mayOverwrite()) saveTo(file_);
}

void DrawingFiles::saveAs() {
  const QString file = askSaveName(HostText::saveTitle, HostText::drawings, QStringLiteral("json"));
  if (!file.isEmpty()) saveTo(file);
}

QString DrawingFiles::askSaveName(HostText title, HostText type, const QString& ending) const {
  QFileDialog dialog(&services_.window, captionOf(services_.texts, title), QFileInfo(file_).path());
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setNameFilter(services_.texts(type));
  dialog.setDefaultSuffix(ending);
  dialog.selectFile(baseName() + QLatin1Char('.') + ending);
  return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

int DrawingFiles::ask(HostText title, const QString& text, std::initializer_list<HostText> answers) {
  isAsking_ = true;
  const int answer = askQuestion(services_, title, text, answers);
  isAsking_ = false;
  return answer;
}

std::optional<bool> DrawingFiles::mayOpen(const QString& file) {
  // Again: by the answer that the user has given already.
  if (!file_.isEmpty() && QFileInfo(file).absoluteFilePath() == QFileInfo(file_).absoluteFilePath())
    return isReadOnly_;
  const QString user = OpenFile::userElsewhere(file);
  if (user.isEmpty()) return false;
  const int answer =
      ask(HostText::openElsewhereTitle,
          services_.texts(HostText::openElsewhere, {QFileInfo(file).fileName(), user}),
          {HostText::openReadOnly, HostText::openAnyway, HostText::keepEditing});
  return answer == 0 || answer == 1 ? std::optional(answer == 0) : std::nullopt;
}

void DrawingFiles::askAtStart() {
  // The window already has the file: only a lock of another program means another window.
  if (!file_.isEmpty() && open_.copy().isEmpty() && !OpenFile::userElsewhere(file_).isEmpty()) {
    const int answer =
        ask(HostText::openElsewhereTitle,
            services_.texts(HostText::openElsewhere, {name(), OpenFile::userElsewhere(file_)}),
            {HostText::openReadOnly, HostText::openAnyway});
    isReadOnly_ = answer != 1;
    onState();
  }
  recoverCopy();
}

void DrawingFiles::recoverCopy() {
  open_.bringBackCopy();
  const QFileInfo copy(open_.copy());
  if (open_.copy().isEmpty() || !copy.exists()) return;
  const QString time = QLocale().toString(copy.lastModified(), QLocale::ShortFormat);
  const int answer =
      ask(HostText::recoverTitle, services_.texts(HostText::recoverQuestion, {name(), time}),
          {HostText::recover, HostText::dropCopy});
  if (answer < 0) return; // decides nothing: the program asks about the copy again next time
  open_.claimCopy();
  if (answer == 1) return open_.removeCopy();
  try {
    services_.runner.open(open_.copy().toStdString());
  } catch (const BadInput& error) {
    return services_.status.showFault(QString::fromUtf8(error.what()));
  }
  savedState_ = {}; // no state of this drawing's log: it is not what the file holds
  savedState_.unlogged = std::numeric_limits<std::uint64_t>::max();
  onTaken();
}

void DrawingFiles::keepCopy() {
  const UndoLog::State state = services_.drawing().undoLog().state();
  // While the user is asked about unsaved work of an earlier run, it stays where it is.
  if (open_.copy().isEmpty() || services_.runner.isBusy() || isAsking_) return;
  if (!isChanged()) {
    // Undone to what the file holds: nothing to recover.
    open_.removeCopy();
    copiedState_ = state;
    return;
  }
  if (state == copiedState_ && QFileInfo::exists(open_.copy())) return;
  if (!open_.mayWriteCopy()) return;
  copiedState_ = state;
  if (const Fault fault = saveDrawing(services_.drawing(), fromQt(open_.copy())))
    services_.site.session().commandLine().printLine(*fault);
}

bool DrawingFiles::mayOverwrite() {
  if (!open_.isChangedElsewhere()) return true;
  const int answer =
      ask(HostText::changedElsewhereTitle, services_.texts(HostText::changedElsewhere, {name()}),
          {HostText::saveAs, HostText::reload, HostText::overwrite, HostText::keepEditing});
  if (answer == 0) saveAs();
  if (answer == 1) static_cast<void>(take(file_));
  return answer == 2;
}

bool DrawingFiles::mayLeave() {
  if (!isChanged()) return true;
  QMessageBox box(&services_.window);
  box.setIcon(QMessageBox::Question);
  box.setWindowTitle(services_.texts(HostText::unsavedTitle));
  box.setText(services_.texts(HostText::unsavedQuestion, {name()}));
  QPushButton* saves = box.addButton(services_.texts(HostText::save), QMessageBox::AcceptRole);
  QPushButton* discards = box.addButton(services_.texts(HostText::discard), QMessageBox::DestructiveRole);
  box.addButton(services_.texts(HostText::keepEditing), QMessageBox::RejectRole);
  box.setDefaultButton(saves);
  box.exec();
  if (box.clickedButton() == discards) {
    services_.runner.noteDropped();
    return true;
  }
  if (box.clickedButton() != saves) return false;
  save();
  return !isChanged();
}

} // namespace simhost
