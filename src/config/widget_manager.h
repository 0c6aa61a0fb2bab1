// The logic of the input groups of a configuration page. A manager is created for one unit, bound to the option codes
// for which its groups are shown, and lives with the maker as long as the build.
#pragma once

#include "drawing/annotation_rows.h"
#include "widgets/settings_window.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brenvolt {

class ZanConfigUnit;

/// What a manager wrote to or read from its groups: per table its name and the values.
using ManagerResults = std::vector<std::pair<std::wstring, std::vector<std::wstring>>>;

/// Base of the managers. Operations that a manager does not override do nothing. Units and managers notify each other
/// of their destruction, since either may be destroyed first.
class ZanWidgetManager : public ZanGroupEvents {
public:
  ZanWidgetManager() = default;
  ZanWidgetManager(const ZanWidgetManager&) = delete;
  ZanWidgetManager& operator=(const ZanWidgetManager&) = delete;
  ~ZanWidgetManager() override;

  void OnLookup(ZanGroupCtrl* group) override;
  void OnPick(ZanGroupCtrl* group) override;
  /// The unit that the manager was made for; the last one wins.
  virtual void SetUnit(ZanConfigUnit* unit);
  /// Takes a page of the window, on which derived managers build their groups, and shows it. Null is ignored.
  virtual void AttachWindow(ZanSettingsWnd* window);
  [[nodiscard]] virtual std::uint32_t GetPage() const;
  /// Collating without case; a manager without a key matches nothing.
  [[nodiscard]] virtual bool MatchesKey(std::wstring_view key) const;
  virtual void SetKey(std::wstring_view key);
  virtual void SaveCatalog(std::wstring_view markerCode, std::int32_t code, const ManagerResults& results);
  /// Keeps what the rows of a unit choose for the motor or load of the circuit.
  virtual void SaveSelection(
      std::wstring_view markerCode, std::int32_t code, const ZanAnnotationDataList& rows);
  /// Locks the groups after an insertion, frees them after an undo.
  virtual void SetLocked(bool locked);
  /// The values of the groups as rows for a unit and the history; nothing without a window.
  [[nodiscard]] virtual std::optional<ZanAnnotationDataList> ExportRows() const;
  /// The reverse.
  virtual void ImportRows(const ZanAnnotationDataList& rows);
  void OnTimer(std::uint32_t timerId) override;
  /// A motor page is shown again.
  virtual void Refresh();
  virtual void LoadSelection(std::wstring_view markerCode, std::int32_t code);
  bool OnCellChanged(std::int32_t groupId, std::uint32_t row, std::wstring_view text) override;
  bool GetChoices(
      std::int32_t groupId, std::uint32_t row, const std::vector<ZanGroupRow>& rows,
      std::vector<std::wstring>& list) override;
  virtual void LoadCatalog(
      std::wstring_view markerCode, std::int32_t code, const std::vector<std::wstring>& tables,
      ManagerResults& results);
  /// False once the unit has died: a run was undone.
  [[nodiscard]] bool HasUnit() const { return unit_ != nullptr; }
  /// CODE and ORDER of the unit, empty without one.
  [[nodiscard]] virtual std::wstring GetUnitCode() const;
  [[nodiscard]] virtual std::wstring GetUnitOrder() const;
  /// The id of the unit's marker; 0 without a unit.
  [[nodiscard]] std::int32_t GetUnitMarker() const;
  virtual void Recalculate();
  virtual void ApplyResults(const ManagerResults& results);
  /// Whether there is a window that still exists; checked before every lookup.
  [[nodiscard]] virtual bool HasWindow() const;

protected:
  [[nodiscard]] ZanConfigUnit* unit() const { return unit_; }
  [[nodiscard]] const std::wstring& key() const { return key_; }
  /// Only while there is one.
  [[nodiscard]] ZanSettingsWnd* window() const { return HasWindow() ? window_ : nullptr; }
  /// A group of the manager's page; null without a window or without such a group. Places count from 0.
  [[nodiscard]] ZanGroupCtrl* groupAt(std::size_t place) const;

  std::uint32_t page_ = 0; ///< of its page in the settings window
  bool busy_ = false;      ///< guards a lookup against being started twice

private:
  friend class ZanConfigUnit;
  void unitBinds(ZanConfigUnit* unit);
  void unitDies(ZanConfigUnit* unit);

  std::wstring key_;
  ZanSettingsWnd* window_ = nullptr;
  std::weak_ptr<const void> windowLifetime_; ///< the manager outlives the dialog
  ZanConfigUnit* unit_ = nullptr;
  std::vector<ZanConfigUnit*> boundBy_; ///< the units that hold a binding of this manager
};

} // namespace brenvolt
