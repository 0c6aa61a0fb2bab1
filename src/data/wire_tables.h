// All statements on the wire tables. Every list is read from the database at each call; the caller keeps what it
// needs.
#pragma once

#include "data/option_tables.h"
#include "data/table_names.h"
#include "data/wire_lists.h"
#include "data/wire_sizing.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// Wire metal, wire standard and electrical code: together they name the wire tables.
struct WireTableSet {
  std::wstring metal;
  std::wstring standard;
  std::wstring code;
};

/// Ranges as shown with the factor text of each, index by index.
struct FactorList {
  std::vector<std::wstring> ranges;
  std::vector<std::wstring> factors;
};

/// Where the impedance of a size was read.
struct ImpedanceSource {
  std::wstring sizeKey; ///< SIZE of the size; empty when the ampacity table lacks it
  std::wstring cell;    ///< its own cell; empty for an interpolated one
  ImpedanceNeighbours neighbours;
};

/// An insulation as the lists show it: "<description> / <temperature column>".
[[nodiscard]] std::wstring insulationLabel(std::wstring_view description, std::wstring_view temperature);

class ZanWireTableReader final {
public:
  /// The connection is not owned.
  explicit ZanWireTableReader(ZanOleDbConnection* connection = nullptr);

  /// @name Lists. Each returns false, its output empty, without a connection or the table it reads.
  /// @{
  /// The wire standards that have ampacity or grounding tables, in the order of the table list.
  bool ListStandards(std::vector<std::wstring>& standards) const;
  /// The metals that have an ampacity table of the standard.
  bool ListMetals(std::wstring_view standard, std::vector<std::wstring>& metals) const;
  bool ListInsulations(const WireTableSet& set, std::vector<std::wstring>& labels) const;
  /// The label of an insulation code; false without a row.
  bool InsulationLabel(const WireTableSet& set, std::wstring_view insulation, std::wstring& label) const;
  /// Raceway columns with their texts for the user; rows without a code are skipped.
  bool ListRaceways(std::wstring_view code, std::map<std::wstring, std::wstring>& descriptions) const;
  /// The raceway columns of the impedance table, in the table's order.
  bool ListRacewayColumns(const WireTableSet& set, std::vector<std::wstring>& columns) const;
  /// The ranges of current-carrying conductors with their factors, in the table's order.
  bool ListFill(std::wstring_view code, FactorList& fill) const;
  /// The ambient ranges of an insulation, and the index of the one that the options select. A bracket without a factor
  /// is left out.
  bool ListAmbient(
      const WireTableSet& set, std::wstring_view insulationDescription, FactorList& ambient,
      std::size_t& defaultIndex) const;
  /// Sizes with their ampacity in a temperature column, ascending by ampacity.
  bool ReadAmpacity(const WireTableSet& set, std::wstring_view column, std::vector<ZanWireRow>& rows) const;
  /// The ampacity of one size by its key. False, and 0, when the table has no number for it.
  bool ReadAmpacityAt(
      const WireTableSet& set, std::wstring_view column, std::wstring_view size, double& amps) const;
  enum class SizeText { key, description };
  /// All sizes whose ampacity is at or above that of `size`, cut to an integer.
  bool ListParallelSizes(
      const WireTableSet& set, std::wstring_view column, std::wstring_view size,
      std::vector<ZanWireRow>& rows, SizeText text) const;
  /// The grounding sizes for the rating that `expression` gives for the current; an illegal expression gives none.
  bool ListGround(
      const WireTableSet& set, std::wstring_view expression, std::wstring_view currentText,
      std::vector<std::wstring>& sizes) const;
  /// @}

  /// The impedance of a size in a raceway column of resolved tables; interpolated where its cell is empty. Zero, and
  /// false, when it cannot be determined. `source` returns, if given, what was read.
  bool ReadImpedance(
      std::wstring_view impedanceTable, std::wstring_view ampacityTable, std::wstring_view column,
      std::wstring_view sizeDescription, Impedance& impedance, ImpedanceSource* source = nullptr) const;

  /// The impedances of sizes by their descriptions, those that can be found: what `ReadImpedance` reads for each, with two
  /// statements instead of two for each.
  [[nodiscard]] std::map<std::wstring, Impedance> ReadImpedances(
      std::wstring_view impedanceTable, std::wstring_view ampacityTable, std::wstring_view column,
      const std::vector<ZanWireRow>& sizes) const;

  /// @name Passed through
  /// @{
  bool GetOptions() { return options_.GetOptions(); }
  void SetCode(std::wstring_view code) { options_.SetCode(code); }
  bool GetValue(std::wstring_view code, std::wstring_view field, std::wstring& value) const {
    return options_.GetValue(code, field, value);
  }
  bool GetList(std::wstring_view code, std::vector<std::wstring>& values) const {
    return options_.GetList(code, values);
  }
  [[nodiscard]] bool ResolveTable(std::wstring& name, ZanTableKind kind, const WireTableSet& set) const {
    return utils_.ResolveTable(name, kind, set.metal, set.standard, set.code);
  }
  void KeepTableList() { utils_.KeepTableList(); }
  [[nodiscard]] bool CheckTables(const WireTableSet& set, MissingTables& missing, unsigned mask) const {
    return utils_.CheckTables(set.metal, set.standard, set.code, missing, mask);
  }
  enum class WithOptions { no, yes };
  /// The wire tables with grounding and optionally the options.
  [[nodiscard]] bool CheckWireTables(
      const WireTableSet& set, MissingTables& missing, WithOptions withOptions) const;
  /// @}

  [[nodiscard]] const ZanOptTableReader& options() const { return options_; }
  [[nodiscard]] ZanOleDbConnection* connection() const { return connection_; }

private:
  ZanOleDbConnection* connection_;
  ZanDbReaderUtils utils_;
  ZanOptTableReader options_;
};

} // namespace brenvolt
