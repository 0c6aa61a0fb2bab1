// The logic behind the input groups of a configuration page. A manager is made for one unit, bound to the option codes
// for which its groups are shown, and lives with the maker for the length of a build.
#pragma once

#include "drawing/annotation_rows.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brenvolt {

class ZanConfigUnit;
class ZanSettingsWnd;
class ZanGroupCtrl;
struct ZanGroupRow;

/// What a manager wrote to or read from its groups: per table its name and the values.
using ManagerResults = std::vector<std::pair<std::wstring, std::vector<std::wstring>>>;

/// Base of the managers. It does nothing of its own accord: each operation that a manager leaves alone is silent.
/// Units and managers tell each other when they die, since either may go first.
class ZanWidgetManager {
public:
  ZanWidgetManager() = default;
  ZanWidgetManager(const ZanWidgetManager&) = delete;
  ZanWidgetManager& operator=(const ZanWidgetManager&) = delete;
  virtual ~ZanWidgetManager();

  /// First header button of a group, or a double click in its grid.
  virtual void OnLookup(ZanGroupCtrl* group);
  /// Second header button.
  virtual void OnPick(ZanGroupCtrl* group);
  /// The unit that the manager was made for; the last one wins.
  virtual void SetUnit(ZanConfigUnit* unit);
  /// Takes a page of the window and builds the groups on it.
  virtual void AttachWindow(ZanSettingsWnd* window) = 0;
  [[nodiscard]] virtual std::uint32_t GetPage() const;
  /// Collating without case; a manager without a key matches nothing.
  [[nodiscard]] virtual bool MatchesKey(std::wstring_view key) const;
  virtual void SetKey(std::wstring_view key);
  virtual void SaveCatalog(std::wstring_view markerCode, std::int32_t code, const ManagerResults& results);
  virtual void SaveSelection(std::wstring_view markerCode, std::int32_t code);
  /// Locks the groups after an insertion, frees them after an undo.
  virtual void SetLocked(bool locked);
  /// The values of the groups as rows for a unit and the history.
  virtual void ExportRows(ZanAnnotationDataList& rows);
  /// The reverse.
  virtual void ImportRows(const ZanAnnotationDataList& rows);
  virtual void OnTimer(std::uint32_t timerId);
  /// A motor page comes up again.
  virtual void Refresh();
  virtual void LoadSelection(std::wstring_view markerCode, std::int32_t code);
  /// False rejects the edit.
  virtual bool OnCellChanged(std::int32_t groupId, std::uint32_t row, std::wstring_view text);
  /// The choices of a drop-down, asked each time it opens; false leaves the cell without.
  virtual bool GetChoices(
      std::int32_t groupId, std::uint32_t row, const std::vector<ZanGroupRow>& rows,
      std::vector<std::wstring>& list);
  virtual void LoadCatalog(
      std::wstring_view markerCode, std::int32_t code, const std::vector<std::wstring>& tables,
      ManagerResults& results);
  /// CODE and ORDER of the unit, empty without one.
  [[nodiscard]] virtual std::wstring GetUnitCode() const;
  [[nodiscard]] virtual std::wstring GetUnitOrder() const;
  virtual void Recalculate();
  virtual void ApplyResults(const ManagerResults& results);
  /// Whether there is a window that still exists; every lookup asks this first.
  [[nodiscard]] virtual bool HasWindow() const = 0;

protected:
  [[nodiscard]] ZanConfigUnit* unit() const { return unit_; }
  [[nodiscard]] const std::wstring& key() const { return key_; }

  ManagerResults results_;
  std::uint32_t page_ = 0; ///< of its page in the settings window
  bool busy_ = false;      ///< guards a lookup against being started twice

private:
  friend class ZanConfigUnit;
  void unitBinds(ZanConfigUnit* unit);
  void unitDies(ZanConfigUnit* unit);

  std::wstring key_;
  ZanConfigUnit* unit_ = nullptr;
  std::vector<ZanConfigUnit*> boundBy_; ///< the units that hold a binding of this manager
};

} // namespace brenvolt
