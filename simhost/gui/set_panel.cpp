// Table and search field.
#include "simhost/gui/set_panel.h"

#include "simhost/qt/search_field.h"
#include "simhost/qt/search_rows.h"

#include <QFileInfo>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace simhost {
namespace {

constexpr int fileRole = Qt::UserRole;

} // namespace

SetPanel::SetPanel(const HostTexts& texts, QWidget* parent)
    : QWidget(parent), search_(new SearchField(texts(HostText::setSearch))), table_(new QTreeWidget(this)) {
  setObjectName(QStringLiteral("set"));
  search_->setObjectName(QStringLiteral("setSearch"));
  table_->setObjectName(QStringLiteral("setTable"));
  table_->setAccessibleName(texts(HostText::setTitle));
  makeRowList(*table_);
  table_->setHeaderLabels({texts(HostText::columnSheet), texts(HostText::circuitsTitle)});
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(search_);
  column->addWidget(table_, 1);
  searchRows(*search_, *table_);
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
  search_->onSearch(search_->text());
}

void SetPanel::showOpen(const QString& file) {
  const QString full = file.isEmpty() ? QString() : QFileInfo(file).absoluteFilePath();
  for (int row = 0; row < table_->topLevelItemCount(); ++row) {
    QTreeWidgetItem* item = table_->topLevelItem(row);
    const bool isOpen = item->data(0, fileRole).toString() == full;
    // Each change of a row costs as much as all of a search: only the two rows that differ are changed.
    if (item->font(0).bold() != isOpen) {
      QFont letters = table_->font();
      letters.setBold(isOpen);
      for (int column = 0; column < table_->columnCount(); ++column)
        item->setFont(column, letters);
    }
    if (!isOpen) continue;
    table_->setCurrentItem(item);
    table_->scrollToItem(item);
  }
}

void SetPanel::openCurrent() {
  const QTreeWidgetItem* item = table_->currentItem();
  if (item != nullptr && !item->isHidden() && onOpen) onOpen(item->data(0, fileRole).toString());
}

} // namespace simhost
