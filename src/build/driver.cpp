#include "build/driver.h"

#include "build/host_session.h"
#include "build/marker_preparation.h"
#include "build/marker_scan.h"
#include "build/script_rows.h"
#include "build/unsized_wires.h"
#include "config/config_marker_bridge.h"
#include "drawing/marker_tree.h"
#include "host/build_data.h"
#include "host/host_api_lisp.h"
#include "host/lisp_calls.h"
#include "host/lisp_symbols.h"
#include "host/open_object.h"
#include "host/resources.h"
#include "text/encoding.h"
#include "text/format.h"
#include "text/numbers.h"
#include "text/split.h"

#include <set>

namespace brenvolt {

namespace {

/// Depth of the markers of the template itself.
constexpr std::int32_t topLevel = 1;

/// Calls `visit` for each marker of the tree.
template <class Visit>
void forEachMarker(ZanDwgMarkerList& markers, Visit&& visit) {
  ZanDwgMarkerListIterator iterator(&markers);
  for (iterator.First(); !iterator.Done(); iterator.Next())
    visit(*iterator.Current());
}

std::wstring joinValues(const std::vector<std::int32_t>& values) {
  std::vector<std::wstring> texts;
  texts.reserve(values.size());
  for (const std::int32_t value : values)
    texts.push_back(formatInt(value));
  return join(texts, L",");
}

UnitMaking unitMakingOf(BuildState& build) {
  return {
      [&maker = build.maker](ZanConfigUnit& unit) { static_cast<void>(maker.MakeManagers(unit)); },
      build.duplicateUnits};
}

} // namespace

ZanBrenvolt::ZanBrenvolt(ZanBuildArgs args, const LentValues& lent, const ZanBrenvolt* parent)
    : parent_(parent), state_(input_, lent) {
  input_.args = std::move(args);
  input_.lastHandle = handleFromText(input_.args.lastHandleText);
}

ZanBrenvolt::~ZanBrenvolt() = default;

bool ZanBrenvolt::isBelowDialog() const {
  return parent_ != nullptr && (parent_->state_.isInteractive() || parent_->isBelowDialog());
}

void ZanBrenvolt::readBuildData() {
  ZanBuildArgs& args = input_.args;
  if (BuildData data; brenvolt::readBuildData(data)) {
    args.scaleA = data.scaleA;
    args.scaleB = data.scaleB;
    args.scaleC = data.scaleC;
    args.scaleD = data.scaleD;
    args.insertPoint = data.point;
    args.trace = data.trace;
  }
  // Without the symbol a saved configuration counts more than the preset: existing LISP relies on it.
  args.isPresetOverHistory = isSwitchedOn(lispsymbol::presetOverHistory);
  if (args.isPresetOverHistory) putList(lispsymbol::presetOverHistory, ResultList());
  state_.history.context = args.workbook;
  state_.entry = {
      {args.circuit, args.type, args.historyName},
      args.worksheet,
      formatDouble(args.scaleB),
      formatDouble(args.scaleA)};
}

bool ZanBrenvolt::loadCatalog() {
  state_.catalog.workbook = input_.args.workbook;
  return state_.catalog.readWorksheet(input_.args.worksheet);
}

bool ZanBrenvolt::readMarkers() {
  KvDbDatabase* database = workingDatabase();
  if (!database) return false;
  const WorkingDatabaseScope scope(database);
  if (state_.spaceName.empty()) state_.spaceName = activeSpaceName();
  if (state_.spaceName.empty()) return false;
  const std::int32_t run = level();
  return adoptScan(
      state_, state_.markers,
      scanMarkers(*database, {state_.spaceName, input_.lastHandle, topLevel, run}, state_.markers), run);
}

void ZanBrenvolt::readPresets() {
  applyPresetDefaults(input_.args.presetText, state_.catalog);
  input_.presets = brenvolt::readPresets(input_.args, state_.tables.observer);
}

bool ZanBrenvolt::prepare(BuildKind kind) {
  state_.kind = kind;
  markersMatched_ = matchRecords(state_, state_.markers);
  if (!markersMatched_) return false;
  const CircuitRows circuitRows = state_.isInteractive() ? CircuitRows::leave : CircuitRows::fill;
  if (!state_.entry.key.name.empty() && state_.history.OpenHistory(state_.entry.key))
    applyOpenHistory(state_, state_.markers, circuitRows);
  if (input_.presets.active) buildWireAnnotations(state_, state_.markers, circuitRows);
  if (depth() == 0)
    for (const wchar_t* symbol :
         {lispsymbol::unsizedWires, lispsymbol::savedConfiguration, lispsymbol::tableProblems})
      putList(symbol, ResultList());
  // What the pages of the dialog leave without a size is sized for each run.
  if (!state_.isInteractive()) sizeUnsizedWires(state_, state_.markers);

  std::vector<ZanExecRecord> items;
  if (state_.isInteractive())
    collectLevel(state_.markers, firstMarker, items);
  else
    CollectRange(state_.markers, firstMarker, endOfMarkers, items);
  const bool result = runMarkers(state_, items);
  if (state_.isInteractive()) BuildConfigUnits(state_.markers, state_.units, unitMakingOf(state_));
  return result;
}

void ZanBrenvolt::finish() {
  if (state_.isInteractive()) reportUnsizedWires(state_);
  std::vector<std::vector<std::wstring>> rows;
  for (const auto& [code, values] : state_.result.selections)
    rows.push_back({code, joinValues(values)});
  const std::set<std::wstring, CodeLess> executed(
      state_.result.executedCodes.begin(), state_.result.executedCodes.end());
  forEachMarker(state_.markers, [&](const ZanDwgMarker& marker) {
    const bool isUsed = executed.contains(marker.code) || state_.result.selections.contains(marker.code);
    if (!isUsed && state_.catalog.findRecord(marker.code)) rows.push_back({marker.code, {}});
  });
  // The configuration is stored by now: the markers go also when LISP fails.
  try {
    saveCodeHandles(rows);
  } catch (...) {
    eraseMarkers();
    throw;
  }
  eraseMarkers();
}

void ZanBrenvolt::eraseMarkers() {
  KvDbDatabase* database = workingDatabase();
  if (!database) return;
  const WorkingDatabaseScope scope(database);
  forEachMarker(state_.markers, [database](const ZanDwgMarker& marker) {
    KvDbObjectId id;
    if (marker.handle.isNull() || database->objectIdOf(marker.handle, id) != KvDbStatus::ok) return;
    const OpenObject<KvDbBlockReference> reference(id, KvOpenMode::forWrite);
    if (reference) reference->erase();
  });
}

bool ZanBrenvolt::runLevel() {
  std::vector<ZanExecRecord> items;
  ApplyConfigUnits(state_.markers, state_.units, static_cast<std::uint32_t>(level() + 1), items);
  if (items.empty()) return true;
  const bool result = runMarkers(state_, items);
  RefreshConfigUnits(state_.markers, state_.units, unitMakingOf(state_));
  return result;
}

bool ZanBrenvolt::stepBack() {
  const std::int32_t run = level();
  const bool result = state_.undo.stepBack();
  if (!result && level() < run) joinRunToFormer(run);
  return result;
}

void ZanBrenvolt::joinRunToFormer(std::int32_t run) {
  const std::int32_t former = run - 1;
  forEachMarker(state_.markers, [run, former](ZanDwgMarker& marker) {
    if (marker.run == run) marker.run = former;
  });
  for (const ZanConfigUnitList* units : {&state_.units, &state_.duplicateUnits}) {
    ZanConfigUnitListIterator walk(units);
    for (walk.First(); !walk.IsDone(); walk.Next()) {
      ZanConfigUnit& unit = *walk.Current();
      if (unit.insertStep == static_cast<std::uint32_t>(run))
        unit.insertStep = static_cast<std::uint32_t>(former);
      if (unit.ownerStep == run) unit.ownerStep = former;
    }
  }
  state_.maker.JoinRun(run, former);
}

void ZanBrenvolt::truncateTo(std::int32_t run) {
  std::set<std::wstring, CodeLess> codes;
  forEachMarker(state_.markers, [&codes](const ZanDwgMarker& marker) { codes.insert(marker.code); });
  DropChildrenOfRun(state_.markers, run);
  // Markers without choices have run as well: what is gone with the run is not passed on at the end.
  forEachMarker(state_.markers, [&codes](const ZanDwgMarker& marker) { codes.erase(marker.code); });
  for (const std::wstring& code : codes)
    forgetUnit(code);
  state_.units.RemoveUnitsOfRun(run);
  state_.duplicateUnits.RemoveUnitsOfRun(run);
  state_.maker.TakeBackRun(run);
}

bool ZanBrenvolt::saveHistory(std::wstring_view name) {
  HistoryEntry entry = state_.entry;
  entry.key.name = name;
  try {
    if (state_.history.SaveHistory(entry, state_.markers)) {
      state_.entry = std::move(entry);
      const HistoryKey& key = state_.entry.key;
      ListBuilder saved;
      saved.beginList().addText(input_.args.workbook);
      for (const std::wstring* text : {&key.circuit, &key.type, &key.name})
        saved.addText(*text);
      putList(lispsymbol::savedConfiguration, saved.endList().take());
      return true;
    }
  } catch (const XmlError& error) {
    kvutPrintf(
        (formatText(loadText(TextId::historyRefused), {std::wstring_view(fromUtf8(error.what()))}) + L"\n")
            .c_str());
  }
  // Read again, or what was added in memory would go into the file with the next save. A missing file is not a failure.
  static_cast<void>(state_.history.OpenHistory(state_.entry.key));
  return false;
}

void ZanBrenvolt::forgetUnit(std::wstring_view code) {
  std::erase_if(state_.result.executedCodes, [code](const std::wstring& each) {
    return equalsOrdinalNoCase(each, code);
  });
  if (const auto selection = state_.result.selections.find(code); selection != state_.result.selections.end())
    state_.result.selections.erase(selection);
}

void ZanBrenvolt::copyUnitsToMarkers() {
  CopyUnitsToMarkers(state_.markers, state_.units);
}

} // namespace brenvolt
