// Sessions of the circuit selection, from LISP, through the windows.
#include "tests/flows/circuit_site.h"
#include "text/encoding.h"
#include "text/split.h"

#include <doctest/doctest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

using namespace brenvolt;
using test::CircuitSite;
using test::circuitStep;
using test::SheetTexts;
using test::stepOf;

namespace {

constexpr wchar_t dialogKey[] = L"ZanBrenvolt::ZanDlgCircuit";
const std::string chooseReversing = R"({"select": "circuits", "path": ["Motors", "Reversing"]}, )";
const std::string chooseDirect = R"({"select": "circuits", "path": ["Motors", "Direct"]}, )";

/// The result with the workbook's path shortened.
std::string select(test::PickerSession& session, const CircuitSite& site) {
  return toUtf8(
      replaceAll(fromUtf8(session.eval("(zan_bv_select_circuit)")), fromUtf8(site.workbook()), L"BOOK"));
}

/// Holds a file as another program would: as one, or a range of it.
class HeldFile final {
public:
  enum class Lock { file, range };
  HeldFile(const std::string& path, Lock lock) : descriptor_(::open(path.c_str(), O_RDWR)) {
    struct flock range = {};
    range.l_type = F_WRLCK;
    REQUIRE_EQ(
        lock == Lock::file ? ::flock(descriptor_, LOCK_EX) : ::fcntl(descriptor_, F_OFD_SETLK, &range), 0);
  }
  HeldFile(const HeldFile&) = delete;
  HeldFile& operator=(const HeldFile&) = delete;
  ~HeldFile() { ::close(descriptor_); }

private:
  int descriptor_;
};

std::string taskStep(const std::string& key, int button) {
  return stepOf("ZanBrenvolt." + key, R"({"press": )" + std::to_string(button) + "}");
}

} // namespace

TEST_CASE("the answer is what the insertion and the build need, and the next selection starts from it") {
  const CircuitSite site;
  const auto session = site.session(
      circuitStep(
          R"({"expect": "ok", "enabled": false}, {"expect": "configure", "enabled": false},
             {"expect": "history", "enabled": false, "choices": ["New configuration"]},
             {"expect": "circuits", "items": ["Feeds", "  Heater", "Motors", "  Direct", "  Reversing"]},
             {"expect": "rungSpacing", "text": "20"}, {"expect": "spacing", "text": "30"},
             {"select": "circuits", "path": ["Motors"]}, {"expect": "ok", "enabled": false},)" +
          chooseReversing + R"({"set": "circuitScale", "to": "2.5"}, {"press": "ok"})") +
      "," +
      circuitStep(
          R"({"expect": "circuits", "path": ["Motors", "Reversing"]}, {"expect": "circuitScale", "text": "2.5"},
             {"expect": "history", "choices": ["New configuration", "Pump", "Fan"], "enabled": true},
             {"press": "configure"})") +
      "," + circuitStep(chooseDirect + R"({"press": "cancel"})"));
  CHECK_EQ(select(*session, site), R"(("rev.json" ("BOOK" "M_REV" "Motors" "Reversing" "" 1 "" 0) nil nil))");
  CHECK_EQ(session->eval("GBL_qn_bv_data"), R"(("Motors" nil 2.5 20.0 30.0 1.5 0 "zan_brenvolt.xls"))");
  const std::string last = session->eval("(entity-handle (draw-line '(0 0) '(1 1)))");
  CHECK_EQ(
      select(*session, site), R"(("rev.json" ("BOOK" "M_REV" "Motors" "Reversing" "" 0 )" + last + " " +
                                  session->eval("(undo-count)") + ") nil nil)");
  CHECK_EQ(select(*session, site), "nil");
  CHECK_EQ(session->kept(dialogKey, L"LastType"), "Reversing");
}

TEST_CASE("a history shows what it holds, brings its scales and stands instead of an existing circuit") {
  const CircuitSite site;
  const auto session = site.session(circuitStep(
      chooseReversing + R"({"set": "componentScale", "to": "9"}, {"choose": "history", "to": "Pump"},
          {"expect": "summary", "rows": 2, "header": ["", "Name", "Value"], "row": 1, "texts": ["", "Load", "10"]},
          {"expect": "summary", "row": 2, "texts": ["", "Switch", "Breaker"], "enabled": true},
          {"expect": "componentScale", "text": "2", "enabled": false}, {"expect": "circuitScale", "text": "3.5"},
          {"expect": "spacing", "text": "30"}, {"expect": "usePresets", "enabled": false},
          {"expect": "useExisting", "enabled": false}, {"expect": "deleteHistory", "enabled": true},
          {"choose": "history", "to": "Fan"}, {"expect": "componentScale", "text": "1.5"},
          {"choose": "history", "index": 0}, {"expect": "summary", "rows": 0, "enabled": false},
          {"expect": "componentScale", "text": "1.5", "enabled": true}, {"expect": "deleteHistory", "enabled": false},
          {"choose": "history", "to": "Pump"}, {"press": "ok"})"));
  CHECK_EQ(
      select(*session, site), R"(("rev.json" ("BOOK" "M_REV" "Motors" "Reversing" "Pump" 1 "" 0) nil nil))");
  CHECK_EQ(session->eval("GBL_qn_bv_data"), R"(("Motors" nil 3.5 20.0 30.0 2.0 0 "zan_brenvolt.xls"))");
}

TEST_CASE("a deleted history is gone from the file whichever way the dialog is left") {
  const std::string remove = chooseReversing + R"({"choose": "history", "to": "Pump"}, )";
  const std::string gone =
      R"({"expect": "history", "choices": ["New configuration", "Fan"], "text": "New configuration"},
         {"expect": "circuitScale", "text": "1"}, )";
  struct Row {
    const char* promise;
    std::string steps;
    bool isDeleted;
  };
  const std::string button = R"({"press": "deleteHistory"})";
  const std::string key = R"({"key": "Delete", "in": "history"})";
  const Row rows[] = {
      {"kept",
       circuitStep(remove + button) + "," + taskStep("DeleteHistory", 7) + "," +
           circuitStep(R"({"expect": "history", "text": "Pump"}, {"press": "cancel"})"),
       false},
      {"cancelled behind it",
       circuitStep(remove + key) + "," + taskStep("DeleteHistory", 6) + "," +
           circuitStep(gone + R"({"close": "frame"})"),
       true},
      {"accepted behind it",
       circuitStep(remove + button) + "," + taskStep("DeleteHistory", 6) + "," +
           circuitStep(gone + R"({"press": "configure"})"),
       true},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    const CircuitSite site;
    site.session(row.steps)->eval("(zan_bv_select_circuit)");
    const std::string file = site.history();
    CHECK_EQ(file.find("\"Pump\"") == std::string::npos, row.isDeleted);
    CHECK_NE(file.find("\"Fan\""), std::string::npos);
  }
}

TEST_CASE("what is wrong with workbook, history or memory is told or passed over, and never written over") {
  const std::string leave = circuitStep(R"({"press": "cancel"})");
  struct Row {
    const char* promise;
    SheetTexts sheets;
    const char* history;
    const char* prepare;
    std::string steps;
  };
  const SheetTexts usual = CircuitSite::usualSheets();
  const std::string plain = circuitStep(
      chooseReversing + R"({"expect": "history", "choices": ["New configuration"]}, {"press": "cancel"})");
  const std::string startOver =
      circuitStep(R"({"expect": "circuits", "path": []}, {"expect": "ok", "enabled": false},
                     {"press": "cancel"})");
  const std::string remember =
      circuitStep(R"({"select": "circuits", "path": ["Feeds", "Heater"]}, {"press": "ok"})");
  const Row rows[] = {
      {"no such workbook", usual, "", "(setq GBL_qn_bv_data (list \"\" nil 1.0 1.0 1.0 1.0 0 \"none.xls\"))",
       taskStep("ErrorReadingConfigurationFile3", 1)},
      {"no file behind the name", {}, "", "", taskStep("ErrorReadingConfigurationFile2", 1)},
      {"no list of circuits",
       {{"M_DOL", {"a|b", "1|2"}}},
       "",
       "",
       taskStep("ErrorReadingConfigurationFile2", 1)},
      {"an unreadable symbol: the default workbook", usual, "", "(setq GBL_qn_bv_data 5)",
       circuitStep(R"({"expect": "rungSpacing", "text": "1"}, {"press": "cancel"})")},
      {"no presets: their choice stays off",
       {usual.front()},
       "",
       "",
       circuitStep(
           chooseDirect +
           R"({"expect": "usePresets", "enabled": false}, {"expect": "choosePresets", "enabled": false},
                             {"press": "cancel"})")},
      {"a damaged history file", usual, "<BrenvoltHistory Vers", "", plain},
      {"a foreign one", usual, "<Other><Circuit Name=\"Motors\"/></Other>", "", plain},
      {"one that is too old", usual,
       "<BrenvoltHistory Version=\"0.9\"><Circuit Name=\"Motors\"><CircuitType Name=\"Reversing\">"
       "<History Name=\"Old\"/></CircuitType></Circuit></BrenvoltHistory>",
       "", plain},
      {"the last circuit is gone", usual, "", "(zan_bv_select_circuit)", remember + "," + startOver},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    const CircuitSite site(row.sheets, CircuitSite::usualProject());
    if (*row.history != '\0') site.writeHistory(row.history);
    const std::string before = site.history();
    const auto session = site.session(row.steps);
    session->eval(row.prepare);
    if (std::string(row.promise) == "the last circuit is gone")
      site.writeWorkbook({{"ZAN_CIRCS", {"a|b|c|d", "Motors|Direct|x|y"}}});
    CHECK_EQ(session->eval("(zan_bv_select_circuit)"), "nil");
    CHECK_EQ(site.history(), before);
    CHECK_EQ(session->lisp().host().documents().resourceDepth(), 0);
  }
}

TEST_CASE("a workbook that is open elsewhere is asked about once") {
  for (const HeldFile::Lock lock : {HeldFile::Lock::file, HeldFile::Lock::range}) {
    const CircuitSite site;
    const HeldFile held(site.workbook(), lock);
    const auto session = site.session(
        taskStep("ErrorReadingConfigurationFile", 7) + "," + taskStep("ErrorReadingConfigurationFile", 6) +
        "," + circuitStep(chooseDirect + R"({"press": "ok"})"));
    CHECK_EQ(select(*session, site), "nil");
    CHECK_EQ(select(*session, site), R"(("dol.json" ("BOOK" "M_DOL" "Motors" "Direct" "" 1 "" 0) nil nil))");
  }
}

TEST_CASE("the trace flag of the product's symbol counts from the reading on") {
  const CircuitSite site;
  const auto session = site.session(circuitStep(R"({"press": "cancel"})"));
  session->eval("(setq GBL_qn_bv_data '(\"M\" nil 1.0 1.0 1.0 1.0 1))");
  session->eval("(zan_bv_select_circuit)");
  const std::string printed = session->lisp().takePrinted();
  CHECK_MESSAGE(printed.find("(c:zan_find_file \"zan_brenvolt.xls\" 3)") != std::string::npos, printed);
}

TEST_CASE("the preview names the template, and the panes come up as they were left by OK") {
  const CircuitSite site;
  const auto session = site.session(
      circuitStep(
          R"({"expect": "preview", "visible": false}, {"expect": "previewToggle", "label": "Show preview"},
             {"press": "previewToggle"}, {"expect": "preview", "visible": true, "text": ""},)" +
          chooseDirect + R"({"expect": "preview", "text": "/templates/dol.json"},
             {"expect": "previewToggle", "label": "Hide preview"}, {"press": "ok"})") +
      "," + circuitStep(R"({"expect": "preview", "visible": true, "text": "/templates/dol.json"},
                           {"press": "previewToggle"}, {"press": "cancel"})"));
  auto& settings = session->lisp().host().settings();
  settings.setValue(dialogKey, L"SplitWndBar", L"240");
  settings.setValue(dialogKey, L"SplitWndCX", L"800");
  settings.setValue(dialogKey, L"SplitWndCY", L"six");
  session->eval("(zan_bv_select_circuit)(zan_bv_select_circuit)");
  CHECK_EQ(session->kept(dialogKey, L"SplitWndBar"), "240");
  CHECK_EQ(session->kept(dialogKey, L"SplitWndCX"), "800");
  CHECK_EQ(session->kept(dialogKey, L"SplitWndCY"), "0");
  CHECK_EQ(session->kept(dialogKey, L"SplitWndState"), "1");
}
