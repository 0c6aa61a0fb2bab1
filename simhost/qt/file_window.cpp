// Qt's own dialog for file names: it is the same on every platform, and the flow decides what it takes.
#include "simhost/qt/file_window.h"

#include "simhost/qt/qt_text.h"

#include <QDir>
#include <QFileInfo>
#include <QHeaderView>
#include <QLineEdit>
#include <QSignalBlocker>
#include <QSplitter>
#include <QTreeView>

#include <utility>

namespace simhost {

namespace {

constexpr int nameColumn = 0;

/// A title that names no pattern shows all files.
QString filterOf(const std::wstring& title) {
  const QString text = toQt(title);
  return text.contains(QLatin1String("(*")) ? text : text + QLatin1String(" (*)");
}

} // namespace

FileWindow::FileWindow(const FileQuestion& question, const FileEvents& events, Notes notes, QWidget* parent)
    : QFileDialog(parent), events_(events), notes_(std::move(notes)) {
  setObjectName("file");
  setOption(DontUseNativeDialog);
  // The flow itself asks whether to replace a file: it may also append.
  setOption(DontConfirmOverwrite);
  setAcceptMode(question.isSave ? AcceptSave : AcceptOpen);
  setFileMode(AnyFile);
  setDirectory(question.folder.empty() ? QDir::currentPath() : toQt(question.folder));
  folder_ = directory().absolutePath();
  for (const std::wstring& type : question.types)
    filters_.append(filterOf(type));
  if (!filters_.isEmpty()) setNameFilters(filters_);
  // Names and dates are read in full.
  const int character = fontMetrics().averageCharWidth();
  resize(character * 110, character * 65);
  if (auto* places = findChild<QSplitter*>(QStringLiteral("splitter")))
    places->setSizes({character * 20, character * 90});
  if (auto* files = findChild<QTreeView*>(QStringLiteral("treeView"))) {
    files->header()->setStretchLastSection(false);
    files->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    files->header()->setSectionResizeMode(nameColumn, QHeaderView::Stretch);
  }
  answer_.path = question.fileName;
  nameField().setText(toQt(question.fileName));
  connect(this, &QFileDialog::filterSelected, this, [this](const QString& filter) { takeType(filter); });
}

QLineEdit& FileWindow::nameField() const {
  return *findChild<QLineEdit*>("fileNameEdit");
}

std::wstring FileWindow::path() const {
  const QString typed = nameField().text();
  if (directory().absolutePath() == folder_ || QFileInfo(typed).isAbsolute()) return fromQt(typed);
  return fromQt(directory().filePath(typed));
}

void FileWindow::takeType(const QString& filter) {
  const qsizetype type = filters_.indexOf(filter) + 1;
  if (type < 1) return;
  if (const std::wstring typed = path(); typed != answer_.path) {
    answer_.path = typed;
    notes_.pathSet();
  }
  answer_.type = static_cast<int>(type);
  notes_.typeSet();
  if (events_.typeChanged &&
      !thrown_.guard([this] { answer_.path = events_.typeChanged(answer_.type, answer_.path); }))
    return reject();
  notes_.typeAnswered();
  nameField().setText(toQt(answer_.path));
}

void FileWindow::accept() {
  const std::wstring typed = path();
  if (typed.empty()) return;
  // A folder is gone into.
  const QFileInfo info(QDir(directory()).filePath(nameField().text()));
  if (info.isDir()) {
    setDirectory(info.absoluteFilePath());
    nameField().clear();
    return;
  }
  if (typed != answer_.path) {
    answer_.path = typed;
    notes_.pathSet();
  }
  notes_.okPressed();
  answer_.isOk = true;
  bool isTaken = true;
  const bool isAnswered = thrown_.guard([&] { isTaken = !events_.accept || events_.accept(answer_); });
  answer_.isOk = isAnswered && isTaken;
  if (!isAnswered) return reject();
  // Not QFileDialog's own way to accept: that requires a name, which the flow may not need.
  if (isTaken) done(Accepted);
}

} // namespace simhost
