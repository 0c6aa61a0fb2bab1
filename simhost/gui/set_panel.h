// The sheets of the open set: search by tag, double click or Enter opens a sheet.
#pragma once

#include "simhost/gui/drawing_set.h"
#include "simhost/gui/host_texts.h"

#include <QWidget>

#include <functional>

class QTreeWidget;

namespace simhost {

class SearchField;

class SetPanel final : public QWidget {
public:
  explicit SetPanel(const HostTexts& texts, QWidget* parent = nullptr);

  void setSheets(const DrawingSet& set);
  /// Marks the sheet that is open; none for another file.
  void showOpen(const QString& file);

  std::function<void(const QString& file)> onOpen;

private:
  void openCurrent();

  SearchField* search_;
  QTreeWidget* table_;
};

} // namespace simhost
