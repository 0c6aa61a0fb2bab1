// The lookup of the window, the tool and an unattended build size the same circuits by the same rules: every random
// circuit goes through the model field by field and through the tool's texts, and the boundaries are made by
// construction.
#include "tests/data/table_fixture.h"

#include "data/auto_wire_size.h"
#include "data/wire_lookup.h"
#include "simhost/site/wire_request.h"
#include "text/numbers.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <random>
#include <tuple>

using namespace brenvolt;
using simhost::WireRequest;
using simhost::WireRequests;
using simhost::WireTexts;
using Option = simhost::WireField;

namespace {

class Dice final {
public:
  int below(int count) { return static_cast<int>(engine_() % static_cast<unsigned>(count)); }
  bool often() { return below(3) > 0; }
  std::wstring number(int hundredths) { return formatTrimmed((1 + below(hundredths)) / 100.0, 2); }
  template <typename Texts>
  std::wstring of(const Texts& texts) {
    return std::wstring(std::data(texts)[below(static_cast<int>(std::size(texts)))]);
  }
  std::mt19937& engine() { return engine_; }

private:
  std::mt19937 engine_{20260};
};

/// A circuit as texts of the tool and as changes of the lookup.
struct Circuit {
  WireTexts texts;
  std::vector<WireChange> conductor; ///< before the others: ranges hang on them
  std::vector<WireChange> changes;
  std::string told;
};

Circuit randomCircuit(Dice& dice) {
  constexpr std::wstring_view insulations[] = {L"THWN", L"THHN", L"TW"};
  constexpr std::wstring_view conductors[] = {L"3", L"5", L"8", L"15", L"50"};
  constexpr std::wstring_view raceways[] = {L"PVC", L"AL", L"STEEL"};
  Circuit circuit;
  const auto say = [&circuit](Option option, LookupField field, const std::wstring& text) {
    circuit.texts[option] = text;
    circuit.changes.push_back({field, text});
  };
  say(Option::fla, LookupField::current, dice.number(60000));
  say(Option::voltage, LookupField::voltage,
      dice.of(std::initializer_list<std::wstring_view>{L"230", L"460"}));
  say(Option::phase, LookupField::phase, dice.of(std::initializer_list<std::wstring_view>{L"1", L"3"}));
  if (dice.often()) say(Option::multiplier, LookupField::multiplier, L'1' + dice.number(99).substr(1));
  if (dice.often()) say(Option::extra, LookupField::extraCurrent, dice.number(5000));
  circuit.texts[Option::metal] = dice.of(std::initializer_list<std::wstring_view>{L"CU", L"AL"});
  circuit.conductor.push_back({LookupField::metal, circuit.texts[Option::metal]});
  circuit.texts[Option::insulation] = dice.of(insulations);
  const bool isContinuous = dice.often();
  circuit.texts[Option::continuous] = isContinuous ? dice.number(100) : L"off";
  circuit.changes.push_back({LookupField::continuousTick, isContinuous ? L"1" : L""});
  if (isContinuous)
    circuit.changes.push_back({LookupField::continuousFactor, circuit.texts[Option::continuous]});
  if (dice.often()) {
    circuit.texts[Option::fill] = dice.of(conductors);
    circuit.changes.push_back({LookupField::fillTick, L"1"});
  }
  if (dice.often()) {
    circuit.texts[Option::length] = dice.number(60000);
    circuit.texts[Option::units] = dice.of(std::initializer_list<std::wstring_view>{L"FT", L"M"});
    circuit.texts[Option::raceway] = dice.of(raceways);
    circuit.texts[Option::powerFactor] = dice.number(100);
    circuit.texts[Option::dropLimit] = dice.often() ? dice.number(900) : L"off";
    circuit.texts[Option::energyPrice] = dice.number(50);
    circuit.changes.push_back({LookupField::dropTick, L"1"});
    circuit.changes.push_back({LookupField::length, circuit.texts[Option::length]});
    circuit.changes.push_back({LookupField::lengthUnits, circuit.texts[Option::units]});
    circuit.changes.push_back({LookupField::powerFactor, circuit.texts[Option::powerFactor]});
    circuit.changes.push_back({LookupField::energyPrice, circuit.texts[Option::energyPrice]});
    const bool hasLimit = circuit.texts[Option::dropLimit] != L"off";
    circuit.changes.push_back({LookupField::dropLimitTick, hasLimit ? L"1" : L""});
    if (hasLimit) circuit.changes.push_back({LookupField::dropLimit, circuit.texts[Option::dropLimit]});
  }
  if (dice.below(3) == 0) {
    circuit.changes.push_back({LookupField::parallelTick, L"1"});
    say(Option::parallel, LookupField::parallelCount,
        dice.of(std::initializer_list<std::wstring_view>{L"2", L"4", L"6"}));
    say(Option::minimumSize, LookupField::parallelMinSize, L"1/0");
  }
  circuit.texts.hidesUndersized = dice.below(4) == 0;
  circuit.changes.push_back({LookupField::showUndersized, circuit.texts.hidesUndersized ? L"" : L"1"});
  for (const simhost::WireFieldRow& row : simhost::wireFields)
    if (const std::wstring& text = circuit.texts[row.field]; !text.empty())
      circuit.told += std::string(" --") + row.name + " " + toUtf8(text);
  return circuit;
}

std::string cellsOf(const std::vector<WireCandidate>& rows) {
  std::wstring text;
  for (const WireCandidate& row : rows) {
    for (const WireColumnRow& column : wireColumns)
      text += row.*column.cell + L'|';
    text += row.isOverloaded ? L"!\n" : L"\n";
  }
  return toUtf8(text);
}

} // namespace

TEST_CASE("the lookup's figures are those of the tool, whatever the order in which its fields are changed") {
  TableFixture tables(std::filesystem::path("site/tables"));
  WireRequests requests(*tables.connection());
  Dice dice;
  int withProposal = 0;
  for (int number = 0; number < 120; ++number) {
    Circuit circuit = randomCircuit(dice);
    CAPTURE(circuit.told);
    std::vector<simhost::WireFault> faults;
    const std::optional<WireRequest> request = requests.resolve(circuit.texts, faults);
    REQUIRE_MESSAGE(request.has_value(), (faults.empty() ? "no fault" : faults.front().reason));
    const WireLookupResult tool = requests.lookUp(*request);

    WireTableCache cache(*tables.connection());
    WireLookup lookup(cache, L"NEC");
    REQUIRE_FALSE(lookup.begin({}, WithoutTables::stop).has_value());
    // The tool says by code, count and column what the lookup shows as label, range and description.
    circuit.conductor.push_back({LookupField::insulation, request->fields.text(LookupField::insulation)});
    if (request->fields.isTicked(LookupField::fillTick))
      circuit.changes.push_back({LookupField::fillRange, request->fields.text(LookupField::fillRange)});
    const auto raceway = lookup.input().raceways.find(request->choice.raceway);
    if (raceway != lookup.input().raceways.end())
      circuit.changes.push_back({LookupField::raceway, raceway->second});
    std::shuffle(circuit.changes.begin(), circuit.changes.end(), dice.engine());
    for (const auto* changes : {&circuit.conductor, &circuit.changes})
      for (const WireChange& change : *changes)
        REQUIRE_FALSE(lookup.apply(change).missing.has_value());

    CHECK_EQ(cellsOf(lookup.rows()), cellsOf(tool.rows));
    CHECK(
        lookup.input().text(LookupField::overallFactor) == request->fields.text(LookupField::overallFactor));
    CHECK(lookup.input()[LookupField::groundSize].choices == request->groundSizes());
    if (tool.proposed) {
      ++withProposal;
      CHECK(lookup.selected() == tool.proposed);
    }
  }
  CHECK(withProposal > 60);
}

TEST_CASE("an insulation's description at two temperatures is taken by that of its circuit only") {
  TableFixture tables(test::TableTexts{
      {"AMP_CU_AWG_NEC", "ID,SIZE,SIZE_DESC,75C,90C\n1,14,14 AWG,20,25\n"},
      {"INSUL_CU_AWG_NEC", "ID,INSUL,INSUL_DESC,TEMP,30C\n1,A,Wet,75C,1\n2,B,Wet,90C,1\n3,C,Dry,90C,1\n"}});
  WireRequests requests(*tables.connection());
  const char* several = "INSUL_CU_AWG_NEC has several rows with INSUL_DESC = Wet: give the INSUL of one";
  for (const auto& [insulation, temperature, taken] :
       {std::tuple(L"wet", L"90C", "Wet / 90C"), std::tuple(L"Wet", L"", several),
        std::tuple(L"Wet", L"60C", several), std::tuple(L"Dry", L"75C", "Dry / 90C")}) {
    simhost::WireTexts texts;
    texts[Option::fla] = texts[Option::voltage] = L"5";
    texts[Option::phase] = L"3";
    texts[Option::insulation] = insulation;
    texts.temperature = temperature;
    std::vector<simhost::WireFault> faults;
    const std::optional<WireRequest> request = requests.resolve(texts, faults);
    CHECK_EQ(request ? toUtf8(request->fields.text(LookupField::insulation)) : faults.front().reason, taken);
  }
}

TEST_CASE("a current that meets an ampacity: the lookup passes it by, a build takes it") {
  TableFixture tables(std::filesystem::path("site/tables"));
  WireTableCache cache(*tables.connection());
  const WireDefaults defaults(cache, L"NEC");
  Dice dice;
  WireTableChoice choice{{L"CU", L"AWG", L"NEC"}, L"75C", {}, {}};
  const std::vector<ZanWireRow> sizes = cache.figures(choice).sizes;
  REQUIRE(sizes.size() > 10);
  for (int number = 0; number < 200; ++number) {
    const std::size_t place = static_cast<std::size_t>(dice.below(static_cast<int>(sizes.size()) - 1));
    ZanCircuitData data;
    data.temperature = L"75C";
    data.continuousFactor = toDouble(dice.number(100));
    data.useFill = dice.often();
    data.fillFactor = toDouble(dice.number(100));
    const double factor = overallFactor(
        {data.continuousFactor, data.useFill ? std::optional(data.fillFactor) : std::nullopt, {}});
    const double met = sizes[place].ampacity * factor;
    CAPTURE(toUtf8(sizes[place].size));
    CAPTURE(factor);
    for (const double slip : {-9e-6, 0.0, 9e-6}) {
      const std::optional<AutoWire> taken = autoWire(defaults, data, met + slip);
      REQUIRE(taken.has_value());
      CHECK(taken->ampacity == sizes[place].ampacity);
      CHECK(taken->isLargeEnough);
    }
    const std::optional<AutoWire> next = autoWire(defaults, data, met + 1.1e-5);
    REQUIRE(next.has_value());
    CHECK(next->ampacity > sizes[place].ampacity);

    // The cells have two decimals: what they show is what is compared.
    std::vector<WireCandidate> rows = singleRunRows(sizes, factor);
    const double shown = toDouble(rows[place].ampacity);
    if (!isGiven(shown)) continue;
    fillLoadPercent(rows, shown);
    CHECK(rows[place].loadPercent == L"100");
    CHECK(rows[place].isOverloaded);
    const std::optional<std::size_t> proposed = proposedRow(rows, shown);
    REQUIRE(proposed.has_value());
    CHECK(toDouble(rows[*proposed].ampacity) > shown);
  }
}
