// What `brenvolt draw` takes over, refuses and saves.
#include "site_tool.h"
#include "tests/support/golden.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <filesystem>

using namespace brenvolt;

namespace {

constexpr SampleCircuit motor = {"", "Three-phase motors", "Direct on line", "Pump 10 HP"};

/// The first text of entity data of an application.
std::string recordOf(const std::string& drawing, const std::string& application) {
  const std::size_t begin = drawing.find('"' + application + '"');
  return begin == std::string::npos ? "" : drawing.substr(begin, drawing.find("\"]", begin) - begin);
}

} // namespace

TEST_CASE("every wrong value of a preset is named at once, and fields of a rebuild need a preset") {
  const SiteCopy site;
  const ToolRun run = site.draw(motor, "a.json", {"--preset", "DISC=99,1;DISC=10,x;NOPE=1;MS=1,2,3,4;OL=-1"});
  CHECK(run.exitCode == 3);
  checkHolds(
      run.errors, {"preset \"DISC=99,1\": \"Disconnecting means\" has no option 99; its options are ",
                   "preset \"DISC=10,x\": must be CODE=1,2", "preset \"NOPE=1\": must be CODE=1,2",
                   "which is one value too many (4)"});
  CHECK(run.errors.find("OL=") == std::string::npos);
  CHECK(site.draw(motor, "a.json", {"--params", "\"a\""}).exitCode == 1);
  CHECK(site.draw(motor, "a.json", {"--wires", "((\"a\" \"b\" \"1\"))"}).exitCode == 1);
  const auto drawn = [&site](const std::string& type, const std::string& current) {
    return site.draw(
        motor, "b.json",
        {"--preset", "OL=1", "--params",
         '"' + type + R"(";"10";"HP";"460";"3";"60";"1800";")" + current + "\";\"1.25\""});
  };
  CHECK(drawn("Induction", "65,5").exitCode == 3);
  const ToolRun unknown = drawn("Inducton", "14");
  CHECK(unknown.exitCode == 5);
  CHECK(
      (unknown.errors + unknown.output).find("has no formulas for motors of the type \"Inducton\"") !=
      std::string::npos);
  for (const char* scale : {"0", "-1", "x", "nan"})
    CHECK(site.draw(motor, "a.json", {"--scale", scale}).exitCode == 3);
  const ToolRun blank =
      site.draw(motor, "a.json", {"--preset", "OL=1", "--wires", R"((("14 AWG" "x" "1")))"});
  CHECK(blank.exitCode == 3);
  CHECK(blank.errors.find("write the size without blanks: \"14AWG\"") != std::string::npos);
  // 12.5 A: 14 AWG, and the next breaker above 15.6 A.
  const ToolRun feed = site.draw(
      {"", "Power feeds", "Single-phase", "Heater 2 kW"}, "c.json",
      {"--preset", "DISC=10,1", "--params", R"("Heater";"3";"kW";"240";"1";"60";"";"12.5";"1.25")"});
  CHECK(feed.exitCode == 5);
  CHECK(feed.errors.find("CB1 20A (14AWG: 15A at most): choose larger conductors") != std::string::npos);
}

TEST_CASE("a preset changes the choices of a saved configuration; the rest of it stays, or is the motor that "
          "is given") {
  const SiteCopy site;
  const auto draw = [&site](std::vector<std::string> words) {
    words.insert(words.end(), {"--history", motor.history, "--save-history", "Mine"});
    const ToolRun run = site.draw(motor, "a.json", words);
    REQUIRE_MESSAGE(run.exitCode == 0, run.errors);
    return site.folder().read("a.json") + site.run({"history", "show", "--site", site.site(), "--circuit",
                                                    motor.circuit, "--type", motor.type, "Mine"})
                                              .output;
  };
  const std::string before = draw({});
  checkHolds(
      before, {"Disconnecting means: Circuit breaker", "Overload relay: Thermal", "Induction;10;HP;460"});
  const std::string after = draw({"--preset", "DISC=20,1;OL=2"});
  checkHolds(
      after, {"Disconnecting means: Fusible switch", "Overload relay: Electronic", "ZDISC3", "ZSSOL3",
              "Pilot lights: Running and stopped"});
  for (const char* record : {"ORL_QN_BV_CIRCPARAMS", "ORL_QN_BV_CIRCPARAMS2"}) {
    CHECK(recordOf(after, record).find("10") != std::string::npos);
    CHECK(recordOf(after, record) == recordOf(before, record));
  }
  const std::string larger =
      draw({"--preset", "OL=2", "--params", R"("Induction";"50";"HP";"460";"3";"60";"1800";"65";"1.25")"});
  checkHolds(larger, {"BLK_2AWG", "GRN_6AWG"});
  CHECK(larger.find("BLK_10AWG") == std::string::npos);

  // A part that was chosen for the saved motor is none for another one.
  std::string bytes = site.folder().read("site/zan_brenvolt.xml");
  const std::size_t marker = bytes.find(toUtf16Le(L"<Marker Code=\"DISC\""));
  REQUIRE(marker != std::string::npos);
  bytes.insert(
      bytes.find(toUtf16Le(L"<SelectOption"), marker),
      toUtf16Le(L"<Catalog><Property Name=\"TITLE\" Value=\"Circuit breaker\"/>"
                L"<Property Name=\"TABLE\" Value=\"CB\"/><Property Name=\"MFG\" Value=\"OWN\"/>"
                L"<Property Name=\"CAT\" Value=\"CB-OWN\"/></Catalog>"));
  static_cast<void>(site.folder().write("site/zan_brenvolt.xml", bytes));
  const auto isChosen = [](const std::string& text) { return text.find("CB-OWN") != std::string::npos; };
  CHECK(isChosen(draw({"--preset", "OL=2"})));
  CHECK_FALSE(isChosen(
      draw({"--preset", "OL=2", "--params", R"("Induction";"50";"HP";"460";"3";"60";"1800";"65";"1.25")"})));
  draw({});
  for (const auto& [choice, isKept] : {std::pair{"OL=2", true}, std::pair{"load=50", false}}) {
    site.done(
        {"rebuild", site.folder().path("a.json"), "--circuit", "MTR1", "--set", choice, "--site",
         site.site()});
    CHECK(isChosen(site.folder().read("a.json")) == isKept);
  }

  // A circuit that no configuration was taken for is not one of its name.
  site.drawn(motor, "b.json", {"--history", motor.history, "--save-history", "MTR1"});
  site.done(
      {"draw", "--site", site.site(), "--circuit", motor.circuit, "--type", motor.type, "--preset", "OL=1",
       "--params", R"("Induction";"10";"HP";"460";"3";"60";"1800";"14";"1.25")", "--out",
       site.folder().path("c.json")});
  site.done(
      {"rebuild", site.folder().path("c.json"), "--circuit", "MTR1", "--set", "OL=2", "--site", site.site()});
  CHECK_FALSE(isChosen(site.folder().read("c.json")));
  CHECK(site.folder().read("c.json").find("\"configuration\"") == std::string::npos);
}

TEST_CASE("a new wire size leaves the grounding wires of the record, whatever their layer is called") {
  const SiteCopy site;
  std::string drawing = site.drawn(motor, "a.json", {"--history", motor.history});
  for (std::size_t at = 0; (at = drawing.find("GRN_10AWG", at)) != std::string::npos;)
    drawing.replace(at, 9, "PE_10AWG");
  site.done(
      {"lisp", "--site", site.site(), "--drawing", site.folder().write("b.json", drawing), "--save",
       site.folder().path("c.json"), "-e",
       "(apply-wire-size (find-if (lambda (e) (entity-data e \"ORL_QN_BV_CIRCPARAMS\")) (entities-in-space)) "
       "\"6AWG\" nil)"});
  const std::string changed = site.folder().read("c.json");
  checkHolds(
      changed, {R"("layer":"BLK_6AWG")", R"("layer":"PE_10AWG")", R"((\"10AWG\" \"PE_10AWG\" \"3\"))"});
  CHECK(changed.find(R"("layer":"BLK_10AWG")") == std::string::npos);
}

TEST_CASE("a saved configuration is drawn in its own scales, unless others are given") {
  const SiteCopy site;
  const auto draw = [&site](const std::string& out, const std::vector<std::string>& words) {
    const ToolRun run = site.draw(motor, out, words);
    REQUIRE_MESSAGE(run.exitCode == 0, run.errors);
    return site.folder().read(out);
  };
  const std::vector<std::string> scales = {"--scale", "2", "--component-scale", "1.5"};
  std::vector<std::string> saving = scales;
  saving.insert(saving.end(), {"--history", motor.history, "--save-history", "Large"});
  draw("a.json", saving);
  const ToolRun show = site.run(
      {"history", "show", "--site", site.site(), "--circuit", motor.circuit, "--type", motor.type, "Large"});
  CHECK(show.output.find("component scale: 1.500000\ncircuit scale: 2.000000\n") != std::string::npos);
  std::vector<std::string> both = scales;
  both.insert(both.end(), {"--history", "Large"});
  const std::string large = draw("b.json", {"--history", "Large"});
  CHECK(large == draw("c.json", both));
  CHECK(large != draw("d.json", {"--history", "Large", "--scale", "1", "--component-scale", "1"}));
}

TEST_CASE("what a build saves is saved by the module; nothing is drawn without it") {
  const SiteCopy site;
  CHECK(site.draw(motor, "a.json", {"--save-history", ""}).exitCode == 3);
  const std::filesystem::path file = site.site() + "/zan_brenvolt.xml";
  const std::string before = test::bytesOf(file);
  std::filesystem::permissions(file, std::filesystem::perms::owner_read);
  const ToolRun refused = site.draw(motor, "a.json", {"--save-history", "New"});
  CHECK(refused.exitCode == 4);
  const std::string all = refused.errors + refused.output;
  checkHolds(all, {"The history file cannot be opened for writing: " + file.string()});
  CHECK_FALSE(site.folder().has("a.json"));
  std::filesystem::permissions(file, std::filesystem::perms::owner_all);
  const ToolRun control = site.draw(
      motor, "a.json",
      {"--save-history", "a\x01"
                         "b"});
  CHECK(control.exitCode == 4);
  CHECK((control.errors + control.output).find("control characters") != std::string::npos);
  CHECK(test::bytesOf(file) == before);
}
