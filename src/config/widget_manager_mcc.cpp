#include "config/widget_manager_mcc.h"

#include "config/config_units.h"
#include "config/flag_scope.h"
#include "host/alerts.h"
#include "host/host_api_documents.h"
#include "host/lisp_calls.h"
#include "host/lisp_symbols.h"
#include "text/compare.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>

namespace brenvolt {

namespace {

constexpr std::wstring_view inchOrMetricForm = L"(c:zan_bv_inch_or_metric)";
constexpr std::int32_t isMetric = 1;

/// Edits in a row start the same timer again, so that one lookup follows a burst of them.
constexpr int timerMilliseconds = 254;
constexpr std::uint32_t firstLookupTimer = 100; ///< of row 1; the last is that of row 5
constexpr std::uint32_t lastLookupTimer = 104;

/// Fields by which a query is narrowed.
constexpr std::size_t conditionFields = 8;

/// The mode of a data group; nothing for any other.
std::optional<MccMode> modeOfGroup(std::int32_t groupId) {
  for (const MccMode mode : {MccMode::motor, MccMode::load})
    if (groupId == dataGroupId(mode)) return mode;
  return std::nullopt;
}

bool differs(double left, double right) {
  return std::abs(left - right) > numberTolerance;
}

ZanGroupSpec dataSpec(MccMode mode, bool hasCommand) {
  const bool isMotor = mode == MccMode::motor;
  ZanGroupSpec spec;
  spec.id = dataGroupId(mode);
  spec.title = loadText(isMotor ? TextId::motorGroup : TextId::loadGroup);
  spec.buttons = {
      {static_cast<unsigned>(ImageId::lookup),
       loadText(isMotor ? TextId::tipMotorLookup : TextId::tipLoadLookup)},
      {static_cast<unsigned>(ImageId::pick), loadText(isMotor ? TextId::tipPickMotor : TextId::tipPickLoad)}};
  spec.hasButtons = hasCommand;
  spec.notifyChanges = true;
  spec.liveChoices = true;
  spec.rows = mccEmptyRows(mode);
  return spec;
}

ZanGroupSpec wireSpec(MccMode mode, bool hasCommand, std::vector<ZanGroupRow> rows) {
  ZanGroupSpec spec;
  spec.id = wireGroupId(mode);
  spec.title = loadText(TextId::wireGroup);
  spec.buttons = {{static_cast<unsigned>(ImageId::lookup), loadText(TextId::tipWireLookup)}};
  spec.hasButtons = hasCommand;
  spec.notifyChanges = true;
  spec.rows = std::move(rows);
  return spec;
}

/// The mode of the unit's control group; nothing without one.
std::optional<MccMode> modeOfUnit(const ZanConfigUnit* unit) {
  if (!unit) return std::nullopt;
  for (const ZanOptionGroup& group : unit->options.groups) {
    if (equalsCollating(group.title, motorControlTitle)) return MccMode::motor;
    if (equalsCollating(group.title, loadControlTitle)) return MccMode::load;
  }
  return std::nullopt;
}

} // namespace

ZanWidgetManagerMcc::ZanWidgetManagerMcc(CircuitInHand& circuits, TableObserver* observer)
    : circuits_(circuits), record_(circuits.begin(*this)), connection_(observer) {}

ZanWidgetManagerMcc::~ZanWidgetManagerMcc() {
  circuits_.forget(record_);
}

void ZanWidgetManagerMcc::Initialise(ZanConfigUnit* unit, const ZanOptionGroup& group) {
  SetUnit(unit);
  if (!group.options.empty()) count_ = toInt(group.options.front().text);
  if (unit) {
    const ZanScriptRules& rules = unit->options.controlRules;
    if (!rules.empty()) motorCommand_ = rules[0].text;
    if (rules.size() > 1) wireCommand_ = rules[1].text;
  }

  const KvWaitCursor waiting;
  if (const std::optional<std::wstring> file = findEngineeringDatabase()) {
    databaseFile_ = *file;
    ensureDatabase();
  }
  ResultList answer;
  if (evalString(inchOrMetricForm, answer) == kvstatus::normal)
    if (const std::optional<std::int32_t> units = ListReader(answer).integer()) metric_ = *units == isMetric;
}

void ZanWidgetManagerMcc::SetWireFormats(const ZanWireFormatter& formatter, std::int32_t run) {
  const std::wstring suffix = wireSuffix(GetUnitCode());
  const auto isNew = [&](const std::wstring& code, const ZanWireFormatter::Entries& known) {
    return equalsCollating(wireSuffix(code), suffix) &&
           std::none_of(known.begin(), known.end(), [&code](const auto& entry) {
             return equalsCollating(entry.second, code);
           });
  };
  ZanWireFormatter own;
  for (const auto& [format, code] : formatter.types())
    if (isNew(code, formats_.types())) own.AddWireType(format, code);
  for (const auto& [numbers, code] : formatter.numbers())
    if (isNew(code, formats_.numbers())) own.AddWireNumbers(numbers, code);
  wires_.add(run, std::move(own));
  formats_ = wires_.formats(SamePosition::eachCounts);
}

void ZanWidgetManagerMcc::TakeBackRun(std::int32_t run) {
  wires_.takeBack(run);
  formats_ = wires_.formats(SamePosition::eachCounts);
}

void ZanWidgetManagerMcc::AttachWindow(ZanSettingsWnd* window) {
  ZanWidgetManager::AttachWindow(window);
  if (!HasWindow()) return;
  window->MakeGroups(page_, mccplace::count);
  const ResourceScope texts;
  if (const std::optional<MccMode> mode = modeOfUnit(unit())) {
    mode_ = *mode;
    groupAt(mccplace::data)->Configure(dataSpec(mode_, !motorCommand_.empty()), *this);
  }
  groupAt(mccplace::wires)
      ->Configure(wireSpec(mode_, !wireCommand_.empty(), wireRows(formats_, activeWireLayers())), *this);
}

bool ZanWidgetManagerMcc::ensureDatabase() {
  if (connection_.IsConnected() || openEngineeringDatabase(connection_, databaseFile_)) return true;
  if (!databaseAlerted_) {
    databaseAlerted_ = true;
    alertDatabaseError(kdsw_korvoMainWnd());
  }
  return false;
}

void ZanWidgetManagerMcc::Refresh() {
  if (columnsLoaded_ || !ensureDatabase()) return;
  if (columnNames_[0].empty()) {
    const auto columns = readMotorColumns(connection_, getCodeStandard().value_or(std::wstring()));
    if (!columns) return;
    columnNames_ = *columns;
  }
  if (wireSizeColumns_[0].empty()) {
    const auto columns = readWireSizeColumns(connection_);
    if (!columns) return;
    wireSizeColumns_ = *columns;
  }
  columnsLoaded_ = true;
}

bool ZanWidgetManagerMcc::OnCellChanged(std::int32_t groupId, std::uint32_t row, std::wstring_view text) {
  const std::optional<MccMode> mode = modeOfGroup(groupId);
  if (!mode) return true;
  lastRow_ = 0;
  const std::vector<std::size_t> fields = mccFieldsOf(*mode);
  if (row < 1 || row > fields.size()) return true;
  const std::size_t field = fields[row - 1];
  if (!ratingFields[field].text) {
    if (!isTypedNumber(text)) return false;
    storeNumber(*mode, field, text);
    return true;
  }
  followsTable_ = followsTable_ || hasCurrentOfTable(*mode);
  setRating(data_, field, text);
  setRating(circuits_.take(record_).circuit, field, text);
  // A load never looks its current up: it has no row for the speed.
  const bool isComplete = !data_.type.empty() && !data_.load.empty() && !data_.voltage.empty() &&
                          !data_.speed.empty() && !data_.frequency.empty();
  const std::uint32_t timer = firstLookupTimer + row - 1;
  if (timer <= lastLookupTimer && isComplete) startTimer(timer);
  return true;
}

void ZanWidgetManagerMcc::storeNumber(MccMode mode, std::size_t field, std::wstring_view text) {
  const bool hasChanged = differs(data_.*ratingFields[field].number, toDouble(text));
  setRating(data_, field, text);
  storeUserValue(circuits_.take(record_), mode, field, text);
  if (field == flaField) followsTable_ = false;
  // A motor's current and a load's multiplier size the wires also when typed again as they were.
  const bool always = field == (mode == MccMode::motor ? flaField : multiplierField);
  if (always || hasChanged) startTimer(recalculateTimer);
}

void ZanWidgetManagerMcc::startTimer(std::uint32_t timer) {
  if (HasWindow()) window()->StartTimer(timer, timerMilliseconds, *this);
}

void ZanWidgetManagerMcc::OnTimer(std::uint32_t timerId) {
  if (timerId >= firstLookupTimer && timerId <= lastLookupTimer) lookUpCurrent();
  if (timerId == recalculateTimer) Recalculate();
}

std::vector<MotorCondition> ZanWidgetManagerMcc::conditionsBut(
    MccMode mode, std::size_t skippedRow, const std::vector<ZanGroupRow>& rows,
    CurrentCondition current) const {
  const std::vector<std::size_t> fields = mccFieldsOf(mode);
  std::vector<MotorCondition> conditions;
  for (std::size_t row = 0; row < std::min(rows.size(), fields.size()); ++row) {
    const std::wstring value = rows[row].value();
    // A load's current is compared with the column of currents, though it is in the row of a motor's speed.
    const bool isDropped = current == CurrentCondition::dropped && fields[row] == flaField;
    if (row != skippedRow && fields[row] < conditionFields && !value.empty() && !isDropped)
      conditions.push_back({columnNames_[fields[row]], value});
  }
  return conditions;
}

bool ZanWidgetManagerMcc::GetChoices(
    std::int32_t groupId, std::uint32_t row, const std::vector<ZanGroupRow>& rows,
    std::vector<std::wstring>& list) {
  const std::optional<MccMode> mode = modeOfGroup(groupId);
  if (!mode) return false;
  const std::vector<std::size_t> fields = mccFieldsOf(*mode);
  if (row < 1 || row > fields.size()) return false;
  const std::size_t index = row - 1;
  // Called for a cell each time that it is painted.
  if (row == lastRow_) {
    list = choiceCache_[index];
    return true;
  }
  // Without a database the query finds nothing, and the list stays empty.
  ensureDatabase();
  const FlagScope querying(querying_);
  lastRow_ = row;
  const ZanTableKind table = *mode == MccMode::load ? ZanTableKind::loads : ZanTableKind::motors;
  const auto valuesBy = [&](const std::vector<MotorCondition>& conditions) {
    return distinctMotorValues(
        connection_, table, getCodeStandard().value_or(std::wstring()), columnNames_[fields[index]],
        conditions);
  };
  std::vector<std::wstring> values = valuesBy(conditionsBut(*mode, index, rows));
  // Of a chosen motor its own current would leave only the value that is there: its neighbours have other currents.
  if (values.size() <= 1 && fields[index] != flaField)
    values = valuesBy(conditionsBut(*mode, index, rows, CurrentCondition::dropped));

  constexpr std::size_t loadIndex = 1;
  constexpr std::size_t unitsIndex = 2;
  constexpr std::size_t voltageIndex = 3;
  if (index == loadIndex)
    std::stable_sort(values.begin(), values.end(), [](const std::wstring& left, const std::wstring& right) {
      return toDouble(left) < toDouble(right);
    });
  if (index == unitsIndex || index == voltageIndex)
    std::stable_sort(values.begin(), values.end(), [](const std::wstring& left, const std::wstring& right) {
      return toInt(left) < toInt(right);
    });
  choiceCache_[index] = values;
  list = std::move(values);
  return true;
}

std::vector<std::wstring> ZanWidgetManagerMcc::currentsOfTable() {
  std::vector<MotorCondition> conditions;
  for (std::size_t field = 0; field < flaField; ++field)
    conditions.push_back({columnNames_[field], data_.*ratingFields[field].text});
  return distinctMotorValues(
      connection_, ZanTableKind::motors, getCodeStandard().value_or(std::wstring()), columnNames_[flaField],
      conditions);
}

/// Whether the current is that which the table has for the motor, and not one that the user has typed.
bool ZanWidgetManagerMcc::hasCurrentOfTable(MccMode mode) {
  if (mode != MccMode::motor || querying_) return false;
  const std::vector<std::wstring> currents = currentsOfTable();
  return std::any_of(currents.begin(), currents.end(), [this](const std::wstring& current) {
    return !differs(toDouble(current), data_.fla);
  });
}

void ZanWidgetManagerMcc::lookUpCurrent() {
  ZanGroupCtrl* group = groupAt(mccplace::data);
  if (querying_ || !group) return;
  std::vector<ZanGroupRow> rows = group->ReadRows();
  if (rows.empty()) return;
  rows.pop_back(); // the multiplier takes no part
  if (std::any_of(rows.begin(), rows.end(), [](const ZanGroupRow& row) { return row.value().empty(); }))
    return;
  std::vector<MotorCondition> conditions;
  for (std::size_t row = 0; row < std::min(rows.size(), conditionFields); ++row)
    conditions.push_back({columnNames_[row], rows[row].value()});
  // The multiplier's column has no name, so the query finds nothing and a typed current stays: only the lookup commands
  // change it.
  std::vector<std::wstring> currents = distinctMotorValues(
      connection_, ZanTableKind::motors, getCodeStandard().value_or(std::wstring()),
      columnNames_[multiplierField], conditions);
  std::stable_sort(currents.begin(), currents.end(), [](const std::wstring& left, const std::wstring& right) {
    return toDouble(left) < toDouble(right);
  });
  // The current of the table is that of another motor now: left as it is, it would give a 15 HP motor the wire of 10 HP.
  const bool followsTable = followsTable_ && currents.empty();
  if (followsTable) currents = currentsOfTable();
  if (currents.empty()) return;
  followsTable_ = false;
  group->WriteValue(flaField, currents.front());
  data_.fla = toDouble(currents.front());
  if (followsTable) circuits_.take(record_).circuit.fla = data_.fla;
  Recalculate();
}

void ZanWidgetManagerMcc::CommitToCircuitData() {
  CircuitContext& context = circuits_.take(record_);
  context.circuit.resetOpenFields();
  const ZanGroupCtrl* group = groupAt(mccplace::data);
  if (!group) return;
  const std::vector<std::size_t> fields = mccFieldsOf(mode_);
  const std::vector<ZanGroupRow> rows = group->ReadRows();
  for (std::size_t row = 0; row < std::min(rows.size(), fields.size()); ++row) {
    const std::wstring value = rows[row].value();
    if (value.empty()) continue;
    storeUserValue(context, mode_, fields[row], value);
    context.circuit.setOpenField(fields[row], false);
  }
}

ZanCircuitData ZanWidgetManagerMcc::sizedCircuit() const {
  ZanCircuitData sized = circuit().circuit;
  // The multiplier that the page shows: a typed multiplier of a load is stored only in the factors of loads, and a
  // lookup command of a site only writes the rows.
  if (isGiven(data_.flaMultiplier)) sized.flaMultiplier = data_.flaMultiplier;
  return sized;
}

void ZanWidgetManagerMcc::Recalculate() {
  if (const std::optional<std::wstring> size = proposedWireSize(connection_, sizedCircuit()))
    fillWireRows(*size);
}

void ZanWidgetManagerMcc::fillWireRows(std::wstring_view size) {
  ZanGroupCtrl* group = groupAt(mccplace::wires);
  if (!group) return;
  group->ReplaceRows(sizedWireRows(
      formats_, group->ReadRows(), group->spec().rows, wireSuffix(GetUnitCode()),
      {std::wstring(size), circuit().circuit.groundSize}));
}

void ZanWidgetManagerMcc::SetLocked(bool locked) {
  for (const std::size_t place : {mccplace::data, mccplace::wires})
    if (ZanGroupCtrl* group = groupAt(place)) group->SetLocked(locked);
}

} // namespace brenvolt
