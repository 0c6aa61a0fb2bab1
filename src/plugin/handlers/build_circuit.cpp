// The order of a whole build: arguments, worksheet, markers, presets; then a direct build runs to its end.
#include "plugin/handlers/build_circuit.h"

#include "build/driver.h"
#include "build/host_session.h"
#include "config/widget_manager_maker.h"

#include <optional>

namespace brenvolt {

namespace {

/// The maker of widget managers lives for one build, exceptions included.
class MakerOfBuild final {
public:
  MakerOfBuild() : exists_(ZanWidgetManagerMaker::Create()) {}
  ~MakerOfBuild() { ZanWidgetManagerMaker::Destroy(); }
  MakerOfBuild(const MakerOfBuild&) = delete;
  MakerOfBuild& operator=(const MakerOfBuild&) = delete;
  [[nodiscard]] bool exists() const { return exists_; }

private:
  bool exists_;
};

bool runBuild(ZanBrenvolt& build) {
  build.readBuildData();
  if (!build.loadCatalog() || !pumpMessages()) return false;
  if (!build.readMarkers() || !pumpMessages()) return false;
  build.readPresets();
  // A build that asks needs the configuration dialog, which this module does not have yet.
  if (!build.args().directBuild) return false;
  const bool result = build.prepare(BuildKind::direct);
  if (build.needsFinish()) build.finish();
  return result;
}

} // namespace

ResultList buildCircuit(const ResultList& arguments) {
  if (!pumpMessages()) return {};
  // Declared ahead of the maker, so that it outlives the managers, which look at its data.
  std::optional<ZanBrenvolt> build;
  const MakerOfBuild maker;
  std::optional<ZanBuildArgs> args = parseBuildArguments(arguments);
  if (!maker.exists() || !args) return {};
  if (!runBuild(build.emplace(std::move(*args)))) return {};
  ListBuilder answer;
  return answer.addT().take();
}

} // namespace brenvolt
