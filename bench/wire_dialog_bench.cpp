// One change of an input in the wire lookup, the table of 60 sizes with voltage drop and yearly cost refreshed into a
// grid without a screen, against the bare statements of the same lookup. It has to stay below 5 ms and 1.5 times these.
#include "bench/imported_tables.h"
#include "bench/no_screen.h"
#include "bench/wire_bench_tables.h"
#include "flows/wire_lookup_view.h"
#include "simhost/host/session.h"
#include "simhost/ui/scripted_windows.h"
#include "text/encoding.h"
#include "widgets/common_roles.h"

#include <memory>

namespace {

using namespace brenvolt;
namespace fs = std::filesystem;

/// The sample site's tables with 60 sizes, and a host that keeps the window system.
class Tables final {
public:
  Tables()
      : session_({}, windows_), imported_([](const fs::path& folder) {
          fs::copy("site/tables", folder);
          wirebench::writeSixtySizes(folder);
        }) {
    session_.openDocument(L"", std::make_unique<simhost::DrawingDatabase>());
  }

  [[nodiscard]] std::string path() const { return imported_.path(); }
  [[nodiscard]] ZanOleDbConnection& connection() { return imported_.connection(); }

private:
  simhost::ScriptedWindows windows_;
  simhost::Session session_;
  bench::ImportedTables imported_;
};

/// The window of the lookup with its controls, and no dialog around it.
class BenchForm final : public WireLookupForm {
public:
  BenchForm()
      : dialog_(L"ZanDlgWireSelect", nullptr),
        screen_(simhost::loadForm("resources/forms", L"ZanDlgWireSelect"), dialog_) {}

  [[nodiscard]] KvUiText& text(std::wstring_view role) const override { return as<KvUiText>(role); }
  [[nodiscard]] KvUiList& list(std::wstring_view role) const override { return as<KvUiList>(role); }
  [[nodiscard]] KvUiTick& tick(std::wstring_view role) const override { return as<KvUiTick>(role); }
  [[nodiscard]] KvUiGrid& results() const override { return as<KvUiGrid>(role::grid); }
  [[nodiscard]] bool goesOnWithout(const MissingTables&) override { std::abort(); }
  void showHeldBackSoon() override {}

private:
  template <typename Control>
  [[nodiscard]] Control& as(std::wstring_view role) const {
    return dynamic_cast<Control&>(*screen_.control(role));
  }

  CKvUiDialog dialog_;
  mutable bench::NoScreen screen_;
};

void oneChange(benchmark::State& state) {
  Tables tables;
  WireTableCache cache(tables.connection());
  WireLookup lookup(cache, L"NEC");
  WireStart start;
  start.choices.fla = 52.0;
  start.choices.useVoltageDrop = true;
  if (lookup.begin(start, WithoutTables::stop)) std::abort();
  BenchForm form;
  WireLookupView view(lookup, form);
  view.showAll();
  bool isLong = false;
  for ([[maybe_unused]] auto _ : state) {
    isLong = !isLong;
    form.list(roleOf(LookupField::length)).SetText(isLong ? L"100" : L"50");
    view.changed(LookupField::length);
  }
  state.counters["rows"] = form.results().RowCount();
}

void bareStatements(benchmark::State& state) {
  const Tables tables;
  wirebench::bareStatements(state, tables.path());
}

} // namespace

BENCHMARK(oneChange)->Unit(benchmark::kMicrosecond);
BENCHMARK(bareStatements)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
