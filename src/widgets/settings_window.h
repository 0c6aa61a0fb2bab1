// The half of the configuration dialog that shows input groups: pages of groups, one page for each widget manager.
#pragma once

#include "widgets/config_dialog_service.h"
#include "widgets/group_spec.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

class ZanSettingsWnd;

/// One group: a grid of labels and values under a title with header buttons.
class ZanGroupCtrl final {
public:
  ZanGroupCtrl(ZanSettingsWnd& window, KvUiGroup& control) : window_(window), control_(control) {}
  ZanGroupCtrl(const ZanGroupCtrl&) = delete;
  ZanGroupCtrl& operator=(const ZanGroupCtrl&) = delete;

  /// Shows the group as specified; `events` must outlive the window.
  void Configure(ZanGroupSpec spec, ZanGroupEvents& events);
  /// What the group was configured with; edits and new rows do not change it.
  [[nodiscard]] const ZanGroupSpec& spec() const { return spec_; }
  [[nodiscard]] std::int32_t id() const { return spec_.id; }

  /// Labels with their unchanged values.
  [[nodiscard]] std::vector<ZanGroupRow> ReadRows() const;
  /// Puts values into the rows from the first on; rows beyond the values stay, values beyond the rows are dropped.
  void WriteValues(const std::vector<std::wstring>& values);
  void WriteValue(std::size_t row, std::wstring_view value); ///< `row` from 0
  void ReplaceRows(const std::vector<ZanGroupRow>& rows);
  /// Disables the control and makes its grid read-only, or the reverse.
  void SetLocked(bool locked);
  [[nodiscard]] ZanSettingsWnd& window() const { return window_; }

private:
  friend class ZanSettingsWnd;

  ZanSettingsWnd& window_;
  KvUiGroup& control_;
  ZanGroupSpec spec_;
  ZanGroupEvents* events_ = nullptr; ///< null until the group is configured
};

/// The dialog that owns it forwards events of pages and timers; the window calls the managers.
class ZanSettingsWnd final {
public:
  /// `role` is the name of the pages in the form.
  ZanSettingsWnd(KvUiPages& pages, std::wstring_view role, ZanConfigDialogService& dialog)
      : pages_(pages), role_(role), dialog_(dialog) {}
  ZanSettingsWnd(const ZanSettingsWnd&) = delete;
  ZanSettingsWnd& operator=(const ZanSettingsWnd&) = delete;

  /// A new, empty page; ids count from 1.
  std::uint32_t AddPage();
  void ShowPage(std::uint32_t page);
  [[nodiscard]] std::uint32_t ShownPage() const;
  void MakeGroups(std::uint32_t page, std::size_t count);
  /// Null when the page has no such group; places count from 0.
  [[nodiscard]] ZanGroupCtrl* GroupAt(std::uint32_t page, std::size_t place) const;

  /// One timer for each id: only the manager that started it last is called, once.
  void StartTimer(std::uint32_t timer, int milliseconds, ZanGroupEvents& events);
  void KillTimer(std::uint32_t timer);
  /// Lets every timer that runs come due now.
  void FireTimers();

  [[nodiscard]] ZanConfigDialogService& dialog() const { return dialog_; }
  /// Expires with the window: managers live longer.
  [[nodiscard]] std::weak_ptr<const void> lifetime() const { return alive_; }

  /// @name From the dialog; each does nothing about what is not the window's
  /// @{
  void OnEvent(const KvUiEvent& event);
  void OnTimer(int timer);
  [[nodiscard]] bool OnValidateCell(std::wstring_view role, int row, std::wstring_view text);
  [[nodiscard]] bool OnCellChoices(std::wstring_view role, int row, std::vector<std::wstring>& choices);
  /// @}

private:
  [[nodiscard]] ZanGroupCtrl* groupOfRole(std::wstring_view role) const;

  KvUiPages& pages_;
  std::wstring role_;
  ZanConfigDialogService& dialog_;
  std::map<std::uint32_t, std::vector<std::unique_ptr<ZanGroupCtrl>>> groups_; ///< by page
  std::map<std::uint32_t, ZanGroupEvents*> timers_;
  std::shared_ptr<const void> alive_ = std::make_shared<char>();
};

} // namespace brenvolt
