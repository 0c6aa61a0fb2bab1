// Putting the texts together, and looking for what is wrong.
#include "circuits/reports/circuit_summary.h"

#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <map>

namespace circuits {

namespace {

/// The texts of a list ("10AWG" "BLK_10AWG" "1")("8AWG" "GRN_8AWG" "3"): size, layer, kind of each wire.
std::vector<std::wstring> quotedTexts(const std::wstring& wires) {
  std::vector<std::wstring> texts;
  for (std::size_t start = wires.find(L'"'); start != std::wstring::npos;) {
    const std::size_t end = wires.find(L'"', start + 1);
    if (end == std::wstring::npos) break;
    texts.push_back(wires.substr(start + 1, end - start - 1));
    start = wires.find(L'"', end + 1);
  }
  return texts;
}

/// Of the fields of a motor or load: type, load, its unit, voltage.
std::vector<std::wstring> loadFieldsOf(const CircuitLoad& load) {
  std::vector<std::wstring> fields = brenvolt::splitKeepingEmpty(load.params, L';');
  for (std::wstring& field : fields)
    field = brenvolt::trim(field);
  fields.resize(4);
  return fields;
}

std::wstring loadText(const CircuitLoad& load) {
  const std::vector<std::wstring> fields = loadFieldsOf(load);
  if (fields[1].empty()) return fields[0];
  std::wstring text = fields[1] + (fields[2].empty() ? L"" : L" ") + fields[2];
  if (!fields[3].empty()) text += L", " + fields[3] + L" V";
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
  const std::vector<std::wstring> texts = quotedTexts(wires);
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
    if (loadFieldsOf(load)[1].empty())
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
  const std::vector<std::wstring> texts = quotedTexts(wires);
  for (std::size_t wire = 0; wire + 2 < texts.size(); wire += 3) {
    const std::wstring size = (texts[wire + 2] == L"3" ? L"PE " : L"") + texts[wire];
    if (std::find(sizes.begin(), sizes.end(), size) == sizes.end()) sizes.push_back(size);
  }
  return brenvolt::join(sizes, L", ");
}

} // namespace circuits
