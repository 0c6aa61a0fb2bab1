// The table.
#include "simhost/gui/command_table.h"

namespace simhost {

const std::vector<MainWindow::MenuRow>& MainWindow::menuRows() {
  using Use = CommandRow::Use;
  static const std::vector<MenuRow> rows{
      {HostText::fileMenu,
       {{HostText::newDrawing, "Ctrl+N", "new", Use::idle, false, false, nullptr, &MainWindow::newDrawing},
        {HostText::open, "Ctrl+O", "open", Use::idle, true, false, nullptr, &MainWindow::open},
        {HostText::recentMenu},
        {HostText::save, "Ctrl+S", "save", Use::idle, true, false, nullptr, &MainWindow::save},
        {HostText::saveAs, "Ctrl+Shift+S", "", Use::idle, false, false, nullptr, &MainWindow::saveAs},
        {},
        {HostText::exportSvg, "Ctrl+E", "", Use::idle, false, false, nullptr, &MainWindow::askExportSvg},
        {HostText::exportPdf, "Ctrl+Shift+E", "", Use::idle, false, false, nullptr,
         &MainWindow::askExportPdf},
        {HostText::print, "Ctrl+P", "", Use::idle, false, false, nullptr, &MainWindow::print},
        {},
        {HostText::quit, "Ctrl+Q", "", Use::always, false, false, nullptr, &MainWindow::leave}}},
      {HostText::editMenu,
       {{HostText::undo, "Ctrl+Z", "undo", Use::idle, true, false, nullptr, &MainWindow::undo},
        {HostText::redo, "Ctrl+Shift+Z", "redo", Use::idle, true, false, nullptr, &MainWindow::redo}}},
      {HostText::viewMenu,
       {{HostText::zoomExtents, "Ctrl+0", "extents", Use::always, true, false, nullptr,
         &MainWindow::zoomExtents},
        {HostText::zoomWindow, "Ctrl+W", "window", Use::always, true, false, nullptr,
         &MainWindow::zoomWindow},
        {HostText::zoomIn, "Ctrl++", "", Use::always, false, false, nullptr, &MainWindow::zoomIn},
        {HostText::zoomOut, "Ctrl+-", "", Use::always, false, false, nullptr, &MainWindow::zoomOut},
        {},
        {HostText::grid, "F7", "", Use::always, false, true, nullptr, &MainWindow::toggleGrid},
        {HostText::darkPaper, "F8", "", Use::always, false, true, nullptr, &MainWindow::toggleDark}}},
      {HostText::circuitMenu,
       {{HostText::newCircuit, "Ctrl+T", "circuit", Use::site, true, false, nullptr, &MainWindow::newCircuit},
        {HostText::buildFromHistory, "Ctrl+B", "", Use::site, false, false, nullptr,
         &MainWindow::buildFromHistory},
        {},
        {HostText::motor, "Ctrl+M", "motor", Use::site, true, false, L"(zan_bv_motor_select)"},
        {HostText::load, "Ctrl+L", "load", Use::site, true, false, L"(zan_bv_power_feed_select)"},
        {},
        {HostText::wireMotor, "Ctrl+R", "wire", Use::site, true, false, L"(zan_bv_wire_select)"},
        {HostText::wireLoad, "Ctrl+Shift+R", "", Use::site, false, false, L"(zan_bv_pf_wire_select)"},
        {HostText::editWireSize, "Ctrl+I", "edit_wire", Use::site, true, false, nullptr,
         &MainWindow::editWireSize},
        {},
        {HostText::moveCircuit, "Ctrl+Shift+M", "", Use::idle, false, false, nullptr,
         &MainWindow::moveSelected},
        {HostText::copyCircuit, "Ctrl+D", "", Use::site, false, false, nullptr, &MainWindow::copySelected},
        {HostText::deleteCircuit, "Del", "", Use::idle, false, false, nullptr, &MainWindow::deleteSelected},
        {HostText::circuitReport, "", "", Use::idle, false, false, nullptr, &MainWindow::reportOnCircuit},
        {HostText::findCircuit, "Ctrl+F", "", Use::idle, false, false, nullptr, &MainWindow::findCircuit}}},
      {HostText::projectMenu,
       {{HostText::openProject, "Ctrl+Shift+O", "", Use::site, false, false, nullptr,
         &MainWindow::askOpenProject},
        {HostText::newProject, "", "", Use::site, false, false, nullptr, &MainWindow::askNewProject},
        {HostText::recentProjectsMenu},
        {HostText::closeProject, "", "", Use::site, false, false, nullptr, &MainWindow::closeProject}}},
      {HostText::helpMenu,
       {{HostText::help, "F1", "", Use::always, false, false, nullptr, &MainWindow::showHelp},
        {HostText::languageMenu},
        {},
        {HostText::about, "", "", Use::idle, false, false, nullptr, &MainWindow::showAbout}}}};
  return rows;
}

} // namespace simhost
