#include "config/widget_manager_maker.h"

#include "config/config_units.h"
#include "config/widget_manager_catalog.h"
#include "config/widget_manager_mcc.h"
#include "host/lisp_symbols.h"
#include "text/compare.h"
#include "text/numbers.h"

#include <algorithm>

namespace brenvolt {

namespace {

/// Fields of a motor's or load's row.
constexpr std::size_t typeField = 0;
constexpr std::size_t currentField = 7;

std::unique_ptr<ZanWidgetManagerMaker>& makerOfProcess() {
  static std::unique_ptr<ZanWidgetManagerMaker> maker;
  return maker;
}

const ZanAnnotationData* findRow(const ZanAnnotationDataList& rows, std::wstring_view name) {
  for (const ZanAnnotationDataList::Item& item : rows.items())
    if (item.row && item.row->name == name) return item.row.get();
  return nullptr;
}

std::wstring fieldOf(const ZanAnnotationData& row, std::size_t index) {
  return index < row.fields.size() ? row.fields[index].value : std::wstring();
}

} // namespace

std::wstring MakeKey(const ZanScriptEntry& rule) {
  std::wstring key = rule.text;
  for (const auto& [name, value] : rule.params)
    key += name + value;
  return key;
}

ZanWidgetManagerMaker* widgetManagerMaker() {
  return makerOfProcess().get();
}

bool ZanWidgetManagerMaker::Create() {
  if (!makerOfProcess()) makerOfProcess() = std::make_unique<ZanWidgetManagerMaker>();
  return makerOfProcess() != nullptr;
}

void ZanWidgetManagerMaker::Destroy() {
  makerOfProcess().reset();
}

bool ZanWidgetManagerMaker::MakeManagers(ZanConfigUnit& unit) {
  const ZanCodeRecord& record = unit.options;
  // Without control rules there are no input groups, whatever the groups are called.
  if (record.controlRules.empty()) return false;
  if (const ZanOptionGroup* control = record.controlGroup()) {
    makeMotorManager(unit, *control);
    return true;
  }
  bool hasTables = false;
  for (const ZanScriptEntry& rule : record.controlRules) {
    if (rule.params.empty()) continue;
    hasTables = true;
    ZanWidgetManager* manager = unit.FindManagerByKey(MakeKey(rule));
    unit.BindManager(rule.code, manager != nullptr ? manager : makeCatalogManager(unit, rule));
  }
  return hasTables;
}

void ZanWidgetManagerMaker::makeMotorManager(ZanConfigUnit& unit, const ZanOptionGroup& group) {
  unit.control = true;
  auto manager = std::make_unique<ZanWidgetManagerMcc>();
  manager->Initialise(&unit, group);
  unit.BindManager(controlOptionCode, manager.get());
  manager->SetWireFormats(wireFormatter_);
  AddHead(std::move(manager));
}

ZanWidgetManager* ZanWidgetManagerMaker::makeCatalogManager(ZanConfigUnit& unit, const ZanScriptEntry& rule) {
  auto manager = std::make_unique<ZanWidgetManagerCatalog>();
  manager->SetKey(MakeKey(rule));
  manager->Configure(&unit, rule);
  ZanWidgetManager* made = manager.get();
  AddMember(std::move(manager));
  return made;
}

void ZanWidgetManagerMaker::SetWireFormatter(const ZanWireFormatter& formatter) {
  wireFormatter_ = formatter;
  if (auto* manager = dynamic_cast<ZanWidgetManagerMcc*>(current_)) manager->SetWireFormats(wireFormatter_);
}

void ZanWidgetManagerMaker::AddHead(std::unique_ptr<ZanWidgetManager> head) {
  current_ = head.get();
  if (groups_.empty() || groups_.back().isHeaded()) groups_.emplace_back();
  std::unique_ptr<ZanWidgetManager>& place = groups_.back().head;
  // A head whose unit was undone gives way, but its groups still stand in the window.
  if (place) retired_.push_back(std::move(place));
  place = std::move(head);
}

void ZanWidgetManagerMaker::AddMember(std::unique_ptr<ZanWidgetManager> member) {
  // A motor that was undone takes no part over: it belongs to the one ahead of it.
  const auto living = std::find_if(groups_.rbegin(), groups_.rend(), [](const ZanManagerGroup& group) {
    return group.head == nullptr || group.isHeaded();
  });
  if (living != groups_.rend()) return living->members.push_back(std::move(member));
  groups_.emplace_back();
  groups_.back().members.push_back(std::move(member));
}

ZanWidgetManager* ZanWidgetManagerMaker::FindHead(const ZanWidgetManager* member) const {
  for (const ZanManagerGroup& group : groups_)
    for (const auto& each : group.members)
      if (each.get() == member) return group.head.get();
  return nullptr;
}

void ZanWidgetManagerMaker::RefreshSettings() {
  const auto canSpeak = [](const ZanWidgetManager* head) {
    return head != nullptr && head->HasUnit() && head->HasWindow();
  };
  if (!canSpeak(current_)) {
    const auto last =
        std::find_if(groups_.rbegin(), groups_.rend(), [&canSpeak](const ZanManagerGroup& group) {
          return canSpeak(group.head.get());
        });
    if (last != groups_.rend()) current_ = last->head.get();
  }
  settings_.Clear();
  if (current_ != nullptr) current_->ExportRows(settings_);
}

bool ZanWidgetManagerMaker::CollectSettings(ZanAnnotationDataList& rows, std::vector<std::wstring>& orders) {
  rows.Clear();
  std::wstring previous;
  for (const ZanManagerGroup& group : groups_) {
    if (!group.isHeaded() || !group.head->HasWindow()) continue;
    group.head->ExportRows(settings_);
    rows.Append(settings_);
    const std::wstring code = group.head->GetUnitCode();
    // Consecutive heads of one marker code share one order.
    if (previous.empty() || !equalsOrdinalNoCase(previous, code))
      orders.push_back(group.head->GetUnitOrder());
    previous = code;
  }
  return !rows.isEmpty();
}

void ZanWidgetManagerMaker::computeAutoRows(
    const ZanAnnotationDataList& groupData, std::vector<ZanAutoSizeRow>& rows) const {
  rows.clear();
  const ZanAnnotationData* setup = findRow(groupData, rowname::motorSetup);
  if (!setup) setup = findRow(groupData, rowname::loadSetup);
  if (!setup) return;
  ZanAutoSizeComponent components;
  // Without a standard the tables' plain names are used.
  if (const std::optional<std::wstring> standard = getCodeStandard())
    static_cast<void>(components.init(*standard));
  static_cast<void>(
      components.size(fieldOf(*setup, typeField), toDouble(fieldOf(*setup, currentField)), rows));
}

} // namespace brenvolt
