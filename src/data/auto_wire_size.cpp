#include "data/auto_wire_size.h"

#include "data/table_query.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>

namespace brenvolt {

namespace {

constexpr double fallbackPowerFactor = 0.85;

std::wstring firstFilled(const std::wstring& stored, const std::wstring& option, std::wstring_view fallback) {
  if (!stored.empty()) return stored;
  return option.empty() ? std::wstring(fallback) : option;
}

double givenOr(double stored, const std::wstring& option) {
  return isGiven(stored) ? stored : toDouble(option);
}

WireTableSet tableSetOf(const ZanWireTableReader& reader, const ZanCircuitData& data) {
  const ZanOptTableReader& options = reader.options();
  return {
      firstFilled(data.wireMetal, options.defaultOf(option::wireMetal), L"CU"),
      firstFilled(data.wireStandard, options.defaultOf(option::wireStandard), L"AWG"), options.code()};
}

/// The ampacity column: stored, of the options' insulation, or of the table's first row.
std::wstring temperatureColumn(
    const ZanWireTableReader& reader, const WireTableSet& set, const ZanCircuitData& data) {
  if (!data.temperature.empty()) return data.temperature;
  std::wstring table;
  if (!reader.ResolveTable(table, ZanTableKind::insulation, set)) return {};
  TableQuery query(reader.connection());
  const std::wstring insulation = reader.options().defaultOf(option::insulation);
  if (!insulation.empty() &&
      query.runForRow(L"SELECT [TEMP] FROM %s WHERE [INSUL]='%s'", {table, insulation}))
    return query.text(1);
  if (query.runForRow(L"SELECT [INSUL], [TEMP] FROM %s ", {table})) return query.text(2);
  return {};
}

double autoFactor(const ZanWireTableReader& reader, const ZanCircuitData& data) {
  DeratingFactors factors;
  // Without the tick the options' factor still derates: a build always allows for a continuous load.
  factors.continuous = data.useContinuousLoad ? data.continuousFactor
                                              : toDouble(reader.options().defaultOf(option::continuousLoad));
  if (data.useFill) factors.fill = data.fillFactor;
  if (data.useAmbient) factors.ambient = data.ambientFactor;
  return overallFactor(factors);
}

/// The drop of one size after another on one circuit.
class AutoDrop final {
public:
  AutoDrop(const ZanWireTableReader& reader, const WireTableSet& set, const ZanCircuitData& data)
      : reader_(reader) {
    const ZanOptTableReader& options = reader.options();
    // The build decides phase and length the opposite way from the dialog ("1" and "M" here, "3" and "FT" there).
    test_.circuit.isSinglePhase = data.phase == L"1";
    test_.circuit.isMetres = equalsOrdinalNoCase(
        data.lengthUnits.empty() ? options.defaultOf(option::lengthUnits) : data.lengthUnits, L"M");
    test_.circuit.length = givenOr(data.length, options.defaultOf(option::lengths));
    test_.circuit.current = data.fla;
    test_.circuit.powerFactor = isGiven(data.powerFactor) ? data.powerFactor : fallbackPowerFactor;
    test_.voltage = toDouble(data.voltage);
    test_.limit = givenOr(data.dropLimit, options.defaultOf(option::dropLimit));
    hasTables_ = reader.ResolveTable(impedanceTable_, ZanTableKind::impedance, set) &&
                 reader.ResolveTable(ampacityTable_, ZanTableKind::ampacity, set);
    // The record holds the raceway as shown: with a description table no such column exists, and the drop is 0.
    raceway_ = data.raceway;
    std::vector<std::wstring> columns;
    if (raceway_.empty() && reader.ListRacewayColumns(set, columns) && !columns.empty())
      raceway_ = columns.front();
  }

  [[nodiscard]] bool passes(const std::wstring& size) const {
    Impedance impedance;
    if (hasTables_) reader_.ReadImpedance(impedanceTable_, ampacityTable_, raceway_, size, impedance);
    return passesAutoDrop(voltageDrop(test_.circuit, impedance), test_);
  }

private:
  const ZanWireTableReader& reader_;
  AutoDropTest test_;
  bool hasTables_ = false;
  std::wstring impedanceTable_;
  std::wstring ampacityTable_;
  std::wstring raceway_;
};

} // namespace

bool passesAutoDrop(double volts, const AutoDropTest& test) {
  return !(volts / test.voltage - test.limit > numberTolerance);
}

double autoDesignCurrent(ZanWireTableReader& reader, const ZanCircuitData& data) {
  double multiplier = data.flaMultiplier;
  if (!isGiven(multiplier)) {
    std::wstring text;
    multiplier =
        reader.GetOptions() && reader.GetValue(option::flaMultiplier, optionfield::defaultValue, text)
            ? toDouble(text)
            : fallbackFlaMultiplier;
  }
  return data.fla * multiplier;
}

std::wstring autoWireSize(const ZanWireTableReader& reader, const ZanCircuitData& data, double current) {
  const WireTableSet set = tableSetOf(reader, data);
  std::vector<ZanWireRow> rows;
  if (!reader.ReadAmpacity(set, temperatureColumn(reader, set, data), rows) || rows.empty()) return {};
  const double factor = autoFactor(reader, data);

  // A current that meets the ampacity is carried, also where 0.7 x 30 comes out a hair below 21.
  const auto carries = [&](const ZanWireRow& row) { return !isGiven(current - row.ampacity * factor); };
  auto chosen = rows.end();
  if (data.useVoltageDrop) {
    const AutoDrop drop(reader, set, data);
    chosen = std::find_if(rows.begin(), rows.end(), [&](const ZanWireRow& row) {
      return carries(row) && drop.passes(row.size);
    });
  } else {
    chosen = std::find_if(rows.begin(), rows.end(), carries);
  }
  return removeBlanks(chosen == rows.end() ? rows.back().size : chosen->size);
}

} // namespace brenvolt
