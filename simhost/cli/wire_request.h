// From the texts of a circuit to what the wire lookup takes: gaps filled from the options, names looked up in the
// tables, and for every value where it comes from.
#pragma once

#include "data/wire_lookup.h"
#include "simhost/cli/wire_fields.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace simhost {

/// A text of a circuit that cannot be used.
struct WireFault {
  WireField field;
  std::string reason;
};

/// A value and its origin as a person reads it: "given", or table, row and column.
struct WireValue {
  std::wstring text;
  std::wstring origin;
};

/// A circuit with everything that the lookup and its explanation need.
struct WireRequest {
  brenvolt::WireTableChoice choice;
  brenvolt::WireLookupInput input;
  brenvolt::DeratingFactors factors;
  double multiplier = 0.0;
  std::array<WireValue, wireFieldCount> values; ///< empty text for a field that plays no part
  std::wstring temperatureOrigin;
  WireValue fillFactor;
  WireValue ambientFactor;
  WireValue groundExpression;
  std::wstring groundTable; ///< empty when there is none
  std::vector<std::wstring> groundSizes;

  [[nodiscard]] const WireValue& operator[](WireField field) const {
    return values[static_cast<std::size_t>(field)];
  }
};

/// The tables as the circuits of one run see them, each list read once. The connection must outlive it, and nobody
/// may change the tables meanwhile.
class WireCatalogue final {
public:
  explicit WireCatalogue(brenvolt::ZanOleDbConnection& connection) : connection_(connection) {}

  /// Fills in and looks up; every fault of the circuit is told, and there is no request then.
  [[nodiscard]] std::optional<WireRequest> resolve(const WireTexts& texts, std::vector<WireFault>& faults);
  [[nodiscard]] const brenvolt::WireTableFigures& figures(const brenvolt::WireTableChoice& choice);
  [[nodiscard]] brenvolt::WireLookupResult lookUp(const WireRequest& request) {
    return brenvolt::computeWires(figures(request.choice), request.input);
  }
  [[nodiscard]] brenvolt::WireSizeFacts facts(const WireRequest& request, const std::wstring& size);

private:
  /// What depends on the code standard alone.
  struct Code {
    explicit Code(brenvolt::ZanOleDbConnection& connection) : reader(&connection) {}
    brenvolt::ZanWireTableReader reader;
    std::optional<std::string> fault; ///< why nothing can be looked up by it
    std::wstring optionTable;
    std::wstring fillTable;
    brenvolt::FactorList fill;
    std::map<std::wstring, std::wstring> raceways;
  };
  /// What depends on metal and wire standard too.
  struct Wires {
    std::wstring ampacityTable;
    std::wstring insulationTable;
    std::wstring impedanceTable;
    std::wstring groundTable;
    std::vector<std::wstring> racewayColumns;
    std::map<std::wstring, std::wstring> insulationLabels; ///< by code; empty for an unknown one
    std::map<std::wstring, brenvolt::FactorList> ambients; ///< by description
  };
  class Resolver;

  Code& codeOf(const std::wstring& code);
  Wires& wiresOf(const brenvolt::WireTableSet& set);

  brenvolt::ZanOleDbConnection& connection_;
  std::map<std::wstring, std::unique_ptr<Code>> codes_;
  std::map<std::wstring, Wires> wires_;
  std::map<std::wstring, brenvolt::WireTableFigures> figures_;
};

} // namespace simhost
