// The units in the configuration dialog, and the values returned to them: a tree item, a page of combo boxes and the
// groups of a widget manager for each unit.
#pragma once

#include "config/config_units.h"
#include "flows/config_tree.h"
#include "widgets/select_window.h"
#include "widgets/settings_window.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace brenvolt {

class ZanWidgetManager;

class ConfigPages final {
public:
  /// The build owns the units, which each operation reads again; the dialog owns the controls.
  ConfigPages(
      ZanConfigUnitList& units, KvUiTree& tree, KvUiPages& options, KvUiPages& settings,
      ZanConfigDialogService& dialog);

  /// Null when no item is selected.
  [[nodiscard]] ZanConfigUnit* CurrentUnit() const;
  /// The manager for the choices that the unit holds; null when there is none.
  [[nodiscard]] static ZanWidgetManager* ManagerOf(const ZanConfigUnit& unit);
  [[nodiscard]] bool IsLocked(const ZanConfigUnit& unit) const { return select_.IsLocked(unit.page); }

  /// Fills the tree and shows the first unit.
  void Open();
  /// Page, groups and item of a unit; `parent` is null for a root.
  void AddUnit(ZanConfigUnit& unit, const ZanConfigUnit* parent);
  void RemoveUnit(const ZanConfigUnit& unit);
  /// Leaves the page that is open and shows another one. An unknown page shows no groups.
  void ShowPage(std::uint32_t page);
  /// Takes what is on the open page into its unit, unless that is inserted.
  void CommitPage();
  /// A combo box of the open page has changed; `code` is the sum of the page's choices.
  void OnOptionChanged(std::int32_t code);
  /// Shows the groups of the current unit again.
  void ShowSettings();

  /// The unit can be viewed but not changed, until its insertion is undone.
  void Lock(const ZanConfigUnit& unit) { setLocked(unit, true); }
  /// The unit is in the drawing, or no longer.
  void SetInserted(ZanConfigUnit& unit);
  void SetWaiting(ZanConfigUnit& unit);

  [[nodiscard]] ZanConfigTreeCtrl& tree() { return tree_; }
  [[nodiscard]] ZanSelectWnd& selectWindow() { return select_; }
  [[nodiscard]] ZanSettingsWnd& settingsWindow() { return settings_; }

private:
  void addCombos(const ZanConfigUnit& unit);
  void readCombos(ZanConfigUnit& unit);
  void showSettingsOf(const ZanWidgetManager* manager);
  void setLocked(const ZanConfigUnit& unit, bool locked);

  ZanConfigUnitList& units_;
  ZanConfigTreeCtrl tree_;
  ZanSelectWnd select_;
  ZanSettingsWnd settings_;
  std::uint32_t emptyPage_ = 0; ///< of the settings window: shown where a unit has no groups
};

} // namespace brenvolt
