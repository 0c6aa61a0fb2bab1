// What a motor's or load's page fetches on a button: data and wires by the lookup commands of the workbook, a motor or
// load picked from the drawing.
#include "config/flag_scope.h"
#include "config/widget_manager_mcc.h"
#include "host/host_api_documents.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>

namespace brenvolt {

namespace {

/// Enters the list of a result; a result that is not a list is its own only element.
ListReader elementsOf(const ResultList& answer) {
  ListReader reader(answer);
  reader.enterList();
  return reader;
}

} // namespace

void ZanWidgetManagerMcc::OnLookup(ZanGroupCtrl* group) {
  if (!group || busy_ || !HasWindow()) return;
  const FlagScope busy(busy_);
  // From now on the current circuit is that of this page: the command reads it and may change it.
  TakeCircuit();
  const std::int32_t id = group->id();
  if (id == dataGroupId(MccMode::motor)) lookUpData(*group, MccMode::motor);
  if (id == dataGroupId(MccMode::load)) lookUpData(*group, MccMode::load);
  if (id == wireGroupId(MccMode::motor) || id == wireGroupId(MccMode::load)) lookUpWires();
}

void ZanWidgetManagerMcc::lookUpData(ZanGroupCtrl& group, MccMode mode) {
  if (motorCommand_.empty()) return;
  if (mode == MccMode::load) CommitToCircuitData();
  const std::vector<ZanScriptVariable> arguments = mccArguments(mode, group.ReadRows());
  ResultList answer;
  {
    const KvWaitCursor waiting;
    if (!runForm(motorCommand_, arguments, answer)) return;
  }
  // The command ran LISP, which may have closed what the group stood in.
  if (answer.isEmpty() || !HasWindow()) return;

  const std::vector<std::size_t> fields = mccFieldsOf(mode);
  std::vector<std::wstring> values;
  for (ListReader reader = elementsOf(answer); !reader.atEnd() && values.size() < fields.size();) {
    const std::optional<double> number = reader.real();
    // Only the current is one: a multiplier that comes as a number must not become the current.
    if (number && fields[values.size()] == flaField && std::abs(*number - data_.fla) > numberTolerance) {
      data_.fla = *number;
      // The wires are sized for the current circuit, which a command of the workbook itself does not know.
      circuits_.take(record_).circuit.fla = *number;
      startTimer(recalculateTimer);
    }
    values.push_back(number ? formatTrimmed(*number) : reader.text().value_or(std::wstring()));
    if (!reader.skipElement()) break;
  }
  writeDataValues(group, values);
}

void ZanWidgetManagerMcc::lookUpWires() {
  if (wireCommand_.empty()) return;
  CommitToCircuitData();
  const ZanScriptVariable current = ZanScriptVariable::ofReal(L"@fla", data_.fla);
  ResultList answer;
  if (!runForm(wireCommand_, {&current, 1}, answer)) return;

  std::vector<std::wstring> parts;
  for (ListReader reader = elementsOf(answer); !reader.atEnd();) {
    parts.push_back(reader.text().value_or(std::wstring()));
    if (!reader.skipElement()) break;
  }
  if (parts.size() >= 2) fillWireRows(parts[0] + parts[1]);
}

void ZanWidgetManagerMcc::OnPick(ZanGroupCtrl* group) {
  if (!group || !HasWindow()) return;
  ZanConfigDialogService& dialog = window()->dialog();
  TakeCircuit();
  std::vector<std::wstring> values;
  const bool isPicked = (group->id() == dataGroupId(MccMode::motor) && dialog.PickMotor(values)) ||
                        (group->id() == dataGroupId(MccMode::load) && dialog.PickLoad(values));
  if (!isPicked || !HasWindow()) return;
  writeDataValues(*group, values);
  Recalculate();
}

void ZanWidgetManagerMcc::writeDataValues(ZanGroupCtrl& group, const std::vector<std::wstring>& values) {
  group.WriteValues(values);
  const std::vector<std::size_t> fields = mccFieldsOf(mode_);
  for (std::size_t row = 0; row < std::min(values.size(), fields.size()); ++row)
    setRating(data_, fields[row], values[row]);
  lastRow_ = 0;
}

} // namespace brenvolt
