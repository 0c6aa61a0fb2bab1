// The open set: its sheets are a list beside the sheet at work, from which each can be opened.
#pragma once

#include "simhost/gui/drawing_set.h"
#include "simhost/gui/window_services.h"

namespace simhost {

class DrawingFiles;
class SetPanel;

class SetCommands final {
public:
  /// The files must outlive it.
  SetCommands(const WindowServices& services, DrawingFiles& files) : services_(services), files_(files) {}
  SetCommands(const SetCommands&) = delete;
  SetCommands& operator=(const SetCommands&) = delete;

  /// Shows the open set in this panel, which must outlive its use here.
  void attach(SetPanel& panel);
  /// Shows the sheets of a set; false, with the reason in the status line, for another file.
  bool open(const QString& file);
  void askOpen();
  /// Marks the sheet that is open.
  void showOpenSheet();

  /// A set has been opened: its panel is to be seen.
  std::function<void()> onOpened;
  /// A sheet has been opened from the list.
  std::function<void()> onSheetOpened;

private:
  WindowServices services_;
  DrawingFiles& files_;
  SetPanel* panel_ = nullptr;
  std::optional<DrawingSet> set_;
};

} // namespace simhost
