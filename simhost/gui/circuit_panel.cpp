// Table and search field.
#include "simhost/gui/circuit_panel.h"

#include "circuits/reports/drawing_reports.h"
#include "simhost/qt/empty_note.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/search_field.h"
#include "simhost/qt/search_rows.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace simhost {
namespace {

constexpr int idRole = Qt::UserRole;
constexpr int searchRole = Qt::UserRole + 1;

constexpr HostText columnTitles[circuitColumnCount] = {
    HostText::columnNumber, HostText::columnTag,   HostText::columnType, HostText::columnLoad,
    HostText::columnWire,   HostText::columnSheet, HostText::columnState};

/// Sorts as people sort tags: P-2 before P-10.
class CircuitItem final : public QTreeWidgetItem {
public:
  using QTreeWidgetItem::QTreeWidgetItem;

  bool operator<(const QTreeWidgetItem& other) const override {
    const int column = treeWidget() == nullptr ? 0 : treeWidget()->sortColumn();
    return circuits::comesBefore(fromQt(text(column)), fromQt(other.text(column)));
  }
};

} // namespace

CircuitPanel::CircuitPanel(const HostTexts& texts, QWidget* parent)
    : QWidget(parent), texts_(texts), search_(new SearchField(texts(HostText::circuitSearch))),
      table_(new QTreeWidget(this)) {
  setObjectName(QStringLiteral("circuits"));
  search_->setObjectName(QStringLiteral("circuitSearch"));
  table_->setObjectName(QStringLiteral("circuitTable"));
  table_->setAccessibleName(texts_(HostText::circuitsTitle));
  makeRowList(*table_);
  table_->setContextMenuPolicy(Qt::CustomContextMenu);
  QStringList titles;
  for (const HostText title : columnTitles)
    titles.append(texts_(title));
  table_->setHeaderLabels(titles);
  table_->header()->setSectionsMovable(false);
  table_->setSortingEnabled(true);
  table_->sortByColumn(static_cast<int>(CircuitColumn::number), Qt::AscendingOrder);
  showWhenEmpty(*table_, texts_(HostText::noCircuits));
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(search_);
  column->addWidget(table_, 1);
  search_->installEventFilter(this);
  table_->installEventFilter(this);
  searchRows(
      *search_, *table_, [](const QTreeWidgetItem& row) { return row.data(0, searchRole).toString(); });
  connect(table_, &QTreeWidget::currentItemChanged, this, [this] {
    if (onSelected) onSelected(selected());
  });
  // A click on the row that is already selected shows it in the view again.
  connect(table_, &QTreeWidget::itemClicked, this, [this] {
    if (onSelected) onSelected(selected());
  });
  connect(table_, &QTreeWidget::itemDoubleClicked, this, [this] {
    if (onOpened) onOpened(selected());
  });
  connect(table_, &QTreeWidget::customContextMenuRequested, this, [this](const QPoint& place) {
    if (onMenu && !selected().empty()) onMenu(table_->viewport()->mapToGlobal(place));
  });
}

void CircuitPanel::setCircuits(const std::vector<CircuitRow>& rows) {
  const QSignalBlocker blocker(table_);
  const std::wstring current = selected();
  table_->setSortingEnabled(false); // sorted once, when all are there
  table_->clear();
  QList<QTreeWidgetItem*> items;
  for (const CircuitRow& row : rows) {
    auto* item = new CircuitItem;
    for (std::size_t column = 0; column < circuitColumnCount; ++column) {
      item->setText(static_cast<int>(column), row.cells[column]);
      item->setToolTip(static_cast<int>(column), row.notes.isEmpty() ? row.cells[column] : row.notes);
    }
    item->setData(0, idRole, toQt(row.id));
    item->setData(0, searchRole, row.searchText);
    items.append(item);
  }
  table_->addTopLevelItems(items);
  table_->setSortingEnabled(true);
  for (int column = 0; column < table_->columnCount(); ++column)
    table_->resizeColumnToContents(column);
  search_->onSearch(search_->text());
  showCircuit(current);
}

void CircuitPanel::showCircuit(const std::wstring& id) {
  const QSignalBlocker blocker(table_);
  QTreeWidgetItem* found = nullptr;
  for (int row = 0; row < table_->topLevelItemCount() && found == nullptr; ++row)
    if (!id.empty() && fromQt(table_->topLevelItem(row)->data(0, idRole).toString()) == id)
      found = table_->topLevelItem(row);
  table_->setCurrentItem(found);
  if (found == nullptr)
    table_->clearSelection();
  else
    table_->scrollToItem(found);
}

std::wstring CircuitPanel::selected() const {
  const QTreeWidgetItem* item = table_->currentItem();
  return item == nullptr || item->isHidden() ? std::wstring() : fromQt(item->data(0, idRole).toString());
}

void CircuitPanel::startSearch() {
  search_->setFocus(Qt::ShortcutFocusReason);
  search_->selectAll();
}

bool CircuitPanel::eventFilter(QObject* object, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(object, event);
  const auto& key = *static_cast<QKeyEvent*>(event);
  const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  // The first Escape in the field clears it.
  const bool clears = object == search_ && !search_->text().isEmpty();
  if (key.key() == Qt::Key_Escape && !clears && onLeft) {
    onLeft();
    return true;
  }
  if (object == table_ && isEnter && !selected().empty()) {
    if (onOpened) onOpened(selected());
    return true;
  }
  return QWidget::eventFilter(object, event);
}

} // namespace simhost
