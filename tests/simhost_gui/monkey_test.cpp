// A user who does anything at all: random keys, clicks and commands. Nothing may end the program or stop it, and undo to the
// start brings back the first drawing.
#include "gui_fixture.h"
#include "simhost/host/files.h"
#include "tests/site/site_tool.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QTest>
#include <QWindow>

#include <doctest/doctest.h>

#include <cstdlib>
#include <random>

using namespace simhost;

namespace {

class Monkey final {
public:
  /// Plays for so many milliseconds and then leaves what is open.
  Monkey(GuiFixture& gui, unsigned seed, int milliseconds)
      : gui_(gui), random_(seed), playTime_(milliseconds) {
    clock_.start();
    plan();
  }

  [[nodiscard]] bool isHome() const {
    return isOver() && !gui_.window.runner().isBusy() && QApplication::activeModalWidget() == nullptr &&
           QApplication::activePopupWidget() == nullptr;
  }
  [[nodiscard]] bool isLost() const { return clock_.elapsed() > playTime_ + 300'000; }

private:
  /// On a slow machine it takes the time that some steps need.
  [[nodiscard]] bool isOver() const { return clock_.elapsed() > playTime_ && steps_ > leastSteps; }

  /// The next step is planned first: one that opens a window comes back when that is closed, and a timer does not call what
  /// still runs.
  void plan() {
    QTimer::singleShot(0, &here_, [this] {
      plan();
      step();
    });
  }

  std::size_t below(std::size_t limit) {
    return std::uniform_int_distribution<std::size_t>(0, limit - 1)(random_);
  }

  // Events are posted: sending one processes the others, the next step among them, and steps would nest without end.
  static void key(const QWidget& window, Qt::Key key) {
    QWindow* handle = window.windowHandle();
    if (handle == nullptr) return;
    const QString text = key < Qt::Key_Escape ? QString(QChar(static_cast<char16_t>(key))) : QString();
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
      QCoreApplication::postEvent(handle, new QKeyEvent(type, key, Qt::NoModifier, text));
  }
  static void click(const QWidget& window, const QPoint& place) {
    QWindow* handle = window.windowHandle();
    if (handle == nullptr) return;
    const QPointF global = handle->mapToGlobal(place);
    for (const auto& [type, held] :
         {std::pair{QEvent::MouseButtonPress, Qt::LeftButton},
          std::pair{QEvent::MouseButtonRelease, Qt::NoButton}})
      QCoreApplication::postEvent(
          handle, new QMouseEvent(type, QPointF(place), global, Qt::LeftButton, held, Qt::NoModifier));
  }

  QWidget& top() const {
    if (QWidget* popup = QApplication::activePopupWidget()) return *popup;
    if (QWidget* modal = QApplication::activeModalWidget()) return *modal;
    for (QWidget* window : QApplication::topLevelWidgets()) // a dialog beside the drawing
      if (window->isVisible() && window->inherits("QDialog")) return *window;
    return gui_.window;
  }

  void goHome(QWidget& window) {
    if (&window == &gui_.window) {
      if (!gui_.window.picks().prompt().isEmpty()) key(window, Qt::Key_Escape);
      return;
    }
    // Yes to leaving, where that is asked; else Escape.
    auto* leaves = window.findChild<QAbstractButton*>(QStringLiteral("6"));
    if (leaves != nullptr)
      leaves->click();
    else
      key(window, Qt::Key_Escape);
  }

  void step() {
    ++steps_;
    QWidget& window = top();
    if (isOver()) return goHome(window);
    static constexpr Qt::Key keys[] = {Qt::Key_Tab,  Qt::Key_Return, Qt::Key_Escape, Qt::Key_Down,
                                       Qt::Key_Up,   Qt::Key_Right,  Qt::Key_Left,   Qt::Key_Space,
                                       Qt::Key_Home, Qt::Key_End,    Qt::Key_1,      Qt::Key_0,
                                       Qt::Key_A,    Qt::Key_F2,     Qt::Key_Delete};
    static constexpr HostText commands[] = {
        HostText::newCircuit,
        HostText::motor,
        HostText::load,
        HostText::wireMotor,
        HostText::undo,
        HostText::redo,
        HostText::moveCircuit,
        HostText::copyCircuit,
        HostText::findCircuit,
        HostText::deleteCircuit,
        HostText::zoomExtents,
        HostText::darkPaper,
        HostText::editWireSize,
        HostText::circuitReport,
        HostText::zoomWindow,
        HostText::configureCircuit,
        HostText::pageSetup,
        HostText::printPreview,
        HostText::whatsThis,
        HostText::saveConfiguration,
        HostText::buildFromHistory};
    const bool isMain = &window == &gui_.window;
    switch (below(8)) {
    case 0:
      if (isMain) gui_.window.action(commands[below(std::size(commands))]).trigger();
      return;
    case 1:
    case 2: {
      const QPoint place(
          static_cast<int>(below(static_cast<std::size_t>(std::max(window.width(), 1)))),
          static_cast<int>(below(static_cast<std::size_t>(std::max(window.height(), 1)))));
      // Not the menus, which ask for files.
      constexpr int menus = 80;
      if (!isMain || place.y() > menus) click(window, place);
      return;
    }
    default:
      key(window, keys[below(std::size(keys))]);
    }
  }

  static constexpr int leastSteps = 50;
  GuiFixture& gui_;
  std::mt19937 random_;
  int playTime_;
  QElapsedTimer clock_;
  QObject here_;
  int steps_ = 0;
};

} // namespace

TEST_CASE("random keys, clicks and commands end nothing, and undo to the start restores the drawing") {
  // Longer runs: MONKEY_SECONDS; another run: MONKEY_SEED.
  const char* seconds = std::getenv("MONKEY_SECONDS");
  const char* given = std::getenv("MONKEY_SEED");
  const unsigned first = given == nullptr ? 1U : static_cast<unsigned>(std::atoi(given));
  const int patience = seconds == nullptr ? 3 : std::atoi(seconds);
  for (unsigned seed = first; seed < first + 2; ++seed) {
    CAPTURE(seed);
    const brenvolt::SiteCopy site;
    const GuiFolder folder;
    GuiFixture gui({}, "en", site.site());
    gui.buildPump();
    gui.window.action(HostText::undo).trigger();
    const std::string before = gui.shownText();
    gui.window.action(HostText::redo).trigger();
    // A list of sheets beside it, of which none can be opened; questions about the drawing save it here.
    REQUIRE(gui.window.files().saveTo(QString::fromStdString(folder.path("works.json"))));
    REQUIRE(replaceFile(folder.path("set.json"), R"({"format": "brenvolt-set", "title": "WORKS", "sheets": [
      {"file": "001.json", "circuits": ["P-101"]}, {"file": "002.json", "circuits": ["P-102"]}]})")
                .empty());
    REQUIRE(gui.window.sets().open(QString::fromStdString(folder.path("set.json"))));
    {
      Monkey monkey(gui, seed, patience * 1000);
      while (!monkey.isHome() && !monkey.isLost())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
      REQUIRE_FALSE(monkey.isLost());
    }
    REQUIRE_FALSE(gui.window.runner().isBusy());
    while (gui.window.action(HostText::undo).isEnabled())
      gui.window.action(HostText::undo).trigger();
    CHECK(bool(gui.shownText() == before));
  }
}
