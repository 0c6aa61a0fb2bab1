// Writing the entries; reading and merging of history files is the plug-in's own affair.
#include "circuits/building/row_configurations.h"

#include "circuits/provenance/load_data.h"
#include "platform/file_cache.h"
#include "platform/xml_document.h"
#include "project/history_names.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "text/assertion.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <cstddef>
#include <map>
#include <system_error>
#include <utility>

namespace circuits {

namespace fs = std::filesystem;
namespace xmlname = brenvolt::xmlname;
using brenvolt::EntryContent;
using brenvolt::EntryRow;

namespace {

EntryRow wireRow(std::wstring_view element, const std::wstring& wire, const std::wstring& size) {
  return {std::wstring(element), {{wire + L" - Size", size}, {wire + L" - Layer", L""}}};
}

/// The data of the motor or load and its wires; none for a circuit without either.
std::vector<EntryRow> rowsOf(const SetCircuit& circuit) {
  if (circuit.data.empty()) return {};
  std::vector<EntryRow> rows;
  EntryRow setup{std::wstring(circuit.isMotor ? xmlname::motorSetup : xmlname::loadSetup), {}};
  for (std::size_t place = 0; place < circuit.data.size(); ++place)
    setup.properties.emplace_back(loadSetupNames[place], circuit.data[place]);
  rows.push_back(std::move(setup));
  for (int wire = 1; wire <= circuit.conductors; ++wire)
    rows.push_back(wireRow(xmlname::wireSetup, L"W" + brenvolt::formatInt(wire), circuit.wireSize));
  rows.push_back(wireRow(xmlname::groundingWireSetup, L"W01E", circuit.groundSize));
  return rows;
}

EntryContent entryOf(const SetCircuit& circuit) {
  EntryContent entry{{circuit.circuit, circuit.type, circuit.name}, circuit.worksheet, {}};
  for (const auto& [code, options] : circuit.controls)
    entry.markers.push_back({.code = code, .options = options, .rows = rowsOf(circuit)});
  for (const auto& [code, options] : circuit.options)
    for (int depth = 1; depth <= deepestTemplate; ++depth)
      entry.markers.push_back({.code = code, .depth = depth, .options = options, .rows = {}});
  return entry;
}

} // namespace

namespace {

/// A history file with the circuit's entry alone.
std::string historyOf(const SetCircuit& circuit, const std::string& workbook) {
  brenvolt::HistoryFile file;
  file.startEmpty(brenvolt::fromUtf8(fs::path(workbook).filename().string()));
  try {
    brenvolt::appendEntry(file, entryOf(circuit));
  } catch (const brenvolt::XmlError& error) {
    throw simhost::BadInput(
        brenvolt::toUtf8(circuit.name) + ": its configuration cannot be saved: " + error.what());
  }
  return file.bytes();
}

/// A file with one entry, cut at the elements around it. A value has no "<" of its own, so elements are found by it.
struct CutHistory {
  explicit CutHistory(std::string_view bytes) {
    const auto cut = [&bytes](std::wstring_view element, std::string_view& before) {
      const std::string text = brenvolt::toUtf16Le(L'<' + std::wstring(element));
      std::size_t place = bytes.find(text);
      while (place != std::string_view::npos && place % 2 != 0)
        place = bytes.find(text, place + 1);
      BRENVOLT_ASSERT(place != std::string_view::npos, "a history file with an entry has all elements");
      before = bytes.substr(0, place);
      bytes.remove_prefix(place);
    };
    cut(L"Circuit ", head);
    cut(L"CircuitType ", circuit);
    cut(L"History ", type);
    cut(L"/CircuitType", entry);
    cut(L"/Circuit>", typeEnd);
    cut(L"/BrenvoltHistory", circuitEnd);
    tail = bytes;
  }

  std::string_view head;
  std::string_view circuit;
  std::string_view type;
  std::string_view entry;
  std::string_view typeEnd;
  std::string_view circuitEnd;
  std::string_view tail;
};

} // namespace

void writeHistory(
    const std::vector<SetCircuit>& circuits, const std::string& workbook,
    const std::function<void(std::string_view)>& write) {
  // Circuits and types in the order in which the list has them first, the entries of each in the list's.
  using Places = std::vector<std::size_t>;
  std::vector<std::vector<Places>> groups;
  std::map<std::wstring, std::size_t> circuitPlaces;
  std::map<std::pair<std::wstring, std::wstring>, std::size_t> typePlaces;
  for (std::size_t place = 0; place < circuits.size(); ++place) {
    const SetCircuit& circuit = circuits[place];
    if (!circuit.configuration.empty()) continue;
    const auto [group, isNew] = circuitPlaces.try_emplace(circuit.circuit, groups.size());
    if (isNew) groups.emplace_back();
    std::vector<Places>& types = groups[group->second];
    const auto [type, isNewType] = typePlaces.try_emplace({circuit.circuit, circuit.type}, types.size());
    if (isNewType) types.emplace_back();
    types[type->second].push_back(place);
  }
  if (groups.empty()) {
    brenvolt::HistoryFile file;
    file.startEmpty(brenvolt::fromUtf8(fs::path(workbook).filename().string()));
    return write(file.bytes());
  }
  std::string bytes;
  for (const std::vector<Places>& types : groups)
    for (const Places& places : types)
      for (const std::size_t place : places) {
        bytes = historyOf(circuits[place], workbook);
        const CutHistory parts(bytes);
        const bool isFirstOfType = place == places.front();
        const bool isFirstOfCircuit = isFirstOfType && &places == &types.front();
        if (isFirstOfCircuit && &types == &groups.front()) write(parts.head);
        if (isFirstOfCircuit) write(parts.circuit);
        if (isFirstOfType) write(parts.type);
        write(parts.entry);
        const bool isLastOfType = place == places.back();
        const bool isLastOfCircuit = isLastOfType && &places == &types.back();
        if (isLastOfType) write(parts.typeEnd);
        if (isLastOfCircuit) write(parts.circuitEnd);
        if (isLastOfCircuit && &types == &groups.back()) write(parts.tail);
      }
}

ConfigurationFolder::ConfigurationFolder(fs::path folder, const std::string& workbook)
    : folder_(std::move(folder)), workbook_(workbook) {
  const std::string reason = simhost::replaceFile(
      folder_ / fs::path(workbook).filename(), simhost::readFile(workbook).value_or(std::string()));
  if (!reason.empty()) throw simhost::CannotWrite(reason);
}

ConfigurationFolder::~ConfigurationFolder() {
  std::error_code error;
  fs::remove_all(folder_, error);
}

std::string ConfigurationFolder::workbookFor(const SetCircuit& circuit) const {
  return circuit.configuration.empty() ? workbookWith(historyOf(circuit, workbook_)) : workbook_;
}

std::string ConfigurationFolder::workbookWith(const std::string& history) const {
  const fs::path copy = folder_ / fs::path(workbook_).filename();
  const std::string file = (folder_ / brenvolt::toUtf8(brenvolt::historyFileName)).string();
  // Some file systems write at once to the disk what replaces another file.
  std::error_code error;
  fs::remove(file, error);
  if (const auto reason = brenvolt::replaceCachedFile(file, file + ".new", history))
    throw simhost::CannotWrite(file + ": " + brenvolt::toUtf8(*reason));
  return fs::absolute(copy, error).string();
}

std::vector<EntryRow> loadRows(const SetCircuit& circuit) {
  return rowsOf(circuit);
}

} // namespace circuits
