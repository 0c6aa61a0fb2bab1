// The drawing's circuits as a table that a designer works from: search, click to see one, double click to configure it.
#pragma once

#include "simhost/gui/circuit_rows.h"

#include <QWidget>

#include <functional>
#include <string>
#include <vector>

class QTreeWidget;
class QTreeWidgetItem;

namespace simhost {

class SearchField;

class CircuitPanel final : public QWidget {
public:
  explicit CircuitPanel(const HostTexts& texts, QWidget* parent = nullptr);

  /// Shows these in place of what was there; the selection stays where its circuit is still there.
  void setCircuits(const std::vector<CircuitRow>& rows);
  /// Selects the circuit without a notification; none for an empty id.
  void showCircuit(const std::wstring& id);
  /// Empty for none.
  [[nodiscard]] std::wstring selected() const;
  /// Puts the keyboard into the search field.
  void startSearch();

  /// A circuit was selected by mouse or keys.
  std::function<void(const std::wstring& circuit)> onSelected;
  /// Double click, or Enter.
  std::function<void(const std::wstring& circuit)> onOpened;
  /// Escape: the focus returns to the drawing.
  std::function<void()> onLeft;
  /// The user requests the context menu at this position of the screen.
  std::function<void(const QPoint& place)> onMenu;

protected:
  bool eventFilter(QObject* object, QEvent* event) override;

private:
  const HostTexts& texts_;
  SearchField* search_;
  QTreeWidget* table_;
};

} // namespace simhost
