// Where to click and what to type for each gesture.
#include "tests/simhost_qt/widget_gestures.h"

#include "simhost/json/json_text.h"
#include "simhost/qt/grid_view.h"
#include "simhost/qt/qt_text.h"
#include "simhost/ui/pages_model.h"
#include "simhost/ui/tree_model.h"
#include "text/encoding.h"

#include <QAbstractButton>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QToolButton>
#include <QTreeWidget>

#include <nlohmann/json.hpp>

namespace simhost::test {

using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

namespace {

void replaceText(QWidget& field, std::wstring_view text) {
  QTest::keyClick(&field, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(&field, Qt::Key_Delete);
  QTest::keyClicks(&field, toQt(text));
}

/// Clicks a cell where a user would: where it is visible.
QPoint centreOf(QAbstractItemView& view, const QModelIndex& index) {
  view.scrollTo(index);
  return view.visualRect(index).intersected(view.viewport()->rect()).center();
}

QTreeWidgetItem* findItem(QTreeWidgetItem* parent, int id) {
  for (int row = 0; row < parent->childCount(); ++row) {
    QTreeWidgetItem* child = parent->child(row);
    if (child->data(0, Qt::UserRole).toInt() == id) return child;
    if (QTreeWidgetItem* below = findItem(child, id)) return below;
  }
  return nullptr;
}

} // namespace

Refusal WidgetGestures::find(ControlModel& control, bool isForChange, ControlView*& view) {
  view = dialog_.views().of(control);
  if (view == nullptr) return "no widget shows it";
  const QWidget& widget = view->focusWidget();
  Refusal refusal = isForChange ? reachForChange(control) : reach(control);
  const bool isUsable = widget.isEnabled() && widget.isVisible();
  if (refusal && isForChange && isUsable) return "its widget can be used, though " + *refusal;
  if (!refusal && !widget.isVisible()) return "its widget is not seen";
  if (!refusal && isForChange && !widget.isEnabled()) return "its widget is disabled";
  return refusal;
}

void WidgetGestures::key(int key) {
  QWidget* focused = dialog_.frame().focusWidget();
  QTest::keyClick(focused == nullptr ? &dialog_.frame() : focused, static_cast<Qt::Key>(key));
}

Refusal WidgetGestures::focus(ControlModel& control) {
  ControlView* view = nullptr;
  if (Refusal refusal = find(control, false, view)) return refusal;
  QWidget& widget = view->focusWidget();
  if (widget.hasFocus() && qobject_cast<QLineEdit*>(&widget))
    QTest::mouseClick(&widget, Qt::LeftButton);
  else
    widget.setFocus(Qt::TabFocusReason);
  return dialog_.takeRefusal();
}

void WidgetGestures::leave() {
  // The margin of a window holds no control.
  QTest::mouseClick(&dialog_.frame(), Qt::LeftButton, {}, QPoint(2, 2));
}

Refusal WidgetGestures::press(ControlModel& control) {
  if (control.kind() != ControlKind::button) return "it is not a button";
  ControlView* view = nullptr;
  if (Refusal refusal = find(control, true, view)) return refusal;
  QTest::mouseClick(&view->widget(), Qt::LeftButton);
  return dialog_.takeRefusal();
}

Refusal WidgetGestures::pressInGroup(GroupModel& group, int button) {
  ControlView* view = nullptr;
  if (Refusal refusal = find(group, true, view)) return refusal;
  const auto buttons = view->widget().findChildren<QToolButton*>();
  if (button < 0 || button >= buttons.size()) return "it has no button " + std::to_string(button);
  QTest::mouseClick(buttons[button], Qt::LeftButton);
  return dialog_.takeRefusal();
}

Refusal WidgetGestures::tick(ControlModel& control, bool isOn) {
  ControlView* view = nullptr;
  if (Refusal refusal = find(control, true, view)) return refusal;
  auto* button = qobject_cast<QAbstractButton*>(&view->widget());
  if (button == nullptr || control.kind() == ControlKind::button) return "it has no tick";
  if (button->isChecked() == isOn) return focus(control);
  if (control.kind() == ControlKind::radio && !isOn) return "a radio button is left by ticking another one";
  QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
  return dialog_.takeRefusal();
}

Refusal WidgetGestures::type(ControlModel& control, std::wstring_view text) {
  ControlView* view = nullptr;
  if (Refusal refusal = find(control, true, view)) return refusal;
  auto* box = qobject_cast<QComboBox*>(&view->widget());
  auto* field = box == nullptr ? qobject_cast<QLineEdit*>(&view->widget()) : box->lineEdit();
  if (field == nullptr) return "it has no field to type in";
  if (field->isReadOnly()) return "it is read-only";
  view->focusWidget().setFocus(Qt::MouseFocusReason);
  if (dialog_.isEnded()) return std::nullopt;
  if (Refusal refusal = find(control, true, view)) return refusal;
  replaceText(*field, text);
  return dialog_.takeRefusal();
}

Refusal WidgetGestures::choose(ControlModel& control, int index) {
  auto* list = dynamic_cast<ListModel*>(&control);
  if (list == nullptr) return "it is not a list";
  ControlView* view = nullptr;
  if (Refusal refusal = find(control, true, view)) return refusal;
  if (auto* open = qobject_cast<QListWidget*>(&view->widget())) {
    if (index < 0 || index >= open->count()) return "it has no entry " + std::to_string(index);
    const QPoint place = centreOf(*open, open->model()->index(index, 0));
    QTest::mouseClick(open->viewport(), Qt::LeftButton, {}, place);
    return dialog_.takeRefusal();
  }
  auto& box = dynamic_cast<QComboBox&>(view->widget());
  box.showPopup();
  if (dialog_.isEnded()) return std::nullopt;
  if (index < 0 || index >= box.count()) return "it has no entry " + std::to_string(index);
  QAbstractItemView& entries = *box.view();
  if (!entries.isVisible()) return "its list did not open";
  entries.setCurrentIndex(entries.model()->index(index, 0));
  QTest::keyClick(&entries, Qt::Key_Return);
  return dialog_.takeRefusal();
}

Refusal WidgetGestures::enter() {
  // At the opening the cursor is in the first field without a gesture.
  if (dialog_.focus() == nullptr) leave();
  key(Qt::Key_Return);
  return dialog_.takeRefusal();
}

Refusal WidgetGestures::deleteKey() {
  key(Qt::Key_Delete);
  return dialog_.takeRefusal();
}

Refusal WidgetGestures::help() {
  if (!dialog_.frame().isVisible()) return "the dialog is hidden";
  key(Qt::Key_F1);
  return dialog_.takeRefusal();
}

Refusal WidgetGestures::close() {
  if (!dialog_.frame().isVisible()) return "the dialog is hidden";
  dialog_.frame().close();
  return dialog_.takeRefusal();
}

Refusal WidgetGestures::selectItem(TreeModel& tree, int item) {
  ControlView* view = nullptr;
  if (Refusal refusal = find(tree, true, view)) return refusal;
  auto& shown = dynamic_cast<QTreeWidget&>(view->widget());
  QTreeWidgetItem* found = findItem(shown.invisibleRootItem(), item);
  if (found == nullptr) return "the tree shows no such item";
  for (QTreeWidgetItem* above = found->parent(); above != nullptr; above = above->parent())
    above->setExpanded(true);
  shown.scrollToItem(found);
  const QRect place = shown.visualItemRect(found).intersected(shown.viewport()->rect());
  QTest::mouseClick(shown.viewport(), Qt::LeftButton, {}, QPoint(place.left() + 20, place.center().y()));
  return dialog_.takeRefusal();
}

Refusal WidgetGestures::doubleClickItem(TreeModel& tree, int item) {
  if (Refusal refusal = selectItem(tree, item)) return refusal;
  if (dialog_.isEnded()) return std::nullopt;
  auto& shown = dynamic_cast<QTreeWidget&>(dialog_.views().of(tree)->widget());
  const QRect place = shown.visualItemRect(findItem(shown.invisibleRootItem(), item));
  QTest::mouseDClick(shown.viewport(), Qt::LeftButton, {}, QPoint(place.left() + 20, place.center().y()));
  return dialog_.takeRefusal();
}

Refusal WidgetGestures::findCell(GridModel& grid, int row, int column, QTableView*& table) {
  ControlView* view = nullptr;
  if (Refusal refusal = find(grid.owner(), true, view)) return refusal;
  table = qobject_cast<QTableView*>(&view->focusWidget());
  if (row < 1 || row > table->model()->rowCount()) return "it has no row " + std::to_string(row);
  if (column < 0 || column >= table->model()->columnCount())
    return "it has no column " + std::to_string(column);
  return std::nullopt;
}

Refusal WidgetGestures::selectRow(GridModel& grid, int row, int column) {
  QTableView* table = nullptr;
  if (Refusal refusal = findCell(grid, row, column, table)) return refusal;
  while (table->isColumnHidden(column) && column + 1 < table->model()->columnCount())
    ++column;
  const QPoint place = centreOf(*table, table->model()->index(row - 1, column));
  QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, place);
  return dialog_.takeRefusal();
}

Refusal WidgetGestures::doubleClickRow(GridModel& grid, int row, int column) {
  if (Refusal refusal = selectRow(grid, row, column)) return refusal;
  if (dialog_.isEnded()) return std::nullopt;
  QTableView* table = nullptr;
  if (Refusal refusal = findCell(grid, row, column, table)) return refusal;
  while (table->isColumnHidden(column) && column + 1 < table->model()->columnCount())
    ++column;
  const QPoint place = centreOf(*table, table->model()->index(row - 1, column));
  QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, place);
  return dialog_.takeRefusal();
}

Refusal WidgetGestures::editCell(
    GridModel& grid, int row, int column, std::wstring_view text, CellAnswer& answer) {
  QTableView* table = nullptr;
  if (Refusal refusal = findCell(grid, row, column, table)) return refusal;
  const QModelIndex index = table->model()->index(row - 1, column);
  if (table->isColumnHidden(column)) return "column " + std::to_string(column) + " is hidden";
  const Qt::ItemFlags flags = index.flags();
  if (!(flags & (Qt::ItemIsEditable | Qt::ItemIsUserCheckable))) return "the cell cannot be edited";
  dialog_.setLastCellAnswer(CellAnswer::taken);
  const auto shows = [&] { return fromQt(index.data(Qt::EditRole).toString()) == text; };
  if (flags & Qt::ItemIsUserCheckable) {
    if (text != L"0" && text != L"1") return "the cell is a check box: use true or false";
    if (!shows())
      table->model()->setData(index, text == L"1" ? Qt::Checked : Qt::Unchecked, Qt::CheckStateRole);
    return std::nullopt;
  }
  table->setFocus(Qt::MouseFocusReason);
  table->setCurrentIndex(index);
  if (dialog_.isEnded()) return std::nullopt;
  table->edit(index);
  QWidget* editor = table->indexWidget(index);
  if (editor == nullptr) editor = table->viewport()->findChild<QWidget*>({}, Qt::FindDirectChildrenOnly);
  if (editor == nullptr) return "no editor opens";
  if (auto* box = qobject_cast<QComboBox*>(editor)) {
    const int entry = box->findText(toQt(text));
    if (entry < 0) {
      QTest::keyClick(box, Qt::Key_Escape);
      return "the list of the cell has no \"" + toUtf8(text) + "\"";
    }
    box->setCurrentIndex(entry);
    emit box->activated(entry);
  } else {
    replaceText(*editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
  }
  // The text is taken over when the events that wait have been seen to.
  QCoreApplication::processEvents();
  answer = dialog_.lastCellAnswer();
  return dialog_.takeRefusal();
}

std::string unlikeShown(QtDialog& dialog) {
  dialog.refresh();
  std::string unlike;
  const auto tell = [&unlike](const std::string& role, const std::string& what) {
    unlike.append(role).append(": ").append(what).append("\n");
  };
  for (const auto& view : dialog.views()) {
    ControlModel& model = view->model();
    const PagesModel* pages = model.pages();
    if (pages != nullptr && pages->ShownPage() != model.page()) continue;
    const std::string role = toUtf8(model.role());
    const Json shown = model.shown();
    const Json reading = view->reading();
    const bool isLong = shown.contains("sum");
    for (const auto& [member, value] : reading.items()) {
      if (isLong && member == "rows") continue;
      const std::string wanted = shown.contains(member) ? jsonText(shown[member]) : "absent";
      if (jsonText(value) == wanted) continue;
      std::string what = member;
      tell(role, what.append(" reads ").append(jsonText(value)).append(", should be ").append(wanted));
    }
    const bool isLocked = pages != nullptr && pages->IsLocked(model.page());
    if (view->widget().isVisibleTo(&dialog.frame()) != model.isVisible() && pages == nullptr)
      tell(role, "is seen otherwise");
    if (view->widget().isEnabled() != (model.isEnabled() && !isLocked) && pages == nullptr)
      tell(role, "is enabled otherwise");
  }
  return unlike;
}

} // namespace simhost::test
