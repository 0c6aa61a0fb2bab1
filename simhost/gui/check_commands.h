// The check of the site: the offer in the status bar when the site has changed, the panel with the findings, and the
// places that findings name.
#pragma once

#include "simhost/gui/window_services.h"

#include <QPointF>

class QStatusBar;

namespace simhost {

class CheckPanel;
class DrawingFiles;
class DrawingView;
struct SiteFinding;

class CheckCommands final {
public:
  /// All must outlive it.
  CheckCommands(const WindowServices& services, DrawingView& view, DrawingFiles& files);
  CheckCommands(const CheckCommands&) = delete;
  CheckCommands& operator=(const CheckCommands&) = delete;

  /// The full path of the site's folder; empty for none.
  [[nodiscard]] const QString& site() const { return site_; }
  /// Shows findings in this panel, and the offer in this bar; both must outlive their use here.
  void attach(CheckPanel& panel, QStatusBar& bar);
  /// Starts a check unless one runs.
  void check();

  /// A check begins: its panel is to be seen.
  std::function<void()> onStarted;

private:
  void openFinding(const SiteFinding& finding);

  WindowServices services_;
  DrawingView& view_;
  DrawingFiles& files_;
  CheckPanel* panel_ = nullptr;
  QString site_;
};

} // namespace simhost
