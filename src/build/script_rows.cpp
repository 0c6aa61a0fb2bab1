#include "build/script_rows.h"

#include "build/host_session.h"
#include "build/marker_preparation.h"
#include "build/marker_scan.h"
#include "build/marker_settings.h"
#include "build/unsized_wires.h"
#include "data/component_sizing.h"
#include "drawing/marker_data.h"
#include "host/alerts.h"
#include "host/host_api_documents.h"
#include "host/host_api_lisp.h"
#include "host/lisp_services.h"
#include "host/open_object.h"
#include "host/resources.h"
#include "project/history_file.h"
#include "text/compare.h"
#include "text/format.h"
#include "text/numbers.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace brenvolt {

namespace {

constexpr wchar_t executionErrorKey[] = L"ZanBrenvolt.ExecutionError";
/// The value of a form that has inserted a nested template.
constexpr std::int32_t insertedTemplate = 2;

namespace scriptvariable {
constexpr wchar_t position[] = L"#xyz";
constexpr wchar_t misc[] = L"#misc1";
constexpr wchar_t scale[] = L"#scl";
constexpr wchar_t data[] = L"#data";
constexpr wchar_t autoRows[] = L"#data2";
} // namespace scriptvariable

/// The values of all selected options, group by group; a group that leaves the count short of its number adds -1.
std::vector<std::int32_t> valuesWithFiller(const ZanCodeRecord& record) {
  std::vector<std::int32_t> values;
  for (std::size_t i = 0; i < record.groups.size(); ++i) {
    for (const ZanOption& option : record.groups[i].options)
      if (option.selected) values.push_back(option.value);
    if (values.size() < i + 1) values.push_back(-1);
  }
  return values;
}

void removeOne(std::vector<std::wstring>& codes, const std::wstring& code) {
  // From the end, where the current marker has put its own.
  const auto found = std::find_if(codes.rbegin(), codes.rend(), [&code](const std::wstring& each) {
    return equalsOrdinalNoCase(each, code);
  });
  if (found != codes.rend()) codes.erase(std::next(found).base());
}

/// Group data, then catalogue data, as one list; without group data two empty records take its place.
ResultList scriptData(const ZanAnnotationDataList& groupData, const ZanAnnotationDataList& catalog) {
  if (groupData.isEmpty() && catalog.isEmpty()) return ResultList();
  ZanAnnotationDataList all = groupData;
  if (all.isEmpty()) {
    all.AddRow(ZanAnnotationData());
    all.AddRow(ZanAnnotationData());
  }
  all.Append(catalog);
  return all.ToLisp();
}

ZanScriptVariable listOrNil(const wchar_t* name, ResultList list) {
  return list.isEmpty() ? ZanScriptVariable::ofNil(name) : ZanScriptVariable::ofList(name, std::move(list));
}

/// One walk over a list of markers. A nested template has a walk of its own.
class MarkerWalk final {
public:
  /// The walk of a nested template shares the settings of the walk around it.
  MarkerWalk(BuildState& build, KvDbDatabase& database, MarkerSettings& settings)
      : build_(build), database_(database), space_(findBlock(database, build.spaceName)),
        settings_(settings) {}

  [[nodiscard]] bool run(const std::vector<ZanExecRecord>& items);

private:
  [[nodiscard]] ZanDwgMarker* markerOf(const ZanExecRecord& item) const {
    return build_.markers.findById(item.markerId);
  }
  void refreshGroupData(const ZanDwgMarker& marker);
  [[nodiscard]] bool runMarker(const ZanExecRecord& item);
  void noteUnrun(const ZanDwgMarker& marker);
  [[nodiscard]] std::optional<std::vector<ZanScriptVariable>> setVariables(const ZanDwgMarker& marker);
  [[nodiscard]] bool runRow(
      const ZanScriptEntry& row, std::int32_t markerId, const std::vector<ZanScriptVariable>& variables);
  void reportFailure(const ZanScriptEntry& row, std::int32_t markerId) const;
  [[nodiscard]] bool runNested(std::int32_t markerId);
  /// The markers of a template that comes too deep stay in the tree, so that the end of the build erases them.
  [[nodiscard]] bool isTooDeep(const ZanDwgMarker& parent);
  void noteRun(const std::wstring& code, const std::vector<std::int32_t>& values);
  void eraseMarker(KvDbHandle handle);

  BuildState& build_;
  KvDbDatabase& database_;
  KvDbObjectId space_; ///< the block that receives the circuit
  MarkerSettings& settings_;
  RowsInForce inForce_; ///< at the current marker
  std::vector<ZanAutoSizeRow> autoRows_;
  KvDbHandle lastEntity_; ///< before the rows of the current marker
};

bool MarkerWalk::run(const std::vector<ZanExecRecord>& items) {
  NumberMarkers(build_.markers);
  PublishMarkerData(build_.markers);
  bool result = true;
  for (const ZanExecRecord& item : items) {
    if (const ZanDwgMarker* marker = markerOf(item)) {
      refreshGroupData(*marker);
      if (!runMarker(item)) result = false;
      if (!result && (build_.hasQuit || !build_.goesOnAfterFailure)) return false;
    }
    if (!pumpMessages()) {
      build_.hasQuit = true;
      return false;
    }
  }
  return result;
}

void MarkerWalk::refreshGroupData(const ZanDwgMarker& marker) {
  const RowsInForce former = std::exchange(inForce_, settings_.at(marker));
  // The components are sized once for each motor.
  if (former.rows == nullptr || former.motor != inForce_.motor)
    autoRows_ = computeAutoRows(*inForce_.rows, build_.tables);
}

bool MarkerWalk::runMarker(const ZanExecRecord& item) {
  ZanDwgMarker& marker = *markerOf(item);
  {
    KvDbObjectId id;
    if (database_.objectIdOf(marker.handle, id) != KvDbStatus::ok) return true;
    const OpenObject<KvDbBlockReference> reference(id, KvOpenMode::forRead);
    if (!reference) return true; // an earlier form erased it
    marker.position = reference->position();
  }
  if (item.rows.empty()) {
    noteUnrun(marker);
    return true;
  }
  const std::optional<std::vector<ZanScriptVariable>> variables = setVariables(marker);
  if (!variables) return false;

  lastEntity_ = lastEntityHandle(space_);
  const std::wstring code = marker.code;
  const KvDbHandle handle = marker.handle;
  const std::vector<std::int32_t> values = marker.record.selectedValues();
  build_.result.executedCodes.push_back(code);
  SetMarkerData(marker.index, values);
  bool result = true;
  for (const ZanSharedEntry& row : item.rows) {
    result = runRow(*row, item.markerId, *variables);
    if (build_.hasQuit) return false;
  }
  noteRun(code, values);
  eraseMarker(handle);
  return result;
}

void MarkerWalk::noteUnrun(const ZanDwgMarker& marker) {
  if (marker.hasOptions() && build_.catalog.findRecord(marker.code))
    build_.result.selections.try_emplace(marker.code, valuesWithFiller(marker.record));
}

std::optional<std::vector<ZanScriptVariable>> MarkerWalk::setVariables(const ZanDwgMarker& marker) {
  const double scale = build_.input.args.scaleB;
  if (!putPoint(scriptvariable::position, marker.position) || !putReal(scriptvariable::scale, scale))
    return std::nullopt;
  ResultList data = scriptData(*inForce_.rows, marker.catalog);
  // Without a value the symbol keeps that of the marker before.
  if (!data.isEmpty() && !putList(scriptvariable::data, data)) return std::nullopt;
  ResultList components;
  if (!autoRows_.empty() || !marker.catalog.isEmpty()) {
    // Without component rows the symbol keeps its value, while the variable is the empty list.
    if (!autoRows_.empty() && !putRows(scriptvariable::autoRows, autoRows_)) return std::nullopt;
    components = rowsToList(autoRows_);
  }

  std::vector<ZanScriptVariable> variables;
  constexpr std::size_t variableCount = 5;
  variables.reserve(variableCount);
  variables.push_back(ZanScriptVariable::ofPoint(scriptvariable::position, marker.position));
  variables.push_back(
      marker.misc1.empty() ? ZanScriptVariable::ofNil(scriptvariable::misc)
                           : ZanScriptVariable::ofText(scriptvariable::misc, marker.misc1));
  variables.push_back(ZanScriptVariable::ofReal(scriptvariable::scale, scale));
  variables.push_back(listOrNil(scriptvariable::data, std::move(data)));
  variables.push_back(listOrNil(scriptvariable::autoRows, std::move(components)));
  return variables;
}

bool MarkerWalk::runRow(
    const ZanScriptEntry& row, std::int32_t markerId, const std::vector<ZanScriptVariable>& variables) {
  ResultList answer;
  if (runForm(row.text, variables, answer))
    return ListReader(answer).integer() != insertedTemplate || runNested(markerId);
  if (answer.isEmpty()) reportFailure(row, markerId);
  return false;
}

void MarkerWalk::reportFailure(const ZanScriptEntry& row, std::int32_t markerId) const {
  std::wstring reason = lastCallError();
  if (reason.empty()) reason = loadText(TextId::formNoReason);
  const std::wstring& workbook = build_.input.args.workbook;
  const std::wstring file = workbook.substr(folderOf(workbook).size());
  const ZanDwgMarker* marker = build_.markers.findById(markerId);
  const std::wstring rowNumber = formatInt(row.row);
  const std::wstring column = formatInt(row.column);
  const std::wstring code = marker == nullptr ? std::wstring() : marker->code;
  const std::wstring place = formatText(
      loadText(TextId::formPlace),
      {std::wstring_view(file), std::wstring_view(build_.input.args.worksheet), std::wstring_view(rowNumber),
       std::wstring_view(column), std::wstring_view(code)});
  const std::optional<int> answer = showTaskDialog(
      executionErrorKey,
      {{L"errorFunc", row.text},
       {L"place", place},
       {L"reason", reason},
       {L"row", rowNumber},
       {L"column", column},
       {L"code", code}},
      kdsw_korvoMainWnd());
  if (answer == kvui::firstCommand) build_.goesOnAfterFailure = true;
}

bool MarkerWalk::runNested(std::int32_t markerId) {
  ZanDwgMarker& parent = *build_.markers.findById(markerId);
  const std::wstring code = parent.code;
  const std::vector<std::int32_t> values = parent.record.selectedValues();
  ZanDwgMarkerList& children = parent.EnsureChildren();
  const std::int32_t run = build_.undo.marks();
  const ScanPlace place = {build_.spaceName, lastEntity_, parent.level + 1, run};
  if (!adoptScan(build_, children, scanMarkers(database_, place, build_.markers), run)) return true;
  if (isTooDeep(parent)) return false;
  if (!matchRecords(build_, children)) return false;
  applyOpenHistory(build_, children, CircuitRows::leave);
  if (build_.input.presets.active) buildWireAnnotations(build_, children, CircuitRows::leave);
  if (!build_.isInteractive()) sizeUnsizedWires(build_, children);
  std::vector<ZanExecRecord> items;
  if (build_.isInteractive())
    collectLevel(children, firstMarker, items);
  else
    CollectRange(children, firstMarker, endOfMarkers, items);
  const bool result = MarkerWalk(build_, database_, settings_).run(items);
  if (build_.hasQuit) return false;

  SetMarkerData(build_.markers.findById(markerId)->index, values);
  removeOne(build_.result.executedCodes, code);
  build_.result.selections.try_emplace(code, values);
  return result;
}

bool MarkerWalk::isTooDeep(const ZanDwgMarker& parent) {
  if (build_.nestingHasEnded) return true;
  if (parent.level < deepestLevel) return false;
  build_.nestingHasEnded = true;
  const std::wstring levels = formatInt(deepestLevel);
  kvutPrintf(
      (L"\n" +
       formatText(
           loadText(TextId::nestingTooDeep), {std::wstring_view(parent.code), std::wstring_view(levels)}) +
       L"\n")
          .c_str());
  return true;
}

void MarkerWalk::noteRun(const std::wstring& code, const std::vector<std::int32_t>& values) {
  // A CODE that LISP stores itself stays among the executed ones; for any other its values are passed on at the end.
  if (hasKeyedEntry(getCodeCombos(), code)) return;
  removeOne(build_.result.executedCodes, code);
  build_.result.selections.try_emplace(code, values);
}

void MarkerWalk::eraseMarker(KvDbHandle handle) {
  KvDbObjectId id;
  if (database_.objectIdOf(handle, id) != KvDbStatus::ok) return;
  const OpenObject<KvDbBlockReference> reference(id, KvOpenMode::forWrite);
  if (reference) reference->erase();
}

} // namespace

bool runMarkers(BuildState& build, const std::vector<ZanExecRecord>& items) {
  KvDbDatabase* database = workingDatabase();
  if (!database) return false;
  const WorkingDatabaseScope scope(database);
  // A run that went too deep can have been taken back since.
  build.nestingHasEnded = false;
  if (build.isInteractive()) {
    // The walk that only binds has no mark of its own: what it draws belongs to the template.
    if (!build.undo.isBound())
      build.undo.bind(database, build.input.args.undoPosition);
    else
      build.undo.mark();
  }
  // A direct build has no pages; the dialog's have their present values.
  std::vector<MotorRows> pages =
      build.isInteractive() ? build.maker.CollectSettings() : std::vector<MotorRows>();
  sizeUnsizedPages(build, pages);
  const ZanAnnotationDataList none;
  MarkerSettings settings(
      build.markers, build.isInteractive() ? rowsOfPages(pages) : rowsOfMarkers(),
      build.isInteractive() ? none : build.circuitData);
  return MarkerWalk(build, *database, settings).run(items);
}

} // namespace brenvolt
