// The configuration dialog without a screen: opened on circuits of 10 and 200 units, pages switched with the tables in a
// file, and one unit inserted. Opening 200 units has to stay below 100 ms, a switch below 5 ms, and an insertion may
// cost 1.5 times as much among 200 units as among 10.
#include "build/driver.h"
#include "config/widget_manager_maker.h"
#include "data/engineering_columns.h"
#include "flows/dlg_config.h"
#include "host/resources.h"
#include "platform/tables.h"
#include "platform/workbook_book.h"
#include "simhost/host/session.h"
#include "simhost/ui/dialog_model.h"
#include "simhost/ui/forms.h"
#include "simhost/ui/gestures.h"
#include "simhost/ui/grid_model.h"
#include "simhost/ui/pages_model.h"
#include "simhost/ui/tree_model.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <memory>

namespace {

using namespace brenvolt;
namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

/// The motor's unit, then breakers with a table of parts each: what a large lineup asks. `site-database` is set by the
/// bench.
constexpr std::wstring_view product = LR"lisp(
(setq GBL_qn_electcodestd "NEC")
(define-block "ZAN_BV_MARKER_BLOCK" '(0 0) (lambda ()
  (draw-attribute-definition "CODE" '(0 0) "" 1.0) (draw-attribute-definition "ORDER" '(0 0) "" 1.0)))
(defun mark (code order)
  (insert-block "ZAN_BV_MARKER_BLOCK" (list (* 10.0 order) 0.0) 1.0 0.0 "0"
    (list (cons "CODE" code) (cons "ORDER" (number->string order)))))
(defun place-markers (count)
  (mark "MCTL" 1)
  (dotimes (i (- count 1)) (mark (string-append "B" (number->string i)) (+ i 2))))
(defun put (xyz) (draw-line xyz (list (car xyz) 20.0)) T)
(defun c:zan_bv_figure_mccdb_fnam () site-database)
(defun c:zan_bv_inch_or_metric () 0)
(defun zan_get_active_dwg_wiretype () (wire-layers))
(defun zan_get_activedrawing_wiretype_settings (layer) (wire-layer-settings layer))
(mapc 'vz-korvo-defun '(put zan_get_active_dwg_wiretype zan_get_activedrawing_wiretype_settings))
)lisp";

/// Tables and workbooks in a folder that goes at the end.
class Files final {
public:
  Files() {
    if (!importTables(database(), {L"site/tables"}, engineeringImport()).isDone()) std::abort();
  }
  [[nodiscard]] std::wstring database() const { return fromUtf8((folder_ / "tables.db").string()); }

  [[nodiscard]] std::wstring workbook(std::int64_t units) const {
    std::wstring file = fromUtf8((folder_ / (std::to_string(units) + ".xls")).string());
    if (fs::exists(toUtf8(file))) return file;
    BookSheet sheet;
    sheet.name = L"S";
    sheet.rows.push_back(
        {L"CODE", L"Title", L"X", L"Group", L"Option", L"Value", L"Code", L"First", L"Second", L"Rules",
         L"Table", L"Title"});
    sheet.rows.push_back(
        {L"MCTL", L"Motor", L"x", L"!MCC_CTRL", L"1", L"0", L"0", L"(put #xyz)", L"", L"(look)(look)"});
    for (std::int64_t i = 0; i < units - 1; ++i) {
      sheet.rows.push_back(
          {L"B" + formatInt(i), L"Breaker " + formatInt(i), L"x", L"Kind", L"Fixed", L"1", L"1",
           L"(put #xyz)", L"", L"(look @table)", L"CB", L"Breaker"});
      sheet.rows.push_back({L"", L"", L"", L"", L"Withdrawable", L"2", L"2", L"(put #xyz)"});
    }
    if (saveWorkbook(file, {sheet})) std::abort();
    return file;
  }

private:
  test::TemporaryFolder folder_;
};

const Files& files() {
  static const Files made;
  return made;
}

/// A dialog that nobody shows; the bench works on it while it runs.
class BenchDialog final : public simhost::DialogModel {
public:
  BenchDialog(const simhost::Form& form, CKvUiDialog& dialog, const std::function<void(BenchDialog&)>& work)
      : DialogModel(form, dialog), work_(work) {}
  void startTimer(int, int) override {}
  void killTimer(int) override {}
  void run() override {
    work_(*this);
    if (!isEnded()) access().end(kvui::cancel);
  }
  /// Presses the button of a role.
  void press(std::wstring_view role) {
    if (simhost::Gestures(*this).press(*find(role))) std::abort();
  }
  void edit(std::wstring_view group, int row, const wchar_t* text) {
    auto& model = dynamic_cast<simhost::GroupModel&>(*find(group));
    auto answer = simhost::CellAnswer::refused;
    if (simhost::Gestures(*this).editCell(model.grid(), row, 1, text, answer)) std::abort();
    if (answer != simhost::CellAnswer::taken) std::abort();
  }
  /// Chooses a motor on the first unit's page: without one no parts are stored or read.
  void chooseMotor() {
    int row = 0;
    for (const wchar_t* text : {L"Induction", L"10", L"HP", L"460", L"3", L"60", L"1800"})
      edit(L"settings.1.0", ++row, text);
  }
  [[nodiscard]] simhost::TreeModel& units() { return dynamic_cast<simhost::TreeModel&>(*find(L"units")); }

private:
  const std::function<void(BenchDialog&)>& work_;
};

/// A window system without questions.
class BenchWindows final : public simhost::WindowSystem {
public:
  std::function<void(BenchDialog&)> work;

  [[nodiscard]] simhost::TaskAnswer askTask(const simhost::TaskQuestion&) override {
    return {kvui::ok, false};
  }
  [[nodiscard]] simhost::EntityPick pickEntity(const std::wstring&, bool) override { return {}; }
  [[nodiscard]] simhost::FileAnswer askFile(
      const simhost::FileQuestion&, const simhost::FileEvents&) override {
    return {};
  }
  [[nodiscard]] std::unique_ptr<simhost::DialogWindow> openDialog(
      const std::wstring& form, CKvUiDialog& dialog) override {
    return std::make_unique<BenchDialog>(simhost::loadForm(formFolder(), form), dialog, work);
  }
  bool showMessage(const std::wstring&) override { std::abort(); }
  bool showHelp(const std::wstring&) override { return false; }
  [[nodiscard]] KvWindow* mainWindow() override { return nullptr; }
  [[nodiscard]] KvWindow* foregroundWindow() override { return nullptr; }
  [[nodiscard]] KvWindow* promptFrame() override { return &frame_; }
  void showWaitCursor(bool) override {}
  [[nodiscard]] bool messageWaiting() override { return false; }
  bool pumpMessage() override { return true; }
  void postQuit() override {}
  [[nodiscard]] const std::wstring& failure() const override { return failure_; }

private:
  KvWindow frame_;
  std::wstring failure_;
};

/// A host with a template of so many units in its drawing.
class Circuit final {
public:
  explicit Circuit(std::int64_t units)
      : session_({}, windows_),
        document_(session_.openDocument(L"", std::make_unique<simhost::DrawingDatabase>())) {
    setResourceModule(kvdsLoadResourceModule(resourceModuleName));
    if (resourceModule() == nullptr) std::abort();
    document_.interpreter().setValue(L"site-database", simhost::lisp::Value::string(files().database()));
    document_.interpreter().run(product, L"bench");
    document_.interpreter().run(L"(place-markers " + formatInt(units) + L")", L"bench");
    ZanBuildArgs args;
    args.workbook = files().workbook(units);
    args.worksheet = L"S";
    args.circuit = L"Lineup";
    args.type = L"Bench";
    build_ = std::make_unique<ZanBrenvolt>(
        std::move(args), LentValues{circuit_, {acceptedTables_, nullptr}, lastMarkerId_});
    const ResourceScope resources;
    build_->readBuildData();
    if (!build_->loadCatalog() || !build_->readMarkers() || !build_->prepare(BuildKind::interactive))
      std::abort();
  }
  Circuit(const Circuit&) = delete;
  Circuit& operator=(const Circuit&) = delete;
  ~Circuit() {
    build_.reset();
    setResourceModule(nullptr);
  }

  /// Runs the dialog; `work` happens between its opening and its end. The drawing is taken back after it.
  void configure(std::function<void(BenchDialog&)> work) {
    const ResourceScope resources;
    windows_.work = std::move(work);
    if (runConfiguration(*build_, nullptr)) std::abort();
  }

private:
  BenchWindows windows_;
  simhost::Session session_;
  simhost::Document& document_;
  CircuitContext circuit_;
  AcceptedTables acceptedTables_;
  std::int32_t lastMarkerId_ = 0;
  std::unique_ptr<ZanBrenvolt> build_;
};

void setTime(benchmark::State& state, Clock::duration time, int count = 1) {
  state.SetIterationTime(std::chrono::duration<double>(time).count() / count);
}

/// From the call of the dialog to its first event.
void open(benchmark::State& state) {
  for ([[maybe_unused]] auto _ : state) {
    Circuit circuit(state.range(0));
    Clock::duration time{};
    const Clock::time_point start = Clock::now();
    circuit.configure([&](BenchDialog&) { time = Clock::now() - start; });
    setTime(state, time);
  }
}

std::size_t storedParts() {
  ZanOleDbConnection connection;
  const std::wstring init = ZanOleDbHelper::FormatConnectString(files().database(), L"", L"Mode=Read");
  if (connection.OpenFromInitializationString(init, false, true) < 0) std::abort();
  ZanOleDbCommand command;
  command.SetConnection(&connection);
  command.SetCommandText(L"SELECT [MARKER] FROM [CATALOGSEL]");
  if (command.Execute() != dbStatus::success) std::abort();
  std::size_t rows = 0;
  while (command.FetchNext() == dbStatus::success)
    ++rows;
  return rows;
}

/// From one breaker's page to the next one's: the parts of the one are stored, those of the other read.
void switchPage(benchmark::State& state) {
  constexpr int switches = 100;
  constexpr std::size_t pages = 9;
  for ([[maybe_unused]] auto _ : state) {
    Circuit circuit(state.range(0));
    Clock::duration time{};
    circuit.configure([&](BenchDialog& dialog) {
      const std::vector<int> items = dialog.units().children(0);
      if (items.size() != static_cast<std::size_t>(state.range(0))) std::abort();
      dialog.chooseMotor();
      simhost::Gestures hand(dialog);
      for (std::size_t page = 1; page <= pages; ++page) {
        if (hand.selectItem(dialog.units(), items[page])) std::abort();
        dialog.edit(L"settings." + formatInt(static_cast<std::int64_t>(page) + 1) + L".0", 1, L"Nordhaven");
      }
      const Clock::time_point start = Clock::now();
      for (std::size_t i = 0; i < switches; ++i)
        if (hand.selectItem(dialog.units(), items[1 + i % pages])) std::abort();
      time = Clock::now() - start;
    });
    if (storedParts() != pages) std::abort();
    setTime(state, time, switches);
  }
}

constexpr int insertedImage = 2;

/// One unit after the other; the run with all that the dialog does around it.
void insertUnit(benchmark::State& state) {
  constexpr int runs = 5;
  for ([[maybe_unused]] auto _ : state) {
    Circuit circuit(state.range(0));
    Clock::duration time{};
    circuit.configure([&](BenchDialog& dialog) {
      const Clock::time_point start = Clock::now();
      for (int i = 0; i < runs; ++i)
        dialog.press(L"insertCurrent");
      time = Clock::now() - start;
      const std::vector<int> items = dialog.units().children(0);
      if (dialog.units().Image(items[runs - 1]) != insertedImage) std::abort();
    });
    setTime(state, time, runs);
  }
}

void smallAndLarge(benchmark::internal::Benchmark* bench) {
  bench->ArgName("units")->Arg(10)->Arg(200)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
}
BENCHMARK(open)->Apply(smallAndLarge);
BENCHMARK(switchPage)->Apply(smallAndLarge);
BENCHMARK(insertUnit)->Apply(smallAndLarge);

} // namespace

BENCHMARK_MAIN();
