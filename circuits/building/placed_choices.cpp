#include "circuits/building/placed_choices.h"

#include "circuits/building/row_configurations.h"
#include "circuits/netlist/netlist.h"
#include "circuits/provenance/load_data.h"
#include "data/entity_records.h"
#include "project/history_names.h"
#include "simhost/host/errors.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

namespace circuits {

namespace xmlname = brenvolt::xmlname;
using brenvolt::EntryMarker;
using brenvolt::EntryRow;
using brenvolt::XmlElement;
using simhost::EntityNode;

namespace {

std::wstring firstText(const EntityNode& node, std::wstring_view application) {
  const std::vector<std::wstring>* texts = simhost::findData(node.value, application);
  return texts == nullptr || texts->empty() ? std::wstring() : texts->front();
}

EntryRow wireRow(std::wstring_view element, const std::wstring& wire, std::wstring size, std::wstring layer) {
  return {
      std::wstring(element), {{wire + L" - Size", std::move(size)}, {wire + L" - Layer", std::move(layer)}}};
}

/// The data of one motor or load with its wires; none where none was chosen.
std::vector<EntryRow> rowsOf(const EntityNode& node, std::wstring_view params) {
  std::vector<std::wstring> values = brenvolt::splitKeepingEmpty(std::wstring(params), L';');
  for (std::wstring& value : values)
    value = brenvolt::trim(value);
  values.resize(loadSetupNames.size());
  if (values.front().empty()) return {};
  const bool isLoad = values.back() == brenvolt::loadControlTitle;
  std::vector<EntryRow> rows = {{std::wstring(isLoad ? xmlname::loadSetup : xmlname::motorSetup), {}}};
  for (std::size_t place = 0; place < values.size(); ++place)
    rows.front().properties.emplace_back(loadSetupNames[place], std::move(values[place]));
  const std::vector<std::wstring> wires = wireTexts(firstText(node, wiresApplication));
  int number = 0;
  for (std::size_t at = 0; at + 2 < wires.size(); at += 3)
    if (wires[at + 2] == groundKind)
      rows.push_back(wireRow(xmlname::groundingWireSetup, L"W01E", wires[at], wires[at + 1]));
    else
      rows.push_back(
          wireRow(xmlname::wireSetup, L"W" + brenvolt::formatInt(++number), wires[at], wires[at + 1]));
  return rows;
}

bool asksForLoad(const CodeRecords& records, const std::wstring& code) {
  const auto record = records.find(brenvolt::toUpper(code));
  return record != records.end() && record->second.controlGroup() != nullptr;
}

/// The rows of each CODE that asks for a motor or load. A symbol belongs to the last such CODE that has drawn before it,
/// as a build gives a marker the data of the last motor before it; one that comes first, to the first CODE.
std::map<std::wstring, std::vector<EntryRow>> loadsByCode(
    const CodeRecords& records, const std::vector<std::wstring>& controls,
    const simhost::DrawingDatabase& drawing, const CircuitObject& circuit, const ChangedChoices& changes) {
  std::map<std::wstring, std::vector<EntryRow>> loads;
  if (controls.empty()) return loads;
  std::wstring current = controls.front();
  std::vector<EntryRow> last = changes.newLoad;
  for (const KvDbHandle handle : circuit.entities) {
    const EntityNode* node = drawing.find(handle);
    const auto origin = node == nullptr ? std::nullopt : simhost::provenanceOf(node->value);
    if (!origin) continue;
    if (asksForLoad(records, origin->code)) current = brenvolt::toUpper(origin->code);
    const std::wstring params = firstText(*node, paramsApplication);
    if (params.empty()) continue;
    const auto changed = changes.loads.find(handle.value());
    last = changed == changes.loads.end() ? rowsOf(*node, params) : changed->second;
    loads.try_emplace(current, last);
  }
  // One motor that several CODEs ask for.
  for (const std::wstring& code : controls)
    loads.try_emplace(code, last);
  return loads;
}

struct CodeChoice {
  std::wstring code;
  std::vector<std::wstring> values; ///< one for each group, "-" or empty for none
};

std::vector<CodeChoice> choicesOf(const CircuitObject& circuit) {
  std::vector<CodeChoice> choices;
  for (const std::wstring& part :
       brenvolt::splitSkippingEmpty(simhost::circuitField(circuit.fields, L"codes"), L';')) {
    const std::size_t equals = part.find(L'=');
    const std::wstring values = equals == std::wstring::npos ? std::wstring() : part.substr(equals + 1);
    choices.push_back({part.substr(0, equals), brenvolt::splitKeepingEmpty(values, L',')});
  }
  return choices;
}

/// A value that the worksheet no longer has is left out: the dialog shows the default then.
std::vector<brenvolt::EntryOption> optionsOf(const CodeRecords& records, const CodeChoice& choice) {
  std::vector<brenvolt::EntryOption> options;
  const auto record = records.find(brenvolt::toUpper(choice.code));
  if (record == records.end()) return options;
  const auto& groups = record->second.groups;
  for (std::size_t place = 0; place < std::min(groups.size(), choice.values.size()); ++place)
    for (const brenvolt::ZanOption& option : groups[place].options)
      if (brenvolt::formatInt(option.value) == choice.values[place]) {
        options.push_back({groups[place].title, option.text, option.value});
        break;
      }
  return options;
}

/// A group that is not chosen otherwise keeps its option.
std::vector<brenvolt::EntryOption> merged(
    std::vector<brenvolt::EntryOption> options, const std::vector<brenvolt::EntryOption>& chosen) {
  for (const brenvolt::EntryOption& option : chosen) {
    const auto same = std::find_if(
        options.begin(), options.end(), [&option](const auto& other) { return other.group == option.group; });
    if (same == options.end())
      options.push_back(option);
    else
      *same = option;
  }
  return options;
}

/// The record's choices, and after them those that the record does not have: a circuit of another type has other CODEs.
std::vector<CodeChoice> allChoices(
    const CodeRecords& records, const CircuitObject& circuit, const ChangedChoices& changes) {
  std::vector<CodeChoice> choices = choicesOf(circuit);
  const auto add = [&choices](const std::wstring& code) {
    if (std::none_of(choices.begin(), choices.end(), [&code](const CodeChoice& choice) {
          return brenvolt::equalsOrdinalNoCase(choice.code, code);
        }))
      choices.push_back({code, {}});
  };
  for (const auto& [code, options] : changes.options)
    add(code);
  for (const auto& [code, record] : records)
    if (asksForLoad(records, code)) add(code);
  return choices;
}

std::vector<EntryMarker> markersOf(
    const CodeRecords& records, const simhost::DrawingDatabase& drawing, const CircuitObject& circuit,
    const ChangedChoices& changes = {}) {
  const std::vector<CodeChoice> choices = allChoices(records, circuit, changes);
  std::vector<std::wstring> controls;
  for (const CodeChoice& choice : choices)
    if (asksForLoad(records, choice.code)) controls.push_back(brenvolt::toUpper(choice.code));
  const auto loads = loadsByCode(records, controls, drawing, circuit, changes);
  std::vector<EntryMarker> markers;
  std::map<std::wstring, int> ordinals;
  for (const CodeChoice& choice : choices) {
    const int ordinal = ++ordinals[brenvolt::toUpper(choice.code)];
    const auto load = loads.find(brenvolt::toUpper(choice.code));
    std::vector<brenvolt::EntryOption> options = optionsOf(records, choice);
    if (const auto changed = changes.options.find(brenvolt::toUpper(choice.code));
        changed != changes.options.end())
      options = merged(std::move(options), changed->second);
    for (int depth = 1; depth <= deepestTemplate; ++depth)
      markers.push_back(
          {choice.code, ordinal, depth, options,
           load == loads.end() ? std::vector<EntryRow>() : load->second});
  }
  return markers;
}

std::wstring valuesOf(XmlElement marker) {
  std::wstring values;
  for (const XmlElement option : marker.children(xmlname::selectOption))
    values += option.attribute(xmlname::uiValue) + L',';
  return values;
}

/// The data of the first motor or load of a marker, up to so many fields.
std::wstring loadOf(XmlElement marker, std::size_t fields) {
  std::wstring values;
  const XmlElement group = marker.firstChild(xmlname::controlGroup);
  for (const std::wstring_view setup : {xmlname::motorSetup, xmlname::loadSetup}) {
    const std::vector<XmlElement> properties = group.firstChild(setup).children(xmlname::property);
    for (std::size_t place = 0; place < std::min(fields, properties.size()); ++place)
      values += properties[place].attribute(xmlname::value) + L';';
  }
  return values;
}

std::vector<XmlElement>::const_iterator findSame(const std::vector<XmlElement>& markers, XmlElement marker) {
  return std::find_if(markers.begin(), markers.end(), [&marker](const XmlElement& each) {
    return brenvolt::equalsOrdinalNoCase(each.attribute(xmlname::tag), marker.attribute(xmlname::tag));
  });
}

/// Takes over from the former entry what the drawing does not say. Parts were chosen for its motors and loads: another
/// one gets those that the tables propose for it.
void keepRest(XmlElement made, XmlElement former) {
  for (const std::wstring_view scale : {xmlname::componentScale, xmlname::circuitScale})
    made.setAttribute(scale, former.attribute(scale));
  const std::vector<XmlElement> markers = made.children(xmlname::marker);
  const std::vector<XmlElement> olds = former.children(xmlname::marker);
  const bool areSameLoads = std::all_of(olds.begin(), olds.end(), [&markers](const XmlElement& old) {
    const auto same = findSame(markers, old);
    return same == markers.end() ||
           loadOf(*same, brenvolt::circparam::identity) == loadOf(old, brenvolt::circparam::identity);
  });
  for (const XmlElement old : olds) {
    const auto same = findSame(markers, old);
    if (same == markers.end()) {
      XmlElement kept = made.appendCopy(old);
      if (!areSameLoads)
        for (const XmlElement part : kept.children(xmlname::catalog))
          kept.removeChild(part);
    } else if (areSameLoads && valuesOf(*same) == valuesOf(old)) {
      XmlElement marker = *same;
      for (const XmlElement part : old.children(xmlname::catalog))
        marker.appendCopy(part);
    }
  }
}

bool saysTheSame(XmlElement made, XmlElement former) {
  const std::vector<XmlElement> markers = made.children(xmlname::marker);
  for (const XmlElement old : former.children(xmlname::marker)) {
    const auto same = findSame(markers, old);
    if (same == markers.end() || valuesOf(*same) != valuesOf(old) ||
        loadOf(*same, loadSetupNames.size()) != loadOf(old, loadSetupNames.size()))
      return false;
  }
  return true;
}

} // namespace

brenvolt::HistoryFile siteHistory(const std::string& workbook) {
  brenvolt::HistoryFile history;
  if (history.read(brenvolt::historyPathOf(brenvolt::fromUtf8(workbook))) !=
      brenvolt::HistoryFile::State::accepted)
    return emptyHistory(workbook);
  return history;
}

brenvolt::HistoryFile emptyHistory(const std::string& workbook) {
  brenvolt::HistoryFile history;
  history.startEmpty(brenvolt::fromUtf8(std::filesystem::path(workbook).filename().string()));
  return history;
}

std::wstring savedAs(
    const brenvolt::HistoryFile& file, const CodeRecords& records, const simhost::DrawingDatabase& drawing,
    const CircuitObject& circuit) {
  const auto field = [&circuit](std::wstring_view name) {
    return simhost::circuitField(circuit.fields, name);
  };
  const brenvolt::HistoryKey key{field(L"circuit"), field(L"type"), L"placed"};
  brenvolt::HistoryFile scratch;
  scratch.startEmpty({});
  brenvolt::appendEntry(scratch, {key, field(L"worksheet"), markersOf(records, drawing, circuit)});
  std::wstring found;
  for (const std::wstring& name : file.names(key.circuit, key.type))
    if (saysTheSame(scratch.find(key).history, file.find({key.circuit, key.type, name}).history))
      found = name;
  return found;
}

void putPlacedChoices(
    brenvolt::HistoryFile& file, const brenvolt::HistoryKey& key, const CodeRecords& records,
    const simhost::DrawingDatabase& drawing, const CircuitObject& circuit, const ChangedChoices& changes) {
  brenvolt::HistoryFile scratch;
  scratch.startEmpty({});
  try {
    brenvolt::appendEntry(
        scratch, {key, simhost::circuitField(circuit.fields, L"worksheet"),
                  markersOf(records, drawing, circuit, changes)});
  } catch (const brenvolt::XmlError& error) {
    throw simhost::BadInput(brenvolt::toUtf8(key.name) + ": its choices cannot be saved: " + error.what());
  }
  const XmlElement made = scratch.find(key).history;
  if (const XmlElement former = file.find(key).history; !former.isNull()) keepRest(made, former);
  file.put(key, made);
}

} // namespace circuits
