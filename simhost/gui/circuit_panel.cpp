// Table and search field.
#include "simhost/gui/circuit_panel.h"

#include "circuits/reports/drawing_reports.h"
#include "simhost/qt/empty_note.h"
#include "simhost/qt/qt_text.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
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
    : QWidget(parent), texts_(texts), search_(new QLineEdit(this)), table_(new QTreeWidget(this)) {
  setObjectName(QStringLiteral("circuits"));
  search_->setObjectName(QStringLiteral("circuitSearch"));
  search_->setPlaceholderText(texts_(HostText::circuitSearch));
  search_->setAccessibleName(texts_(HostText::circuitSearch));
  search_->setClearButtonEnabled(true);
  table_->setObjectName(QStringLiteral("circuitTable"));
  table_->setAccessibleName(texts_(HostText::circuitsTitle));
  table_->setRootIsDecorated(false);
  table_->setUniformRowHeights(true);
  table_->setAllColumnsShowFocus(true);
  table_->setTabKeyNavigation(false);
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
  connect(search_, &QLineEdit::textChanged, this, [this] { filter(); });
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
  filter();
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

/// Every word has to be found, in any column: "p-1 15" is circuit P-101 of 15 HP.
void CircuitPanel::filter() {
  const QStringList words = search_->text().split(QLatin1Char(' '), Qt::SkipEmptyParts);
  for (int row = 0; row < table_->topLevelItemCount(); ++row) {
    QTreeWidgetItem* item = table_->topLevelItem(row);
    const QString text = item->data(0, searchRole).toString();
    bool isWanted = true;
    for (const QString& word : words)
      isWanted = isWanted && text.contains(word, Qt::CaseInsensitive);
    item->setHidden(!isWanted);
  }
}

bool CircuitPanel::eventFilter(QObject* object, QEvent* event) {
  if (event->type() != QEvent::KeyPress) return QWidget::eventFilter(object, event);
  const auto& key = *static_cast<QKeyEvent*>(event);
  const bool isEnter = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
  if (object == search_ && (isEnter || key.key() == Qt::Key_Down)) {
    // From what was typed to what was found.
    table_->setFocus(Qt::TabFocusReason);
    for (int row = 0; row < table_->topLevelItemCount(); ++row)
      if (!table_->topLevelItem(row)->isHidden()) {
        table_->setCurrentItem(table_->topLevelItem(row));
        break;
      }
    return true;
  }
  if (object == search_ && key.key() == Qt::Key_Escape && !search_->text().isEmpty()) {
    search_->clear();
    return true;
  }
  if (key.key() == Qt::Key_Escape && onLeft) {
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
