#include "project/saved_configurations.h"

#include "project/history_names.h"
#include "text/compare.h"
#include "text/split.h"

#include <set>
#include <utility>

namespace brenvolt {

namespace {

std::vector<std::wstring> valuesOf(XmlElement row) {
  std::vector<std::wstring> values;
  for (const XmlElement& property : row.children(xmlname::property))
    values.push_back(property.attribute(xmlname::value));
  return values;
}

void addWires(
    XmlElement group, std::wstring_view rowName, bool isGrounding, std::vector<SavedControl::Wire>& wires) {
  for (const XmlElement& row : group.children(rowName)) {
    const std::vector<std::wstring> values = valuesOf(row);
    wires.push_back({values.empty() ? std::wstring() : values.front(), isGrounding});
  }
}

std::wstring inQuotes(std::wstring_view text) {
  return L'"' + std::wstring(text) + L'"';
}

} // namespace

std::vector<SavedConfiguration> savedConfigurations(
    const ZanCircuitCatalog& circuits, const HistoryFile& history) {
  std::vector<SavedConfiguration> found;
  for (const HistoryKey& key : history.keys()) {
    const auto circuit = circuits.circuits().find(key.circuit);
    const ZanCircuitEntry* const entry = circuits.findEntry(key.circuit, key.type);
    if (entry == nullptr) continue;
    SavedConfiguration saved{
        {circuit->first, entry->type, key.name}, entry->drawingTemplate, entry->worksheet};
    if (const std::optional<HistorySummary> summary = history.summary(key)) {
      saved.circuitScale = summary->circuitScale;
      saved.componentScale = summary->componentScale;
    }
    found.push_back(std::move(saved));
  }
  return found;
}

std::wstring SavedControl::fieldsText() const {
  return fields.empty() ? std::wstring() : inQuotes(join(fields, L"\";\""));
}

std::vector<SavedControl> savedControls(const HistoryFile& history, const HistoryKey& key) {
  std::vector<SavedControl> controls;
  std::set<std::wstring> codes;
  for (const XmlElement& marker : history.find(key).history.children(xmlname::marker)) {
    const XmlElement group = marker.firstChild(xmlname::controlGroup);
    SavedControl control;
    for (const std::wstring_view setup : {xmlname::motorSetup, xmlname::loadSetup})
      if (control.fields.empty()) control.fields = valuesOf(group.firstChild(setup));
    if (control.fields.empty() || !codes.insert(toUpper(marker.attribute(xmlname::code))).second) continue;
    addWires(group, xmlname::wireSetup, false, control.wires);
    addWires(group, xmlname::groundingWireSetup, true, control.wires);
    controls.push_back(std::move(control));
  }
  return controls;
}

} // namespace brenvolt
