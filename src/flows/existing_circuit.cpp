#include "flows/existing_circuit.h"

#include "build/preset_texts.h"
#include "host/host_api_documents.h"
#include "host/lisp_calls.h"
#include "host/lisp_symbols.h"
#include "text/compare.h"

#include <algorithm>
#include <optional>

namespace brenvolt {

namespace {

constexpr std::wstring_view componentTables[] = {L"COMP", L"TERMS"};

/// An attribute of a component in the project database, and its value if the component has none.
struct PlaceColumn {
  std::wstring_view name;
  std::wstring fallback;
};

std::wstring firstOf(const TextRow& texts) {
  return texts.empty() ? std::wstring() : texts.front();
}

/// The component's value; nothing when the project cannot be read.
std::optional<std::wstring> readPlace(
    ProjectDatabase& database, const PlaceColumn& column, const std::wstring& drawingIndex,
    const std::wstring& handleKey) {
  TextRow values;
  bool wasRead = false;
  for (const std::wstring_view table : componentTables)
    if (selectDistinct(
            database, table, column.name, L"SELECT %s FROM [%s] WHERE DWGIX='%s' AND HDL='%s'",
            {drawingIndex, handleKey}, values))
      wasRead = true;
  if (!wasRead) return std::nullopt;
  // Several values say as little as none.
  return values.size() == 1 ? values.front() : column.fallback;
}

} // namespace

bool isPicked(const ExistingCircuit& circuit) {
  return circuit.size() == circuitrow::columns;
}

ExistingCircuit refreshedCircuit(const ExistingCircuit& picked, const std::vector<TextRow>& rows) {
  if (!isPicked(picked)) return picked;
  const auto isSame = [&picked](const TextRow& row) {
    const auto agrees = [&](std::size_t column) { return equalsOrdinalNoCase(row[column], picked[column]); };
    return row.size() == circuitrow::columns && agrees(circuitrow::drawingIndex) &&
           agrees(circuitrow::handle);
  };
  const auto found = std::find_if(rows.begin(), rows.end(), isSame);
  return found == rows.end() ? ExistingCircuit() : *found;
}

std::vector<AnnotationRow> readComponentRows(const TextRow& circuit, TableObserver* observer) {
  std::vector<AnnotationRow> rows;
  if (circuit.size() != circuitrow::columns) return rows;
  const std::vector<MarkerPreset> presets = parseMarkerPresets(circuit[circuitrow::presetText]);
  if (presets.empty()) return rows;
  const std::optional<std::wstring> path = getProjectDatabase();
  if (!path) return rows;
  const KvWaitCursor waiting;
  ProjectDatabase database(*path, observer);

  const std::wstring& drawingIndex = circuit[circuitrow::drawingIndex];
  PlaceColumn columns[] = {{L"INST", {}}, {L"LOC", {}}};
  if (isSwitchedOn(lispsymbol::combinedTagLocation)) {
    const TagLocations drawing = readTagLocations(database, drawingIndex);
    columns[0].fallback = firstOf(drawing.installations);
    columns[1].fallback = firstOf(drawing.locations);
  }
  for (const MarkerPreset& preset : presets)
    for (const PlaceColumn& column : columns)
      if (auto value = readPlace(database, column, drawingIndex, L"h=" + preset.handle))
        rows.push_back({preset.code, std::wstring(column.name), std::move(*value), {}});
  return rows;
}

} // namespace brenvolt
