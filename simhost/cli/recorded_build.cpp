// The order of a direct build, with one step more than the plug-in's: saving.
#include "simhost/cli/recorded_build.h"

#include "build/driver.h"
#include "config/widget_manager_maker.h"
#include "simhost/host/chain_values.h"
#include "simhost/host/session.h"

#include <optional>
#include <utility>

namespace simhost {

namespace {

using lisp::Value;

bool build(brenvolt::ZanBuildArgs args, const std::wstring& historyName) {
  brenvolt::ZanBrenvolt build(std::move(args));
  build.readBuildData();
  if (!build.loadCatalog() || !build.readMarkers()) return false;
  build.readPresets();
  if (!build.prepare(brenvolt::BuildKind::direct)) return false;
  const bool isSaved = build.saveHistory(historyName);
  build.finish();
  return isSaved;
}

Value buildFunction(lisp::Arguments& arguments, const std::wstring& historyName) {
  ChainOfValue chain = chainOfValue(arguments[0]);
  if (!chain.fault.empty()) arguments.fail(chain.fault);
  const std::optional<brenvolt::ZanBuildArgs> args =
      brenvolt::parseBuildArguments(brenvolt::ResultList(chain.chain.release()));
  if (!args) arguments.fail(L"wants the list of a build's arguments");
  struct Maker {
    Maker() { static_cast<void>(brenvolt::ZanWidgetManagerMaker::Create()); }
    ~Maker() { brenvolt::ZanWidgetManagerMaker::Destroy(); }
    Maker(const Maker&) = delete;
    Maker& operator=(const Maker&) = delete;
  } maker;
  CircuitRecorder::Build recorded(Session::current()->circuits(), arguments.values());
  const bool isBuilt = build(*args, historyName);
  if (isBuilt) recorded.succeed();
  return Value::truth(isBuilt);
}

} // namespace

void recordBuild(lisp::Interpreter& interpreter, const std::wstring& historyName) {
  interpreter.define(L"zan_bv_build_circuit", 1, 1, [historyName](lisp::Arguments& arguments) {
    return buildFunction(arguments, historyName);
  });
}

} // namespace simhost
