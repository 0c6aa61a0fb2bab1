// The dialog and the build read a copy of the workbook with a history file of its own: the site's, and the circuit's
// choices in it. Only what the user saves goes from there to the site.
#include "circuits/building/circuit_configure.h"

#include "circuits/building/circuit_parts.h"
#include "circuits/building/placed_choices.h"
#include "circuits/building/row_configurations.h"
#include "circuits/netlist/netlist.h"
#include "project/history_change.h"
#include "simhost/host/errors.h"
#include "simhost/lisp/list.h"
#include "simhost/lisp/printer.h"
#include "simhost/site/code_standard.h"
#include "simhost/site/site_workbook.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <utility>
#include <vector>

namespace circuits {

namespace lisp = simhost::lisp;
using brenvolt::fromUtf8;
using brenvolt::HistoryFile;
using brenvolt::HistoryKey;
using brenvolt::toUtf8;
using simhost::BadInput;
using simhost::circuitField;

namespace {

constexpr std::wstring_view savedSymbol = L"GBL_qn_bv_saved_configuration";

/// What a build of the circuit from its own choices takes.
class PlacedCircuit final {
public:
  PlacedCircuit(simhost::SiteRun& run, const RebuildRequest& request)
      : run_(run), request_(request), object_(needCircuit(drawingOf(run), request.circuit)),
        folder_(
            std::filesystem::temp_directory_path() / ("brenvolt-" + std::to_string(::getpid())),
            request.workbook) {
    findType();
    takeRecord();
    writeChoices();
  }

  [[nodiscard]] const CircuitObject& object() const { return object_; }
  [[nodiscard]] const SetCircuit& row() const { return row_; }
  [[nodiscard]] const std::string& workbook() const { return workbook_; }

  /// Puts what was saved beside the copy among the site's saved configurations. Why not; empty when it is there.
  [[nodiscard]] std::string keepSaved(const std::wstring& name) const {
    HistoryFile made;
    const HistoryKey key{row_.circuit, row_.type, name};
    if (made.read(brenvolt::historyPathOf(fromUtf8(workbook_))) != HistoryFile::State::accepted ||
        made.find(key).history.isNull())
      return toUtf8(name) + ": the configuration was not saved";
    HistoryFile kept;
    const brenvolt::HistoryOutcome outcome =
        brenvolt::changeHistory(fromUtf8(request_.workbook), kept, [&](HistoryFile& history) {
          history.put(key, made.find(key).history);
          return std::vector{brenvolt::recordOf(brenvolt::HistoryAction::saved, history, key)};
        });
    return outcome.isDone() ? std::string() : toUtf8(name) + ": " + toUtf8(outcome.reason);
  }

private:
  [[nodiscard]] std::wstring field(std::wstring_view name) const {
    return circuitField(object_.fields, name);
  }

  void findType() {
    if (object_.fields.empty())
      throw BadInput(
          toUtf8(object_.name()) +
          ": the drawing does not contain the choices of this circuit; erase it and build a new one");
    const brenvolt::ZanCircuitCatalog list = simhost::readCircuitList(request_.workbook);
    const brenvolt::ZanCircuitEntry* entry = list.findEntry(field(L"circuit"), field(L"type"));
    if (entry == nullptr)
      throw BadInput(
          toUtf8(object_.name()) + ": the workbook no longer has its type, " + toUtf8(field(L"circuit")) +
          " / " + toUtf8(field(L"type")));
    brenvolt::ZanCircuitCatalog sheet(list.workbook);
    if (!sheet.readWorksheet(entry->worksheet)) throw BadInput(toUtf8(sheet.error()));
    records_ = sheet.records();
    row_.circuit = field(L"circuit");
    row_.type = entry->type;
    row_.drawingTemplate = entry->drawingTemplate;
    row_.worksheet = entry->worksheet;
  }

  void takeRecord() {
    row_.descriptions.resize(3);
    takeSiteVariables(row_, object_, request_);
    row_.standardCode = field(L"standard-code");
    // A circuit that no list brought: by the electrical code of the session.
    if (row_.standardCode.empty()) row_.standardCode = simhost::sessionStandard(run_.interpreter());
    row_.sizing = field(L"sizing");
    row_.fixedSizes = field(L"wire-size");
  }

  /// Under the name that its choices were saved under or taken from, while the site has one of this name; else under the
  /// circuit's own name, and never under that of another configuration.
  void writeChoices() {
    HistoryFile history = siteHistory(request_.workbook);
    const auto isThere = [&](const std::wstring& name) {
      return !name.empty() && !history.find({row_.circuit, row_.type, name}).history.isNull();
    };
    if (isThere(field(L"configuration"))) row_.name = field(L"configuration");
    if (row_.name.empty()) row_.name = savedAs(history, records_, drawingOf(run_), object_);
    if (row_.name.empty()) {
      const std::wstring name = object_.name().empty() ? row_.circuit : object_.name();
      row_.name = name;
      for (int number = 2; isThere(row_.name); ++number)
        row_.name = name + L" (" + brenvolt::formatInt(number) + L")";
    }
    putPlacedChoices(history, {row_.circuit, row_.type, row_.name}, records_, drawingOf(run_), object_);
    workbook_ = folder_.workbookWith(history.bytes());
  }

  simhost::SiteRun& run_;
  const RebuildRequest& request_;
  CircuitObject object_;
  CodeRecords records_;
  SetCircuit row_;
  ConfigurationFolder folder_;
  std::string workbook_;
};

std::wstring savedName(simhost::SiteRun& run) {
  const std::vector<lisp::Value> saved = lisp::toVector(run.interpreter().value(savedSymbol));
  return saved.size() == 4 && saved[3].isString() ? saved[3].asString() : std::wstring();
}

std::wstring lispText(const std::wstring& text) {
  return lisp::printValue(lisp::Value::string(text), lisp::PrintStyle::readable);
}

} // namespace

ConfigureResult configureCircuit(simhost::SiteRun& run, const RebuildRequest& request) {
  const PlacedCircuit placed(run, request);
  ConfigureResult result;
  result.isBuilt = replaceCircuit(
      run, placed.object(), placed.row(),
      [&](const SetCircuit& row, const KvPoint3d& at) {
        if (run.run(buildForm(row, placed.workbook(), at, BuildWay::withDialog), L"configure").isNil())
          return false;
        // From now on it is that of the configuration that its dialog has saved, and not of the one that it began with.
        if (const std::wstring name = savedName(run); !name.empty())
          setConfiguration(drawingOf(run), request.circuit, name);
        return true;
      },
      [&](SetCircuit& row) {
        takeWireFacts(row, placed.object(), needCircuit(drawingOf(run), request.circuit));
      });
  if (result.isBuilt)
    if (const std::wstring name = savedName(run); !name.empty()) result.notSaved = placed.keepSaved(name);
  return result;
}

void saveConfiguration(simhost::SiteRun& run, const RebuildRequest& request, const std::wstring& name) {
  const PlacedCircuit placed(run, request);
  const SetCircuit& row = placed.row();
  std::wstring form = L"(site-save-configuration " + lispText(name);
  for (const std::wstring& text :
       {row.drawingTemplate, fromUtf8(placed.workbook()), row.worksheet, row.circuit, row.type, row.name})
    form += L" " + lispText(text);
  // The site's LISP takes the build back; CommandSteps keeps it out of redo.
  const bool isSaved = !run.run(form + L")", L"save configuration").isNil();
  if (!isSaved) throw BadInput(toUtf8(name) + ": the configuration could not be saved");
  if (const std::string reason = placed.keepSaved(name); !reason.empty()) throw BadInput(reason);
}

} // namespace circuits
