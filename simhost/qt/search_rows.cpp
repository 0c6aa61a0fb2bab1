// Every word has to be found, in any column: "p-1 15" is circuit P-101 of 15 HP.
#include "simhost/qt/search_rows.h"

#include "simhost/qt/search_field.h"

#include <QTreeWidget>

#include <algorithm>

namespace simhost {

QString textOfCells(const QTreeWidgetItem& row) {
  QString all;
  for (int column = 0; column < row.columnCount(); ++column)
    all += row.text(column) + QLatin1Char('\n');
  return all;
}

void makeRowList(QTreeWidget& table) {
  table.setRootIsDecorated(false);
  table.setUniformRowHeights(true);
  table.setAllColumnsShowFocus(true);
  table.setTabKeyNavigation(false);
}

void searchRows(SearchField& field, QTreeWidget& table, const RowText& textOf) {
  field.onSearch = [&table, textOf](const QString& text) {
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (int row = 0; row < table.topLevelItemCount(); ++row) {
      QTreeWidgetItem& item = *table.topLevelItem(row);
      const QString all = textOf(item);
      const bool isHidden = std::any_of(words.begin(), words.end(), [&all](const QString& word) {
        return !all.contains(word, Qt::CaseInsensitive);
      });
      if (isHidden != item.isHidden()) item.setHidden(isHidden);
    }
  };
  field.onDown = [&table] {
    table.setFocus(Qt::TabFocusReason);
    if (QTreeWidgetItem* first = firstFound(table)) table.setCurrentItem(first);
  };
}

QTreeWidgetItem* firstFound(const QTreeWidget& table) {
  for (int row = 0; row < table.topLevelItemCount(); ++row)
    if (QTreeWidgetItem* item = table.topLevelItem(row); !item->isHidden()) return item;
  return nullptr;
}

} // namespace simhost
