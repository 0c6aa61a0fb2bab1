// From a circuit's name to the call that builds it.
#include "simhost/cli/circuit_run.h"

#include "simhost/cli/site_workbook.h"
#include "simhost/host/errors.h"
#include "simhost/lisp/printer.h"
#include "text/encoding.h"
#include "text/split.h"

namespace simhost {

namespace {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;

std::wstring lispText(std::wstring_view text) {
  return lisp::printValue(lisp::Value::string(std::wstring(text)), lisp::PrintStyle::readable);
}

/// A build passes over a preset that it does not know.
void needPreset(
    const SessionRun& run, const brenvolt::ZanCircuitCatalog& catalogue, const std::wstring& worksheet) {
  for (const std::wstring& part : brenvolt::splitSkippingEmpty(fromUtf8(run.preset), L';')) {
    const std::wstring code = brenvolt::trim(part.substr(0, part.find_first_of(L"[=")));
    const bool isKnown = part.find(L'=') != std::wstring::npos && catalogue.findRecord(code) != nullptr;
    if (!isKnown && !brenvolt::trimView(part).empty())
      throw BadInput(
          "preset \"" + toUtf8(part) + "\": must be CODE=1,2 with a code of the worksheet " +
          toUtf8(worksheet));
  }
}

brenvolt::ZanCircuitEntry findEntry(const SessionRun& run, const std::string& workbook) {
  brenvolt::ZanCircuitCatalog catalogue = readCatalogue(workbook);
  const std::wstring circuit = fromUtf8(run.circuit);
  if (!catalogue.circuits().contains(circuit))
    throw BadInput(toUtf8(catalogue.workbook) + ": there is no circuit \"" + run.circuit + "\"");
  const brenvolt::ZanCircuitEntry* found = catalogue.findEntry(circuit, fromUtf8(run.type));
  if (found == nullptr)
    throw BadInput(
        toUtf8(catalogue.workbook) + ": circuit \"" + run.circuit + "\" has no type \"" + run.type + "\"");
  brenvolt::ZanCircuitEntry entry = *found;
  if (!catalogue.readWorksheet(entry.worksheet)) throw BadInput(workbook + ": " + toUtf8(catalogue.error()));
  needPreset(run, catalogue, entry.worksheet);
  return entry;
}

/// A build starts plain when there is no history of the name: nobody would see that it was mistyped.
void needHistory(const SessionRun& run, const std::string& workbook) {
  if (run.history.empty()) return;
  brenvolt::ZanXmlHistory history;
  openConfiguration(history, workbook, run.circuit, run.type, run.history);
}

} // namespace

std::wstring circuitForm(const SessionRun& run, const std::string& workbook, CircuitBuild build) {
  const brenvolt::ZanCircuitEntry entry = findEntry(run, workbook);
  needHistory(run, workbook);
  std::wstring form = L"(site-build";
  for (const std::wstring& text :
       {entry.drawingTemplate, fromUtf8(workbook), entry.worksheet, fromUtf8(run.circuit), fromUtf8(run.type),
        fromUtf8(run.history)})
    form += L" " + lispText(text);
  form += L" '(" + lisp::printReal(run.at[0]) + L" " + lisp::printReal(run.at[1]) + L")";
  for (const std::string* text : {&run.preset, &run.params, &run.wires})
    form += L" " + lispText(fromUtf8(*text));
  return form + (build == CircuitBuild::direct ? L")" : L" T)");
}

std::wstring projectForm(const std::string& database) {
  return L"(setq site-project-database " + lispText(fromUtf8(database)) + L")";
}

std::wstring workbookForm(const std::string& workbook) {
  return L"(setq GBL_qn_bv_data (append (sublist GBL_qn_bv_data 0 7) (list " + lispText(fromUtf8(workbook)) +
         L")))";
}

} // namespace simhost
