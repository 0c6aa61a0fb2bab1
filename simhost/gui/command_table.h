// The commands of the main window: their places in the menus, their keys, and when they can be used.
#pragma once

#include "simhost/gui/host_texts.h"

#include <vector>

namespace simhost {

struct CommandRow {
  /// `idle`: not while a command runs. `site`: idle, and only with a site. `always`: also during a pick.
  enum class Use { always, idle, site };

  HostText text = HostText::none; ///< none: a line between groups
  const char* keys = "";
  const char* icon = "";
  Use use = Use::always;
  bool isOnToolbar = false;
  bool isTick = false;
  const wchar_t* form = nullptr; ///< LISP to run; null for a command that the window binds
};

struct MenuRow {
  HostText title;
  std::vector<CommandRow> commands;
};

[[nodiscard]] const std::vector<MenuRow>& menuRows();

} // namespace simhost
