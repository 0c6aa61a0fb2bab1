// Writing the entries; reading and merging of history files is the plug-in's own affair.
#include "circuits/building/row_configurations.h"

#include "platform/xml_document.h"
#include "project/history_names.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "text/encoding.h"
#include "text/numbers.h"

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
  rows.push_back({std::wstring(circuit.isMotor ? xmlname::motorSetup : xmlname::loadSetup), circuit.data});
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

std::string historyOf(const std::vector<const SetCircuit*>& circuits, const std::string& workbook) {
  brenvolt::HistoryFile file;
  file.startEmpty(brenvolt::fromUtf8(fs::path(workbook).filename().string()));
  for (const SetCircuit* circuit : circuits)
    if (circuit->configuration.empty()) try {
        brenvolt::appendEntry(file, entryOf(*circuit));
      } catch (const brenvolt::XmlError& error) {
        throw simhost::BadInput(
            brenvolt::toUtf8(circuit->name) + ": its configuration cannot be saved: " + error.what());
      }
  return file.bytes();
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
  return circuit.configuration.empty() ? workbookWith(historyOf({&circuit}, workbook_)) : workbook_;
}

std::string ConfigurationFolder::workbookWith(const std::string& history) const {
  const fs::path copy = folder_ / fs::path(workbook_).filename();
  const std::string reason =
      simhost::replaceFile(folder_ / brenvolt::toUtf8(brenvolt::historyFileName), history);
  if (!reason.empty()) throw simhost::CannotWrite(reason);
  std::error_code error;
  return fs::absolute(copy, error).string();
}

} // namespace circuits
