// The half of the configuration dialog that shows the option groups of a unit: pages of combo boxes, one page for each
// unit.
#pragma once

#include "host/host_api_ui.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

class ZanSelectWnd final {
public:
  /// `role` is the name of the pages in the form.
  ZanSelectWnd(KvUiPages& pages, std::wstring_view role) : pages_(pages), role_(role) {}
  ZanSelectWnd(const ZanSelectWnd&) = delete;
  ZanSelectWnd& operator=(const ZanSelectWnd&) = delete;

  /// Adds an empty page; ids count from 1, and 0 as parent means none.
  std::uint32_t AddPage(std::uint32_t parent);
  void RemovePage(std::uint32_t page);
  void ShowPage(std::uint32_t page);
  [[nodiscard]] std::uint32_t ShownPage() const;
  /// A locked page is shown but cannot be changed.
  void LockPage(std::uint32_t page, bool locked);
  [[nodiscard]] bool IsLocked(std::uint32_t page) const;

  /// Adds a combo box after the existing ones. The data of an entry is what the choice adds to the option code.
  KvUiList& AddCombo(std::uint32_t page, std::wstring_view label);
  /// Null when the page has no such combo box; places count from 0.
  [[nodiscard]] KvUiList* ComboAt(std::uint32_t page, std::size_t place) const;
  /// The sum of the values that are chosen on a page; -1 without combo boxes, or when one has no choice.
  [[nodiscard]] std::int32_t OptionCode(std::uint32_t page) const;
  /// The new option code of the page when the event is a change of one of its combo boxes.
  [[nodiscard]] std::optional<std::int32_t> ChangedCode(const KvUiEvent& event) const;

private:
  KvUiPages& pages_;
  std::wstring role_;
};

} // namespace brenvolt
