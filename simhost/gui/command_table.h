// The commands of the main window: their places in the menus, their keys, when they can be used, and what they do.
#pragma once

#include "simhost/gui/main_window.h"

namespace simhost {

struct MainWindow::CommandRow {
  /// `idle`: not while a command runs. `site`: idle, and only with a site. `always`: also during a pick.
  enum class Use { always, idle, site };

  HostText text = HostText::none; ///< none: a line between groups
  const char* keys = "";
  const char* icon = "";
  Use use = Use::always;
  bool isOnToolbar = false;
  bool isTick = false;
  const wchar_t* form = nullptr;          ///< LISP to run, or
  void (MainWindow::*action)() = nullptr; ///< what to do
};

struct MainWindow::MenuRow {
  HostText title;
  std::vector<CommandRow> commands;
};

} // namespace simhost
