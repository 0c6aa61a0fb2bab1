// Circuits at a screen: found, previewed, built again in their place, and still there after the program was killed.
#include "desk.h"
#include "simhost/gui/circuit_panel.h"
#include "simhost/gui/open_file.h"
#include "simhost/qt/circuit_facts.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTabBar>
#include <QTableView>

using namespace simhost;

namespace {

/// A widget of the active window of this name; null without it.
template <class Widget>
Widget* inActive(const char* window, const QString& name = {}) {
  const QWidget* open = activeWindowNamed(QLatin1String(window));
  return open == nullptr ? nullptr : open->findChild<Widget*>(name);
}

/// Whether red wires of a drawing are seen in the picture: a note has none.
bool showsDrawing(QWidget& window) {
  const QImage image = window.grab().toImage();
  constexpr int clearly = 40; // fine lines are pale
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x)
      if (const QColor colour = image.pixelColor(x, y);
          colour.red() > colour.green() + clearly && colour.red() > colour.blue() + clearly)
        return true;
  return false;
}

void clickUnit(const char* title) {
  auto* units = inActive<QTreeWidget>("ZanDlgConfig");
  const auto found = units->findItems(QString::fromLatin1(title), Qt::MatchExactly | Qt::MatchRecursive);
  REQUIRE_FALSE(found.isEmpty());
  ScreenSession::click(*units, cellOf(*units, units->indexFromItem(found.front())));
}

bool isAtUnit(const char* title) {
  const auto* units = inActive<QTreeWidget>("ZanDlgConfig");
  return units != nullptr && units->currentItem() != nullptr &&
         units->currentItem()->text(0) == QLatin1String(title);
}

} // namespace

TEST_SUITE("screen") {
  TEST_CASE("a circuit is found in the panel, built again beside the drawing, and reported") {
    needApplication();
    if (!hasScreen()) return;
    Desk desk(QStringLiteral("panel"));
    desk.buildPump();
    desk.buildPump(L"300 0 0");
    const auto cell = [&desk](CircuitColumn column) {
      return desk.table().topLevelItem(1)->text(static_cast<int>(column));
    };
    CHECK(cell(CircuitColumn::type) == QStringLiteral("Three-phase motors, Direct on line"));
    CHECK(cell(CircuitColumn::load) == QStringLiteral("10 HP, 460 V"));
    CHECK(cell(CircuitColumn::wire).startsWith(QStringLiteral("10AWG")));
    const QString tag = cell(CircuitColumn::tag);
    desk.gui.run(L"(entity-erase (entity-last))"); // by hand: the program warns before it is lost
    desk.atMain(QStringLiteral("circuits"), [&] {
      ScreenSession::keys({QStringLiteral("ctrl+f")});
      ScreenSession::type(QStringLiteral("10 hp ") + tag);
      ScreenSession::keys({QStringLiteral("Return")});
    });
    std::wstring id;
    desk.steps.step(
        QStringLiteral("found"),
        [&] { return !desk.gui.window.circuits().id().empty() && desk.table().topLevelItem(0)->isHidden(); },
        [&] {
          id = desk.gui.window.circuits().id();
          ScreenSession::click(desk.table(), cellOf(desk.table(), desk.table().model()->index(1, 1)), 2);
        });
    desk.steps.inWindow(QStringLiteral("QMessageBox"), QStringLiteral("warned"), [&](QWidget&) {
      ScreenSession::keys({letterKeys(desk.gui.texts(HostText::rebuild))});
    });
    // With a circuit breaker fuses are of no use, and the list says so.
    desk.steps.inWindow(QStringLiteral("ZanDlgConfig"), QStringLiteral("dialog"), [](QWidget&) {
      clickUnit("Disconnecting means");
    });
    desk.steps.step(
        QStringLiteral("excluded"), [] { return isAtUnit("Disconnecting means"); },
        [] {
          QStringList reasons;
          for (const auto* list :
               activeWindowNamed(QStringLiteral("ZanDlgConfig"))->findChildren<QComboBox*>())
            if (list->isVisible() && !list->isEnabled()) reasons.append(list->toolTip());
          CHECK_MESSAGE(
              reasons.join(QLatin1Char(' ')).contains(QStringLiteral("Fusible switch")),
              reasons.join(QLatin1Char(' ')).toStdString());
        });
    // What the build finds by itself is shown at the unit.
    QString drawn;
    QStringList inCells;
    desk.insertEverything(
        [](QWidget& all) { ScreenSession::click(all); }, [](QWidget&) { clickUnit("Contactor"); });
    desk.steps.step(
        QStringLiteral("drawn"), [] { return isAtUnit("Contactor"); },
        [&] {
          for (const auto* label : activeWindowNamed(QStringLiteral("ZanDlgConfig"))->findChildren<QLabel*>())
            if (label->objectName() == QStringLiteral("drawnByUnit") && label->isVisible())
              drawn = label->text();
          for (const auto* table :
               activeWindowNamed(QStringLiteral("ZanDlgConfig"))->findChildren<QTableView*>())
            if (table->isVisible())
              for (int row = 0; row < table->model()->rowCount(); ++row) {
                const QModelIndex at = table->model()->index(row, 1);
                // Shown in the table, and no value of the configuration.
                if (at.data(Qt::EditRole).toString().isEmpty()) inCells.append(at.data().toString());
              }
          ScreenSession::click(*inActive<QAbstractButton>("ZanDlgConfig", QStringLiteral("ok")));
        });
    desk.press(
        QStringLiteral("ZanBrenvolt.DuplicateCircuitName"), QStringLiteral("1002"), QStringLiteral("name"));
    desk.atMain(QStringLiteral("rebuilt"), [&] {
      CHECK(desk.gui.window.circuits().id() == id);
      ScreenSession::click(desk.table(), cellOf(desk.table(), desk.table().model()->index(1, 1)));
      ScreenSession::keys({QStringLiteral("Menu")});
    });
    desk.steps.step(
        QStringLiteral("menu"),
        [] { return qobject_cast<QMenu*>(QApplication::activePopupWidget()) != nullptr; },
        [&] {
          auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
          ScreenSession::click(
              *menu, menu->actionGeometry(&desk.gui.window.action(HostText::circuitReport)).center());
        });
    desk.steps.inWindow(QStringLiteral("report"), QStringLiteral("report"), [](QWidget&) {
      ScreenSession::keys({QStringLiteral("Escape")});
    });
    desk.atMain(QStringLiteral("end"), [] {});
    REQUIRE(desk.steps.run());
    CHECK(desk.circuits() == 2);
    CHECK_MESSAGE(drawn.contains(QStringLiteral("SIZE 1")), drawn.toStdString());
    CHECK_MESSAGE(inCells.contains(QStringLiteral("SIZE 1")), inCells.join(QLatin1Char('|')).toStdString());
  }

  TEST_CASE("the circuit selection finds a configuration and shows what it draws; without a motor a build "
            "says so") {
    needApplication();
    if (!hasScreen()) return;
    Desk desk(QStringLiteral("preview"));
    desk.atMain(QStringLiteral("new"), [] { ScreenSession::keys({QStringLiteral("ctrl+t")}); });
    desk.steps.inWindow(QStringLiteral("ZanDlgCircuit"), QStringLiteral("circuits"), [](QWidget& window) {
      auto* search = window.findChild<QLineEdit*>(QStringLiteral("search"));
      REQUIRE(search != nullptr);
      ScreenSession::click(*search);
      ScreenSession::type(QStringLiteral("Pump 10"));
      ScreenSession::keys({QStringLiteral("Return")});
    });
    desk.press(QStringLiteral("ZanDlgCircuit"), QStringLiteral("previewToggle"), QStringLiteral("chosen"));
    desk.steps.step(
        QStringLiteral("finished"),
        [&] {
          const auto* tree = inActive<QTreeWidget>("ZanDlgCircuit");
          return tree != nullptr && tree->currentItem() != nullptr &&
                 tree->currentItem()->parent() != nullptr &&
                 !desk.gui.windows.dialogs().circuitFacts()->isMaking() &&
                 showsDrawing(*activeWindowNamed(QStringLiteral("ZanDlgCircuit")));
        },
        [] {
          const auto* tree = inActive<QTreeWidget>("ZanDlgCircuit");
          CHECK(tree->currentItem()->text(0) == QStringLiteral("Direct on line"));
          auto* views = inActive<QTabBar>("ZanDlgCircuit");
          ScreenSession::click(*views, views->tabRect(1).center());
        });
    desk.steps.step(
        QStringLiteral("markers"),
        [] {
          const auto* views = inActive<QTabBar>("ZanDlgCircuit");
          return views != nullptr && views->currentIndex() == 1;
        },
        [] {
          ScreenSession::click(*inActive<QAbstractButton>("ZanDlgCircuit", QStringLiteral("configure")));
        });
    desk.atPick(QStringLiteral("place"), [] { ScreenSession::keys({QStringLiteral("Return")}); });
    // Layers are proposed by the formats of the template while no size is known, and look like it.
    desk.insertEverything(
        [](QWidget& all) {
          bool isItalic = false;
          for (const auto* grid : all.window()->findChildren<QTableView*>())
            for (int row = 0; row < grid->model()->rowCount(); ++row)
              isItalic |= grid->model()->index(row, 1).data(Qt::FontRole).value<QFont>().italic();
          CHECK(isItalic);
          ScreenSession::click(all);
        },
        [](QWidget& ok) { ScreenSession::click(ok); });
    desk.atMain(QStringLiteral("unrated"), [] {});
    REQUIRE(desk.steps.run());
    const QString tag = desk.table().topLevelItem(0)->text(static_cast<int>(CircuitColumn::tag));
    CHECK_MESSAGE(
        desk.gui.window.status().text() == desk.gui.texts(HostText::noSizes, {tag}),
        desk.gui.window.status().text().toStdString());
  }

  TEST_CASE("what was drawn before the program was killed is offered again") {
    needApplication();
    if (!hasScreen()) return;
    Desk desk(QStringLiteral("killed"));
    const GuiFolder folder;
    const QString file = QString::fromStdString(folder.path("works.json"));
    desk.gui.run(L"(draw-line '(0 0) '(100 50))");
    REQUIRE(desk.gui.window.files().saveTo(file));
    desk.gui.run(L"(entity-erase (entity-last))");
    REQUIRE(desk.gui.window.files().saveTo(
        QString::fromStdString(folder.path("other.json")))); // no longer holds it
    desk.atMain(QStringLiteral("start"), [&] { desk.startOther(file, folder); });
    desk.buildInOther(QStringLiteral("window"), QStringLiteral("works.json"), [] {
      ScreenSession::keys({QStringLiteral("ctrl+b")});
    });
    desk.steps.step(
        QStringLiteral("copied"), [&] { return QFile::exists(OpenFile::copyOf(file)); },
        [&] {
          desk.killOther();
          desk.startOther(file, folder);
        });
    desk.atTitle(QStringLiteral("offered"), desk.gui.texts(HostText::recoverTitle), [&] {
      ScreenSession::keys({letterKeys(desk.gui.texts(HostText::recover))});
    });
    desk.atTitle(QStringLiteral("recovered"), QStringLiteral("works.json\\*"), [] {
      ScreenSession::keys({QStringLiteral("ctrl+s")});
    });
    desk.steps.step(
        QStringLiteral("saved"), [&] { return !QFile::exists(OpenFile::copyOf(file)); }, [] {});
    REQUIRE(desk.steps.run());
    desk.killOther();
    REQUIRE(desk.gui.window.files().open(file));
    CHECK(desk.circuits() == 1);
  }
}
