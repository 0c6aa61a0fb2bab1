// Ticks and swatches.
#include "simhost/gui/layer_panel.h"

#include "simhost/qt/qt_text.h"

#include <QPainter>
#include <QPixmap>
#include <QSignalBlocker>

namespace simhost {
namespace {

QIcon swatch(Colour colour) {
  constexpr int size = 12;
  QPixmap pixmap(size, size);
  pixmap.fill(QColor(colour.red, colour.green, colour.blue));
  return {pixmap};
}

} // namespace

LayerPanel::LayerPanel(QWidget* parent) : QListWidget(parent) {
  setObjectName(QStringLiteral("layers"));
  setSortingEnabled(true);
  connect(this, &QListWidget::itemChanged, this, [this] {
    std::set<std::wstring> hidden;
    for (int row = 0; row < count(); ++row)
      if (item(row)->checkState() == Qt::Unchecked) hidden.insert(fromQt(item(row)->text()));
    if (onHiddenChanged) onHiddenChanged(hidden);
  });
}

void LayerPanel::setLayers(
    const std::vector<Layer>& layers, const std::set<std::wstring>& hidden, Paper paper) {
  const QSignalBlocker blocker(this);
  const QString current = currentItem() == nullptr ? QString() : currentItem()->text();
  clear();
  for (const Layer& layer : layers) {
    auto* row = new QListWidgetItem(swatch(readable(layer.colour, paper)), toQt(layer.name));
    row->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsUserCheckable);
    row->setCheckState(hidden.contains(layer.name) ? Qt::Unchecked : Qt::Checked);
    addItem(row);
    if (row->text() == current) setCurrentItem(row);
  }
}

} // namespace simhost
