// Sizes by the tables, and what a size of the designer's own is measured by.
#include "circuits/building/row_wires.h"

#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>

namespace circuits {

using brenvolt::WireCandidate;
using simhost::WireField;
using simhost::WireRequest;

namespace {

/// Null where no size is large enough.
const WireCandidate* proposedWire(
    const SetSettings& settings, const WireRequest& request, const brenvolt::WireLookupResult& lookup) {
  if (settings.sizing == SetSettings::Sizing::lookup)
    return lookup.proposed ? &lookup.rows[*lookup.proposed] : nullptr;
  if (!request.build || !request.build->isLargeEnough) return nullptr;
  const auto found =
      std::find_if(lookup.rows.begin(), lookup.rows.end(), [&request](const WireCandidate& row) {
        return row.size == request.build->size;
      });
  return found == lookup.rows.end() ? nullptr : &*found;
}

/// Where the circuit needs another size than the fixed one, that is a finding. `proposed`: null where the tables propose
/// none.
RowWire fixedWire(
    const std::wstring& size, const WireRequest& request, const std::vector<WireCandidate>& all,
    const WireCandidate* proposed) {
  const auto wire = std::find_if(all.begin(), all.end(), [&size](const WireCandidate& each) {
    return brenvolt::removeBlanks(each.size) == size;
  });
  if (wire == all.end()) return {{}, {SetField::wireSize, L"the tables have no ampacity of " + size}, {}};
  RowWire result{*wire};
  const auto find = [&result](std::wstring reason) {
    result.findings.emplace_back(SetField::wireSize, std::move(reason));
  };
  const std::wstring proposal =
      proposed == nullptr ? L"; the tables have none that fits" : L"; the tables propose " + proposed->size;
  if (brenvolt::toDouble(wire->ampacity) < request.input.total)
    find(
        wire->size + L" carries " + wire->ampacity +
        L" A under these conditions, less than the design current of " +
        brenvolt::formatTrimmed(request.input.total) + L" A" + proposal);
  const std::optional<brenvolt::DropFields>& drop = request.input.drop;
  if (drop && wire->lacksImpedance)
    find(L"the tables have no impedance for " + wire->size + L": its voltage drop is not known");
  if (drop && drop->limit) {
    std::vector<WireCandidate> passing = {*wire};
    brenvolt::removeAboveDropLimit(passing, *drop->limit);
    if (passing.empty())
      find(
          wire->size + L" has a voltage drop of " + percentText(wire->dropPercent) + L", more than the " +
          request[WireField::dropLimit].text + L" % allowed" + proposal);
  }
  return result;
}

} // namespace

simhost::WireTexts wireTextsOf(const SetSettings& settings, const SetCircuit& circuit) {
  simhost::WireTexts texts = settings.wires;
  texts.isUnattended = settings.sizing == SetSettings::Sizing::build;
  for (const simhost::WireFieldRow& field : simhost::wireFields)
    if (texts.isUnattended && !field.isForBuild) texts[field.field].clear();
  texts[WireField::standardCode] = circuit.standardCode;
  return texts;
}

RowWire wireOf(
    const SetSettings& settings, const SetCircuit& circuit, const WireRequest& request,
    simhost::WireRequests& wires) {
  const brenvolt::WireLookupResult lookup = wires.lookUp(request);
  const WireCandidate* proposed = proposedWire(settings, request, lookup);
  if (!circuit.fixedSizes.empty())
    return fixedWire(circuit.fixedSizes, request, wires.allSizes(request), proposed);
  if (proposed == nullptr && lookup.proposal == brenvolt::Proposal::aboveDropLimit)
    return {{}, {SetField::length, simhost::noteOn(request, lookup)}, {}};
  if (proposed == nullptr)
    return {
        {},
        {SetField::load,
         L"no wire of the tables carries " + request[WireField::fla].text + L" A under these conditions"},
        {}};
  // A drop that is not known is not a small one: a size without impedance is never taken unseen.
  if (request.input.drop && proposed->lacksImpedance)
    return {
        {},
        {SetField::length, simhost::noteOn(request, lookup) +
                               L"; add its impedance to the table, or fix a size of your choice in the "
                               L"column wire-size"},
        {}};
  return {*proposed};
}

std::wstring percentText(const std::wstring& cell) {
  return brenvolt::isGiven(brenvolt::toDouble(cell)) ? cell + L" %" : std::wstring();
}

} // namespace circuits
