// A motor's or load's page on the sample site's tables: its unit, its manager, and their dependencies.
#pragma once

#include "config/config_units.h"
#include "config/widget_manager_mcc.h"
#include "tests/config/page_dialog.h"
#include "tests/support/engineering_tables.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <string>

namespace brenvolt::test {

/// A session without a dialog, with the plug-in's resources on the stack.
class TextSession final : public SampleSession {
public:
  using SampleSession::SampleSession;

private:
  ResourceScope resources_;
};

/// The page of a unit with two conductors and a grounding wire. The current circuit is empty at first.
class MccPage final {
public:
  template <typename Session>
  MccPage(Session& session, MccMode mode, const std::string& database) : unit(1) {
    manager.TakeCircuit();
    circuitContext() = CircuitContext();
    session.eval("(defun c:zan_bv_figure_mccdb_fnam () \"" + database + "\")");
    unit.code = L"MOTOR-A";
    const std::wstring_view title = mode == MccMode::motor ? motorControlTitle : loadControlTitle;
    unit.options.groups.push_back({std::wstring(title), {{L"2", 0, true}}});
    unit.options.controlRules = {{L"(find_data @type @fla)", -1, {}}, {L"(find_wire @fla)", -1, {}}};
  }

  /// As a build makes and shows it.
  void attach(ZanSettingsWnd& window) {
    initialise();
    manager.AttachWindow(&window);
    manager.Refresh();
  }
  void initialise() {
    manager.Initialise(&unit, unit.options.groups.front());
    ZanWireFormatter formats;
    formats.AddWireType(L"BLK_%s", L"WT01-A");
    formats.AddWireType(L"BLK_%s", L"WT02-A");
    formats.AddWireType(L"GRN_%s", L"WT01E-A");
    formats.AddWireType(L"RED_%s", L"WT01-B");
    manager.SetWireFormats(formats);
  }

  ZanConfigUnit unit;
  CircuitInHand circuits{circuitContext()};
  ZanWidgetManagerMcc manager{circuits, nullptr};
};

/// "label=value" of the groups of a page.
struct ShownPage {
  std::string data;
  std::string wires;
};
[[nodiscard]] inline ShownPage shownPage(const ZanSettingsWnd& window, const ZanWidgetManager& manager) {
  return {
      describeGroup(window.GroupAt(manager.GetPage(), 0)),
      describeGroup(window.GroupAt(manager.GetPage(), 1))};
}

} // namespace brenvolt::test
