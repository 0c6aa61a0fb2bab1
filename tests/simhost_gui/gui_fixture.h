// A main window over a drawing that a test fills, with settings of its own.
#pragma once

#include "simhost/gui/main_window.h"
#include "simhost/gui/prompt_pane.h"
#include "simhost/site/site_run.h"
#include "tests/support/temporary_folder.h"

#include <QAction>
#include <QTimer>

#include <filesystem>
#include <functional>
#include <string>

namespace simhost {

/// Made once for the process, without a screen.
void needApplication();

/// An empty folder that is removed with the object.
class GuiFolder final {
public:
  [[nodiscard]] std::string path(const std::string& name) const { return (folder_ / name).string(); }

private:
  brenvolt::test::TemporaryFolder folder_;
};

class GuiFixture final {
public:
  /// `settings`: a file; empty keeps them in memory. `folder`: of a site, empty for none.
  explicit GuiFixture(
      const std::string& settings = {}, const std::string& language = "en", const std::string& folder = {});

  [[nodiscard]] DrawingDatabase& drawing() { return site.session().documents().current()->drawing(); }
  /// Runs a LISP text as the prompt does.
  CommandOutcome run(const std::wstring& form) { return window.runner().run(QStringLiteral("LISP"), form); }
  /// Builds a circuit of the sample site with a saved configuration, or in its dialog without one.
  CommandOutcome buildPump(
      const std::wstring& place = L"0 0 0", const std::wstring& configuration = L"Pump 10 HP");
  /// What is drawn, without the handles of the future: none is given twice, also where everything is as it was.
  [[nodiscard]] std::string shownText();
  /// The pixel of the view for a point of the drawing.
  [[nodiscard]] QPoint pixel(double x, double y) {
    // The view counts in pixels of the device.
    return (window.view().view().toScreen({x, y, 0.0}) / window.view().devicePixelRatioF()).toPoint();
  }
  /// The user's actions at the window with mouse and keys: a window that a dialog blocks gets neither.
  void click(double x, double y);
  void key(Qt::Key key);

  QtWindows windows;
  HostTexts texts;
  SiteRun site;
  MainWindow window;
};

/// Looks again and again until it has found what it waits for.
class Watch final {
public:
  explicit Watch(std::function<bool()> look) : look_(std::move(look)) {
    timer_.callOnTimeout([this] {
      if (look_()) timer_.stop();
    });
    timer_.start(0);
  }

private:
  std::function<bool()> look_;
  QTimer timer_;
};

/// Does this as soon as the events run again: from within a pick or a dialog.
void later(const std::function<void()>& action);

} // namespace simhost
