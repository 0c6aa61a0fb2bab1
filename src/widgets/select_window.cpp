#include "widgets/select_window.h"

#include "widgets/page_roles.h"

#include <algorithm>
#include <limits>

namespace brenvolt {

std::uint32_t ZanSelectWnd::AddPage(std::uint32_t parent) {
  return static_cast<std::uint32_t>(pages_.AddPage(static_cast<int>(parent)));
}

void ZanSelectWnd::RemovePage(std::uint32_t page) {
  pages_.RemovePage(static_cast<int>(page));
}

void ZanSelectWnd::ShowPage(std::uint32_t page) {
  pages_.ShowPage(static_cast<int>(page));
}

std::uint32_t ZanSelectWnd::ShownPage() const {
  return static_cast<std::uint32_t>(pages_.ShownPage());
}

void ZanSelectWnd::LockPage(std::uint32_t page, bool locked) {
  pages_.LockPage(static_cast<int>(page), locked);
}

bool ZanSelectWnd::IsLocked(std::uint32_t page) const {
  return pages_.IsLocked(static_cast<int>(page));
}

KvUiList& ZanSelectWnd::AddCombo(std::uint32_t page, std::wstring_view label) {
  return pages_.AddList(static_cast<int>(page), label);
}

KvUiList* ZanSelectWnd::ComboAt(std::uint32_t page, std::size_t place) const {
  return pages_.ListAt(static_cast<int>(page), static_cast<int>(place));
}

std::int32_t ZanSelectWnd::OptionCode(std::uint32_t page) const {
  constexpr std::int32_t noCode = -1;
  std::int64_t code = 0;
  std::size_t place = 0;
  for (; const KvUiList* combo = ComboAt(page, place); ++place) {
    const int selected = combo->Selected();
    if (selected < 0) return noCode;
    code += combo->DataAt(selected);
  }
  // As the record of the unit counts: it stays within its type.
  const std::int64_t least = std::numeric_limits<std::int32_t>::min();
  const std::int64_t most = std::numeric_limits<std::int32_t>::max();
  return place == 0 ? noCode : static_cast<std::int32_t>(std::clamp(code, least, most));
}

std::optional<std::int32_t> ZanSelectWnd::ChangedCode(const KvUiEvent& event) const {
  if (event.kind != KvUiEventKind::changed) return std::nullopt;
  const std::optional<PagePlace> place = placeOfRole(event.role, role_);
  if (!place) return std::nullopt;
  return OptionCode(place->page);
}

} // namespace brenvolt
