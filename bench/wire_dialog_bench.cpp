// One change of an input in the wire lookup, the table of 60 sizes with voltage drop and yearly cost refreshed into a
// grid without a screen, against the bare statements of the same lookup. It has to stay below 5 ms and 1.5 times these.
#include "bench/imported_tables.h"
#include "bench/no_screen.h"
#include "bench/wire_bench_tables.h"
#include "data/circuit_data.h"
#include "flows/wire_select_ctrl_mgr.h"
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

/// The form of the lookup with its controls, and no dialog around it.
class BenchForm final : public WireLookupForm {
public:
  explicit BenchForm(ZanOleDbConnection& connection)
      : dialog_(L"ZanDlgWireSelect", nullptr),
        screen_(simhost::loadForm("resources/forms", L"ZanDlgWireSelect"), dialog_), reader_(&connection) {
    reader_.SetCode(code_);
    if (!reader_.GetOptions()) std::abort();
  }

  [[nodiscard]] KvUiControl& control(WireControl control) const override {
    return *screen_.control(roleOf(control));
  }
  [[nodiscard]] KvUiText& edit(WireControl control) const override { return as<KvUiText>(roleOf(control)); }
  [[nodiscard]] KvUiList& list(WireControl control) const override { return as<KvUiList>(roleOf(control)); }
  [[nodiscard]] KvUiTick& tick(WireControl control) const override { return as<KvUiTick>(roleOf(control)); }
  [[nodiscard]] KvUiText& text(std::wstring_view role) const override { return as<KvUiText>(role); }
  [[nodiscard]] KvUiGrid& results() const override { return as<KvUiGrid>(role::grid); }
  [[nodiscard]] ZanWireTableReader& reader() override { return reader_; }
  [[nodiscard]] const std::wstring& code() const override { return code_; }
  [[nodiscard]] std::optional<std::wstring> circuitName() const override { return std::nullopt; }
  [[nodiscard]] KvWindow* parentWindow() const override { return nullptr; }
  void endCancelled() override { std::abort(); }
  void showHeldBackSoon() override {}

private:
  template <typename Control>
  [[nodiscard]] Control& as(std::wstring_view role) const {
    return dynamic_cast<Control&>(*screen_.control(role));
  }

  CKvUiDialog dialog_;
  mutable bench::NoScreen screen_;
  std::wstring code_ = L"NEC";
  ZanWireTableReader reader_;
};

void oneChange(benchmark::State& state) {
  Tables tables;
  circuitData() = ZanCircuitData();
  circuitData().fla = 52.0;
  circuitData().useVoltageDrop = true;
  BenchForm form(tables.connection());
  ZanDlgWireSelectCtrlMgr manager;
  manager.attach(form);
  manager.Init();
  bool isLong = false;
  for ([[maybe_unused]] auto _ : state) {
    isLong = !isLong;
    form.list(WireControl::length).SetText(isLong ? L"100" : L"50");
    manager.OnChanged(WireControl::length);
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
