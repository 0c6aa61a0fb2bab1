// Putting the texts together, and looking for what is wrong.
#include "circuits/reports/circuit_summary.h"

#include "circuits/provenance/load_data.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <map>

namespace circuits {

namespace {

std::wstring loadText(const CircuitLoad& load) {
  const auto field = [&load](std::wstring_view name) { return setupText(load.params, name); };
  const std::wstring figure = field(L"Load");
  if (figure.empty()) return field(L"Type");
  std::wstring text = figure;
  if (const std::wstring units = field(L"Units"); !units.empty()) text += L' ' + units;
  if (const std::wstring voltage = field(L"Voltage (V)"); !voltage.empty()) text += L", " + voltage + L" V";
  return text;
}

/// Of all its motors and loads.
std::wstring loadText(const CircuitObject& circuit) {
  std::vector<std::wstring> texts;
  for (const CircuitLoad& load : circuit.loads)
    texts.push_back(loadText(load));
  return brenvolt::join(texts, L"; ");
}

std::wstring wiresOf(const CircuitObject& circuit) {
  std::wstring wires;
  for (const CircuitLoad& load : circuit.loads)
    wires += load.wires;
  return wires;
}

bool hasUnsizedWire(const std::wstring& wires) {
  const std::vector<std::wstring> texts = wireTexts(wires);
  if (texts.size() < 3) return true;
  for (std::size_t wire = 0; wire + 2 < texts.size(); wire += 3)
    if (brenvolt::trimView(texts[wire]).empty()) return true;
  return false;
}

/// How many circuits have a component of the tag, without case.
std::map<std::wstring, int> tagCounts(const std::vector<CircuitObject>& circuits) {
  std::map<std::wstring, int> counts;
  for (const CircuitObject& circuit : circuits)
    for (const std::wstring& tag : circuit.tags)
      ++counts[brenvolt::toUpper(tag)];
  return counts;
}

std::vector<CircuitFinding> findingsOf(
    const CircuitObject& circuit, const std::map<std::wstring, int>& counts) {
  std::vector<CircuitFinding> findings;
  if (circuit.fields.empty()) findings.push_back({CircuitFault::noRecord});
  for (const CircuitLoad& load : circuit.loads)
    if (setupText(load.params, L"Load").empty())
      findings.push_back({CircuitFault::noLoadData, load.tag});
    else if (hasUnsizedWire(load.wires))
      findings.push_back({CircuitFault::noWireSize, load.tag});
  for (const std::wstring& tag : circuit.tags)
    if (!tag.empty() && counts.at(brenvolt::toUpper(tag)) > 1)
      findings.push_back({CircuitFault::tagTwice, tag});
  return findings;
}

} // namespace

std::vector<CircuitSummary> summariesOf(const std::vector<CircuitObject>& circuits) {
  const std::map<std::wstring, int> counts = tagCounts(circuits);
  std::vector<CircuitSummary> summaries;
  for (const CircuitObject& circuit : circuits) {
    const auto field = [&circuit](std::wstring_view name) {
      return simhost::circuitField(circuit.fields, name);
    };
    std::wstring number = field(L"SITE_CIRCUIT");
    if (number.empty()) number = brenvolt::formatInt(static_cast<std::int64_t>(summaries.size() + 1));
    summaries.push_back(
        {circuit.id, std::move(number), circuit.name(), field(L"circuit"), field(L"type"), loadText(circuit),
         wireSizesOf(wiresOf(circuit)), findingsOf(circuit, counts)});
  }
  return summaries;
}

std::wstring wireSizesOf(const std::wstring& wires) {
  std::vector<std::wstring> sizes;
  const std::vector<std::wstring> texts = wireTexts(wires);
  for (std::size_t wire = 0; wire + 2 < texts.size(); wire += 3) {
    const std::wstring size = (texts[wire + 2] == groundKind ? L"PE " : L"") + texts[wire];
    if (std::find(sizes.begin(), sizes.end(), size) == sizes.end()) sizes.push_back(size);
  }
  return brenvolt::join(sizes, L", ");
}

} // namespace circuits
