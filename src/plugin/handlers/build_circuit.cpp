// The order of a whole build: arguments, worksheet, markers, presets; then a direct build runs to its end, and any
// other one opens the configuration dialog.
#include "plugin/handlers/build_circuit.h"

#include "build/driver.h"
#include "build/host_session.h"
#include "build/undo_manager.h"
#include "data/circuit_data.h"
#include "data/table_watch.h"
#include "flows/dlg_config.h"
#include "host/host_api_documents.h"
#include "host/host_api_lisp.h"
#include "host/lisp_calls.h"
#include "host/resources.h"
#include "plugin/process_record.h"
#include "text/format.h"

#include <optional>
#include <utility>

namespace brenvolt {

namespace {

/// How many builds may be inside each other: a form may build a circuit, whose form builds another one.
constexpr int deepestBuild = 16;

/// A build is under way for as long as the scope lasts, exceptions included. The changes that an inner build makes to
/// the current circuit and the trace flag end with it: the outer one continues with its own.
class UnderWayScope final {
public:
  UnderWayScope(const ZanBrenvolt& build, CircuitContext circuitOfOuter)
      : outer_(processRecord().build), circuitOfOuter_(std::move(circuitOfOuter)),
        traceOfOuter_(isTracing()) {
    processRecord().build = &build;
  }
  ~UnderWayScope() {
    processRecord().build = outer_;
    if (outer_ == nullptr) return;
    circuitContext() = circuitOfOuter_;
    setTrace(traceOfOuter_);
  }
  UnderWayScope(const UnderWayScope&) = delete;
  UnderWayScope& operator=(const UnderWayScope&) = delete;

private:
  const ZanBrenvolt* outer_;
  CircuitContext circuitOfOuter_;
  bool traceOfOuter_;
};

/// The configuration dialog of a build is open for as long as the scope lasts.
class ConfiguredScope final {
public:
  explicit ConfiguredScope(const ZanBrenvolt& build) : outer_(processRecord().configured) {
    processRecord().configured = &build;
  }
  ~ConfiguredScope() { processRecord().configured = outer_; }
  ConfiguredScope(const ConfiguredScope&) = delete;
  ConfiguredScope& operator=(const ConfiguredScope&) = delete;

private:
  const ZanBrenvolt* outer_;
};

/// What a direct build is saved under, and whether it was.
struct Saving {
  std::wstring name;
  bool isDone = false;
};

void say(TextId text, std::wstring_view worksheet) {
  kvutPrintf((L"\n" + formatText(loadText(text), {worksheet}) + L"\n").c_str());
}

/// Whether a build can run inside the builds around it; says why not.
bool canRun(const ZanBrenvolt& build) {
  const ZanBuildArgs& args = build.args();
  if (build.depth() > deepestBuild) {
    say(TextId::buildsTooDeep, args.worksheet);
    return false;
  }
  if (!args.directBuild && build.isBelowDialog()) {
    say(TextId::dialogInsideDialog, args.worksheet);
    return false;
  }
  return true;
}

bool buildDirectly(ZanBrenvolt& build, Saving* saving) {
  const bool result = build.prepare(BuildKind::direct);
  // Without its server a build has figures missing: it counts as failed, and the parent product takes it back.
  const TableWatch* const watch = processRecord().tableWatch;
  if (watch != nullptr && watch->wasConnectionLost()) return false;
  if (result && saving != nullptr) saving->isDone = build.saveHistory(saving->name);
  if (build.needsFinish()) build.finish();
  return result;
}

bool configureAndBuild(ZanBrenvolt& build) {
  if (!build.prepare(BuildKind::interactive)) return false;
  const ConfiguredScope scope(build);
  return runConfiguration(build, kdsw_korvoMainWnd());
}

bool runBuild(ZanBrenvolt& build, Saving* saving) {
  build.readBuildData();
  // Also without the symbol: the trace of an earlier build does not go on.
  setTrace(build.args().trace);
  if (!build.loadCatalog() || !pumpMessages()) return false;
  if (!build.readMarkers() || !pumpMessages()) return false;
  build.readPresets();
  return build.args().directBuild ? buildDirectly(build, saving) : configureAndBuild(build);
}

bool buildWith(std::optional<ZanBuildArgs> args, Saving* saving) {
  if (!pumpMessages() || !args) return false;
  const ZanBrenvolt* const parent = processRecord().build;
  // Without an undo position, an inner build returns to the present state of the outer one, and not to the beginning
  // of the drawing.
  if (parent != nullptr && args->undoPosition == 0)
    args->undoPosition = ZanUndoManager::position(workingDatabase());
  CircuitContext& circuit = circuitContext();
  const CircuitContext before = circuit;
  // A page stores wire choices only when they are made in this dialog.
  if (!args->directBuild) circuit.circuit.wireChosen = false;
  ProcessRecord& lent = processRecord();
  ZanBrenvolt build(std::move(*args), {circuit, lentTables(), lent.lastMarkerId}, parent);
  const UnderWayScope scope(build, before);
  return canRun(build) && runBuild(build, saving);
}

} // namespace

ResultList buildCircuit(const ResultList& arguments) {
  if (!buildWith(parseBuildArguments(arguments), nullptr)) return {};
  ListBuilder answer;
  return answer.addT().take();
}

ResultList buildAndSave(const ResultList& arguments) {
  ListReader reader(arguments);
  std::optional<ZanBuildArgs> args = parseBuildArguments(reader.copyElement());
  Saving saving{reader.text().value_or(std::wstring())};
  if (!args || saving.name.empty()) return {};
  args->directBuild = true;
  if (!buildWith(std::move(args), &saving)) return {};
  ListBuilder answer;
  answer.beginList();
  return (saving.isDone ? answer.addT() : answer.addNil()).endList().take();
}

} // namespace brenvolt
