// Writing the entries; reading and merging of history files is the plug-in's own affair.
#include "circuits/building/row_configurations.h"

#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <map>
#include <system_error>
#include <utility>

namespace circuits {

namespace fs = std::filesystem;

namespace {

/// How deep templates are nested at most; a choice is looked for at the depth at which its marker comes.
constexpr int deepestTemplate = 3;

std::wstring quoted(const std::wstring& text) {
  std::wstring escaped = L"\"";
  for (const wchar_t character : text) {
    switch (character) {
    case L'&':
      escaped += L"&amp;";
      break;
    case L'<':
      escaped += L"&lt;";
      break;
    case L'>':
      escaped += L"&gt;";
      break;
    case L'"':
      escaped += L"&quot;";
      break;
    default:
      escaped += character;
    }
  }
  return escaped + L'"';
}

std::wstring property(const std::wstring& name, const std::wstring& value) {
  return L"       <Property Name=" + quoted(name) + L" Value=" + quoted(value) + L"/>\n";
}

std::wstring wireSetup(const std::wstring& element, const std::wstring& wire, const std::wstring& size) {
  return L"      <" + element + L">\n" + property(wire + L" - Size", size) +
         property(wire + L" - Layer", L"") + L"      </" + element + L">\n";
}

std::wstring controlGroup(const SetCircuit& circuit) {
  const std::wstring setup = circuit.isMotor ? L"MotorSetup" : L"LOADSetup";
  std::wstring text = L"     <ControlGroup>\n      <" + setup + L">\n";
  for (const auto& [name, value] : circuit.data)
    text += property(name, value);
  text += L"      </" + setup + L">\n";
  for (int wire = 1; wire <= circuit.conductors; ++wire)
    text += wireSetup(L"WireSetup", L"W" + brenvolt::formatInt(wire), circuit.wireSize);
  return text + wireSetup(L"GroundingWireSetup", L"W01E", circuit.groundSize) + L"     </ControlGroup>\n";
}

std::wstring marker(const std::wstring& code, int depth, const std::wstring& content) {
  return L"    <Marker Code=" + quoted(code) + L" Tag=" + quoted(code + L".1." + brenvolt::formatInt(depth)) +
         L">\n" + content + L"    </Marker>\n";
}

std::wstring optionLine(const SetOption& option) {
  return L"     <SelectOption UI_TITLE=" + quoted(option.group) + L" UI_PROMPT=" + quoted(option.title) +
         L" UI_VAL=" + quoted(brenvolt::formatInt(option.value)) + L"/>\n";
}

std::wstring entryOf(const SetCircuit& circuit) {
  std::wstring text =
      L"   <History Name=" + quoted(circuit.name) +
      L" ComponentScale=\"1.000000\" CircuitScale=\"1.000000\">\n    <HistoryCheck Worksheet=" +
      quoted(circuit.worksheet) + L"/>\n";
  for (const auto& [code, options] : circuit.controls) {
    std::wstring content;
    for (const SetOption& option : options)
      content += optionLine(option);
    text += marker(code, 1, content + (circuit.data.empty() ? std::wstring() : controlGroup(circuit)));
  }
  for (const auto& [code, options] : circuit.options) {
    std::wstring content;
    for (const SetOption& option : options)
      content += optionLine(option);
    for (int depth = 1; depth <= deepestTemplate; ++depth)
      text += marker(code, depth, content);
  }
  return text + L"   </History>\n";
}

} // namespace

std::string historyOf(const std::vector<const SetCircuit*>& circuits, const std::string& workbook) {
  std::map<std::wstring, std::map<std::wstring, std::wstring>> entries; // by circuit and type
  for (const SetCircuit* circuit : circuits)
    if (circuit->configuration.empty()) entries[circuit->circuit][circuit->type] += entryOf(*circuit);
  std::wstring text = L"<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n<BrenvoltHistory Context=" +
                      quoted(brenvolt::fromUtf8(fs::path(workbook).filename().string())) +
                      L" Version=\"1.0\">\n";
  for (const auto& [circuit, types] : entries) {
    text += L" <Circuit Name=" + quoted(circuit) + L">\n";
    for (const auto& [type, histories] : types)
      text += L"  <CircuitType Name=" + quoted(type) + L">\n" + histories + L"  </CircuitType>\n";
    text += L" </Circuit>\n";
  }
  return "\xFF\xFE" + brenvolt::toUtf16Le(text + L"</BrenvoltHistory>\n");
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
  if (!circuit.configuration.empty()) return workbook_;
  const fs::path copy = folder_ / fs::path(workbook_).filename();
  const std::string reason =
      simhost::replaceFile(fs::path(copy).replace_extension(".xml"), historyOf({&circuit}, workbook_));
  if (!reason.empty()) throw simhost::CannotWrite(reason);
  std::error_code error;
  return fs::absolute(copy, error).string();
}

} // namespace circuits
