#include "simhost/gui/configuration_table.h"

#include "simhost/qt/empty_note.h"
#include "simhost/qt/qt_text.h"
#include "simhost/qt/search_field.h"
#include "simhost/qt/search_rows.h"
#include "simhost/qt/window_places.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>
#include <array>

namespace simhost {
namespace {

constexpr int placeRole = Qt::UserRole; ///< in the first column

/// A column of motor or load data: its place in what a configuration keeps, and that of its unit.
struct DataColumn {
  HostText title;
  std::size_t field;
  std::optional<std::size_t> unit;
};
constexpr std::array dataColumns = {
    DataColumn{HostText::columnLoad, 1, 2}, DataColumn{HostText::columnVoltage, 3, {}},
    DataColumn{HostText::columnPhase, 4, {}}, DataColumn{HostText::columnSpeed, 6, {}},
    DataColumn{HostText::columnCurrent, 7, {}}};

/// Sorted by the number at its beginning, where both have one.
class Row final : public QTreeWidgetItem {
public:
  using QTreeWidgetItem::QTreeWidgetItem;
  bool operator<(const QTreeWidgetItem& other) const override {
    const int column = treeWidget()->sortColumn();
    const auto number = [column](const QTreeWidgetItem& row, bool& isNumber) {
      return row.text(column).section(QLatin1Char(' '), 0, 0).toDouble(&isNumber);
    };
    bool isOne = false;
    bool isOther = false;
    const double one = number(*this, isOne);
    const double two = number(other, isOther);
    if (isOne && isOther) return one < two;
    return text(column).localeAwareCompare(other.text(column)) < 0;
  }
};

/// The text of each motor and load, once where they have the same.
template <typename TextOf>
QString ofEach(const std::vector<brenvolt::SavedControl>& controls, TextOf textOf) {
  QStringList texts;
  for (const brenvolt::SavedControl& control : controls)
    texts.append(textOf(control));
  return texts.count(texts.value(0)) == texts.size() ? texts.value(0) : texts.join(QStringLiteral("; "));
}

QStringList cellsOf(const SiteConfigurations& site, std::size_t place) {
  const brenvolt::HistoryKey& key = site.saved[place].key;
  const std::vector<brenvolt::SavedControl>& controls = site.controls[place];
  QStringList cells = {toQt(key.name)};
  for (const DataColumn& column : dataColumns)
    cells.append(ofEach(controls, [&column](const brenvolt::SavedControl& control) {
      const auto field = [&control](std::size_t number) {
        return number < control.fields.size() ? toQt(control.fields[number]) : QString();
      };
      const QString text = field(column.field);
      return column.unit && !text.isEmpty() ? text + QLatin1Char(' ') + field(*column.unit) : text;
    }));
  cells.append(ofEach(controls, [](const brenvolt::SavedControl& control) {
    const auto wire = std::find_if(
        control.wires.begin(), control.wires.end(), [](const auto& each) { return !each.isGrounding; });
    return wire == control.wires.end() ? QString() : toQt(wire->size);
  }));
  cells.append(toQt(key.circuit));
  cells.append(toQt(key.type));
  return cells;
}

} // namespace

std::optional<std::size_t> chooseConfiguration(
    QWidget* parent, const HostTexts& texts, const SiteConfigurations& site,
    const std::vector<std::size_t>& rows) {
  QDialog dialog(parent);
  dialog.setObjectName(QStringLiteral("configurations"));
  dialog.setWindowTitle(texts(HostText::configurationsTitle));
  auto* field = new SearchField(texts(HostText::configurationSearch));
  auto* table = new QTreeWidget;
  table->setObjectName(QStringLiteral("configurationTable"));
  table->setAccessibleName(texts(HostText::configurationsTitle));
  makeRowList(*table);
  QStringList titles = {texts(HostText::columnConfiguration)};
  for (const DataColumn& column : dataColumns)
    titles.append(texts(column.title));
  titles.append({texts(HostText::columnWire), texts(HostText::columnCircuit), texts(HostText::columnType)});
  table->setHeaderLabels(titles);
  for (const std::size_t place : rows) {
    auto* row = new Row(table, cellsOf(site, place));
    row->setData(0, placeRole, QVariant::fromValue<qulonglong>(place));
  }
  table->setSortingEnabled(true);
  table->sortByColumn(-1, Qt::AscendingOrder); // as the file has them, until a header is clicked
  for (int column = 0; column < table->columnCount(); ++column)
    table->resizeColumnToContents(column);
  showWhenEmpty(*table, texts(HostText::noHistory));
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
  auto* column = new QVBoxLayout(&dialog);
  column->addWidget(field);
  column->addWidget(table, 1);
  column->addWidget(buttons);
  QPushButton* const ok = buttons->button(QDialogButtonBox::Ok);
  ok->setEnabled(false);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  QObject::connect(table, &QTreeWidget::currentItemChanged, ok, [ok](const QTreeWidgetItem* item) {
    ok->setEnabled(item != nullptr);
  });
  QObject::connect(table, &QTreeWidget::itemActivated, &dialog, &QDialog::accept);
  searchRows(*field, *table);
  QObject::connect(
      field, &QLineEdit::textChanged, table, [table] { table->setCurrentItem(firstFound(*table)); });
  table->setCurrentItem(firstFound(*table)); // Enter takes what is seen as selected
  table->setFocus();
  constexpr int beside = 80;
  dialog.resize(table->header()->length() + beside, 420);
  fitToScreen(dialog);
  if (dialog.exec() != QDialog::Accepted || table->currentItem() == nullptr) return std::nullopt;
  return static_cast<std::size_t>(table->currentItem()->data(0, placeRole).toULongLong());
}

} // namespace simhost
