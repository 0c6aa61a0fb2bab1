// A manager that only counts its calls.
#pragma once

#include "config/config_units.h"
#include "config/widget_manager.h"

#include <doctest/doctest.h>

#include <string>

namespace brenvolt::test {

class CountingManager final : public ZanWidgetManager {
public:
  explicit CountingManager(std::wstring_view managerKey = L"") { SetKey(managerKey); }
  void AttachWindow(ZanSettingsWnd*) override { ++attached; }
  [[nodiscard]] bool HasWindow() const override { return attached > 0; }
  using ZanWidgetManager::unit;

  int attached = 0;
};

} // namespace brenvolt::test
