#include "flows/config_pages.h"

#include "config/widget_manager.h"
#include "flows/config_walk.h"
#include "widgets/roles_config.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <utility>

namespace brenvolt {

namespace {

/// The group that makes a unit a motor or load is its first and is never shown.
std::size_t firstShownGroup(const ZanConfigUnit& unit) {
  return unit.control ? 1 : 0;
}

/// A motor or load unit has its fixed code, independent of its combo boxes.
std::int32_t managerCode(const ZanConfigUnit& unit, std::int32_t optionCode) {
  return unit.control ? controlOptionCode : optionCode;
}

/// The last one wins where the worksheet marks several.
int lastSelected(const ZanOptionGroup& group) {
  int selected = -1;
  for (std::size_t index = 0; index < group.options.size(); ++index)
    if (group.options[index].selected) selected = static_cast<int>(index);
  return selected;
}

/// Whether a catalogue group has any value; title and table of a row are not values.
bool hasValue(const ZanAnnotationDataList& rows) {
  static constexpr std::size_t firstValue = 2;
  return std::any_of(rows.items().begin(), rows.items().end(), [](const ZanAnnotationDataList::Item& item) {
    if (item.row == nullptr) return false;
    const auto& fields = item.row->fields;
    return std::any_of(
        fields.begin() + static_cast<std::ptrdiff_t>(std::min(firstValue, fields.size())), fields.end(),
        [](const ZanAnnotationField& field) { return !field.value.empty(); });
  });
}

} // namespace

ConfigPages::ConfigPages(
    ZanConfigUnitList& units, KvUiTree& tree, KvUiPages& options, KvUiPages& settings,
    ZanConfigDialogService& dialog)
    : units_(units), tree_(tree), select_(options, role::optionPages),
      settings_(settings, role::settingsPages, dialog) {}

ZanConfigUnit* ConfigPages::CurrentUnit() const {
  const std::uint32_t page = tree_.CurrentPage();
  return page == 0 ? nullptr : units_.Find(page, FindUnitBy::page);
}

ZanWidgetManager* ConfigPages::ManagerOf(const ZanConfigUnit& unit) {
  return unit.FindManager(managerCode(unit, unit.GetOptionCode()));
}

void ConfigPages::Open() {
  forEachUnit(units_, [this](ZanConfigUnit& unit, const ZanConfigUnit* parent) { AddUnit(unit, parent); });
  emptyPage_ = settings_.AddPage();
  if (units_.isEmpty())
    settings_.ShowPage(emptyPage_);
  else
    tree_.Select(units_.units().front()->page);
}

void ConfigPages::AddUnit(ZanConfigUnit& unit, const ZanConfigUnit* parent) {
  const std::uint32_t parentPage = parent == nullptr ? 0 : parent->page;
  unit.page = select_.AddPage(parentPage);
  unit.AddManagersToWindow(&settings_);
  ZanWidgetManager* manager = ManagerOf(unit);
  if (manager != nullptr && unit.control) manager->ImportRows(unit.controlRows);
  if (manager != nullptr && !unit.control) {
    manager->ImportRows(unit.catalogRows);
    manager->SaveSelection(unit.code, unit.GetOptionCode(), unit.catalogRows);
  }
  showSettingsOf(manager);
  addCombos(unit);
  tree_.Add(unit.page, parentPage, unit.options.title);
}

void ConfigPages::addCombos(const ZanConfigUnit& unit) {
  const auto& groups = unit.options.groups;
  for (std::size_t group = firstShownGroup(unit); group < groups.size(); ++group) {
    KvUiList& combo = select_.AddCombo(unit.page, groups[group].title);
    for (const ZanOption& option : groups[group].options)
      combo.Insert(-1, option.text, option.value);
    combo.Select(lastSelected(groups[group]));
  }
}

void ConfigPages::readCombos(ZanConfigUnit& unit) {
  const std::size_t first = firstShownGroup(unit);
  for (std::size_t place = 0; first + place < unit.options.groups.size(); ++place) {
    const KvUiList* combo = select_.ComboAt(unit.page, place);
    if (combo == nullptr) return;
    ZanOptionGroup& group = unit.options.groups[first + place];
    const int selected = combo->Selected();
    // A choice that was not touched stays as it is, also where the worksheet marks several options of a group.
    if (selected < 0 || selected == lastSelected(group)) continue;
    // By place: two options of a group may have the same value.
    for (std::size_t option = 0; option < group.options.size(); ++option)
      group.options[option].selected = static_cast<int>(option) == selected;
  }
}

void ConfigPages::RemoveUnit(const ZanConfigUnit& unit) {
  // A failed run has added units that were never shown.
  if (unit.page == 0) return;
  tree_.Remove(unit.page);
  select_.RemovePage(unit.page);
}

void ConfigPages::ShowPage(std::uint32_t page) {
  CommitPage();
  select_.ShowPage(page);
  const ZanConfigUnit* unit = page == 0 ? nullptr : units_.Find(page, FindUnitBy::page);
  ZanWidgetManager* manager = unit == nullptr ? nullptr : ManagerOf(*unit);
  if (manager != nullptr && !unit->inserted) {
    if (unit->control)
      manager->Refresh();
    else
      manager->LoadSelection(unit->code, unit->GetOptionCode());
  }
  showSettingsOf(manager);
  tree_.MoveCurrent(page);
}

void ConfigPages::CommitPage() {
  // What an edit has started would otherwise come after what is read here.
  settings_.FireTimers();
  const std::uint32_t page = select_.ShownPage();
  ZanConfigUnit* unit = page == 0 ? nullptr : units_.Find(page, FindUnitBy::page);
  if (unit == nullptr || unit->inserted) return;
  readCombos(*unit);
  ZanWidgetManager* manager = ManagerOf(*unit);
  if (manager == nullptr) return;
  std::optional<ZanAnnotationDataList> rows = manager->ExportRows();
  if (!rows) return;
  if (unit->control) {
    unit->controlRows = std::move(*rows);
  } else {
    manager->SaveSelection(unit->code, unit->GetOptionCode(), *rows);
    // A page that was only visited returns no rows: it would otherwise store groups without a value.
    if (!unit->catalogRows.isEmpty() || hasValue(*rows)) unit->catalogRows = std::move(*rows);
  }
}

void ConfigPages::OnOptionChanged(std::int32_t code) {
  ZanConfigUnit* unit = CurrentUnit();
  ZanWidgetManager* manager = unit == nullptr ? nullptr : unit->FindManager(managerCode(*unit, code));
  // A code without a manager stays on the screen until the page is left.
  if (manager != nullptr && !unit->control && !unit->inserted) {
    readCombos(*unit);
    manager->LoadSelection(unit->code, code);
  }
  showSettingsOf(manager);
}

void ConfigPages::ShowSettings() {
  const ZanConfigUnit* unit = CurrentUnit();
  showSettingsOf(unit == nullptr ? nullptr : ManagerOf(*unit));
}

void ConfigPages::showSettingsOf(const ZanWidgetManager* manager) {
  settings_.ShowPage(manager == nullptr ? emptyPage_ : manager->GetPage());
}

void ConfigPages::SetInserted(ZanConfigUnit& unit) {
  setLocked(unit, true);
  unit.pending = false;
  unit.inserted = true;
  tree_.SetImage(unit.page, UnitImage::inserted);
}

void ConfigPages::SetWaiting(ZanConfigUnit& unit) {
  setLocked(unit, false);
  unit.pending = false;
  unit.inserted = false;
  const bool isCurrent = unit.page == tree_.CurrentPage();
  tree_.SetImage(unit.page, isCurrent ? UnitImage::current : UnitImage::waiting);
}

void ConfigPages::setLocked(const ZanConfigUnit& unit, bool locked) {
  select_.LockPage(unit.page, locked);
  if (ZanWidgetManager* manager = ManagerOf(unit)) manager->SetLocked(locked);
}

} // namespace brenvolt
