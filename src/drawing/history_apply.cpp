#include "drawing/history_apply.h"

#include "project/history_names.h"
#include "text/compare.h"
#include "text/numbers.h"

#include <algorithm>

namespace brenvolt {

namespace {

/// The grounding size among the properties of a motor or load: it is the last of the twenty exported rows, which
/// follow nine fields of its data.
constexpr std::size_t groundingProperty = 29;
constexpr std::wstring_view titleField = L"TITLE";
constexpr std::wstring_view groundingMark = L"3";
constexpr std::wstring_view layerToMake = L"1";

void applyOptions(const std::vector<HistoryOption>& options, ZanCodeRecord& record) {
  for (const HistoryOption& option : options)
    for (ZanOptionGroup& group : record.groups)
      // A value that the worksheet no longer offers leaves the selection. Of several options with the value the one of
      // the saved text counts.
      if (equalsCollating(group.title, option.title)) group.selectValue(toInt(option.value), option.text);
}

void addTexts(ZanAnnotationData& row, const HistoryProperties& properties) {
  for (const auto& [name, value] : properties)
    row.AddText(value, name);
}

void applyCatalog(XmlElement entry, ZanAnnotationDataList& catalog) {
  std::vector<HistoryProperties> sets;
  if (!ZanXmlHistory::ReadPropertySets(entry, rowname::catalog, sets)) return;
  catalog.Clear();
  for (const HistoryProperties& set : sets) {
    ZanAnnotationData row(rowname::catalog);
    for (const auto& [name, value] : set)
      row.Add(value, kvtype::string, name, equalsCollating(name, titleField));
    catalog.AddRow(std::move(row));
  }
}

/// Rows of motors and loads. The working row is never cleared: a later setup has the fields of the earlier ones before
/// its own, as the forms of existing workbooks expect.
class SetupReader final {
public:
  void read(XmlElement group, std::wstring_view setupName, ZanAnnotationDataList& controls) {
    std::vector<HistoryProperties> sets;
    ZanXmlHistory::ReadPropertySets(group, setupName, sets);
    for (const HistoryProperties& set : sets) {
      addTexts(row_, set);
      row_.name = setupName;
      controls.AddRow(row_);
      if (set.size() >= groundingProperty) groundingSize_ = set[groundingProperty - 1].second;
    }
  }
  [[nodiscard]] const std::wstring& groundingSize() const { return groundingSize_; }

private:
  ZanAnnotationData row_;
  std::wstring groundingSize_;
};

ZanAnnotationData wireRow(const HistoryProperties& set, const std::vector<std::wstring>& wireTypes) {
  ZanAnnotationData row(rowname::wireSetup);
  addTexts(row, set);
  const std::wstring& layer = set.back().second;
  const bool exists = std::any_of(wireTypes.begin(), wireTypes.end(), [&layer](const std::wstring& type) {
    return equalsCollating(type, layer);
  });
  if (exists)
    row.Add(L"", kvtype::nil, L"", false);
  else
    row.Add(layerToMake, kvtype::shortInteger, L"", false);
  return row;
}

/// The row keeps its name, or the next save of a unit whose page is not opened would lose the grounding wire.
ZanAnnotationData groundingRow(XmlElement group, const std::wstring& groundingSize) {
  ZanAnnotationData row(rowname::groundingWireSetup);
  std::vector<HistoryProperties> sets;
  if (ZanXmlHistory::ReadPropertySets(group, rowname::groundingWireSetup, sets)) {
    for (const HistoryProperties& set : sets)
      addTexts(row, set);
  } else {
    row.AddText(groundingSize, L"");
    row.AddText(L"", L"");
  }
  row.Add(groundingMark, kvtype::shortInteger, L"", false);
  return row;
}

ZanAnnotationDataList readControls(XmlElement group, const WireTypeSource& wireTypes) {
  ZanAnnotationDataList controls;
  SetupReader setups;
  setups.read(group, rowname::motorSetup, controls);
  setups.read(group, rowname::loadSetup, controls);

  ZanAnnotationDataList wires;
  std::vector<HistoryProperties> sets;
  if (ZanXmlHistory::ReadPropertySets(group, rowname::wireSetup, sets)) {
    const std::vector<std::wstring> types = wireTypes();
    for (const HistoryProperties& set : sets)
      wires.AddRow(wireRow(set, types));
  }
  wires.AddRow(groundingRow(group, setups.groundingSize()));
  controls.AddList(std::move(wires));
  return controls;
}

} // namespace

bool applyHistoryToMarker(
    ZanXmlHistory& history, ZanDwgMarker& marker, const WireTypeSource& wireTypes,
    ZanAnnotationDataList* circuitControls) {
  const XmlElement entry = history.FindElement(xmlname::marker, xmlname::tag, marker.GetKey());
  if (entry.isNull()) return false;

  std::vector<HistoryOption> options;
  ZanXmlHistory::ReadSelectOptions(entry, options);
  applyOptions(options, marker.record);
  applyCatalog(entry, marker.catalog);

  // A file edited by hand may have several groups: the first counts.
  const XmlElement group = entry.firstChild(xmlname::controlGroup);
  if (group.isNull()) return true;
  marker.controls = readControls(group, wireTypes);
  if (circuitControls != nullptr) circuitControls->Assign(marker.controls);
  return true;
}

} // namespace brenvolt
