// The panels around the drawing: which exist, where each is at first, and the commands that show and hide them.
#pragma once

#include "simhost/gui/window_services.h"

#include <map>

class QAction;
class QMainWindow;

namespace simhost {

class CheckPanel;
class CircuitPanel;
class LayerPanel;
class PromptPane;
class PropertiesPanel;
class SetPanel;

class WindowPanels final {
public:
  /// Both must outlive it.
  WindowPanels(const WindowServices& services, QMainWindow& window) : services_(services), window_(window) {}
  WindowPanels(const WindowPanels&) = delete;
  WindowPanels& operator=(const WindowPanels&) = delete;

  /// Makes all panels in the words of the language; `site`: the full path of its folder, empty for none.
  void build(const QString& site);
  /// Removes them, before they are built in other words.
  void remove();

  [[nodiscard]] PromptPane& prompt() { return *prompt_; }
  [[nodiscard]] LayerPanel& layers() { return *layers_; }
  [[nodiscard]] CircuitPanel& circuits() { return *circuits_; }
  [[nodiscard]] PropertiesPanel& properties() { return *properties_; }
  [[nodiscard]] CheckPanel& check() { return *check_; }
  [[nodiscard]] SetPanel& set() { return *set_; }
  /// The commands that show and hide panels.
  [[nodiscard]] const std::map<HostText, QAction*>& toggles() const { return toggles_; }

  /// Opens the panel, and brings it to the front where several share a place.
  static void show(QWidget& panel);

private:
  struct Place;
  void add(const Place& place);

  WindowServices services_;
  QMainWindow& window_;
  PromptPane* prompt_ = nullptr;
  LayerPanel* layers_ = nullptr;
  CircuitPanel* circuits_ = nullptr;
  PropertiesPanel* properties_ = nullptr;
  CheckPanel* check_ = nullptr;
  SetPanel* set_ = nullptr;
  std::map<HostText, QAction*> toggles_;
};

} // namespace simhost
