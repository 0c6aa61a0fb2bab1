#include "config/widget_manager_maker.h"

#include "config/config_units.h"
#include "config/widget_manager_catalog.h"
#include "config/widget_manager_mcc.h"
#include "host/lisp_symbols.h"
#include "text/compare.h"
#include "text/numbers.h"

#include <algorithm>
#include <utility>

namespace brenvolt {

namespace {

/// Fields of a motor's or load's row.
constexpr std::size_t typeField = 0;
constexpr std::size_t currentField = 7;

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

bool ZanWidgetManagerMaker::MakeManagers(ZanConfigUnit& unit) {
  const ZanCodeRecord& record = unit.options;
  // Without control rules there are no input groups, whatever the names of the groups.
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
  auto manager = std::make_unique<ZanWidgetManagerMcc>(circuits_, tables_.observer);
  manager->Initialise(&unit, group);
  // A new circuit asks again about missing tables.
  tables_.accepted.clear();
  unit.BindManager(controlOptionCode, manager.get());
  manager->SetWireFormats(wires_.formats(SamePosition::latestCounts));
  manager->TakeCircuit();
  AddHead(std::move(manager));
}

ZanWidgetManager* ZanWidgetManagerMaker::makeCatalogManager(ZanConfigUnit& unit, const ZanScriptEntry& rule) {
  auto manager = std::make_unique<ZanWidgetManagerCatalog>(this);
  manager->SetKey(MakeKey(rule));
  manager->Configure(&unit, rule);
  ZanWidgetManager* made = manager.get();
  AddMember(std::move(manager));
  return made;
}

void ZanWidgetManagerMaker::SetWireFormatter(const ZanWireFormatter& formatter, std::int32_t run) {
  wires_.add(run, formatter);
  if (ZanWidgetManagerMcc* current = circuits_.current()) current->SetWireFormats(formatter, run);
}

template <class Visit>
void ZanWidgetManagerMaker::forEachMotor(const Visit& visit) const {
  const auto visitMotor = [&visit](const std::unique_ptr<ZanWidgetManager>& head) {
    if (auto* motor = dynamic_cast<ZanWidgetManagerMcc*>(head.get())) visit(*motor);
  };
  for (const ZanManagerGroup& group : groups_)
    visitMotor(group.head);
  for (const auto& head : retired_)
    visitMotor(head);
}

void ZanWidgetManagerMaker::TakeBackRun(std::int32_t run) {
  wires_.takeBack(run);
  ZanWidgetManagerMcc* last = nullptr;
  forEachMotor([&](ZanWidgetManagerMcc& motor) {
    motor.TakeBackRun(run);
    if (motor.HasUnit()) last = &motor;
  });
  const ZanWidgetManagerMcc* current = circuits_.current();
  if (current != nullptr && !current->HasUnit() && last != nullptr) last->TakeCircuit();
}

void ZanWidgetManagerMaker::JoinRun(std::int32_t run, std::int32_t former) {
  wires_.joinRun(run, former);
  forEachMotor([run, former](ZanWidgetManagerMcc& motor) { motor.JoinRun(run, former); });
}

void ZanWidgetManagerMaker::AddHead(std::unique_ptr<ZanWidgetManager> head) {
  if (groups_.empty() || groups_.back().isHeaded()) groups_.emplace_back();
  std::unique_ptr<ZanWidgetManager>& place = groups_.back().head;
  // A head whose unit was undone is replaced, but its groups are still in the window.
  if (place) retired_.push_back(std::move(place));
  place = std::move(head);
}

void ZanWidgetManagerMaker::AddMember(std::unique_ptr<ZanWidgetManager> member) {
  // A motor that was undone takes no part over: it belongs to the one before it.
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

std::vector<MotorRows> ZanWidgetManagerMaker::CollectSettings() const {
  std::vector<MotorRows> motors;
  for (const ZanManagerGroup& group : groups_) {
    if (!group.isHeaded()) continue;
    if (std::optional<ZanAnnotationDataList> rows = group.head->ExportRows())
      motors.push_back({group.head->GetUnitMarker(), std::move(*rows)});
  }
  return motors;
}

std::vector<ZanAutoSizeRow> sizeComponents(
    std::wstring_view type, double current, TypeFormulas formulas, const LentTables& tables) {
  ZanAutoSizeComponent components;
  if (!components.Open(tables.observer)) return {};
  if (const std::optional<std::wstring> standard = getCodeStandard()) {
    std::wstring source;
    MissingTables missing;
    const bool isOpen = components.findMissing(*standard, source, missing);
    if (isOpen &&
        alertTables(source, missing.forCode, missing.everywhere, AlertKind::componentTable, tables.accepted))
      components.useTables(*standard);
  }
  std::vector<ZanAutoSizeRow> rows;
  if (!components.size(type, current, rows)) rows.clear();
  const bool isUnknown =
      !rows.empty() && std::none_of(rows.begin(), rows.end(), [](const ZanAutoSizeRow& row) {
        return !row.expression.empty();
      });
  if (isUnknown && formulas == TypeFormulas::required && tables.observer != nullptr) {
    std::wstring source;
    components.connection()->GetDatasource(source);
    std::wstring reason = components.calculationTable();
    reason.append(L" has no formulas for motors of the type \"").append(type).append(L"\"");
    std::wstring statement(L"Type='");
    statement.append(type).append(L"'");
    tables.observer->statementFailed({std::move(source), std::move(reason), std::move(statement)});
  }
  return rows;
}

std::vector<ZanAutoSizeRow> computeAutoRows(
    const ZanAnnotationDataList& groupData, const LentTables& tables) {
  const ZanAnnotationData* setup = findRow(groupData, rowname::motorSetup);
  const TypeFormulas formulas = setup ? TypeFormulas::required : TypeFormulas::optional;
  if (!setup) setup = findRow(groupData, rowname::loadSetup);
  if (!setup) return {};
  return sizeComponents(
      fieldOf(*setup, typeField), toDouble(fieldOf(*setup, currentField)), formulas, tables);
}

} // namespace brenvolt
