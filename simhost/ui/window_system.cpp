// The one window system of the process.
#include "simhost/ui/window_system.h"

namespace simhost {

namespace {

WindowSystem*& systemSlot() {
  static WindowSystem* system = nullptr;
  return system;
}

} // namespace

WindowSystem::~WindowSystem() = default;

WindowSystem* windowSystem() {
  return systemSlot();
}

void setWindowSystem(WindowSystem* system) {
  systemSlot() = system;
}

} // namespace simhost
