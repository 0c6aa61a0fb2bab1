// Menus and tool bar of the main window: the commands of the table as actions, when each can be used, and the lists of
// files that were open last.
#pragma once

#include "simhost/gui/command_table.h"
#include "simhost/gui/window_services.h"

#include <map>

class QAction;
class QMainWindow;
class QMenu;
class QWidget;

namespace simhost {

class CommandMenus final {
public:
  /// Both must outlive it.
  CommandMenus(const WindowServices& services, QMainWindow& window) : services_(services), window_(window) {}
  CommandMenus(const CommandMenus&) = delete;
  CommandMenus& operator=(const CommandMenus&) = delete;

  /// What a command of the table does that has no LISP of its own: of all of them before menus are built.
  void bind(HostText command, std::function<void()> action) { bound_[command] = std::move(action); }
  /// Makes menus and tool bar in the words of the language. `panels`: what shows and hides the panels.
  void build(const std::map<HostText, QAction*>& panels);
  /// Removes them, before they are built in other words.
  void remove();

  /// The action of a command.
  [[nodiscard]] QAction& action(HostText command) { return *actions_.at(command); }
  /// Enables what can be used now; the tool tip of what cannot says why.
  void refresh();
  /// Makes the icons again in the colours of the theme.
  void refreshIcons();

  /// A file of the lists has been chosen.
  std::function<void(const QString& file)> onRecent;
  std::function<void(const QString& file)> onRecentProject;
  /// Two letters.
  std::function<void(const QString& language)> onLanguage;

private:
  void addRow(const CommandRow& row, QMenu& menu);
  void addCommand(const CommandRow& row, QMenu& menu);
  void start(const CommandRow& row);
  void fillRecent();

  WindowServices services_;
  QMainWindow& window_;
  std::map<HostText, std::function<void()>> bound_;
  std::map<HostText, QAction*> actions_;
  QMenu* recent_ = nullptr;
  QMenu* recentProjects_ = nullptr;
};

} // namespace simhost
