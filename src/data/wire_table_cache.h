// The wire tables for the lookups of one dialog or one list of circuits: each list is read once and kept until another
// table is needed. The tables must not change meanwhile.
#pragma once

#include "data/wire_figures.h"
#include "data/wire_tables.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brenvolt {

class WireTableCache final {
public:
  /// The ambient ranges of an insulation, and the index of the one that the options select.
  struct Ambient {
    FactorList list;
    std::size_t defaultIndex = 0;
  };

  /// The connection must outlive this.
  explicit WireTableCache(ZanOleDbConnection& connection) : connection_(connection) {}
  WireTableCache(const WireTableCache&) = delete;
  WireTableCache& operator=(const WireTableCache&) = delete;

  /// Lists that depend on material, size system or insulation are read again at the next use.
  void forgetWires();

  [[nodiscard]] ZanOleDbConnection& connection() const { return connection_; }
  /// @name By electrical code
  /// @{
  /// With the options loaded; whether there are any says `hasOptions`.
  [[nodiscard]] const ZanWireTableReader& reader(const std::wstring& code) { return codeOf(code).reader; }
  [[nodiscard]] bool hasOptions(const std::wstring& code) { return codeOf(code).hasOptions; }
  /// The resolved table of a family without metal and standard in its name; empty when there is none.
  [[nodiscard]] const std::wstring& table(ZanTableKind kind, const std::wstring& code);
  [[nodiscard]] const FactorList& fill(const std::wstring& code);
  /// Raceway columns with their texts for the user; nothing when the site describes none.
  [[nodiscard]] const std::optional<std::map<std::wstring, std::wstring>>& raceways(const std::wstring& code);
  /// @}
  /// @name By code, metal and standard
  /// @{
  /// The resolved table; empty when there is none.
  [[nodiscard]] const std::wstring& table(ZanTableKind kind, const WireTableSet& set);
  [[nodiscard]] const std::vector<std::wstring>& racewayColumns(const WireTableSet& set);
  [[nodiscard]] const std::vector<std::wstring>& insulations(const WireTableSet& set);
  /// The label of an insulation code; empty for an unknown one.
  [[nodiscard]] const std::wstring& insulationLabel(const WireTableSet& set, const std::wstring& insulation);
  [[nodiscard]] const Ambient& ambient(const WireTableSet& set, const std::wstring& insulationDescription);
  [[nodiscard]] const WireTableFigures& figures(const WireTableChoice& choice);
  /// @}

private:
  struct Code {
    Code(ZanOleDbConnection& connection, const std::wstring& code);
    ZanWireTableReader reader;
    bool hasOptions = false;
    std::map<ZanTableKind, std::wstring> tables;
    std::optional<FactorList> fill;
    bool hasReadRaceways = false;
    std::optional<std::map<std::wstring, std::wstring>> raceways;
  };
  struct Wires {
    std::map<ZanTableKind, std::wstring> tables;
    std::optional<std::vector<std::wstring>> racewayColumns;
    std::optional<std::vector<std::wstring>> insulations;
    std::map<std::wstring, std::wstring> insulationLabels; ///< by code
    std::map<std::wstring, Ambient> ambients;              ///< by description
    std::map<std::wstring, WireTableFigures> figures;      ///< by temperature, raceway and smallest size
  };

  Code& codeOf(const std::wstring& code);
  Wires& wiresOf(const WireTableSet& set);

  ZanOleDbConnection& connection_;
  std::map<std::wstring, std::unique_ptr<Code>> codes_;
  std::map<std::wstring, Wires> wires_;
};

} // namespace brenvolt
