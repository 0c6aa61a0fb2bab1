#include "data/auto_wire_size.h"

#include "data/motor_choices.h"
#include "data/table_query.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/plain_number.h"
#include "text/split.h"

#include <algorithm>
#include <map>
#include <vector>

namespace brenvolt {

namespace {

constexpr double fallbackPowerFactor = 0.85;
constexpr std::wstring_view everyRating = L"0"; ///< a formula: each row of the grounding table is above it

double numberOr(const WireDefaults& defaults, double stored, std::wstring_view setting) {
  return isGiven(stored) ? stored : defaults.figureOf(setting);
}

/// The ampacity column: stored, of the options' insulation, or of the table's first row.
std::wstring temperatureColumn(
    const WireDefaults& defaults, const WireTableSet& set, const ZanCircuitData& data) {
  if (!data.temperature.empty()) return data.temperature;
  const std::wstring& table = defaults.tables().table(ZanTableKind::insulation, set);
  if (table.empty()) return {};
  TableQuery query(&defaults.tables().connection());
  const std::wstring insulation = defaults.setting(option::insulation).text;
  if (!insulation.empty() &&
      query.runForRow(L"SELECT [TEMP] FROM %s WHERE [INSUL]='%s'", {table, insulation}))
    return query.text(1);
  if (query.runForRow(L"SELECT [INSUL], [TEMP] FROM %s ", {table})) return query.text(2);
  return {};
}

WireTableSet tablesOf(const WireDefaults& defaults, const ZanCircuitData& data) {
  return {
      defaults.valueOf(LookupField::metal, data.wireMetal).text,
      defaults.valueOf(LookupField::standard, data.wireStandard).text, defaults.code()};
}

double autoFactor(const WireDefaults& defaults, const ZanCircuitData& data) {
  DeratingFactors factors;
  // Without the tick the options' factor still derates: a build always allows for a continuous load.
  factors.continuous =
      data.useContinuousLoad ? data.continuousFactor : defaults.figureOf(option::continuousLoad);
  if (data.useFill) factors.fill = data.fillFactor;
  if (data.useAmbient) factors.ambient = data.ambientFactor;
  return overallFactor(factors);
}

AutoDropTest dropTest(const WireDefaults& defaults, const ZanCircuitData& data) {
  AutoDropTest test;
  // The build decides phase and length the opposite way from the dialog ("1" and "M" here, "3" and "FT" there).
  test.circuit.isSinglePhase = data.phase == L"1";
  test.circuit.isMetres =
      equalsOrdinalNoCase(defaults.textOr(data.lengthUnits, option::lengthUnits).text, L"M");
  test.circuit.length = numberOr(defaults, data.length, option::lengths);
  test.circuit.current = data.fla;
  test.circuit.powerFactor = isGiven(data.powerFactor) ? data.powerFactor : fallbackPowerFactor;
  test.voltage = toDouble(data.voltage);
  test.limit = numberOr(defaults, data.dropLimit, option::dropLimit);
  return test;
}

} // namespace

bool passesAutoDrop(double volts, const AutoDropTest& test) {
  return !isGiven(volts / test.voltage - test.limit);
}

WireValue autoMultiplier(const WireDefaults& defaults, const ZanCircuitData& data) {
  WireValue value = defaults.valueOf(
      LookupField::multiplier, isGiven(data.flaMultiplier) ? formatShortest(data.flaMultiplier) : L"");
  // An option that is blank or no number is not a multiplier of 0: that would size any circuit by the smallest wire.
  if (!plainNumber(value.text) || !isGiven(toDouble(value.text))) {
    static_cast<void>(defaults.figureOf(wireDefaultOf(LookupField::multiplier).setting));
    value = {std::wstring(wireDefaultOf(LookupField::multiplier).assumed), std::wstring(assumedOrigin)};
  }
  return value;
}

double autoDesignCurrent(const WireDefaults& defaults, const ZanCircuitData& data) {
  return data.fla * toDouble(autoMultiplier(defaults, data).text);
}

std::optional<AutoWire> autoWire(const WireDefaults& defaults, const ZanCircuitData& data, double current) {
  WireTableChoice choice;
  choice.tables = tablesOf(defaults, data);
  choice.temperature = temperatureColumn(defaults, choice.tables, data);
  if (data.useVoltageDrop) {
    // The record holds the raceway as shown: with a description table no such column exists, and the drop is 0.
    const std::vector<std::wstring>& columns = defaults.tables().racewayColumns(choice.tables);
    choice.raceway = data.raceway;
    if (choice.raceway.empty() && !columns.empty()) choice.raceway = columns.front();
  }
  const WireTableFigures& figures = defaults.tables().figures(choice);
  if (figures.sizes.empty()) return std::nullopt;

  const double factor = autoFactor(defaults, data);
  const AutoDropTest test = dropTest(defaults, data);
  const auto passes = [&](const ZanWireRow& row) {
    // A current that meets the ampacity is carried, also where 0.7 x 30 comes out a hair below 21.
    if (isGiven(current - row.ampacity * factor)) return false;
    if (!data.useVoltageDrop) return true;
    const auto impedance = figures.impedances.find(row.size);
    return passesAutoDrop(
        voltageDrop(test.circuit, impedance == figures.impedances.end() ? Impedance{} : impedance->second),
        test);
  };
  const auto found = std::find_if(figures.sizes.begin(), figures.sizes.end(), passes);
  const bool isLargeEnough = found != figures.sizes.end();
  const ZanWireRow& row = isLargeEnough ? *found : figures.sizes.back();
  return AutoWire{row.size, row.ampacity, factor, isLargeEnough};
}

namespace {

/// Areas of the sizes of a size system, by the table of wire sizes; in mm2 a size is its own area.
class WireAreas final {
public:
  WireAreas(ZanOleDbConnection& connection, const std::wstring& standard)
      : isMetric_(equalsOrdinalNoCase(standard, metric)) {
    if (isMetric_) return;
    const std::optional<WireSizeColumns> columns = readWireSizeColumns(connection);
    TableQuery query(&connection);
    if (!columns || !query.run(
                        L"SELECT [%s], [%s] FROM [WIRESIZE] WHERE [%s]='%s'",
                        {(*columns)[0], (*columns)[2], (*columns)[1], standard}))
      return;
    while (query.next())
      if (const std::optional<double> area = query.figure(2); area && isGiven(*area))
        areas_[toUpper(removeBlanks(query.text(1)))] = *area;
  }

  [[nodiscard]] bool isMetric() const { return isMetric_; }
  [[nodiscard]] std::optional<double> of(std::wstring_view size) const {
    std::wstring name = toUpper(removeBlanks(size));
    if (isMetric_)
      return plainNumber(name.ends_with(metric) ? name.substr(0, name.size() - metric.size()) : name);
    const auto known = areas_.find(name);
    return known == areas_.end() ? std::nullopt : std::optional(known->second);
  }

private:
  static constexpr std::wstring_view metric = L"MM2";
  bool isMetric_;
  std::map<std::wstring, double> areas_;
};

/// The area of a protective conductor in mm2 by that of the conductors: IEC 60364-5-54, table 54.7.
double metricGroundArea(double conductors) {
  constexpr double equalUpTo = 16.0;
  constexpr double sameUpTo = 35.0;
  return conductors <= equalUpTo ? conductors : conductors <= sameUpTo ? equalUpTo : conductors / 2.0;
}

/// The first of the grounding conductors, in ascending order, that is large enough beside larger conductors.
BesideGround grownGround(
    const WireAreas& areas, const std::vector<std::wstring>& sizes, const std::wstring& proposal,
    std::wstring_view smallest, std::wstring_view conductors) {
  for (const std::wstring_view size : {conductors, smallest, std::wstring_view(proposal)})
    if (!areas.of(size)) return {proposal, std::wstring(size)};
  const double installed = *areas.of(conductors);
  const double required = *areas.of(smallest);
  const double proposed = *areas.of(proposal);
  if (installed <= required) return {proposal};
  const double least = areas.isMetric() ? metricGroundArea(installed) : proposed * installed / required;
  // Areas of the table are rounded: the same proportion comes out a hair above the size that has it.
  constexpr double rounding = 0.995;
  if (proposed >= least * rounding) return {proposal};
  for (const std::wstring& size : sizes) {
    const std::optional<double> area = areas.of(size);
    if (!area) return {proposal, size};
    // As large as the conductors is always enough, also where the table jumps over their size.
    if (*area >= least * rounding) return {*area > installed ? std::wstring(conductors) : size};
  }
  return {std::wstring(conductors)};
}

} // namespace

BesideGround autoGround(
    const WireDefaults& defaults, const ZanCircuitData& data, std::wstring_view conductors) {
  const WireTableSet tables = tablesOf(defaults, data);
  std::vector<std::wstring> sizes;
  defaults.reader().ListGround(
      tables, defaults.setting(option::groundingRating).text, formatTrimmed(data.fla), sizes);
  if (sizes.empty()) return {};
  ZanCircuitData byCurrent = data;
  byCurrent.useVoltageDrop = false;
  const std::optional<AutoWire> smallest = autoWire(defaults, byCurrent, autoDesignCurrent(defaults, data));
  return groundBeside(
      defaults, tables, sizes.front(), smallest && smallest->isLargeEnough ? smallest->size : std::wstring(),
      conductors);
}

BesideGround groundBeside(
    const WireDefaults& defaults, const WireTableSet& tables, const std::wstring& proposal,
    std::wstring_view smallest, std::wstring_view conductors) {
  std::vector<std::wstring> sizes;
  defaults.reader().ListGround(tables, everyRating, {}, sizes);
  BesideGround ground{proposal};
  if (!conductors.empty() && !smallest.empty() && !equalsOrdinalNoCase(removeBlanks(smallest), conductors))
    ground = grownGround(
        WireAreas(defaults.tables().connection(), tables.standard), sizes, proposal, smallest, conductors);
  // A size that the table lacks, such as that of parallel conductors, limits nothing: it cannot be compared.
  for (const std::wstring& size : sizes) {
    if (size == ground.size) break;
    if (!equalsOrdinalNoCase(removeBlanks(size), conductors)) continue;
    ground.size = size;
    break;
  }
  return ground;
}

} // namespace brenvolt
