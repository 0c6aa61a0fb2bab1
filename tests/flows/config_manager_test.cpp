// The calls between the configuration dialog and the managers of its units.
#include "config/widget_manager.h"
#include "data/circuit_data.h"
#include "flows/config_names.h"
#include "flows/config_walk.h"
#include "flows/dlg_config.h"
#include "tests/flows/config_site.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <doctest/doctest.h>

#include <utility>

using namespace brenvolt;
using namespace brenvolt::test;

namespace {

const std::string finish = pressing("ok");
const std::string insert = pressing("insertCurrent");

/// Has one group of one row, and records its calls.
class NotedManager final : public ZanWidgetManager {
public:
  NotedManager(std::wstring name, std::vector<std::string>& notes) : name_(std::move(name)), notes_(notes) {}

  void AttachWindow(ZanSettingsWnd* owner) override {
    ZanWidgetManager::AttachWindow(owner);
    owner->MakeGroups(page_, 1);
    ZanGroupSpec spec;
    spec.title = name_;
    spec.buttons = {{1, L"look up"}, {2, L"pick"}};
    spec.hasButtons = spec.notifyChanges = spec.liveChoices = true;
    spec.rows = {{L"Value", {L"", L""}}};
    groupAt(0)->Configure(spec, *this);
  }
  void OnLookup(ZanGroupCtrl*) override {
    constexpr std::uint32_t timer = 100;
    constexpr int milliseconds = 254;
    window()->dialog().HandOverEditor(EditorOwner::host);
    window()->dialog().HandOverEditor(EditorOwner::dialog);
    window()->StartTimer(timer, milliseconds, *this);
  }
  void OnPick(ZanGroupCtrl* group) override {
    std::vector<std::wstring> values;
    const bool isPicked =
        name_ == L"Motor" ? window()->dialog().PickMotor(values) : window()->dialog().PickLoad(values);
    note(isPicked ? L"picked" : L"not picked");
    for (const std::wstring& value : values)
      note(value);
    if (isPicked) group->WriteValue(0, values.front());
  }
  void OnTimer(std::uint32_t timer) override { note(L"timer " + formatInt(timer)); }
  bool OnCellChanged(std::int32_t, std::uint32_t, std::wstring_view text) override { return text != L"bad"; }
  bool GetChoices(
      std::int32_t, std::uint32_t, const std::vector<ZanGroupRow>&,
      std::vector<std::wstring>& list) override {
    list = {L"bad", L"good", L"one", L"two"};
    return true;
  }
  void Refresh() override { note(L"refresh"); }
  void SetLocked(bool locked) override {
    note(locked ? L"lock" : L"free");
    groupAt(0)->SetLocked(locked);
  }
  void ImportRows(const ZanAnnotationDataList& rows) override {
    note(L"import " + formatInt(static_cast<std::int64_t>(rows.items().size())));
  }
  [[nodiscard]] std::optional<ZanAnnotationDataList> ExportRows() const override {
    ZanAnnotationDataList rows;
    const std::wstring value = groupAt(0)->ReadRows().front().value();
    ZanAnnotationData row(value);
    for (const std::wstring& field : {std::wstring(L"title"), std::wstring(L"table"), value})
      row.AddText(field, {});
    rows.AddRow(std::move(row));
    return rows;
  }
  void SaveSelection(std::wstring_view markerCode, std::int32_t code, const ZanAnnotationDataList&) override {
    note(L"save " + std::wstring(markerCode) + L" " + formatInt(code));
  }
  void LoadSelection(std::wstring_view markerCode, std::int32_t code) override {
    note(L"load " + std::wstring(markerCode) + L" " + formatInt(code));
  }

private:
  void note(const std::wstring& what) { notes_.push_back(toUtf8(name_ + L": " + what)); }

  std::wstring name_;
  std::vector<std::string>& notes_;
};

/// Runs the dialog with a manager for the first choice of the breaker and one for the motor, for any choice.
std::vector<std::string> notesOf(const ConfigRun& run, const std::function<void(ZanBrenvolt&)>& lookAt) {
  ConfigSite site(
      {"BRK|Breaker|x|Frame|Small|1|1|(put small)", "||||Large|2|2|(put large)",
       "MOT|Pump|x|!MCC_CTRL|Motor|1|1|(put motor)", "|||Start|Direct|10|11|(put direct)",
       "||x||Soft|20|21|(put soft)"});
  std::vector<std::string> notes;
  const ConfigResult result = site.run(run, [&](ZanBrenvolt& build) {
    NotedManager breaker(L"Part", notes);
    NotedManager motor(run.setup.find("HMOT") == std::string::npos ? L"Load" : L"Motor", notes);
    forEachUnit(build.units(), [&](ZanConfigUnit& unit, const ZanConfigUnit*) {
      unit.control = unit.code == L"MOT";
      unit.BindManager(unit.control ? controlOptionCode : 1, unit.control ? &motor : &breaker);
    });
    const bool isFinished = runConfiguration(build, nullptr);
    lookAt(build);
    return isFinished;
  });
  CHECK_EQ(result.failure, "");
  CHECK_EQ(result.answer, "T");
  return notes;
}

} // namespace

TEST_CASE("groups follow the choices, are locked with their unit, and go back into it when a page is left") {
  const std::string noGroups = expecting("settings", R"("page": 3)");
  const std::string part = expecting("settings", R"("page": 1)");
  const ConfigRun run = {
      .markers = "((BRK 1) (MOT 2))",
      .steps = {configStep(
          {expecting("options/Frame", R"("choices": ["Small", "Large"])"),
           part,
           choosing("Frame", "Large"),
           noGroups,
           choosing("Frame", "Small"),
           part,
           R"({"edit": "settings/Part", "row": 1, "to": "bad", "refused": true})",
           R"({"edit": "settings/Part", "row": 1, "to": "good"})",
           R"({"press": "settings/Part", "button": 0})",
           insert,
           expecting("units", R"("path": ["Pump"])"),
           expecting("settings", R"("page": 2)"),
           choosing("Start", "Direct"),
           expecting("settings", R"("page": 2)"),
           selecting({"Breaker"}),
           expecting("settings/Part", R"("enabled": false)"),
           pressing("undo"),
           expecting("settings/Part", R"("enabled": true)"),
           choosing("Frame", "Large"),
           noGroups,
           pressing("insertAll"),
           finish})}};
  const std::vector<std::string> notes = notesOf(run, [](ZanBrenvolt& build) {
    const auto& units = build.units().units();
    REQUIRE_EQ(units.size(), 2);
    REQUIRE_EQ(units[0]->catalogRows.items().size(), 1);
    CHECK_EQ(units[0]->catalogRows.items().front().row->name, L"good");
    CHECK_EQ(units[0]->GetOptionCode(), 2);
    CHECK_EQ(units[1]->GetOptionCode(), 11);
  });
  const std::vector<std::string> expected = {
      "Part: import 0",   "Part: save BRK 1", "Load: import 0",   "Part: load BRK 1",
      "Part: load BRK 1", "Part: timer 100",  "Part: save BRK 1", "Part: lock",
      "Load: refresh",    "Part: free",       "Load: lock",
  };
  CHECK_EQ(notes, expected);
}

TEST_CASE("a motor or a load from the drawing becomes the circuit in hand, and the editor comes back") {
  struct Row {
    const char* setup;
    const char* name;
    std::vector<std::string> values;
  };
  const Row rows[] = {
      {R"lisp((define-block "HMOT" '(0 0) (lambda () (draw-line '(0 0) '(1 1))))
        (setq component (insert-block "HMOT" '(5 0)))
        (entity-data-set! component "ORL_QN_BV_CIRCPARAMS" (list "Induction;10;HP;230;3;60;1800;28.0;1.4")))lisp",
       "Motor",
       {"Induction", "10", "HP", "230", "3", "60", "1800", "28.0", "1.4"}},
      {R"lisp((define-block "WIDGET" '(0 0) (lambda () (draw-line '(0 0) '(1 1))))
        (setq component (insert-block "WIDGET" '(5 0)))
        (entity-data-set! component "ORL_QN_BV_CIRCPARAMS"
          (list "Oven;20;kW;480;3;60; ;24.06; ; ; ; ; ; ; ; ; ; ; ; ; ; ; ; ; ; ; ; ; ;!PF_CTRL")))lisp",
       "Load",
       {"Oven", "20", "kW", "480", "3", "60", "24.06", " "}},
  };
  for (const Row& row : rows) {
    CAPTURE(row.name);
    const std::string handle =
        ConfigSite::evaluate(std::string(row.setup) + "(intern (entity-handle component))");
    const std::string press = R"({"press": "settings/)" + std::string(row.name) + R"(", "button": 1})";
    const std::string shows = R"("row": 1, "column": 1, "is": )";
    const ConfigRun run = {
        .markers = "((MOT 1))",
        .steps =
            {configStep({press}), R"({"dialog": "pick", "do": [{"press": "cancel"}]})",
             configStep({expecting("settings/" + std::string(row.name), shows + R"("")"), press}),
             // The line of the sheet is not a component: the prompt is repeated.
             R"({"dialog": "pick", "do": [{"pick": ")" +
                 ConfigSite::evaluate("(intern (entity-handle (car (entities-in-space))))") + R"("}]})",
             R"({"dialog": "pick", "do": [{"pick": ")" + handle + R"("}]})",
             configStep(
                 {expecting("settings/" + std::string(row.name), shows + "\"" + row.values[0] + "\""), insert,
                  finish})},
        .setup = row.setup};
    const std::vector<std::string> notes = notesOf(run, [](ZanBrenvolt&) {});
    std::vector<std::string> expected = {"import 0", "refresh", "not picked", "picked"};
    expected.insert(expected.end(), row.values.begin(), row.values.end());
    expected.emplace_back("lock");
    for (std::string& note : expected)
      note.insert(0, ": ").insert(0, row.name);
    CHECK_EQ(notes, expected);
    CHECK_EQ(toUtf8(circuitData().type), row.values[0]);
    CHECK_EQ(toUtf8(circuitData().voltage), row.values[3]);
    CHECK_EQ(circuitData().fla, toDouble(fromUtf8(row.values[row.values.size() - 2])));
    CHECK_EQ(circuitData().speed.empty(), std::string_view(row.name) == "Load");
  }
}

TEST_CASE("names: the first free number is proposed, and the long form keeps the blank of a gap") {
  struct Row {
    const wchar_t* circuit;
    std::vector<std::wstring> taken;
    const char* proposal;
  };
  std::vector<std::wstring> many;
  for (int number = 1; number <= 99; ++number)
    many.push_back(proposeName(L"C", many));
  const Row rows[] = {
      {L"C", {}, "C (001)"},           {L"C", {many.begin(), many.begin() + 6}, "C (007)"},
      {L"C", many, "C (100)"},         {L"C", {L"my c (001) [x]", L"C (003)"}, "C (002)"},
      {L"C", {L"D (001)"}, "C (001)"}, {L"%s {0}", {}, "%s {0} (001)"},
  };
  for (const Row& row : rows)
    CHECK_EQ(toUtf8(proposeName(row.circuit, row.taken)), row.proposal);

  ZanCircuitData circuit;
  CHECK_EQ(longName(L"N", circuit), L"N");
  circuit.type = L"Induction";
  circuit.units = L"HP";
  circuit.speed = L"1800";
  for (const wchar_t* name : {L"%s", L"%s [Induction  HP    1800]"})
    CHECK_EQ(longName(name, circuit), L"%s [Induction  HP    1800]");
  CHECK_EQ(longName(L"N [spare]", circuit), L"N [spare] [Induction  HP    1800]");
}
