#include "widgets/settings_window.h"

#include "widgets/page_roles.h"

#include <algorithm>
#include <utility>

namespace brenvolt {

namespace {

constexpr int labelColumn = 0;
constexpr int valueColumn = 1;
constexpr int columnCount = 2;
/// Labels are longer than values, but for layers.
const std::vector<int> columnWidths = {5, 6};

constexpr int lookupButton = 0;
constexpr int pickButton = 1;

} // namespace

void ZanGroupCtrl::Configure(ZanGroupSpec spec, ZanGroupEvents& events) {
  spec_ = std::move(spec);
  events_ = &events;
  control_.SetLabel(spec_.title);
  control_.SetButtons(spec_.hasButtons ? spec_.buttons : std::vector<KvUiGroupButton>());
  control_.Grid().SetColumnWidths(columnWidths);
  ReplaceRows(spec_.rows);
}

std::vector<ZanGroupRow> ZanGroupCtrl::ReadRows() const {
  const KvUiGrid& grid = control_.Grid();
  std::vector<ZanGroupRow> rows;
  for (int row = 1; row <= grid.RowCount(); ++row)
    rows.push_back({grid.Cell(row, labelColumn), {grid.Cell(row, valueColumn)}});
  return rows;
}

void ZanGroupCtrl::WriteValues(const std::vector<std::wstring>& values) {
  for (std::size_t row = 0; row < values.size(); ++row)
    WriteValue(row, values[row]);
}

void ZanGroupCtrl::WriteValue(std::size_t row, std::wstring_view value) {
  KvUiGrid& grid = control_.Grid();
  if (row < static_cast<std::size_t>(grid.RowCount()))
    grid.SetCell(static_cast<int>(row) + 1, valueColumn, value);
}

void ZanGroupCtrl::ReplaceRows(const std::vector<ZanGroupRow>& rows) {
  KvUiGrid& grid = control_.Grid();
  grid.LockDrawing();
  grid.SetSize(static_cast<int>(rows.size()), columnCount);
  int place = 0;
  const auto needsWords =
      std::find_if(rows.begin(), rows.end(), [](const ZanGroupRow& row) { return !row.tip.empty(); });
  grid.SetTooltip(needsWords == rows.end() ? std::wstring() : needsWords->tip);
  for (const ZanGroupRow& row : rows) {
    grid.SetCell(++place, labelColumn, row.label);
    grid.SetCellKind(place, labelColumn, KvUiCellKind::fixed);
    grid.SetCell(place, valueColumn, row.value());
    const bool isChosen = row.choices.size() > 1;
    grid.SetCellKind(place, valueColumn, isChosen ? KvUiCellKind::dropDown : KvUiCellKind::text);
    std::vector<std::wstring> choices;
    // The choices of an empty list are requested each time it opens.
    if (isChosen && !spec_.liveChoices)
      std::copy_if(
          row.choices.begin(), row.choices.end(), std::back_inserter(choices),
          [](const std::wstring& choice) { return !choice.empty(); });
    grid.SetCellChoices(place, valueColumn, choices);
  }
  grid.UnlockDrawing();
}

void ZanGroupCtrl::SetLocked(bool locked) {
  control_.Enable(!locked);
  control_.Grid().SetEditable(!locked, false);
}

std::uint32_t ZanSettingsWnd::AddPage() {
  constexpr int noParent = 0;
  return static_cast<std::uint32_t>(pages_.AddPage(noParent));
}

void ZanSettingsWnd::ShowPage(std::uint32_t page) {
  pages_.ShowPage(static_cast<int>(page));
}

std::uint32_t ZanSettingsWnd::ShownPage() const {
  return static_cast<std::uint32_t>(pages_.ShownPage());
}

void ZanSettingsWnd::MakeGroups(std::uint32_t page, std::size_t count) {
  auto& groups = groups_[page];
  while (groups.size() < count)
    groups.push_back(std::make_unique<ZanGroupCtrl>(*this, pages_.AddGroup(static_cast<int>(page), L"")));
}

ZanGroupCtrl* ZanSettingsWnd::GroupAt(std::uint32_t page, std::size_t place) const {
  const auto found = groups_.find(page);
  return found == groups_.end() || place >= found->second.size() ? nullptr : found->second[place].get();
}

void ZanSettingsWnd::StartTimer(std::uint32_t timer, int milliseconds, ZanGroupEvents& events) {
  timers_[timer] = &events;
  dialog_.StartWindowTimer(static_cast<int>(timer), milliseconds);
}

void ZanSettingsWnd::KillTimer(std::uint32_t timer) {
  if (timers_.erase(timer) > 0) dialog_.KillWindowTimer(static_cast<int>(timer));
}

void ZanSettingsWnd::FireTimers() {
  for (const auto& [timer, events] : std::map(timers_))
    OnTimer(static_cast<int>(timer));
}

ZanGroupCtrl* ZanSettingsWnd::groupOfRole(std::wstring_view role) const {
  const std::optional<PagePlace> place = placeOfRole(role, role_);
  ZanGroupCtrl* group = place ? GroupAt(place->page, place->place) : nullptr;
  return group != nullptr && group->events_ != nullptr ? group : nullptr;
}

void ZanSettingsWnd::OnEvent(const KvUiEvent& event) {
  ZanGroupCtrl* group = groupOfRole(event.role);
  if (group == nullptr) return;
  const std::optional<int> button = placeOfRole(event.role, role_)->button;
  const bool isLookup = event.kind == KvUiEventKind::clicked && button == lookupButton;
  const bool isPick = event.kind == KvUiEventKind::clicked && button == pickButton;
  if (isLookup || (event.kind == KvUiEventKind::doubleClicked && !button)) group->events_->OnLookup(group);
  if (isPick) group->events_->OnPick(group);
}

void ZanSettingsWnd::OnTimer(int timer) {
  const auto found = timers_.find(static_cast<std::uint32_t>(timer));
  if (found == timers_.end()) return;
  ZanGroupEvents& events = *found->second;
  KillTimer(found->first);
  events.OnTimer(static_cast<std::uint32_t>(timer));
}

bool ZanSettingsWnd::OnValidateCell(std::wstring_view role, int row, std::wstring_view text) {
  ZanGroupCtrl* group = groupOfRole(role);
  if (group == nullptr || !group->spec().notifyChanges) return true;
  return group->events_->OnCellChanged(group->id(), static_cast<std::uint32_t>(row), text);
}

bool ZanSettingsWnd::OnCellChoices(std::wstring_view role, int row, std::vector<std::wstring>& choices) {
  ZanGroupCtrl* group = groupOfRole(role);
  if (group == nullptr || !group->spec().liveChoices) return false;
  std::vector<ZanGroupRow> rows = group->ReadRows();
  if (row < 1 || static_cast<std::size_t>(row) > rows.size()) return false;
  rows[static_cast<std::size_t>(row) - 1].choices.clear();
  return group->events_->GetChoices(group->id(), static_cast<std::uint32_t>(row), rows, choices);
}

} // namespace brenvolt
