#include "build/marker_preparation.h"

#include "build/wire_expansion.h"
#include "data/entity_records.h"
#include "data/project_circuits.h"
#include "drawing/exported_rows.h"
#include "drawing/history_apply.h"
#include "drawing/marker_tree.h"
#include "host/alerts.h"
#include "host/host_api_documents.h"
#include "host/lisp_calls.h"
#include "text/compare.h"
#include "text/split.h"

namespace brenvolt {

namespace {

constexpr wchar_t foreignTemplateKey[] = L"ZanBrenvolt.CircuitTemplateDrawing";

/// The grounding wire's layer follows nine fields of the motor and nineteen of its wires.
constexpr std::size_t layerValueIndex = 28;
/// A catalogue row of the project: the texts and, last, the title's place.
constexpr std::size_t leastCatalogTexts = 12;

template <class Visit>
void forEachMarkerWithOptions(ZanDwgMarkerList& list, Visit&& visit) {
  ZanDwgMarkerListIterator iterator(&list);
  for (iterator.First(); !iterator.Done(); iterator.Next())
    if (iterator.Current()->hasOptions()) visit(*iterator.Current());
}

/// The preset's fields as one row, then its wires as a nested list. The row has the name of a page's, so that the
/// components are sized by its data as by that of a saved configuration, and so that it is saved with one.
ZanAnnotationDataList presetGroupData(
    const BuildState& build, std::wstring_view suffix, std::wstring_view control) {
  const BuildPresets& presets = build.input.presets;
  ZanAnnotationData numbers;
  if (!presets.wireNumbers.empty())
    numbers.name = equalsCollating(control, loadControlTitle) ? rowname::loadSetup : rowname::motorSetup;
  for (const std::wstring& number : presets.wireNumbers)
    numbers.AddText(number, {});
  labelSetupRow(numbers);
  const std::wstring layerValue =
      presets.wireNumbers.size() > layerValueIndex ? presets.wireNumbers[layerValueIndex] : std::wstring();

  ZanAnnotationDataList wires;
  const ZanWireFormatter formats = build.maker.wires().formats(SamePosition::eachCounts);
  expandWires(presets.wires, formats, suffix, WirePass::conductors, layerValue, wires);
  expandWires(presets.wires, formats, suffix, WirePass::grounding, layerValue, wires);

  ZanAnnotationDataList data;
  data.AddRow(std::move(numbers));
  data.AddList(std::move(wires));
  return data;
}

/// The (table, title) pairs of the control rules that hold for the marker's selection.
std::vector<std::pair<std::wstring, std::wstring>> catalogTables(const ZanDwgMarker& marker) {
  std::vector<ZanSharedEntry> rules;
  GetRulesForCode(marker.record.controlRules, marker.record.GetOptionCode(), rules);
  std::vector<std::pair<std::wstring, std::wstring>> pairs;
  for (const ZanSharedEntry& rule : rules)
    pairs.insert(pairs.end(), rule->params.begin(), rule->params.end());
  return pairs;
}

void fillCatalog(ZanDwgMarker& marker, const std::vector<PresetRow>& rows) {
  const auto tables = catalogTables(marker);
  marker.catalog.Clear();
  for (std::size_t i = 0; i < tables.size() && i < rows.size(); ++i) {
    ZanAnnotationData row(rowname::catalog);
    row.Add(tables[i].second, kvtype::string, L"TITLE", true);
    row.AddText(tables[i].first, L"TABLE");
    for (const std::wstring& text : rows[i])
      row.AddText(text, {});
    marker.catalog.AddRow(std::move(row));
  }
}

/// What the record of a placed circuit says it is; nothing where the fields end before it.
std::wstring_view controlOf(const BuildPresets& presets) {
  return presets.wireNumbers.size() > circparam::controlCode
             ? std::wstring_view(presets.wireNumbers[circparam::controlCode])
             : std::wstring_view();
}

/// Whether the marker keeps the motor or load of the saved configuration, because the preset has none.
bool keepsSavedControl(const BuildState& build, const ZanAnnotationDataList& saved) {
  return build.input.args.isPresetOverHistory && build.input.presets.wireNumbers.empty() &&
         build.input.presets.wires.empty() && !saved.isEmpty();
}

/// Whether saved rows have a motor or load, and it is not that of the preset.
bool isOtherLoad(const ZanAnnotationDataList& saved, const std::vector<std::wstring>& asked) {
  for (const ZanAnnotationDataList::Item& item : saved.items()) {
    if (item.row == nullptr ||
        (item.row->name != rowname::motorSetup && item.row->name != rowname::loadSetup))
      continue;
    const std::vector<ZanAnnotationField>& fields = item.row->fields;
    for (std::size_t place = 0; place < circparam::identity; ++place) {
      const std::wstring had = place < fields.size() ? trim(fields[place].value) : std::wstring();
      const std::wstring has = place < asked.size() ? trim(asked[place]) : std::wstring();
      if (!equalsOrdinalNoCase(had, has)) return true;
    }
  }
  return false;
}

/// Puts the options of the preset in the place of those of the saved configuration. Parts were chosen for the options
/// that were saved: others would get parts that do not fit.
void putPresetOverHistory(const ZanBuildArgs& args, ZanDwgMarker& marker) {
  if (!args.isPresetOverHistory) return;
  const std::int32_t saved = marker.record.GetOptionCode();
  applyPresetOptions(args.presetText, marker.code, marker.record);
  if (marker.record.GetOptionCode() != saved) marker.catalog.Clear();
}

/// The first control marker of the build fixes the suffix of the wires and takes them as its own.
void takeControlWires(BuildState& build, ZanDwgMarker& marker, CircuitRows circuitRows) {
  const ZanOptionGroup* const control = marker.record.controlGroup();
  if (build.controlMarkerSeen || control == nullptr) return;
  build.controlMarkerSeen = true;
  build.controlSuffix = wireSuffix(marker.code);
  if (keepsSavedControl(build, marker.controls)) return;
  marker.controls = presetGroupData(build, build.controlSuffix, control->title);
  if (!build.controlSuffix.empty() && circuitRows == CircuitRows::fill) build.circuitData = marker.controls;
}

} // namespace

bool adoptScan(BuildState& build, ZanDwgMarkerList& list, MarkerScan scan, std::int32_t run) {
  for (ZanDwgMarker& marker : scan.markers)
    list.Insert(std::move(marker));
  build.maker.SetWireFormatter(scan.wires, run);
  const std::size_t before = list.size();
  list.Finish();
  return list.size() > before;
}

bool matchRecords(BuildState& build, ZanDwgMarkerList& list) {
  if (AttachRecords(list, [&build](std::wstring_view code) { return build.catalog.findRecord(code); }))
    return true;
  static_cast<void>(showTaskDialog(foreignTemplateKey, {}, kdsw_korvoMainWnd()));
  return false;
}

void applyOpenHistory(BuildState& build, ZanDwgMarkerList& list, CircuitRows circuitRows) {
  if (!build.history.hasOpenHistory()) return;
  ZanAnnotationDataList* circuitControls = circuitRows == CircuitRows::fill ? &build.circuitData : nullptr;
  forEachMarkerWithOptions(list, [&](ZanDwgMarker& marker) {
    if (applyHistoryToMarker(build.history, marker, getActiveWireTypes, circuitControls))
      putPresetOverHistory(build.input.args, marker);
  });
  const std::vector<std::wstring>& asked = build.input.presets.wireNumbers;
  if (!build.input.args.isPresetOverHistory || asked.empty()) return;
  forEachMarkerWithOptions(list, [&](const ZanDwgMarker& marker) {
    build.hasOtherLoad = build.hasOtherLoad || isOtherLoad(marker.controls, asked);
  });
  if (build.hasOtherLoad)
    forEachMarkerWithOptions(list, [](ZanDwgMarker& marker) { marker.catalog.Clear(); });
}

BuildPresets readPresets(const ZanBuildArgs& args, TableObserver* observer) {
  BuildPresets presets;
  presets.active = !args.presetText.empty();
  presets.wireNumbers = parseCodeHandles(args.codeHandleText);
  presets.wires = parsePresetWires(args.wireText);
  for (const MarkerPreset& preset : parseMarkerPresets(args.presetText)) {
    std::vector<TextRow> rows;
    if (!readCatalogRows(args.drawingIndex, L"h=" + preset.handle, observer, rows)) continue;
    for (TextRow& row : rows) {
      if (row.size() < leastCatalogTexts) continue;
      row.pop_back();
      presets.rows[preset.code].push_back(std::move(row));
    }
  }
  return presets;
}

void buildWireAnnotations(BuildState& build, ZanDwgMarkerList& list, CircuitRows circuitRows) {
  if (circuitRows == CircuitRows::fill && !keepsSavedControl(build, build.circuitData))
    build.circuitData = presetGroupData(build, {}, controlOf(build.input.presets));
  forEachMarkerWithOptions(list, [&](ZanDwgMarker& marker) {
    takeControlWires(build, marker, circuitRows);
    const auto rows = build.input.presets.rows.find(marker.code);
    if (rows != build.input.presets.rows.end()) fillCatalog(marker, rows->second);
  });
}

} // namespace brenvolt
