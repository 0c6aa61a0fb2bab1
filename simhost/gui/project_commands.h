// The project of the site: its database is opened, made or closed.
#pragma once

#include "simhost/gui/window_services.h"

namespace simhost {

class ProjectCommands final {
public:
  explicit ProjectCommands(const WindowServices& services) : services_(services) {}
  ProjectCommands(const ProjectCommands&) = delete;
  ProjectCommands& operator=(const ProjectCommands&) = delete;

  /// Opens a project's database, none for an empty name; false for another file, with the reason in the status line.
  bool open(const QString& file);
  void askOpen();
  void askNew();

  /// Another project is open, or none.
  std::function<void()> onChanged;

private:
  WindowServices services_;
};

} // namespace simhost
