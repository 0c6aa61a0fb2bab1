// The drawing's layers with their colours, and which of them are shown.
#pragma once

#include "simhost/drawing/display_list.h"

#include <QListWidget>

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace simhost {

class LayerPanel final : public QListWidget {
public:
  explicit LayerPanel(QWidget* parent = nullptr);

  /// Shows these layers, sorted by name; those in `hidden` have no tick.
  void setLayers(const std::vector<Layer>& layers, const std::set<std::wstring>& hidden, Paper paper);

  /// The user has shown or hidden a layer; the names of all that are hidden.
  std::function<void(const std::set<std::wstring>& hidden)> onHiddenChanged;
};

} // namespace simhost
