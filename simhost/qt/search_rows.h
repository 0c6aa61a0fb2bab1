// Rows that are searched as one types: those stay that contain every word of the search field.
#pragma once

#include <QString>

#include <functional>

class QTreeWidget;
class QTreeWidgetItem;

namespace simhost {

class SearchField;

/// What of a row is searched.
using RowText = std::function<QString(const QTreeWidgetItem& row)>;
/// The texts of all cells.
[[nodiscard]] QString textOfCells(const QTreeWidgetItem& row);

/// Makes the table a list of rows: the selection covers all columns, and Tab leaves it.
void makeRowList(QTreeWidget& table);
/// The field searches the rows; Enter and arrow down lead to the first row found. Both must live equally long.
void searchRows(SearchField& field, QTreeWidget& table, const RowText& textOf = textOfCells);
/// The first row that is not hidden; null without one.
[[nodiscard]] QTreeWidgetItem* firstFound(const QTreeWidget& table);

} // namespace simhost
