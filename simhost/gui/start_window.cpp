// Two lists to choose from, the recent drawings with their pictures, and the buttons that go on.
#include "simhost/gui/start_window.h"

#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/svg.h"
#include "simhost/gui/drawing_set.h"
#include "simhost/qt/empty_note.h"
#include "simhost/qt/qt_text.h"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QPixmap>
#include <QPushButton>
#include <QSvgRenderer>
#include <QVBoxLayout>

namespace simhost {

namespace {

constexpr QSize pictureSize{200, 130};

/// The drawing on white paper; only the paper for a file that cannot be read.
QPixmap pictureOf(const QString& file) {
  QPixmap picture(pictureSize);
  picture.fill(Qt::white);
  const LoadedDrawing loaded = loadDrawing(fromQt(file));
  if (loaded.drawing == nullptr) return picture;
  QSvgRenderer renderer(
      QByteArray::fromStdString(renderSvg(*loaded.drawing, loaded.drawing->currentSpace()).svg));
  if (!renderer.isValid()) return picture;
  renderer.setAspectRatioMode(Qt::KeepAspectRatio);
  QPainter painter(&picture);
  constexpr int margin = 6;
  renderer.render(
      &painter, QRectF(QPointF(), QSizeF(pictureSize)).adjusted(margin, margin, -margin, -margin));
  return picture;
}

void addFile(QComboBox& list, const QString& file) {
  list.addItem(QFileInfo(file).fileName(), file);
  list.setItemData(list.count() - 1, file, Qt::ToolTipRole);
}

} // namespace

StartWindow::StartWindow(const HostTexts& texts, const StartOffers& offers, QWidget* parent)
    : QDialog(parent), texts_(texts), sites_(new QComboBox), projects_(new QComboBox),
      drawings_(new QListWidget) {
  setObjectName(QStringLiteral("start"));
  setWindowTitle(QStringLiteral("ZanBrenvolt"));
  for (const QString& site : offers.sites)
    addFile(*sites_, site);
  sites_->addItem(texts_(HostText::startNoSite), QString());
  projects_->addItem(texts_(HostText::startNoProject), QString());
  for (const QString& project : offers.projects)
    addFile(*projects_, project);
  drawings_->setObjectName(QStringLiteral("recentDrawings"));
  drawings_->setViewMode(QListView::IconMode);
  drawings_->setIconSize(pictureSize);
  drawings_->setResizeMode(QListView::Adjust);
  drawings_->setMovement(QListView::Static);
  drawings_->setSpacing(8);
  for (const QString& set : offers.sets)
    addSet(set);
  for (const QString& drawing : offers.drawings)
    addDrawing(drawing);
  showWhenEmpty(*drawings_, texts_(HostText::startNoDrawings));

  auto* column = new QVBoxLayout(this);
  auto* choices = new QFormLayout;
  const auto addRow = [&](HostText label, QComboBox& list, HostText browse,
                          const std::function<void()>& browsing) {
    auto* row = new QHBoxLayout;
    auto* button = new QPushButton(texts_(browse));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, browsing);
    row->addWidget(&list, 1);
    row->addWidget(button);
    auto* words = new QLabel(texts_(label));
    words->setBuddy(&list);
    choices->addRow(words, row);
  };
  addRow(HostText::startSite, *sites_, HostText::startBrowse, [this] { browseSite(); });
  addRow(HostText::startProject, *projects_, HostText::startBrowseProject, [this] {
    this->browse(*projects_, HostText::openProjectTitle, HostText::projects);
  });
  column->addLayout(choices);
  auto* heading = new QLabel(texts_(HostText::startDrawings));
  heading->setBuddy(drawings_);
  column->addWidget(heading);
  column->addWidget(drawings_, 1);
  auto* buttons = new QHBoxLayout;
  const auto addButton = [&](HostText words, const std::function<void()>& action) {
    auto* button = new QPushButton(texts_(words));
    connect(button, &QPushButton::clicked, this, action);
    buttons->addWidget(button);
    return button;
  };
  addButton(HostText::startNew, [this] { begin({}); })->setDefault(true);
  addButton(HostText::startOpen, [this] {
    const QString file =
        QFileDialog::getOpenFileName(this, texts_(HostText::openTitle), {}, texts_(HostText::drawings));
    if (!file.isEmpty()) begin(file);
  });
  buttons->addStretch();
  addButton(HostText::startLeave, [this] { reject(); })->setAutoDefault(false);
  column->addLayout(buttons);
  connect(drawings_, &QListWidget::itemActivated, this, [this](const QListWidgetItem* item) {
    begin(item->data(Qt::UserRole).toString());
  });
  resize(760, 520);
}

/// With the picture of its first sheet.
void StartWindow::addSet(const QString& file) {
  const std::optional<DrawingSet> set = readSet(file);
  if (!set) return;
  const QString name = set->title.isEmpty() ? QFileInfo(file).dir().dirName() : set->title;
  const QString words = texts_(HostText::setOpened, {name, QString::number(set->sheets.size())});
  auto* item = new QListWidgetItem(QIcon(pictureOf(set->sheets.front().file)), words, drawings_);
  item->setData(Qt::UserRole, file);
  item->setToolTip(file);
}

void StartWindow::addDrawing(const QString& file) {
  if (!QFileInfo::exists(file)) return;
  auto* item = new QListWidgetItem(QIcon(pictureOf(file)), QFileInfo(file).fileName(), drawings_);
  item->setData(Qt::UserRole, file);
  item->setToolTip(file);
}

void StartWindow::begin(const QString& drawing) {
  choice_ = {sites_->currentData().toString(), projects_->currentData().toString(), drawing};
  accept();
}

void StartWindow::browseSite() {
  const QString folder = QFileDialog::getExistingDirectory(this, texts_(HostText::startSiteTitle));
  if (folder.isEmpty()) return;
  addFile(*sites_, folder);
  sites_->setCurrentIndex(sites_->count() - 1);
}

void StartWindow::browse(QComboBox& list, HostText title, HostText type) {
  const QString file = QFileDialog::getOpenFileName(this, texts_(title), {}, texts_(type));
  if (file.isEmpty()) return;
  addFile(list, file);
  list.setCurrentIndex(list.count() - 1);
}

} // namespace simhost
