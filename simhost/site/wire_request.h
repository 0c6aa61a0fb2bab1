// From the texts of a circuit to what the wire lookup takes: gaps filled from the options, names looked up in the
// tables, and for every value where it comes from.
#pragma once

#include "data/auto_wire_size.h"
#include "data/wire_defaults.h"
#include "simhost/site/wire_fields.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace simhost {

/// A text of a circuit that cannot be used.
struct WireFault {
  WireField field;
  std::string reason;
};

/// A circuit with everything that the lookup and its explanation need.
struct WireRequest {
  brenvolt::WireInput fields;
  /// What the fields come to.
  brenvolt::WireTableChoice choice;
  brenvolt::WireLookupInput input;
  /// By option; empty text for one that plays no part.
  std::array<brenvolt::WireValue, wireFieldCount> values;
  std::wstring temperatureOrigin;
  brenvolt::WireValue groundExpression;
  std::wstring groundTable;    ///< empty when there is none
  std::wstring groundProposal; ///< by the formula alone; empty when the tables give none
  /// The choices of a build that sizes the same circuit unattended; what was not given is left to the build.
  brenvolt::ZanCircuitData buildChoices;
  std::optional<brenvolt::AutoWire> build; ///< the size that it takes, if requested
  std::wstring groundWithoutArea; ///< then: a size for which the grounding conductor could not be enlarged

  [[nodiscard]] const brenvolt::WireValue& operator[](WireField field) const {
    return values[static_cast<std::size_t>(field)];
  }
  [[nodiscard]] const std::vector<std::wstring>& groundSizes() const {
    return fields[brenvolt::LookupField::groundSize].choices;
  }
};

/// Whether there is a size that fits, and a grounding conductor where the site has a table of them.
[[nodiscard]] bool isSized(const WireRequest& request, const brenvolt::WireLookupResult& result);

/// Why a result has no size that fits; empty when it has one.
[[nodiscard]] std::wstring noteOn(const WireRequest& request, const brenvolt::WireLookupResult& result);

/// Why a grounding conductor stays that of smaller conductors: `BesideGround::withoutArea`.
[[nodiscard]] std::wstring groundNote(const std::wstring& sizeWithoutArea);

/// The circuits of one run, whose tables are read once. The connection must outlive it, and the tables must not change
/// meanwhile.
class WireRequests final {
public:
  explicit WireRequests(brenvolt::ZanOleDbConnection& connection) : tables_(connection) {}

  /// Fills in and looks up; every fault of the circuit is reported, and no request is returned then.
  [[nodiscard]] std::optional<WireRequest> resolve(const WireTexts& texts, std::vector<WireFault>& faults);
  /// The lookup's table and proposal, or the sizes with that of a build, if requested.
  [[nodiscard]] brenvolt::WireLookupResult lookUp(const WireRequest& request);
  /// The sizes of the tables, as shown, in ascending ampacity, with the figures of the circuit; none is left out.
  [[nodiscard]] std::vector<brenvolt::WireCandidate> allSizes(const WireRequest& request);
  [[nodiscard]] brenvolt::WireSizeFacts facts(const WireRequest& request, const std::wstring& size);
  /// The grounding conductor beside the conductors that are taken; it is larger or smaller than the first proposal as they
  /// require it.
  [[nodiscard]] brenvolt::BesideGround groundBeside(
      const WireRequest& request, const std::wstring& conductors);

private:
  class Resolver;

  brenvolt::WireTableCache tables_;
};

} // namespace simhost
