// A LISP function with five arguments called from native code and back, beside the same call inside the LISP.
#include "host/host_api_lisp.h"
#include "simhost/host/chain.h"
#include "simhost/host/session.h"
#include "simhost/ui/scripted_windows.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

namespace {

constexpr int callsInLisp = 1000;

/// A host with the function that both sides call.
struct Host {
  simhost::ScriptedWindows windows;
  simhost::Session session{simhost::SessionOptions(), windows};
  simhost::lisp::Interpreter& interpreter;

  Host()
      : interpreter(session.openDocument(L"", std::make_unique<simhost::DrawingDatabase>()).interpreter()) {
    interpreter.run(
        L"(defun c:five (a b c d e) (list a b c d e))"
        L"(defun many (n) (dotimes (i n) (c:five \"CODE\" 12 1.5 \"text of the marker\" T)))",
        L"bench");
  }
};

void callInLisp(benchmark::State& state) {
  Host host;
  const std::wstring form = L"(many " + std::to_wstring(callsInLisp) + L")";
  for ([[maybe_unused]] auto _ : state)
    benchmark::DoNotOptimize(host.interpreter.run(form, L"bench"));
  state.SetItemsProcessed(state.iterations() * callsInLisp);
}

KvResultBuffer* buildCall() {
  return kvutBuildList(
      kvtype::string, L"c:five", kvtype::string, L"CODE", kvtype::shortInteger, 12, kvtype::real, 1.5,
      kvtype::string, L"text of the marker", kvtype::t, 0);
}

void invoke(benchmark::State& state, const KvResultBuffer* call) {
  KvResultBuffer* result = nullptr;
  if (kvedInvoke(call, &result) != kvstatus::normal) state.SkipWithError("the call failed");
  kvutRelRb(result);
}

void invokeFromNative(benchmark::State& state) {
  const Host host;
  KvResultBuffer* call = buildCall();
  for ([[maybe_unused]] auto _ : state)
    invoke(state, call);
  kvutRelRb(call);
  state.SetItemsProcessed(state.iterations());
}

/// The whole way that the plug-in goes: build the call, run it, release both chains.
void buildAndInvoke(benchmark::State& state) {
  const Host host;
  for ([[maybe_unused]] auto _ : state) {
    KvResultBuffer* call = buildCall();
    invoke(state, call);
    kvutRelRb(call);
  }
  state.SetItemsProcessed(state.iterations());
}

} // namespace

BENCHMARK(callInLisp);
BENCHMARK(invokeFromNative);
BENCHMARK(buildAndInvoke);

BENCHMARK_MAIN();
