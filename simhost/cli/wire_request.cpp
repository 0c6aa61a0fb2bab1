// Filling in and looking up the fields of a circuit, group by group.
#include "simhost/cli/wire_request.h"

#include "simhost/cli/code_standard.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>

namespace simhost {

using brenvolt::toDouble;
using brenvolt::toInt;
using brenvolt::toUtf8;
using brenvolt::WireTableSet;
using brenvolt::ZanTableKind;

namespace {

constexpr std::wstring_view givenOrigin = L"given";
constexpr std::wstring_view assumedOrigin = L"assumed by the wire lookup";
constexpr int factorDecimals = 4;

std::wstring rowOrigin(
    std::wstring_view table, std::wstring_view keyColumn, std::wstring_view key, std::wstring_view column) {
  return std::wstring(table)
      .append(L", row ")
      .append(keyColumn)
      .append(L" = ")
      .append(key)
      .append(L", column ")
      .append(column);
}

std::wstring keyOf(const WireTableSet& set) {
  return set.metal + L"|" + set.standard + L"|" + set.code;
}

bool isOff(std::wstring_view text) {
  return brenvolt::equalsOrdinalNoCase(text, offText);
}

/// The part of a range behind "~" ("36~40C" has "40C"), the whole text of any other.
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

} // namespace

WireCatalogue::Code& WireCatalogue::codeOf(const std::wstring& code) {
  std::unique_ptr<Code>& entry = codes_[code];
  if (entry) return *entry;
  entry = std::make_unique<Code>(connection_);
  entry->fault = codeStandardFault(connection_, code);
  entry->reader.SetCode(code);
  entry->reader.GetOptions();
  const brenvolt::ZanDbReaderUtils utils(&connection_);
  static_cast<void>(utils.ResolveTable(entry->optionTable, ZanTableKind::options, code));
  static_cast<void>(utils.ResolveTable(entry->fillTable, ZanTableKind::conduitFill, code));
  entry->reader.ListFill(code, entry->fill);
  entry->reader.ListRaceways(code, entry->raceways);
  return *entry;
}

WireCatalogue::Wires& WireCatalogue::wiresOf(const WireTableSet& set) {
  const auto [entry, isNew] = wires_.try_emplace(keyOf(set));
  Wires& wires = entry->second;
  if (!isNew) return wires;
  const brenvolt::ZanWireTableReader& reader = codeOf(set.code).reader;
  struct Resolved {
    ZanTableKind kind;
    std::wstring& name;
  };
  for (const Resolved& table :
       {Resolved{ZanTableKind::ampacity, wires.ampacityTable},
        Resolved{ZanTableKind::insulation, wires.insulationTable},
        Resolved{ZanTableKind::impedance, wires.impedanceTable},
        Resolved{ZanTableKind::grounding, wires.groundTable}})
    static_cast<void>(reader.ResolveTable(table.name, table.kind, set));
  reader.ListRacewayColumns(set, wires.racewayColumns);
  return wires;
}

const brenvolt::WireTableFigures& WireCatalogue::figures(const brenvolt::WireTableChoice& choice) {
  const std::wstring key =
      keyOf(choice.tables) + L"|" + choice.temperature + L"|" + choice.raceway + L"|" + choice.minimumSize;
  const auto found = figures_.find(key);
  if (found != figures_.end()) return found->second;
  return figures_.emplace(key, brenvolt::readWireFigures(codeOf(choice.tables.code).reader, choice))
      .first->second;
}

brenvolt::WireSizeFacts WireCatalogue::facts(const WireRequest& request, const std::wstring& size) {
  return brenvolt::wireSizeFacts(codeOf(request.choice.tables.code).reader, request.choice, size);
}

/// One circuit on its way from texts to a request.
class WireCatalogue::Resolver final {
public:
  Resolver(WireCatalogue& catalogue, const WireTexts& texts, std::vector<WireFault>& faults)
      : catalogue_(catalogue), texts_(texts), faults_(faults) {}

  std::optional<WireRequest> run() {
    const std::size_t faultsBefore = faults_.size();
    checkTexts();
    if (faults_.size() != faultsBefore) return std::nullopt;
    const std::wstring& code = texts_[WireField::standardCode];
    code_ = &catalogue_.codeOf(code.empty() ? std::wstring(brenvolt::defaultCode) : code);
    if (code_->fault) {
      fail(WireField::standardCode, *code_->fault);
      return std::nullopt;
    }
    fillIn(WireField::standardCode);
    takeTables();
    if (faults_.size() != faultsBefore) return std::nullopt;
    takeCurrents();
    takeInsulation();
    takeDerating();
    takeDrop();
    takeParallel();
    takeGround();
    if (faults_.size() != faultsBefore) return std::nullopt;
    request_.input.undersized =
        texts_.hidesUndersized ? brenvolt::UndersizedRows::hide : brenvolt::UndersizedRows::show;
    return std::move(request_);
  }

private:
  void fail(WireField field, std::string reason) { faults_.push_back({field, std::move(reason)}); }

  void checkTexts() {
    for (const WireFieldRow& row : wireFields) {
      const std::wstring& text = texts_[row.field];
      if (text.empty() && row.isRequired) fail(row.field, "is missing");
      if (text.empty()) continue;
      if (std::optional<std::string> fault = wireTextFault(row.rule, text))
        fail(row.field, std::move(*fault));
    }
  }

  /// The given text, else the option's default, else the fallback.
  const WireValue& fillIn(WireField field) {
    const WireFieldRow& row = wireField(field);
    WireValue& value = request_.values[static_cast<std::size_t>(field)];
    value = {texts_[field], std::wstring(givenOrigin)};
    if (!value.text.empty()) return value;
    if (!row.option.empty()) {
      value = {
          code_->reader.options().defaultOf(row.option),
          rowOrigin(code_->optionTable, L"CODE", row.option, L"DEFAULT")};
      if (!value.text.empty()) {
        if (const std::optional<std::string> fault = wireTextFault(row.rule, value.text))
          fail(field, toUtf8(value.origin) + ": " + *fault);
        return value;
      }
    }
    value = {std::wstring(row.fallback), std::wstring(row.fallback.empty() ? L"" : assumedOrigin)};
    return value;
  }

  void setOrigin(WireField field, std::wstring text, std::wstring origin) {
    request_.values[static_cast<std::size_t>(field)] = {std::move(text), std::move(origin)};
  }

  void takeTables() {
    WireTableSet& set = request_.choice.tables;
    set.metal = fillIn(WireField::metal).text;
    set.standard = fillIn(WireField::wireStandard).text;
    set.code = request_[WireField::standardCode].text;
    wires_ = &catalogue_.wiresOf(set);
    const auto need = [&](const std::wstring& table, ZanTableKind kind) {
      if (!table.empty()) return;
      const std::wstring wanted = brenvolt::ZanDbReaderUtils::ComposeTableName(
          brenvolt::ZanDbReaderUtils::TableBaseName(kind), set.metal, set.standard, set.code);
      fail(WireField::metal, "there is no table " + toUtf8(wanted));
    };
    need(wires_->ampacityTable, ZanTableKind::ampacity);
    need(wires_->insulationTable, ZanTableKind::insulation);
    if (hasLength()) need(wires_->impedanceTable, ZanTableKind::impedance);
  }

  void takeCurrents() {
    brenvolt::WireLookupInput& input = request_.input;
    input.fla = toDouble(fillIn(WireField::fla).text);
    request_.multiplier = toDouble(fillIn(WireField::multiplier).text);
    input.extraCurrent = toDouble(fillIn(WireField::extra).text);
    input.total =
        brenvolt::shownCurrent(brenvolt::totalCurrent(input.fla, request_.multiplier, input.extraCurrent));
    input.voltage = toDouble(fillIn(WireField::voltage).text);
    input.phase = fillIn(WireField::phase).text;
  }

  /// The label of an insulation code is "description / temperature column".
  void takeInsulation() {
    const std::wstring& code = fillIn(WireField::insulation).text;
    if (code.empty()) return fail(WireField::insulation, "is missing, and the options name none");
    const auto [label, isNew] = wires_->insulationLabels.try_emplace(code);
    if (isNew) code_->reader.InsulationLabel(request_.choice.tables, code, label->second);
    const std::size_t slash = label->second.find(L'/');
    if (slash == std::wstring::npos)
      return fail(
          WireField::insulation,
          toUtf8(wires_->insulationTable) + " has no row with INSUL = " + toUtf8(code));
    insulation_ = brenvolt::trim(label->second.substr(0, slash));
    request_.choice.temperature = brenvolt::trim(label->second.substr(slash + 1));
    request_.temperatureOrigin = rowOrigin(wires_->insulationTable, L"INSUL", code, L"TEMP");
  }

  void takeDerating() {
    const std::wstring& continuous = fillIn(WireField::continuous).text;
    if (!isOff(continuous)) request_.factors.continuous = toDouble(continuous);
    takeFill();
    takeAmbient();
    // The lookup applies the number that its field shows.
    request_.input.overallFactor =
        toDouble(brenvolt::formatTrimmed(brenvolt::overallFactor(request_.factors), factorDecimals));
  }

  void takeFill() {
    const std::wstring& conductors = fillIn(WireField::fill).text;
    if (conductors.empty()) return;
    const brenvolt::FactorList& fill = code_->fill;
    if (fill.ranges.empty()) return fail(WireField::fill, "there is no table of conduit fill for " + code());
    const std::size_t index = fillIndexOf(fill.ranges, toInt(conductors));
    request_.fillFactor = {
        fill.factors[index], code_->fillTable + L", range " + fill.ranges[index] + L", column FACTOR"};
    request_.factors.fill = toDouble(fill.factors[index]);
    selectedFill_ = index;
  }

  void takeAmbient() {
    const std::wstring& ambient = fillIn(WireField::ambient).text;
    if (ambient.empty() || insulation_.empty()) return;
    const auto [list, isNew] = wires_->ambients.try_emplace(insulation_);
    std::size_t ignored = 0;
    if (isNew) code_->reader.ListAmbient(request_.choice.tables, insulation_, list->second, ignored);
    const brenvolt::FactorList& factors = list->second;
    const int degrees = brenvolt::ambientDegrees(ambient);
    const auto range =
        std::find_if(factors.ranges.begin(), factors.ranges.end(), [degrees](const std::wstring& each) {
          return degrees <= toInt(upperEnd(each));
        });
    const std::wstring& insulation = request_[WireField::insulation].text;
    if (range == factors.ranges.end())
      return fail(
          WireField::ambient, toUtf8(wires_->insulationTable) + ", row INSUL = " + toUtf8(insulation) +
                                  ": has no factor for " + std::to_string(degrees) + " degrees");
    const std::wstring& factor = factors.factors[static_cast<std::size_t>(range - factors.ranges.begin())];
    request_.ambientFactor = {
        factor, rowOrigin(wires_->insulationTable, L"INSUL", insulation, upperEnd(*range))};
    request_.factors.ambient = toDouble(factor);
  }

  [[nodiscard]] bool hasLength() const { return !texts_[WireField::length].empty(); }

  void takeDrop() {
    if (!hasLength()) return;
    brenvolt::DropFields drop;
    drop.length = toDouble(fillIn(WireField::length).text);
    drop.lengthUnits = fillIn(WireField::units).text;
    drop.powerFactor = toDouble(fillIn(WireField::powerFactor).text);
    if (const std::wstring& limit = fillIn(WireField::dropLimit).text; !isOff(limit)) drop.limit = limit;
    takeRaceway();
    request_.input.drop = drop;
    if (!request_.factors.continuous) return;
    request_.input.cost = brenvolt::CostFields{
        toDouble(fillIn(WireField::energyPrice).text),
        code_->reader.options().defaultOf(brenvolt::option::energyPriceUnits)};
  }

  void takeRaceway() {
    const std::wstring wanted = fillIn(WireField::raceway).text;
    std::string known;
    for (const std::wstring& column : wires_->racewayColumns) {
      const auto description = code_->raceways.find(column);
      const bool isMeant =
          wanted.empty() || brenvolt::equalsOrdinalNoCase(wanted, column) ||
          (description != code_->raceways.end() && brenvolt::equalsCollating(wanted, description->second));
      if (isMeant) {
        request_.choice.raceway = column;
        setOrigin(
            WireField::raceway, column,
            wanted.empty() ? L"first raceway column of " + wires_->impedanceTable
                           : std::wstring(givenOrigin));
        return;
      }
      known.append(known.empty() ? "" : ", ").append(toUtf8(column));
    }
    fail(
        WireField::raceway, "\"" + toUtf8(wanted) + "\" is no column of " + toUtf8(wires_->impedanceTable) +
                                ", which has " + known);
  }

  void takeParallel() {
    const std::wstring& highest = fillIn(WireField::parallel).text;
    if (highest.empty()) return;
    brenvolt::ParallelFields parallel;
    parallel.highestCount = toInt(highest);
    parallel.selectedFill = selectedFill_;
    const brenvolt::FactorList& fill = code_->fill;
    for (std::size_t i = 0; i < fill.ranges.size(); ++i)
      parallel.fill.push_back({fill.ranges[i], toDouble(fill.factors[i])});
    if (parallel.fill.empty())
      return fail(WireField::parallel, "there is no table of conduit fill for " + code());
    takeMinimumSize();
    request_.input.parallel = std::move(parallel);
  }

  void takeMinimumSize() {
    std::vector<std::wstring> candidates = {texts_[WireField::minimumSize]};
    const bool isGiven = !candidates.front().empty();
    const brenvolt::ZanOptTableReader& options = code_->reader.options();
    if (!isGiven)
      candidates =
          brenvolt::splitSkippingEmpty(options.defaultOf(brenvolt::option::parallelMinimumSize), L';');
    for (const std::wstring& candidate : candidates) {
      const std::wstring size = brenvolt::trim(candidate);
      double amps = 0.0;
      if (!code_->reader.ReadAmpacityAt(request_.choice.tables, request_.choice.temperature, size, amps))
        continue;
      request_.choice.minimumSize = size;
      setOrigin(
          WireField::minimumSize, size,
          isGiven
              ? std::wstring(givenOrigin)
              : rowOrigin(code_->optionTable, L"CODE", brenvolt::option::parallelMinimumSize, L"DEFAULT"));
      return;
    }
    fail(
        WireField::minimumSize,
        isGiven ? toUtf8(wires_->ampacityTable) + " has no row with SIZE = " + toUtf8(candidates.front())
                : "is missing, and the options name no size of " + toUtf8(wires_->ampacityTable));
  }

  /// Sizes for the grounding conductor; a fault of their tables leaves them empty, as in the lookup.
  void takeGround() {
    request_.groundTable = wires_->groundTable;
    request_.groundExpression = {
        code_->reader.options().defaultOf(brenvolt::option::groundingRating),
        rowOrigin(code_->optionTable, L"CODE", brenvolt::option::groundingRating, L"DEFAULT")};
    code_->reader.ListGround(
        request_.choice.tables, request_.groundExpression.text, request_[WireField::fla].text,
        request_.groundSizes);
  }

  [[nodiscard]] std::string code() const { return toUtf8(request_[WireField::standardCode].text); }

  WireCatalogue& catalogue_;
  const WireTexts& texts_;
  std::vector<WireFault>& faults_;
  WireRequest request_;
  Code* code_ = nullptr;
  Wires* wires_ = nullptr;
  std::wstring insulation_; ///< the description of the chosen one
  std::size_t selectedFill_ = 0;
};

std::optional<WireRequest> WireCatalogue::resolve(const WireTexts& texts, std::vector<WireFault>& faults) {
  return Resolver(*this, texts, faults).run();
}

} // namespace simhost
