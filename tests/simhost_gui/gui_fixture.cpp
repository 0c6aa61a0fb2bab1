// Setting a window up.
#include "gui_fixture.h"

#include "simhost/drawing/drawing_file.h"

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include <cstdlib>
#include <stdexcept>

namespace simhost {

void needApplication() {
  static int argc = 1;
  static char name[] = "simhost_gui_test";
  static char* argv[] = {name, nullptr};
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  // Lives to the end of the process: its plug-ins must not be unloaded before what they registered.
  static const auto& application = *new QApplication(argc, argv);
  static_cast<void>(application);
}

namespace {

SiteRunOptions optionsFor(
    const std::string& settings, const std::string& language, const std::string& folder) {
  needApplication(); // before every widget
  SiteRunOptions options;
  options.site = folder;
  options.settings = settings;
  options.language = language;
  options.unnamedSettings = SiteRunOptions::UnnamedSettings::memory;
  return options;
}

} // namespace

GuiFixture::GuiFixture(const std::string& settings, const std::string& language, const std::string& folder)
    : texts("resources", language), site(optionsFor(settings, language, folder), windows),
      window(site, windows, texts) {
  window.resize(1000, 700);
  window.show();
  QTest::qWait(1);
}

CommandOutcome GuiFixture::buildPump(const std::wstring& place, const std::wstring& configuration) {
  return run(
      L"(site-build \"templates/motor3_dol.json\" (find-file \"zan_brenvolt.xls\") \"M3_DOL\""
      L" \"Three-phase motors\" \"Direct on line\" \"" +
      configuration + L"\" '(" + place + L") \"\" \"\" \"\"" + (configuration.empty() ? L" T)" : L")"));
}

std::string GuiFixture::shownText() {
  std::string text = drawingToJson(drawing());
  const std::size_t next = text.find("\"nextHandle\"");
  return text.erase(next, text.find(',', next) - next);
}

void GuiFixture::click(double x, double y) {
  const QPoint place = window.view().mapTo(&window, pixel(x, y));
  QTest::mouseMove(window.windowHandle(), place);
  QTest::mouseClick(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, place);
}

void GuiFixture::key(Qt::Key key) {
  QTest::keyClick(window.windowHandle(), key);
}

void later(const std::function<void()>& action) {
  QTimer::singleShot(0, action);
}

} // namespace simhost
