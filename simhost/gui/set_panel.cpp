// Table and search field.
#include "simhost/gui/set_panel.h"

#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace simhost {
namespace {

constexpr int fileRole = Qt::UserRole;

} // namespace

SetPanel::SetPanel(const HostTexts& texts, QWidget* parent)
    : QWidget(parent), search_(new QLineEdit(this)), table_(new QTreeWidget(this)) {
  setObjectName(QStringLiteral("set"));
  search_->setObjectName(QStringLiteral("setSearch"));
  search_->setPlaceholderText(texts(HostText::setSearch));
  search_->setAccessibleName(texts(HostText::setSearch));
  search_->setClearButtonEnabled(true);
  table_->setObjectName(QStringLiteral("setTable"));
  table_->setAccessibleName(texts(HostText::setTitle));
  table_->setRootIsDecorated(false);
  table_->setUniformRowHeights(true);
  table_->setAllColumnsShowFocus(true);
  table_->setTabKeyNavigation(false);
  table_->setHeaderLabels({texts(HostText::columnSheet), texts(HostText::circuitsTitle)});
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(search_);
  column->addWidget(table_, 1);
  search_->installEventFilter(this);
  connect(search_, &QLineEdit::textChanged, this, [this] { filter(); });
  connect(table_, &QTreeWidget::itemActivated, this, [this] { openCurrent(); });
}

void SetPanel::setSheets(const DrawingSet& set) {
  table_->clear();
  QList<QTreeWidgetItem*> items;
  for (const SetSheet& sheet : set.sheets) {
    auto* item = new QTreeWidgetItem({sheet.number, sheet.circuits});
    item->setToolTip(1, sheet.circuits);
    item->setData(0, fileRole, sheet.file);
    items.append(item);
  }
  table_->addTopLevelItems(items);
  table_->resizeColumnToContents(0);
  filter();
}

void SetPanel::showOpen(const QString& file) {
  const QString full = file.isEmpty() ? QString() : QFileInfo(file).absoluteFilePath();
  for (int row = 0; row < table_->topLevelItemCount(); ++row) {
    QTreeWidgetItem* item = table_->topLevelItem(row);
    const bool isOpen = item->data(0, fileRole).toString() == full;
    QFont letters = table_->font();
    letters.setBold(isOpen);
    for (int column = 0; column < table_->columnCount(); ++column)
      item->setFont(column, letters);
    if (!isOpen) continue;
    table_->setCurrentItem(item);
    table_->scrollToItem(item);
  }
}

void SetPanel::filter() {
  const QStringList words = search_->text().split(QLatin1Char(' '), Qt::SkipEmptyParts);
  for (int row = 0; row < table_->topLevelItemCount(); ++row) {
    QTreeWidgetItem* item = table_->topLevelItem(row);
    bool isWanted = true;
    for (const QString& word : words)
      isWanted = isWanted && (item->text(0).contains(word, Qt::CaseInsensitive) ||
                              item->text(1).contains(word, Qt::CaseInsensitive));
    item->setHidden(!isWanted);
  }
}

void SetPanel::openCurrent() {
  const QTreeWidgetItem* item = table_->currentItem();
  if (item != nullptr && !item->isHidden() && onOpen) onOpen(item->data(0, fileRole).toString());
}

bool SetPanel::eventFilter(QObject* object, QEvent* event) {
  if (object != search_ || event->type() != QEvent::KeyPress) return QWidget::eventFilter(object, event);
  const auto& key = *static_cast<QKeyEvent*>(event);
  if (key.key() != Qt::Key_Return && key.key() != Qt::Key_Enter && key.key() != Qt::Key_Down)
    return QWidget::eventFilter(object, event);
  // From what was typed to what was found.
  table_->setFocus(Qt::TabFocusReason);
  for (int row = 0; row < table_->topLevelItemCount(); ++row)
    if (!table_->topLevelItem(row)->isHidden()) {
      table_->setCurrentItem(table_->topLevelItem(row));
      break;
    }
  return true;
}

} // namespace simhost
