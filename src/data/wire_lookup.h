// The wire lookup without a window: its fields, the table of sizes that follows from them, and the chosen size. A
// change is applied and returns what else changed. A window shows this record; the result, the question about an
// overloaded size and the report are taken from here.
#pragma once

#include "data/circuit_data.h"
#include "data/linked_currents.h"
#include "data/wire_columns.h"
#include "data/wire_defaults.h"
#include "data/wire_drop_fields.h"

#include <array>
#include <bitset>
#include <optional>
#include <string>
#include <vector>

namespace brenvolt {

/// What the fields start from.
struct WireStart {
  ZanCircuitData choices;
  std::wstring_view powerFactorSetting = option::motorPowerFactor;
  /// For a placed circuit: its own choices instead of the setting's.
  std::optional<PowerFactorChoice> powerFactor;
  std::wstring size; ///< of a placed circuit, as it is stored; looked for before the ampacities decide
};

/// A field with the text that was typed or chosen, or a tick with "1" or nothing.
struct WireChange {
  LookupField field;
  std::wstring text;
};

/// What has to be shown again.
struct WireEffects {
  std::bitset<lookupFieldCount> fields;
  bool table = false;
  /// Tables that the change needs and that are missing; nothing has changed then.
  std::optional<MissingTables> missing;

  [[nodiscard]] bool has(LookupField field) const { return fields.test(static_cast<std::size_t>(field)); }
};

/// Whether missing tables stop a change, or the user has already agreed to continue without them.
enum class WithoutTables { stop, goOn };

class WireLookup final {
public:
  /// The tables must outlive this.
  WireLookup(WireTableCache& tables, const std::wstring& code) : defaults_(tables, code) {
    input_.code = code;
  }

  [[nodiscard]] const WireInput& input() const { return input_; }
  [[nodiscard]] const ZanCircuitData& choices() const { return start_.choices; }
  /// Whether the user may change the field now.
  [[nodiscard]] bool isOpen(LookupField field) const;
  /// The multiplier that came from the options because the circuit had none.
  [[nodiscard]] std::optional<double> defaultMultiplier() const { return defaultMultiplier_; }

  /// The columns of the table, by the ticks.
  [[nodiscard]] std::vector<WireColumn> columns() const;
  [[nodiscard]] const std::vector<WireCandidate>& rows() const { return result_.rows; }
  [[nodiscard]] std::optional<std::size_t> selected() const { return selected_; }
  /// The row that is selected; null for none.
  [[nodiscard]] const WireCandidate* chosen() const;
  /// The load percentage that needs a question before the chosen size is taken.
  [[nodiscard]] std::optional<std::wstring> overload() const;
  /// Writes the fields into a record; a number that is not valid becomes -1.0.
  void store(ZanCircuitData& data) const;
  /// A field's number as it is stored.
  [[nodiscard]] double storedNumber(LookupField field) const;

  /// Fills every field. The tables that are missing, the options included, if they stop it.
  [[nodiscard]] std::optional<MissingTables> begin(WireStart start, WithoutTables without);
  [[nodiscard]] WireEffects apply(const WireChange& change, WithoutTables without = WithoutTables::stop);
  /// Nothing, or a row that does not exist, selects none.
  void select(std::optional<std::size_t> row);
  /// Selects the row of a size as it was shown before a change; none when the size is gone.
  void selectLike(const WireCandidate& shown);

private:
  enum class Recalculation { none, table };
  struct Shown {
    std::array<WireInputField, lookupFieldCount> fields;
    std::bitset<lookupFieldCount> open;
  };

  [[nodiscard]] std::optional<MissingTables> missingTables(
      ZanWireTableReader::WithOptions options, WithoutTables without) const;
  [[nodiscard]] Shown shown() const;
  [[nodiscard]] std::bitset<lookupFieldCount> changesSince(const Shown& before) const;

  Recalculation react(LookupField field);
  void loadBehindMetal();
  void leaveInsulation();
  Recalculation leaveCurrent(CurrentField field);
  Recalculation leaveNumber(LookupField field);
  void keepGood(LookupField field);
  void recalculate();

  WireDefaults defaults_;
  WireInput input_;
  WireStart start_;
  LinkedCurrents currents_;
  std::array<double, lookupFieldCount> lastGood_{};
  std::bitset<lookupFieldCount> fixed_; ///< by the circuit's configuration
  std::optional<double> defaultMultiplier_;
  WireLookupResult result_;
  std::optional<std::size_t> selected_;
};

/// Returns a size that was stored without blanks as the tables show it: "8AWG" is "8 AWG", "250KCMIL" is "250 KCMIL".
/// The blank is put before the word of the size system, or before "KCMIL" for the size system "AWG".
[[nodiscard]] std::wstring shownSize(std::wstring_view stored, std::wstring_view standard);

} // namespace brenvolt
