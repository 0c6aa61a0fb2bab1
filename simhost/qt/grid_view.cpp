// Cells of a grid as a table, with editors for texts, drop-downs and ticks.
#include "simhost/qt/grid_view.h"

#include "simhost/qt/circuit_facts.h"
#include "simhost/qt/column_widths.h"
#include "simhost/qt/empty_note.h"
#include "simhost/qt/qt_dialog.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/search_field.h"
#include "text/encoding.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPainter>
#include <QSignalBlocker>
#include <QSortFilterProxyModel>
#include <QStyledItemDelegate>
#include <QTimer>
#include <QToolTip>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <functional>
#include <numeric>

namespace simhost {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

namespace {

/// The number of rows of a long grid that determine the column widths.
constexpr int rowsMeasured = 200;
/// A column of texts is not wider than this, in characters.
constexpr int widestColumn = 40;
/// Room for the mark of a cell with a list, in pixels.
constexpr int arrowWidth = 16;
/// A column at the head of the rows that says nothing, in pixels.
constexpr int rowHeadWidth = 12;

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::Base).lightness() < 128;
}

/// Rows of the model count from 0 here; the header is row 0 of the grid.
class GridTableModel final : public QAbstractTableModel {
public:
  GridTableModel(QtDialog& dialog, GridModel& grid, QObject* parent)
      : QAbstractTableModel(parent), dialog_(dialog), grid_(grid) {}

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : rows_;
  }
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override {
    return parent.isValid() ? 0 : columns_;
  }

  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
    const int row = index.row() + 1;
    const KvUiCellKind kind = grid_.cellKind(row, index.column());
    const QString text = toQt(grid_.Cell(row, index.column()));
    const QString drawn = drawnAt(row, index.column());
    const bool isAlert = grid_.cellTone(row, index.column()) == KvUiCellTone::alert;
    switch (role) {
    case Qt::DisplayRole:
      return kind == KvUiCellKind::tick ? QVariant() : QVariant(drawn.isEmpty() ? text : drawn);
    case Qt::EditRole:
      return text;
    case Qt::FontRole: {
      QFont font = QApplication::font();
      font.setItalic(isProposal(row, index.column()) || !drawn.isEmpty());
      return font.italic() ? QVariant(font) : QVariant();
    }
    case Qt::ToolTipRole:
      if (isProposal(row, index.column())) return dialog_.words().noSizeYet;
      if (!drawn.isEmpty()) return QString(drawn + QLatin1Char('\n') + dialog_.words().foundByBuild);
      // A cut text in full, and below it what the whole grid has to say.
      return QStringList({text, toQt(grid_.tooltip())}).join(QLatin1Char('\n')).trimmed();
    case Qt::CheckStateRole:
      if (kind != KvUiCellKind::tick || row > grid_.RowCount()) return {};
      return text == QLatin1String("1") ? Qt::Checked : Qt::Unchecked;
    case Qt::ForegroundRole:
      if (isAlert)
        return isDark(QApplication::palette()) ? QColor(0xFF, 0xB4, 0xAB) : QColor(0x9B, 0x00, 0x1C);
      return {};
    case Qt::BackgroundRole:
      if (isAlert)
        return isDark(QApplication::palette()) ? QColor(0x5C, 0x12, 0x1B) : QColor(0xFD, 0xE3, 0xE5);
      if ((kind == KvUiCellKind::fixed && grid_.IsEditable()) || isRowHead(index.column()))
        return QApplication::palette().brush(QPalette::Window);
      return {};
    default:
      return {};
    }
  }

  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
    if (role != Qt::DisplayRole) return {};
    if (orientation == Qt::Horizontal) return toQt(grid_.Cell(0, section));
    return section < grid_.RowCount() ? QString() : QStringLiteral("*");
  }

  [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override {
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const KvUiCellKind kind = grid_.cellKind(index.row() + 1, index.column());
    if (!grid_.IsEditable() || kind == KvUiCellKind::fixed) return flags;
    return flags | (kind == KvUiCellKind::tick ? Qt::ItemIsUserCheckable : Qt::ItemIsEditable);
  }

  bool setData(const QModelIndex& index, const QVariant& value, int role) override {
    const int row = index.row() + 1;
    const int column = index.column();
    const bool isTick = role == Qt::CheckStateRole;
    const std::wstring text =
        isTick ? std::wstring(value.toInt() == Qt::Checked ? L"1" : L"0") : fromQt(value.toString());
    Json action = {{"edit", toUtf8(grid_.role())}, {"row", row}, {"column", column}};
    if (isTick)
      action["to"] = text == L"1";
    else
      action["to"] = toUtf8(text);
    bool isTaken = true;
    dialog_.act(std::move(action), [&](Gestures& gestures, Json& written) {
      CellAnswer answer = CellAnswer::taken;
      Refusal refusal = gestures.editCell(grid_, row, column, text, answer);
      dialog_.setLastCellAnswer(answer);
      isTaken = !refusal && answer == CellAnswer::taken;
      if (!refusal && answer == CellAnswer::refused) written["refused"] = true;
      return refusal;
    });
    if (!isTaken) QApplication::beep();
    return isTaken;
  }

  [[nodiscard]] QStringList choicesAt(const QModelIndex& index) const {
    QStringList choices;
    for (const std::wstring& choice : dialog_.gestures().cellChoices(grid_, index.row() + 1, index.column()))
      choices.append(toQt(choice));
    return choices;
  }
  [[nodiscard]] bool isDropDown(const QModelIndex& index) const {
    return grid_.cellKind(index.row() + 1, index.column()) == KvUiCellKind::dropDown;
  }

  /// A layer for a wire whose size, in the row above, is not known yet: it is what the build would take, not a choice.
  [[nodiscard]] bool isProposal(int row, int column) const {
    if (column != 1 || row < 2 || grid_.ColumnCount() != 2 || !grid_.Cell(row - 1, 1).empty()) return false;
    // "W1 - Size" and "W1 - Layer"; also where the layer has no list.
    const auto wireOf = [this](int at) {
      const std::wstring label(grid_.Cell(at, 0));
      const std::size_t end = label.find(L" - ");
      return end == std::wstring::npos ? std::wstring() : label.substr(0, end);
    };
    return !grid_.Cell(row, 1).empty() && !wireOf(row).empty() && wireOf(row) == wireOf(row - 1);
  }

  [[nodiscard]] const QStringList& drawn() const { return drawn_; }
  void setDrawn(const QStringList& texts) { drawn_ = texts; }
  /// What the build has found for an empty cell that nobody can edit.
  [[nodiscard]] QString drawnAt(int row, int column) const {
    const bool isShown =
        column + 1 == grid_.ColumnCount() && !grid_.IsEditable() && grid_.Cell(row, column).empty();
    return isShown ? drawn_.value(row - 1) : QString();
  }

  /// The column before the first one with a title.
  [[nodiscard]] bool isRowHead(int column) const {
    return column == 0 && grid_.ColumnCount() > 1 && !grid_.Cell(0, 1).empty();
  }

  void refresh() {
    const int rows = grid_.RowCount() + (grid_.hasNewRow() ? 1 : 0);
    const int columns = grid_.ColumnCount();
    if (rows != rows_ || columns != columns_) {
      beginResetModel();
      rows_ = rows;
      columns_ = columns;
      endResetModel();
    } else if (rows > 0 && columns > 0) {
      emit dataChanged(index(0, 0), index(rows - 1, columns - 1));
    }
    if (columns > 0) emit headerDataChanged(Qt::Horizontal, 0, columns - 1);
  }

private:
  QtDialog& dialog_;
  GridModel& grid_;
  QStringList drawn_; ///< by row
  int rows_ = 0;      ///< as last reported to the table
  int columns_ = 0;
};

/// The rows in the order of a column, and those that a search finds. The grid itself stays as the flow has it.
class ShownRows final : public QSortFilterProxyModel {
public:
  using QSortFilterProxyModel::QSortFilterProxyModel;

  void search(const QString& text) {
    words_ = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    invalidateFilter();
  }
  /// Only rows with this text in the column; -1 for all.
  void fix(int column, const QString& text) {
    fixedColumn_ = column;
    fixedText_ = text;
    invalidateFilter();
  }
  [[nodiscard]] bool isSearched() const { return !words_.isEmpty() || fixedColumn_ >= 0; }

protected:
  /// Every word has to begin a cell: "15 460" is 15 HP at 460 V. A word without digits may stand anywhere in a cell.
  [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex& parent) const override {
    if (fixedColumn_ >= 0 &&
        sourceModel()->index(row, fixedColumn_, parent).data(Qt::EditRole).toString() != fixedText_)
      return false;
    return std::all_of(words_.begin(), words_.end(), [&](const QString& word) {
      const bool isNumber = word.front().isDigit();
      for (int column = 0; column < sourceModel()->columnCount(); ++column) {
        const QString cell = sourceModel()->index(row, column, parent).data(Qt::EditRole).toString();
        if (isNumber ? cell.startsWith(word, Qt::CaseInsensitive) : cell.contains(word, Qt::CaseInsensitive))
          return true;
      }
      return false;
    });
  }

  /// Numbers by their value, before all texts.
  [[nodiscard]] bool lessThan(const QModelIndex& left, const QModelIndex& right) const override {
    const QString one = left.data(Qt::EditRole).toString();
    const QString other = right.data(Qt::EditRole).toString();
    bool isOneNumber = false;
    bool isOtherNumber = false;
    const double first = one.toDouble(&isOneNumber);
    const double second = other.toDouble(&isOtherNumber);
    if (isOneNumber && isOtherNumber) return first < second;
    if (isOneNumber != isOtherNumber) return isOneNumber;
    return QString::compare(one, other, Qt::CaseInsensitive) < 0;
  }

private:
  QStringList words_;
  int fixedColumn_ = -1;
  QString fixedText_;
};

/// Offers the list of a drop-down cell as it is when it opens.
class CellEditors final : public QStyledItemDelegate {
public:
  CellEditors(const GridTableModel& model, const ShownRows& rows, QObject* parent)
      : QStyledItemDelegate(parent), model_(model), rows_(rows) {}

  QWidget* createEditor(
      QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    if (!model_.isDropDown(rows_.mapToSource(index)))
      return QStyledItemDelegate::createEditor(parent, option, index);
    auto* box = new QComboBox(parent);
    box->addItems(model_.choicesAt(rows_.mapToSource(index)));
    auto* self = const_cast<CellEditors*>(this);
    connect(box, &QComboBox::activated, self, [self, box] {
      emit self->commitData(box);
      emit self->closeEditor(box);
    });
    return box;
  }

  /// A cell with a list shows so before it is opened.
  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    if (!hasArrow(index)) return QStyledItemDelegate::paint(painter, option, index);
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QStyle& style = *cell.widget->style();
    QStyleOptionViewItem arrow = cell;
    arrow.rect.setLeft(arrow.rect.right() - arrowWidth);
    arrow.rect = QStyle::alignedRect(
        cell.direction, Qt::AlignCenter, QSize(arrowWidth / 2, arrowWidth / 2), arrow.rect);
    cell.text = cell.fontMetrics.elidedText(cell.text, Qt::ElideRight, cell.rect.width() - arrowWidth);
    style.drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    style.drawPrimitive(QStyle::PE_IndicatorArrowDown, &arrow, painter, cell.widget);
  }
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return QStyledItemDelegate::sizeHint(option, index) + QSize(hasArrow(index) ? arrowWidth : 0, 0);
  }

  void setEditorData(QWidget* editor, const QModelIndex& index) const override {
    // Cells change while an editor is open; its text belongs to the user.
    if (editor->property("opened").toBool()) return;
    editor->setProperty("opened", true);
    auto* box = qobject_cast<QComboBox*>(editor);
    if (box == nullptr) return QStyledItemDelegate::setEditorData(editor, index);
    box->setCurrentIndex(box->findText(index.data(Qt::EditRole).toString()));
    QMetaObject::invokeMethod(
        box,
        [box] {
          if (box->isVisible()) box->showPopup();
        },
        Qt::QueuedConnection);
  }

  void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override {
    const auto* box = qobject_cast<const QComboBox*>(editor);
    if (box == nullptr) return QStyledItemDelegate::setModelData(editor, model, index);
    if (box->currentIndex() >= 0) model->setData(index, box->currentText(), Qt::EditRole);
  }

private:
  [[nodiscard]] bool hasArrow(const QModelIndex& index) const {
    return model_.isDropDown(rows_.mapToSource(index)) && index.flags() & Qt::ItemIsEditable;
  }

  const GridTableModel& model_;
  const ShownRows& rows_;
};

class ShownGrid final : public GridTable {
public:
  ShownGrid(QtDialog& dialog, GridModel& grid)
      : dialog_(dialog), grid_(grid), model_(new GridTableModel(dialog, grid, this)),
        rows_(new ShownRows(this)) {
    rows_->setSourceModel(model_);
    setModel(rows_);
    setItemDelegate(new CellEditors(*model_, *rows_, this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(SelectedClicked | EditKeyPressed | AnyKeyPressed);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setAlternatingRowColors(true);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setResizeContentsPrecision(rowsMeasured);
    horizontalHeader()->setDefaultAlignment(Qt::Alignment::fromInt(
        static_cast<int>(Qt::AlignLeft) | static_cast<int>(Qt::AlignVCenter) |
        static_cast<int>(Qt::TextWordWrap)));
    connect(horizontalHeader(), &QHeaderView::sectionResized, this, [this] {
      // Only a user drags a border.
      if (isLayingOut_ || !horizontalHeader()->viewport()->underMouse()) return;
      hasOwnWidths_ = true;
      ownWidthsFor_ = grid_.ColumnCount();
    });
    horizontalHeader()->setSectionsClickable(true);
    connect(horizontalHeader(), &QHeaderView::sectionClicked, this, [this](int column) { sortBy(column); });
    connect(this, &QTableView::doubleClicked, this, [this](const QModelIndex& index) {
      const int row = gridRow(index);
      const int column = index.column();
      if (row > grid_.RowCount()) return edit(index);
      dialog_.act(
          {{"doubleClick", toUtf8(grid_.role())}, {"row", row}, {"column", column}},
          [this, row, column](Gestures& gestures, Json&) {
            return gestures.doubleClickRow(grid_, row, column);
          });
    });
  }

  void refresh() override {
    // The flow fills the grid: it reports when it has finished.
    if (grid_.isDrawingLocked()) return;
    // An editor that is passing on its text must not be removed meanwhile.
    if (isCommitting_) {
      isRefreshDue_ = true;
      return;
    }
    isRefreshDue_ = false;
    // Rows that are typed in stay where they are.
    if (grid_.IsEditable()) showAllRows();
    model_->refresh();
    for (int column = 0; column < grid_.ColumnCount(); ++column)
      setColumnHidden(column, grid_.isHidden(column));
    const QSignalBlocker quiet(selectionModel());
    const int selected = grid_.SelectedRow();
    if (selected == 0) {
      if (!isOnNewRow()) setCurrentIndex({});
      clearSelection();
    } else if (const int shown = shownIndex(selected, 0).row();
               gridRow(currentIndex()) != selected || shown < 0 || !selectionModel()->isRowSelected(shown)) {
      const int column = std::max(0, currentIndex().column());
      const QModelIndex index = shownIndex(selected, shownColumn(column));
      selectionModel()->setCurrentIndex(
          index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    if (const int row = grid_.takeScrollTarget(); row > 0)
      scrollTo(shownIndex(row, shownColumn(0)), PositionAtCenter);
    layOutColumns();
    viewport()->update();
  }

  void showDrawn(const QStringList& texts) override {
    if (model_->drawn() == texts) return;
    model_->setDrawn(texts);
    refresh();
  }

  void search(const QString& text) override {
    if (grid_.IsEditable()) return;
    arrange([&] { rows_->search(text); });
    refresh();
  }

  bool showOnly(const QString& header, const QString& text) override {
    int column = header.isEmpty() ? -1 : grid_.ColumnCount() - 1;
    while (column >= 0 && toQt(grid_.Cell(0, column)) != header)
      --column;
    arrange([&] { rows_->fix(grid_.IsEditable() ? -1 : column, text); });
    const int selected = grid_.SelectedRow();
    const bool isRight = column < 0 || selected == 0 || shownIndex(selected, 0).isValid();
    // What is chosen must be seen.
    if (!isRight) arrange([&] { rows_->fix(-1, {}); });
    refresh();
    return isRight && column >= 0;
  }

  void selectFirstShown() override {
    if (rows_->rowCount() == 0) return;
    setFocus(Qt::TabFocusReason);
    setCurrentIndex(rows_->index(0, shownColumn(0)));
  }

  [[nodiscard]] Json reading() const override {
    const int rows = grid_.hasNewRow() ? model_->rowCount() - 1 : model_->rowCount();
    Json alerts = Json::array();
    for (int row = 0; row < rows; ++row)
      for (int column = 0; column < model_->columnCount(); ++column)
        if (model_->index(row, column).data(Qt::ForegroundRole).isValid())
          alerts.push_back(Json::array({row + 1, column}));
    const QModelIndexList selected = selectionModel()->selectedRows();
    Json reading = {{"rowCount", rows}, {"selectedRow", selected.isEmpty() ? 0 : gridRow(selected.front())}};
    Json header = Json::array();
    for (int column = 0; column < model_->columnCount(); ++column)
      if (!isColumnHidden(column))
        header.push_back(
            model_->headerData(column, Qt::Horizontal, Qt::DisplayRole).toString().toStdString());
    reading["header"] = std::move(header);
    Json texts = Json::object();
    for (int row = 0; row < rows; ++row) {
      Json cells = Json::array();
      for (int column = 0; column < model_->columnCount(); ++column)
        if (!isColumnHidden(column))
          cells.push_back(model_->index(row, column).data(Qt::EditRole).toString().toStdString());
      texts[std::to_string(row + 1)] = std::move(cells);
    }
    reading["rows"] = std::move(texts);
    if (!alerts.empty()) reading["alerts"] = std::move(alerts);
    return reading;
  }

protected:
  void commitData(QWidget* editor) override {
    isCommitting_ = true;
    GridTable::commitData(editor);
    isCommitting_ = false;
    if (isRefreshDue_) QTimer::singleShot(0, this, [this] { refreshIfDue(); });
  }

  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override {
    using Hint = QAbstractItemDelegate::EndEditHint;
    const bool isNext = hint == Hint::EditNextItem;
    // Tab leaves the grid from an editor as it does from a cell: a selection that moved on would be another row's.
    const bool leaves = isNext || hint == Hint::EditPreviousItem;
    GridTable::closeEditor(editor, leaves ? Hint::NoHint : hint);
    refreshIfDue();
    if (leaves) focusNextPrevChild(isNext);
  }

  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override {
    QTableView::currentChanged(current, previous);
    const int row = gridRow(current);
    // The table sets a current cell itself when it gets the focus: this is not a choice of the user.
    if (isTakingFocus_ || isArranging_ || !current.isValid() || row > grid_.RowCount()) return;
    const int column = current.column();
    dialog_.act(
        {{"select", toUtf8(grid_.role())}, {"row", row}, {"column", column}},
        [this, row, column](Gestures& gestures, Json&) { return gestures.selectRow(grid_, row, column); });
  }

  void focusInEvent(QFocusEvent* event) override {
    isTakingFocus_ = true;
    QTableView::focusInEvent(event);
    isTakingFocus_ = false;
  }

  // A flow may react to a click with other rows: the table then shows the selection of the grid, and not the clicked
  // position.
  void mousePressEvent(QMouseEvent* event) override {
    QTableView::mousePressEvent(event);
    const QModelIndexList selected = selectionModel()->selectedRows();
    const int shown = selected.isEmpty() ? 0 : gridRow(selected.front());
    if (shown != grid_.SelectedRow() && shown <= grid_.RowCount()) refresh();
  }

  void resizeEvent(QResizeEvent* event) override {
    QTableView::resizeEvent(event);
    layOutColumns();
  }

private:
  /// The row of the grid, from 1; 0 for none.
  [[nodiscard]] int gridRow(const QModelIndex& shown) const { return rows_->mapToSource(shown).row() + 1; }
  /// Where a row of the grid is shown; invalid when the search has left it out.
  [[nodiscard]] QModelIndex shownIndex(int row, int column) const {
    return rows_->mapFromSource(model_->index(row - 1, column));
  }

  /// Up, down, and as the table has them.
  void sortBy(int column) {
    if (grid_.IsEditable()) return;
    QHeaderView& header = *horizontalHeader();
    const bool isSame = header.isSortIndicatorShown() && rows_->sortColumn() == column;
    const bool wasUp = isSame && rows_->sortOrder() == Qt::AscendingOrder;
    const bool isOff = isSame && !wasUp;
    const Qt::SortOrder order = wasUp ? Qt::DescendingOrder : Qt::AscendingOrder;
    arrange([&] { rows_->sort(isOff ? -1 : column, order); });
    header.setSortIndicatorShown(!isOff);
    header.setSortIndicator(column, order);
  }

  void showAllRows() {
    if (rows_->sortColumn() < 0 && !rows_->isSearched()) return;
    arrange([&] {
      rows_->search({});
      rows_->fix(-1, {});
      rows_->sort(-1);
    });
    horizontalHeader()->setSortIndicatorShown(false);
  }

  /// Rows that come and go here select nothing: nobody has chosen.
  void arrange(const std::function<void()>& change) {
    isArranging_ = true;
    change();
    isArranging_ = false;
  }

  void refreshIfDue() {
    if (isRefreshDue_) refresh();
  }

  [[nodiscard]] bool isOnNewRow() const { return gridRow(currentIndex()) > grid_.RowCount(); }

  [[nodiscard]] int shownColumn(int column) const {
    while (column + 1 < grid_.ColumnCount() && grid_.isHidden(column))
      ++column;
    return column;
  }

  void layOutColumns() {
    if (hasOwnWidths_ && ownWidthsFor_ == grid_.ColumnCount()) return;
    QHeaderView& header = *horizontalHeader();
    const bool scrolls = horizontalScrollBarPolicy() != Qt::ScrollBarAlwaysOff;
    std::vector<ColumnNeed> needs = measureColumns(Title::inOneLine);
    const int sum = std::accumulate(needs.begin(), needs.end(), 0, [](int before, const ColumnNeed& need) {
      return before + need.least;
    });
    const bool wraps = !header.isHidden() && sum > viewport()->width();
    if (wraps) needs = measureColumns(Title::wrapped);
    const std::vector<int> widths =
        columnWidths(needs, viewport()->width(), scrolls ? Overflow::scrolls : Overflow::squeezes);
    isLayingOut_ = true;
    constexpr int aboveAndBelow = 6;
    header.setFixedHeight(fontMetrics().lineSpacing() * (wraps ? 2 : 1) + aboveAndBelow);
    header.setMinimumSectionSize(rowHeadWidth);
    header.setStretchLastSection(true);
    auto width = widths.begin();
    for (int column = 0; column < grid_.ColumnCount(); ++column)
      if (!grid_.isHidden(column)) header.resizeSection(column, *width++);
    isLayingOut_ = false;
  }

  /// The layout of a title over its column: if the titles do not all fit, their words are put below each other.
  enum class Title { inOneLine, wrapped };

  [[nodiscard]] int titleWidth(int column, Title title) const {
    if (title == Title::inOneLine) return horizontalHeader()->sectionSizeHint(column);
    int widest = 0;
    for (const QString& word : toQt(grid_.Cell(0, column)).split(QLatin1Char(' ')))
      widest = std::max(widest, fontMetrics().horizontalAdvance(word));
    constexpr int besides = 8;
    return widest + besides;
  }

  /// Of the columns that are shown.
  [[nodiscard]] std::vector<ColumnNeed> measureColumns(Title title) const {
    constexpr int besides = 6;
    const std::vector<int>& parts = grid_.columnWidths();
    const bool hasParts = static_cast<int>(parts.size()) == grid_.ColumnCount();
    const int widest = fontMetrics().averageCharWidth() * widestColumn;
    std::vector<ColumnNeed> needs;
    for (int column = 0; column < grid_.ColumnCount(); ++column) {
      if (grid_.isHidden(column)) continue;
      ColumnNeed need;
      need.wanted = std::max(sizeHintForColumn(column) + besides, rowHeadWidth);
      if (!model_->isRowHead(column)) {
        need.share = hasParts ? parts[static_cast<std::size_t>(column)] : 1;
        if (!horizontalHeader()->isHidden())
          need.wanted = std::max(need.wanted, titleWidth(column, title) + besides);
      }
      need.least = std::min(need.wanted, widest);
      needs.push_back(need);
    }
    return needs;
  }

  QtDialog& dialog_;
  GridModel& grid_;
  GridTableModel* model_;
  ShownRows* rows_;
  bool isArranging_ = false;
  bool isTakingFocus_ = false;
  bool isCommitting_ = false;
  bool isRefreshDue_ = false;
  bool isLayingOut_ = false;
  bool hasOwnWidths_ = false; ///< the user has moved a border between columns
  int ownWidthsFor_ = 0;      ///< how many columns there were then
};

class GridView final : public ControlView {
public:
  GridView(QtDialog& dialog, GridModel& model, const ControlLook& look)
      : ControlView(dialog, model), table_(makeGridTable(dialog, model)) {
    const int rows = look.rows > 0 ? look.rows : 6;
    table_->setMinimumHeight(
        table_->verticalHeader()->defaultSectionSize() * (rows + 1) + 2 * table_->frameWidth());
    showWhenEmpty(*table_, toQt(look.empty));
    if (!look.hasSearch) return;
    search_ = new SearchField(dialog.words().search);
    search_->onSearch = [this](const QString& text) { table_->search(text); };
    search_->onDown = [this] { table_->selectFirstShown(); };
    // Who types here has left the control before.
    search_->onEntered = [&dialog] { dialog.leaveBy(); };
    head_ = search_;
    const QString phase = dialog.circuitFacts() == nullptr ? QString() : dialog.circuitFacts()->phase();
    if (!phase.isEmpty()) addPhase(phase);
  }
  [[nodiscard]] QWidget& widget() const override { return *table_; }
  [[nodiscard]] QWidget* searchField() const override { return head_; }
  [[nodiscard]] Json reading() const override { return table_->reading(); }

private:
  /// Beside the search field: only what fits the circuit that is configured.
  void addPhase(const QString& phase) {
    head_ = new QWidget;
    only_ = new QCheckBox(dialog().words().onlyPhase.arg(phase));
    only_->setObjectName(QStringLiteral("onlyPhase"));
    only_->setProperty("phase", phase);
    auto* line = new QHBoxLayout(head_);
    line->setContentsMargins(0, 0, 0, 0);
    line->addWidget(search_, 1);
    line->addWidget(only_);
    head_->setFocusProxy(search_);
    only_->setChecked(true);
    QObject::connect(only_, &QCheckBox::toggled, only_, [this] { showOnlyPhase(); });
  }

  void showOnlyPhase() {
    const QString column = only_->isChecked() ? dialog().words().phaseColumn : QString();
    const bool isShown = table_->showOnly(column, only_->property("phase").toString());
    const QSignalBlocker quiet(only_);
    if (only_->isChecked() && !isShown) only_->setChecked(false);
  }

  void show() override {
    table_->refresh();
    if (search_ == nullptr) return;
    if (only_ != nullptr && only_->isChecked()) showOnlyPhase();
    // Rows that are typed in are all shown.
    const bool isFree = !dynamic_cast<const GridModel&>(model()).IsEditable();
    if (!isFree) search_->clear();
    head_->setEnabled(isFree);
    search_->setEnabled(isFree);
  }

  GridTable* table_;
  SearchField* search_ = nullptr;
  QCheckBox* only_ = nullptr;
  QWidget* head_ = nullptr; ///< above the table
};

} // namespace

GridTable* makeGridTable(QtDialog& dialog, GridModel& grid) {
  return new ShownGrid(dialog, grid);
}

std::unique_ptr<ControlView> makeGridView(QtDialog& dialog, GridModel& model, const ControlLook& look) {
  return std::make_unique<GridView>(dialog, model, look);
}

} // namespace simhost
