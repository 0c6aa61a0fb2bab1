// A grid on the screen: its rows and cells, edited in place.
#pragma once

#include "simhost/qt/control_view.h"
#include "simhost/ui/grid_model.h"

#include <QTableView>

namespace simhost {

/// The table of a grid, alone or in a group.
class GridTable : public QTableView {
public:
  virtual void refresh() = 0;
  /// Shows only rows that have all the words; all for none.
  virtual void search(const QString& text) = 0;
  /// Shows only rows with this text under the header, besides; all for an empty header. False, and all are shown, when the
  /// table has no such column, is edited, or the selected row is not among them.
  virtual bool showOnly(const QString& header, const QString& text) = 0;
  /// Goes to the first row that is shown, and selects it.
  virtual void selectFirstShown() = 0;
  /// Shows texts in the last cells of the rows, from the first row on, where these are empty and nobody can edit them.
  virtual void showDrawn(const QStringList& texts) = 0;
  /// The cells as the table shows them, with the members of `GridModel::describe`.
  [[nodiscard]] virtual nlohmann::ordered_json reading() const = 0;
};

/// `grid` must outlive the table. Owned by the parent that it is given.
[[nodiscard]] GridTable* makeGridTable(QtDialog& dialog, GridModel& grid);
[[nodiscard]] std::unique_ptr<ControlView> makeGridView(
    QtDialog& dialog, GridModel& model, const ControlLook& look);

} // namespace simhost
