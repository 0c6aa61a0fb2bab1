// Filling in and looking up the fields of a circuit, group by group.
#include "simhost/site/wire_request.h"

#include "data/wire_current_fields.h"
#include "data/wire_factor_fields.h"
#include "simhost/site/code_standard.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <set>

namespace simhost {

using brenvolt::givenOrigin;
using brenvolt::LookupField;
using brenvolt::rowOrigin;
using brenvolt::toDouble;
using brenvolt::toInt;
using brenvolt::toUtf8;
using brenvolt::WireTableSet;
using brenvolt::WireValue;
using brenvolt::ZanTableKind;

namespace {

constexpr int currentDecimals = 4;
constexpr std::wstring_view noCode{};

/// The part of a range after "~" ("36~40C" has "40C"), the whole text of any other.
std::wstring_view upperEnd(std::wstring_view range) {
  const std::size_t tilde = range.find(L'~');
  return tilde == std::wstring_view::npos ? range : range.substr(tilde + 1);
}

/// The fill range that a number of conductors falls into; the last one has no upper end.
std::size_t fillIndexOf(const std::vector<std::wstring>& ranges, int conductors) {
  for (std::size_t i = 0; i + 1 < ranges.size(); ++i)
    if (conductors <= toInt(upperEnd(ranges[i]))) return i;
  return ranges.size() - 1;
}

/// The size that the current alone requires; empty where none is large enough.
std::wstring smallestSize(
    brenvolt::WireTableCache& tables, const brenvolt::WireDefaults& defaults, const WireRequest& request) {
  if (!request.build) {
    const std::vector<brenvolt::WireCandidate> rows =
        brenvolt::unfilteredRows(tables.figures(request.choice), request.input);
    const std::optional<std::size_t> first = brenvolt::proposedRow(rows, request.input.total);
    return first ? rows[*first].size : std::wstring();
  }
  brenvolt::ZanCircuitData byCurrent = request.buildChoices;
  byCurrent.useVoltageDrop = false;
  const auto wire = brenvolt::autoWire(defaults, byCurrent, brenvolt::autoDesignCurrent(defaults, byCurrent));
  return wire && wire->isLargeEnough ? wire->size : std::wstring();
}

brenvolt::BesideGround groundFor(
    brenvolt::WireTableCache& tables, const brenvolt::WireDefaults& defaults, const WireRequest& request,
    const std::wstring& conductors) {
  return brenvolt::groundBeside(
      defaults, request.fields.tables(), request.groundProposal, smallestSize(tables, defaults, request),
      brenvolt::removeBlanks(conductors));
}

} // namespace

/// One circuit on its way from texts to a request.
class WireRequests::Resolver final {
public:
  Resolver(brenvolt::WireTableCache& tables, const WireTexts& texts, std::vector<WireFault>& faults)
      : tables_(tables), texts_(texts), faults_(faults), faultsBefore_(faults.size()),
        code_(
            texts[WireField::standardCode].empty() ? std::wstring(brenvolt::defaultCode)
                                                   : texts[WireField::standardCode]),
        defaults_(tables, code_) {}

  std::optional<WireRequest> run() {
    checkTexts();
    if (hasFaults()) return std::nullopt;
    if (const std::optional<std::string> fault = codeStandardFault(tables_.connection(), code_)) {
      fail(WireField::standardCode, *fault);
      return std::nullopt;
    }
    request_.fields.code = code_;
    valueOf(WireField::standardCode) = {
        code_, std::wstring(texts_[WireField::standardCode].empty() ? brenvolt::assumedOrigin : givenOrigin)};
    takeTables();
    if (hasFaults()) return std::nullopt;
    takeCurrents();
    takeInsulation();
    takeFactors();
    takeDrop();
    takeParallel();
    takeGround();
    if (hasFaults()) return std::nullopt;
    fields().setTick(LookupField::showUndersized, !texts_.hidesUndersized);
    request_.choice = brenvolt::tableChoiceOf(fields());
    request_.input = brenvolt::lookupInputOf(fields());
    if (texts_.isUnattended) sizeAsBuild();
    return std::move(request_);
  }

private:
  [[nodiscard]] bool hasFaults() const { return faults_.size() != faultsBefore_; }
  void fail(WireField field, std::string reason) { faults_.push_back({field, std::move(reason)}); }
  [[nodiscard]] brenvolt::WireInput& fields() { return request_.fields; }
  [[nodiscard]] WireValue& valueOf(WireField field) {
    return request_.values[static_cast<std::size_t>(field)];
  }
  [[nodiscard]] bool isGivenText(WireField field) const { return !texts_[field].empty(); }
  /// A number for the build; what was not given stays for it to fill in.
  void giveToBuild(double brenvolt::ZanCircuitData::*member, WireField field) {
    if (isGivenText(field)) request_.buildChoices.*member = toDouble(texts_[field]);
  }
  void giveToBuild(std::wstring brenvolt::ZanCircuitData::*member, WireField field) {
    if (isGivenText(field)) request_.buildChoices.*member = texts_[field];
  }

  void checkTexts() {
    for (const WireFieldRow& row : wireFields) {
      const std::wstring& text = texts_[row.field];
      if (text.empty() && row.isRequired) fail(row.field, "is missing");
      if (text.empty()) continue;
      if (texts_.isUnattended && !row.isForBuild)
        fail(row.field, "is not used when a build sizes a wire");
      else if (std::optional<std::string> fault = wireTextFault(row.rule, text))
        fail(row.field, std::move(*fault));
    }
  }

  /// The given text, else the option's default, else what is assumed, also as the field of the lookup.
  const WireValue& fillIn(WireField field) {
    const WireFieldRow& row = wireField(field);
    WireValue& value = valueOf(field);
    value = row.lookup ? defaults_.valueOf(*row.lookup, texts_[field])
                       : WireValue{texts_[field], std::wstring(isGivenText(field) ? givenOrigin : noCode)};
    // A default of the site's options has to keep the rule too.
    if (!isGivenText(field) && !value.text.empty())
      if (const std::optional<std::string> fault = wireTextFault(row.rule, value.text))
        fail(field, toUtf8(value.origin) + ": " + *fault);
    if (row.lookup) fields()[*row.lookup].value = value;
    return value;
  }

  void takeTables() {
    fillIn(WireField::metal);
    fillIn(WireField::wireStandard);
    giveToBuild(&brenvolt::ZanCircuitData::wireMetal, WireField::metal);
    giveToBuild(&brenvolt::ZanCircuitData::wireStandard, WireField::wireStandard);
    need(ZanTableKind::ampacity);
    need(ZanTableKind::insulation);
    if (hasLength()) need(ZanTableKind::impedance);
  }

  void need(ZanTableKind kind) {
    const WireTableSet set = fields().tables();
    if (!tables_.table(kind, set).empty()) return;
    const std::wstring wanted = brenvolt::ZanDbReaderUtils::ComposeTableName(
        brenvolt::ZanDbReaderUtils::TableBaseName(kind), set.metal, set.standard, set.code);
    fail(WireField::metal, "there is no table " + toUtf8(wanted));
  }

  void takeCurrents() {
    const double fla = toDouble(fillIn(WireField::fla).text);
    const double multiplier = toDouble(fillIn(WireField::multiplier).text);
    const double extra = toDouble(fillIn(WireField::extra).text);
    fillIn(WireField::voltage);
    fillIn(WireField::phase);
    fields().set(
        LookupField::total,
        brenvolt::formatTrimmed(brenvolt::totalCurrent(fla, multiplier, extra), currentDecimals));
    giveToBuild(&brenvolt::ZanCircuitData::fla, WireField::fla);
    giveToBuild(&brenvolt::ZanCircuitData::flaMultiplier, WireField::multiplier);
    giveToBuild(&brenvolt::ZanCircuitData::voltage, WireField::voltage);
    giveToBuild(&brenvolt::ZanCircuitData::phase, WireField::phase);
  }

  /// By its code, or by its description, which is what a circuit keeps. The label is "description / temperature column".
  void takeInsulation() {
    const WireTableSet set = fields().tables();
    const std::wstring wanted = fillIn(WireField::insulation).text;
    if (wanted.empty()) return fail(WireField::insulation, "is missing, and the option table has no default");
    const std::wstring& table = tables_.table(ZanTableKind::insulation, set);
    brenvolt::WireValue& value = fields()[LookupField::insulation].value;
    const wchar_t* column = L"INSUL";
    value.text = tables_.insulationLabel(set, wanted);
    if (value.text.find(L'/') == std::wstring::npos) {
      column = L"INSUL_DESC";
      const std::set<std::wstring> labels = insulationsDescribed(wanted);
      if (labels.empty())
        return fail(
            WireField::insulation,
            toUtf8(table) + " has no row with INSUL or INSUL_DESC = " + toUtf8(wanted));
      if (labels.size() > 1)
        return fail(
            WireField::insulation, toUtf8(table) + " has several rows with INSUL_DESC = " + toUtf8(wanted) +
                                       ": give the INSUL of one");
      value.text = *labels.begin();
    }
    request_.temperatureOrigin = rowOrigin(table, column, wanted, L"TEMP");
    if (isGivenText(WireField::insulation)) request_.buildChoices.temperature = fields().temperature();
  }

  /// The labels of a description: that of the circuit's temperature if the table has it, else those of all.
  [[nodiscard]] std::set<std::wstring> insulationsDescribed(const std::wstring& description) {
    std::set<std::wstring> found;
    for (const std::wstring& label : tables_.insulations(fields().tables())) {
      const std::size_t slash = label.find(L'/');
      const std::wstring_view whole = label;
      if (!brenvolt::equalsOrdinalNoCase(brenvolt::trimView(whole.substr(0, slash)), description)) continue;
      if (!texts_.temperature.empty() &&
          brenvolt::equalsOrdinalNoCase(brenvolt::trimView(whole.substr(slash + 1)), texts_.temperature))
        return {label};
      found.insert(label);
    }
    return found;
  }

  void takeFactors() {
    const std::wstring continuous = fillIn(WireField::continuous).text;
    const bool isContinuous = !isOff(continuous);
    fields().setTick(LookupField::continuousTick, isContinuous);
    request_.buildChoices.useContinuousLoad = isContinuous;
    if (isContinuous) request_.buildChoices.continuousFactor = toDouble(continuous);
    takeFill();
    takeAmbient();
    if (fillIn(WireField::overallFactor).text.empty()) brenvolt::updateOverallFactor(fields());
  }

  void takeFill() {
    const std::wstring conductors = fillIn(WireField::fill).text;
    brenvolt::WireInput& input = fields();
    input.fill = tables_.fill(code_);
    const std::vector<std::wstring>& ranges = input.fill.ranges;
    input.setList(LookupField::fillRange, ranges, {}, brenvolt::AbsentChoice::takeFirst);
    if (conductors.empty()) return;
    if (ranges.empty()) return fail(WireField::fill, noFillTable());
    const std::wstring& range = ranges[fillIndexOf(ranges, toInt(conductors))];
    input.set(LookupField::fillRange, range);
    input.setTick(LookupField::fillTick, true);
    brenvolt::takeFillFactor(input);
    input[LookupField::fillFactor].value.origin =
        tables_.table(ZanTableKind::conduitFill, code_) + L", range " + range + L", column FACTOR";
    request_.buildChoices.useFill = true;
    request_.buildChoices.fillFactor = input.number(LookupField::fillFactor);
  }

  void takeAmbient() {
    const std::wstring ambient = fillIn(WireField::ambient).text;
    brenvolt::WireInput& input = fields();
    if (ambient.empty() || input.temperature().empty()) return;
    input.ambient = tables_.ambient(input.tables(), input.insulationDescription()).list;
    const std::vector<std::wstring>& ranges = input.ambient.ranges;
    const int degrees = brenvolt::ambientDegrees(ambient);
    const auto range = std::find_if(ranges.begin(), ranges.end(), [degrees](const std::wstring& each) {
      return degrees <= toInt(upperEnd(each));
    });
    const std::wstring& table = tables_.table(ZanTableKind::insulation, input.tables());
    const std::wstring& insulation = request_[WireField::insulation].text;
    if (range == ranges.end())
      return fail(
          WireField::ambient, toUtf8(table) + ", row INSUL = " + toUtf8(insulation) + ": has no factor for " +
                                  std::to_string(degrees) + " degrees");
    input.setList(LookupField::ambientRange, ranges, {*range, {}}, brenvolt::AbsentChoice::takeFirst);
    input.setTick(LookupField::ambientTick, true);
    brenvolt::takeAmbientFactor(input);
    input[LookupField::ambientFactor].value.origin = rowOrigin(table, L"INSUL", insulation, upperEnd(*range));
    request_.buildChoices.useAmbient = true;
    request_.buildChoices.ambientFactor = input.number(LookupField::ambientFactor);
  }

  [[nodiscard]] bool hasLength() const { return isGivenText(WireField::length); }

  void takeDrop() {
    if (!hasLength()) return;
    fields().setTick(LookupField::dropTick, true);
    fillIn(WireField::length);
    fillIn(WireField::units);
    fillIn(WireField::powerFactor);
    WireValue& limit = valueOf(WireField::dropLimit);
    limit = fillIn(WireField::dropLimit);
    if (limit.text.empty()) limit = {std::wstring(offText), std::wstring(brenvolt::assumedOrigin)};
    fields().setTick(LookupField::dropLimitTick, !isOff(limit.text));
    takeRaceway();
    if (fields().isTicked(LookupField::continuousTick)) {
      fillIn(WireField::energyPrice);
      fields().currency = defaults_.setting(brenvolt::option::energyPriceUnits).text;
    }
    brenvolt::ZanCircuitData& build = request_.buildChoices;
    build.useVoltageDrop = true;
    build.useDropLimit = !isOff(limit.text);
    giveToBuild(&brenvolt::ZanCircuitData::length, WireField::length);
    giveToBuild(&brenvolt::ZanCircuitData::lengthUnits, WireField::units);
    giveToBuild(&brenvolt::ZanCircuitData::powerFactor, WireField::powerFactor);
    if (build.useDropLimit) giveToBuild(&brenvolt::ZanCircuitData::dropLimit, WireField::dropLimit);
  }

  void takeRaceway() {
    const std::wstring wanted = fillIn(WireField::raceway).text;
    const WireTableSet set = fields().tables();
    const auto& descriptions = tables_.raceways(code_);
    const auto isMeant = [&](const std::wstring& column) {
      if (wanted.empty() || brenvolt::equalsOrdinalNoCase(wanted, column)) return true;
      if (!descriptions) return false;
      const auto description = descriptions->find(column);
      return description != descriptions->end() && brenvolt::equalsCollating(wanted, description->second);
    };
    const std::vector<std::wstring>& columns = tables_.racewayColumns(set);
    const std::wstring& table = tables_.table(ZanTableKind::impedance, set);
    const auto column = std::find_if(columns.begin(), columns.end(), isMeant);
    if (column == columns.end())
      return fail(
          WireField::raceway, "\"" + toUtf8(wanted) + "\" is not a column of " + toUtf8(table) +
                                  ", which has " + toUtf8(brenvolt::join(columns, L", ")));
    valueOf(WireField::raceway) = {
        *column, wanted.empty() ? L"first raceway column of " + table : std::wstring(givenOrigin)};
    fields()[LookupField::raceway].value = valueOf(WireField::raceway);
    if (!wanted.empty()) request_.buildChoices.raceway = *column;
  }

  void takeParallel() {
    if (!isGivenText(WireField::parallel)) return;
    fillIn(WireField::parallel);
    if (fields().fill.ranges.empty()) return fail(WireField::parallel, noFillTable());
    fields().setTick(LookupField::parallelTick, true);
    takeMinimumSize();
  }

  void takeMinimumSize() {
    const WireTableSet set = fields().tables();
    const WireValue wanted = fillIn(WireField::minimumSize);
    const bool isGiven = isGivenText(WireField::minimumSize);
    // A given size is one, the setting may name several: the first that the table has.
    const std::vector<std::wstring> candidates =
        isGiven ? std::vector<std::wstring>{wanted.text} : brenvolt::splitSkippingEmpty(wanted.text, L';');
    for (const std::wstring& candidate : candidates) {
      const std::wstring size = brenvolt::trim(candidate);
      double amps = 0.0;
      if (!defaults_.reader().ReadAmpacityAt(set, fields().temperature(), size, amps)) continue;
      valueOf(WireField::minimumSize) = {size, wanted.origin};
      fields()[LookupField::parallelMinSize].value = {size, wanted.origin};
      return;
    }
    const std::string table = toUtf8(tables_.table(ZanTableKind::ampacity, set));
    fail(
        WireField::minimumSize, isGiven ? table + " has no row with SIZE = " + toUtf8(wanted.text)
                                        : "is missing, and the option table names no size of " + table);
  }

  /// Sizes for the grounding conductor; a fault of their tables leaves them empty, as in the lookup.
  void takeGround() {
    request_.groundTable = tables_.table(ZanTableKind::grounding, fields().tables());
    request_.groundExpression = defaults_.setting(brenvolt::option::groundingRating);
    brenvolt::loadGroundSizes(fields(), defaults_, {});
    if (!request_.groundSizes().empty()) request_.groundProposal = request_.groundSizes().front();
  }

  void sizeAsBuild() {
    const brenvolt::ZanCircuitData& choices = request_.buildChoices;
    request_.input.total = brenvolt::shownCurrent(brenvolt::autoDesignCurrent(defaults_, choices));
    request_.build = brenvolt::autoWire(defaults_, choices, brenvolt::autoDesignCurrent(defaults_, choices));
    if (!request_.build)
      return fail(
          WireField::metal, toUtf8(tables_.table(ZanTableKind::ampacity, fields().tables())) +
                                " has no size with an ampacity in column " + toUtf8(fields().temperature()));
    request_.input.overallFactor = request_.build->factor;
    if (std::vector<std::wstring>& sizes = fields()[LookupField::groundSize].choices; !sizes.empty()) {
      brenvolt::BesideGround ground = groundFor(tables_, defaults_, request_, request_.build->size);
      if (ground.size == brenvolt::removeBlanks(request_.build->size)) ground.size = request_.build->size;
      std::erase(sizes, ground.size);
      sizes.insert(sizes.begin(), std::move(ground.size));
      request_.groundWithoutArea = std::move(ground.withoutArea);
    }
    request_.input.drop.reset();
    request_.input.cost.reset();
  }

  [[nodiscard]] std::string noFillTable() const {
    return "no table of conduit fill exists for " + toUtf8(code_);
  }

  brenvolt::WireTableCache& tables_;
  const WireTexts& texts_;
  std::vector<WireFault>& faults_;
  const std::size_t faultsBefore_;
  const std::wstring code_;
  const brenvolt::WireDefaults defaults_;
  WireRequest request_;
};

bool isSized(const WireRequest& request, const brenvolt::WireLookupResult& result) {
  return noteOn(request, result).empty() && (request.groundTable.empty() || !request.groundSizes().empty());
}

std::wstring noteOn(const WireRequest& request, const brenvolt::WireLookupResult& result) {
  const std::wstring current = brenvolt::formatTrimmed(request.input.total, currentDecimals) + L" A";
  switch (result.proposal) {
  case brenvolt::Proposal::fits:
    if (!request.groundWithoutArea.empty()) return groundNote(request.groundWithoutArea);
    if (!result.rows[*result.proposed].lacksImpedance) return {};
    return L"the tables have no impedance for " + result.rows[*result.proposed].size +
           L": its voltage drop is not known, and the limit is not applied to it";
  case brenvolt::Proposal::noneLargeEnough:
    if (request.build)
      return L"no size is large enough for " + current + L": a build draws its wires without a size";
    if (request.input.parallel)
      return L"no set of at most " + request[WireField::parallel].text + L" conductors carries " + current;
    return L"no size is large enough for the design current of " + current;
  case brenvolt::Proposal::leftOut:
    return L"sizes for " + current + L" were removed with the undersized sizes around them";
  case brenvolt::Proposal::aboveDropLimit:
    return L"no size for " + current + L" meets the maximum voltage drop of " +
           request[WireField::dropLimit].text + L" percent";
  case brenvolt::Proposal::noCurrent:
    return L"the current to size for is missing";
  }
  return {};
}

std::optional<WireRequest> WireRequests::resolve(const WireTexts& texts, std::vector<WireFault>& faults) {
  const std::size_t before = faults.size();
  std::optional<WireRequest> request = Resolver(tables_, texts, faults).run();
  return faults.size() == before ? std::move(request) : std::nullopt;
}

brenvolt::WireLookupResult WireRequests::lookUp(const WireRequest& request) {
  const brenvolt::WireTableFigures& figures = tables_.figures(request.choice);
  if (!request.build) return brenvolt::computeWires(figures, request.input);
  brenvolt::WireLookupResult result;
  result.rows = brenvolt::singleRunRows(figures.sizes, request.build->factor);
  brenvolt::fillLoadPercent(result.rows, request.input.total);
  for (std::size_t row = 0; row < result.rows.size() && !result.proposed; ++row)
    if (result.rows[row].size == request.build->size) result.proposed = row;
  result.proposal =
      request.build->isLargeEnough ? brenvolt::Proposal::fits : brenvolt::Proposal::noneLargeEnough;
  return result;
}

std::vector<brenvolt::WireCandidate> WireRequests::allSizes(const WireRequest& request) {
  return brenvolt::unfilteredRows(tables_.figures(request.choice), request.input);
}

brenvolt::WireSizeFacts WireRequests::facts(const WireRequest& request, const std::wstring& size) {
  return brenvolt::wireSizeFacts(tables_.reader(request.choice.tables.code), request.choice, size);
}

brenvolt::BesideGround WireRequests::groundBeside(
    const WireRequest& request, const std::wstring& conductors) {
  return groundFor(tables_, brenvolt::WireDefaults(tables_, request.choice.tables.code), request, conductors);
}

std::wstring groundNote(const std::wstring& sizeWithoutArea) {
  return L"the grounding conductor is not enlarged with the conductors: WIRESIZE has no area for " +
         sizeWithoutArea;
}

} // namespace simhost
