// A site that differs from the sample in everything: three motors and a load in one template, templates nested before,
// inside and below them, a title block first, forms that return 2 and insert nothing, options of one value, tables of
// another code in metric sizes, scales other than 1. Each way of building gives the same circuit.
#include "tests/config/mcc_page.h"
#include "tests/flows/config_site.h"
#include "tests/support/golden.h"
#include "text/split.h"

#include <doctest/doctest.h>

#include <algorithm>

using namespace brenvolt;
using namespace brenvolt::test;

namespace {

const std::vector<std::string> sheet = {
    "TTL|Title||||||(show TTL #scl)",
    "PRE|Before|x|Kind|In|1|1|(bring INPRE)",
    "MTR-A|Motor A|x|!MCC_CTRL|1|0|0|(show A #data)(bring INA WT01-A)||(find)",
    "MTR-B|Motor B|x|!MCC_CTRL|1|0|0|(show B #data)(bare)||(find)",
    "MTR-C|Motor C|x|!MCC_CTRL|1|0|0|(show C #data)||(find)",
    "LD-D|Load D|x|!PF_CTRL|1|0|0|(show D #data)||(find)",
    "CMP|Component||||||(show CMP #data)",
    "SUB|Below|x|Kind|Nest|1|1|(bring INSUB)",
    "||||Empty|2|2|(bare)",
    "BRK|Breaker|x|Frame|Small|1|1|(show BRK #data)",
    "||||Large|1",
    "INPRE|In before||||||(show INPRE #data)",
    "INA|In A|x|Kind|One|1|1|(show INA #data)",
    "||||Two|2|2|(show INA2 #data)",
    "INSUB|In below||||||(show INSUB #data)"};

/// CODE, order and settings. A nested template's markers have orders of their own, above all of these.
constexpr const char* markers = R"lisp((
  (TTL -5) (WT01-A 0 "_WIRETYPE=BLK_@S@;") (WT02-A 0 "_WIRETYPE=BLK_@S@;") (WT01E-A 0 "_WIRETYPE=GRN_@S@;")
  (WT01-B 0 "_WIRETYPE=RED_@S@;") (WT01-C 0 "_WIRETYPE=BLU_@S@;") (WT01-D 0 "_WIRETYPE=GRY_@S@;")
  (PRE 1) (CMP 2) (MTR-A 10) (CMP 11) (SUB 12) (CMP 20) (MTR-B 20) (CMP 21) (SUB 22) (MTR-C 30) (CMP 31) (LD-D 40)
  (CMP 41) (BRK 42) (SUB 43)))lisp";

std::string setupOf(const EngineeringTables& tables) {
  return R"lisp(
    (setq GBL_qn_bv_data '("c" nil 2.0 4.0 3.0 2.5 0))
    )lisp" +
         tables.lisp("IEC") + R"lisp(
    (defun show (name &rest what) (put (string-append name ": " (prin1-to-string what))))
    (defun bring (&rest codes) (dolist (code codes) (mark (intern code) 99)) 2)
    (mapc 'vz-korvo-defun '(show bring)))lisp";
}

std::string rating(const char* group, const char* row, const char* value) {
  return R"({"edit": "settings/)" + std::string(group) + R"(", "row": ")" + row + R"(", "to": ")" + value +
         R"("})";
}

std::string page(int number) {
  return R"({"select": "units", "path": [)" + std::to_string(number) + "]}";
}

/// Places in the tree of what the first session changes.
constexpr int pageOfA = 1, pageOfB = 3, emptyBelowB = 4, pageOfC = 5, pageOfD = 6, pageOfBreaker = 7,
              pages = 9;

std::vector<std::string> answering(const std::string& actions) {
  return {R"({"dialog": "ZanDlgConfig", "do": [)" + actions + "]}"};
}

std::string join(const std::vector<std::string>& actions) {
  std::string list;
  for (const std::string& action : actions)
    list += (list.empty() ? "" : ", ") + action;
  return list;
}

std::string allPages() {
  std::vector<std::string> actions;
  for (int number = 0; number < pages; ++number)
    actions.push_back(page(number));
  for (int number = pages; number > 0; --number)
    actions.push_back(page(number - 1));
  return join(actions);
}

/// The texts that forms have drawn, a line each, sorted: a direct build runs nested templates earlier.
std::string texts(const ConfigResult& result) {
  std::vector<std::string> lines;
  const std::wstring inner = trim(fromUtf8(result.drawn), L"()");
  for (const std::wstring& line : splitKeepingEmpty(replaceAll(inner, L"\" \"", L"\n"), L'\n'))
    lines.push_back(toUtf8(trim(line, L"\"")));
  std::sort(lines.begin(), lines.end());
  std::string text;
  for (const std::string& line : lines)
    text += line + "\n";
  return text;
}

std::string savedBy(const ConfigSite& site) {
  const std::string bytes = bytesOf(site.history());
  return toUtf8(fromUtf16Le(std::string_view(bytes).substr(2)));
}

/// "CMP=0.37" for each text: what was drawn, and the load of the motor whose data it had.
std::string motors(const std::string& drawn) {
  std::string text;
  for (const std::wstring& wide : splitKeepingEmpty(fromUtf8(drawn), L'\n')) {
    const std::string line = toUtf8(wide);
    if (line.empty()) continue;
    std::string load = "-";
    for (const char* each : {"0.37", "0.55", "0.75", "1.5"})
      if (line.find("\\\"" + std::string(each) + "\\\" \\\"kW") != std::string::npos) load = each;
    text += line.substr(0, line.find(':')) + "=" + load + " ";
  }
  return text;
}

} // namespace

TEST_CASE("three motors, a load and templates nested everywhere: each way in gives the same circuit") {
  const EngineeringTables tables;
  ConfigSite site(sheet);
  const std::string insertAll = pressing("insertAll");
  const std::string finish = pressing("ok");
  std::vector<std::string> actions;
  const struct {
    int page;
    const char* group;
    const char* type;
    const char* load;
    const char* current;
  } ratings[] = {
      {pageOfB, "Motor", "Induction", "0.55", "2.6"},
      {pageOfA, "Motor", "Induction", "0.37", "1.9"},
      {pageOfD, "Load", "Heater", "1.5", "6.5"},
      {pageOfC, "Motor", "Induction", "0.75", "40"}};
  for (const auto& each : ratings) {
    actions.push_back(page(each.page));
    for (const auto& [row, value] :
         {std::pair{"Type", each.type},
          {"Load", each.load},
          {"Units", "kW"},
          {"Full-load current (A)", each.current},
          {"Multiplier", "1.25"}})
      actions.push_back(rating(each.group, row, value));
  }
  for (const std::string& action :
       {page(emptyBelowB), choosing("Kind", "Empty"), page(pageOfBreaker), choosing("Frame", "Large"),
        insertAll, choosing("Kind", "Two"), insertAll, naming("Kept"), finish})
    actions.push_back(action);
  const ConfigResult first =
      site.run({.markers = markers, .steps = answering(join(actions)), .setup = setupOf(tables)});
  REQUIRE_EQ(first.failure, "");
  REQUIRE_EQ(first.answer, "T");
  const std::string drawn = texts(first);
  CHECK_EQ(
      motors(drawn),
      "A=0.37 B=0.55 BRK=1.5 C=0.75 CMP=1.5 CMP=0.37 CMP=0.37 CMP=0.55 CMP=0.55 CMP=0.75 D=1.5 INA2=0.37 "
      "INPRE=0.37 INSUB=1.5 INSUB=0.37 TTL=- ");
  CHECK(first.drawn.find("BLK_1.5mm2") != std::string::npos);
  CHECK(first.drawn.find("GRN_1.5mm2") != std::string::npos);
  CHECK_EQ(drawn.find(R"((\"\" )"), std::string::npos);
  const std::string saved = savedBy(site);
  const std::string name = site.historyNames();

  struct Row {
    const char* promise;
    std::string session; ///< empty: a direct build
  };
  const Row rows[] = {
      {"direct", ""},
      {"untouched", join({insertAll, insertAll, finish})},
      {"every page visited", join({allPages(), insertAll, allPages(), insertAll, allPages(), finish})},
      {"with insertions taken back",
       join(
           {page(0), pressing("insertCurrent"), page(pageOfA), pressing("insertCurrent"), pressing("undo"),
            pressing("undo"), insertAll, pressing("undo"), allPages(), insertAll, insertAll, pressing("undo"),
            insertAll, finish})},
      {"one by one",
       join(
           {page(pageOfA), pressing("insertUpToCurrent"), page(pageOfD), pressing("insertCurrent"),
            page(pageOfB), pressing("insertCurrent"), insertAll, finish})},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    const bool isDirect = row.session.empty();
    std::vector<std::string> steps = answering(row.session);
    if (isDirect)
      steps.erase(steps.begin());
    else
      steps.push_back(answerStep("DuplicateCircuitName", 1001));
    const ConfigResult result = site.run(
        {.markers = markers,
         .steps = steps,
         .historyName = name,
         .isDirect = isDirect,
         .setup = setupOf(tables)});
    CHECK_EQ(result.failure, "");
    CHECK_EQ(result.answer, "T");
    // This user sized conductors only: the grounding conductors are sized by the build, whatever the way in.
    CHECK_EQ(texts(result), drawn);
    CHECK_EQ(result.saved, first.saved);
    CHECK_EQ(result.markers, first.markers);
    CHECK_EQ(savedBy(site), saved);
  }
}
