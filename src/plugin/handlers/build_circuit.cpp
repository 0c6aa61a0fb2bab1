// The order of a whole build: arguments, worksheet, markers, presets; then a direct build runs to its end, and any other
// one goes through the configuration dialog.
#include "plugin/handlers/build_circuit.h"

#include "build/driver.h"
#include "build/host_session.h"
#include "config/widget_manager_maker.h"
#include "data/circuit_data.h"
#include "data/table_watch.h"
#include "flows/dlg_config.h"
#include "host/host_api_documents.h"

#include <optional>

namespace brenvolt {

namespace {

/// The maker of widget managers lives for one build, exceptions included. A build that a form starts inside of another
/// one leaves the maker to that: its managers are still on the screen.
class MakerOfBuild final {
public:
  MakerOfBuild() : isInside_(widgetManagerMaker() != nullptr), exists_(ZanWidgetManagerMaker::Create()) {}
  ~MakerOfBuild() {
    if (!isInside_) ZanWidgetManagerMaker::Destroy();
  }
  MakerOfBuild(const MakerOfBuild&) = delete;
  MakerOfBuild& operator=(const MakerOfBuild&) = delete;
  [[nodiscard]] bool exists() const { return exists_; }
  [[nodiscard]] bool isInside() const { return isInside_; }

private:
  bool isInside_;
  bool exists_;
};

/// What a direct build is saved under, and whether it was.
struct Saving {
  std::wstring name;
  bool isDone = false;
};

bool buildDirectly(ZanBrenvolt& build, Saving* saving) {
  const bool result = build.prepare(BuildKind::direct);
  // Without its server a build has figures missing: it counts as failed, and the parent product takes it back.
  if (wasConnectionLost()) return false;
  if (result && saving != nullptr) saving->isDone = build.saveHistory(saving->name);
  if (build.needsFinish()) build.finish();
  return result;
}

bool configureAndBuild(ZanBrenvolt& build) {
  if (!build.prepare(BuildKind::interactive)) return false;
  circuitData().wireChosen = false;
  return runConfiguration(build, kdsw_korvoMainWnd());
}

bool runBuild(ZanBrenvolt& build, Saving* saving) {
  build.readBuildData();
  if (!build.loadCatalog() || !pumpMessages()) return false;
  if (!build.readMarkers() || !pumpMessages()) return false;
  build.readPresets();
  return build.args().directBuild ? buildDirectly(build, saving) : configureAndBuild(build);
}

bool buildWith(std::optional<ZanBuildArgs> args, Saving* saving) {
  if (!pumpMessages()) return false;
  // Declared ahead of the maker, so that it outlives the managers, which look at its data.
  std::optional<ZanBrenvolt> build;
  const MakerOfBuild maker;
  if (!maker.exists() || !args) return false;
  // One dialog at a time: the managers of a second one would count for the circuit of the first.
  if (maker.isInside() && !args->directBuild) return false;
  return runBuild(build.emplace(std::move(*args)), saving);
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
