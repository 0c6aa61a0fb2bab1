// The main window over the sample site: commands that place circuits, and those that open dialogs of the plug-in.
#include "gui_fixture.h"
#include "simhost/site/saved_configurations.h"

#include <QApplication>
#include <QInputDialog>
#include <QTest>

#include <doctest/doctest.h>

#include <algorithm>

using namespace simhost;

TEST_CASE("a saved configuration is placed where the user clicks, and undone as a whole") {
  const std::vector<brenvolt::SavedConfiguration> saved = savedConfigurations("site").saved;
  REQUIRE(saved.size() >= 5);
  const auto pump = std::find_if(saved.begin(), saved.end(), [](const brenvolt::SavedConfiguration& row) {
    return row.key.name == L"Pump 10 HP";
  });
  REQUIRE(pump != saved.end());
  CHECK(pump->key.circuit == L"Three-phase motors");
  CHECK(pump->worksheet == L"M3_DOL");

  GuiFixture gui({}, "en", "site");
  const Watch choose([&] {
    auto* dialog = qobject_cast<QInputDialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr) return false;
    const QStringList offered = dialog->comboBoxItems();
    CHECK(offered.size() == static_cast<qsizetype>(saved.size()));
    dialog->setTextValue(offered[pump - saved.begin()]);
    dialog->accept();
    return true;
  });
  const Watch place([&] {
    if (gui.window.pickPrompt().isEmpty()) return false;
    CHECK_FALSE(gui.window.action(HostText::newCircuit).isEnabled());
    gui.click(100, 50);
    return true;
  });
  gui.window.action(HostText::buildFromHistory).trigger();
  INFO(gui.window.status().toStdString());
  CHECK(gui.window.view().scene().items().size() > 50);
  CHECK(gui.window.action(HostText::undo).isEnabled());
  gui.window.action(HostText::undo).trigger();
  CHECK(gui.window.view().scene().items().empty());
  gui.window.action(HostText::redo).trigger();
  CHECK(gui.window.view().scene().items().size() > 50);
}

TEST_CASE("while a dialog of the plug-in is open no second command begins") {
  GuiFixture gui({}, "en", "site");
  std::vector<std::string> commands;
  gui.window.runner().onCommand = [&](const SessionCommand& command) {
    commands.insert(commands.end(), command.forms.begin(), command.forms.end());
  };
  bool wasRefused = false;
  const Watch dialog([&] {
    QWidget* open = QApplication::activeModalWidget();
    if (open == nullptr || !open->isVisible()) return false;
    CHECK_FALSE(gui.window.action(HostText::wireMotor).isEnabled());
    gui.window.prompt().onForm(QStringLiteral("(zan_bv_wire_select)"));
    wasRefused = gui.window.status() == gui.texts(HostText::busy);
    open->close();
    return true;
  });
  gui.window.action(HostText::motor).trigger();
  CHECK(wasRefused);
  CHECK(gui.window.action(HostText::wireMotor).isEnabled());
  CHECK(commands == std::vector<std::string>{"(zan_bv_motor_select)"});
}
