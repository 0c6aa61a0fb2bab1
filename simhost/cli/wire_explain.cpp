// The explanation of `brenvolt wire --explain`.
#include "simhost/cli/wire_explain.h"

#include "data/wire_factor_fields.h"
#include "expr/expr_evaluator.h"
#include "simhost/json/json_text.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace simhost {

using brenvolt::LookupField;
using brenvolt::toUtf8;
using brenvolt::WireCandidate;
using brenvolt::WireValue;

namespace {

constexpr int shownDigits = 6;

/// A number inside an arithmetic line.
std::wstring n(double value) {
  return brenvolt::formatTrimmed(value, shownDigits);
}

class Explanation final {
public:
  Explanation(
      const WireRequest& request, const brenvolt::WireLookupResult& result, std::size_t index,
      const brenvolt::WireSizeFacts& facts)
      : request_(request), result_(result), index_(index), row_(result.rows[index]), facts_(facts) {}

  std::vector<ExplainedFigure> run() {
    explainCurrent();
    request_.input.parallel ? explainParallelAmpacity() : explainAmpacity();
    explainLoad();
    if (request_.input.drop) explainDrop();
    explainProposal();
    explainGround();
    return std::move(figures_);
  }

private:
  void begin(std::wstring heading) { figures_.push_back({std::move(heading), {}, {}}); }
  void compute(std::wstring line) { figures_.back().arithmetic.push_back(std::move(line)); }
  void source(std::wstring line) { figures_.back().sources.push_back(std::move(line)); }
  void source(const std::wstring& what, const WireValue& value) {
    source(what + L" " + value.text + L": " + value.origin);
  }
  void source(const std::wstring& what, WireField field) { source(what, request_[field]); }

  void explainCurrent() {
    const brenvolt::WireLookupInput& input = request_.input;
    const bool hasExtra = brenvolt::isGiven(input.extraCurrent);
    begin(L"Design current");
    compute(L"full-load current x multiplier" + std::wstring(hasExtra ? L" + extra current" : L""));
    compute(
        L"= " + n(input.fla) + L" x " + n(request_.fields.number(LookupField::multiplier)) +
        (hasExtra ? L" + " + n(input.extraCurrent) : L"") + L" = " + n(input.total) + L" A");
    source(L"full-load current", WireField::fla);
    source(L"multiplier", WireField::multiplier);
    if (hasExtra) source(L"extra current", WireField::extra);
  }

  void explainFactors() {
    begin(L"Combined factor");
    if (const WireValue& byHand = request_[WireField::overallFactor]; !byHand.text.empty()) {
      compute(L"manual factor, replaces the computed one = " + n(request_.input.overallFactor));
      return source(L"combined factor", byHand);
    }
    const brenvolt::DeratingFactors factors = brenvolt::deratingFactorsOf(request_.fields);
    compute(L"the smaller of continuous-load and fill factor, x ambient factor");
    compute(
        L"= min(" + n(factors.continuous.value_or(1.0)) + L", " + n(factors.fill.value_or(1.0)) + L") x " +
        n(factors.ambient.value_or(1.0)) + L" = " + n(request_.input.overallFactor));
    source(L"continuous-load factor", WireField::continuous);
    sourceOfFactor(L"fill factor", LookupField::fillTick, LookupField::fillFactor);
    sourceOfFactor(L"ambient factor", LookupField::ambientTick, LookupField::ambientFactor);
  }

  void sourceOfFactor(const std::wstring& what, LookupField tick, LookupField factor) {
    if (request_.fields.isTicked(tick))
      source(what, request_.fields[factor].value);
    else
      source(what + L" 1: not used");
  }

  std::wstring rowOfSize() const {
    return facts_.ampacityTable + L", row SIZE_DESC = " + row_.size + L", column " +
           request_.choice.temperature;
  }

  void sourcesOfAmpacity() {
    source(L"table ampacity " + n(facts_.ampacity) + L": " + rowOfSize());
    source(L"column " + request_.choice.temperature + L": " + request_.temperatureOrigin);
    source(L"insulation", WireField::insulation);
  }

  void explainAmpacity() {
    explainFactors();
    begin(L"Ampacity");
    compute(L"table ampacity x combined factor");
    compute(
        L"= " + n(facts_.ampacity) + L" x " + n(request_.input.overallFactor) + L" = " + row_.ampacity +
        L" A");
    sourcesOfAmpacity();
  }

  void explainParallelAmpacity() {
    begin(L"Ampacity of parallel runs");
    const double fill = fillOfRow();
    compute(
        L"conductors per phase = design current / table ampacity, rounded up = " + n(request_.input.total) +
        L" / " + n(facts_.ampacity) + L" -> " + row_.count);
    compute(L"table ampacity x conductors x fill factor; no other factor is used");
    compute(
        L"= " + n(facts_.ampacity) + L" x " + row_.count + L" x " + n(fill) + L" = " + row_.ampacity + L" A");
    sourcesOfAmpacity();
    source(L"fill range " + row_.fillRange + L", factor " + n(fill));
    source(L"smallest size in parallel", WireField::minimumSize);
  }

  double fillOfRow() const {
    for (const brenvolt::FillEntry& entry : request_.input.parallel->fill)
      if (entry.range == row_.fillRange) return entry.factor;
    return 1.0;
  }

  void explainLoad() {
    begin(L"Utilisation");
    compute(L"design current / ampacity x 100");
    compute(
        L"= " + n(request_.input.total) + L" / " + row_.ampacity + L" x 100 = " + row_.loadPercent + L" %");
  }

  void explainDrop() {
    explainVolts();
    begin(L"Voltage drop in percent");
    compute(L"drop / voltage x 100");
    compute(L"= " + row_.drop + L" / " + n(request_.input.voltage) + L" x 100 = " + row_.dropPercent + L" %");
    source(L"voltage", WireField::voltage);
    if (request_.input.drop->limit) source(L"maximum in percent", WireField::dropLimit);

    const bool isOnePhase = request_.input.phase == L"1";
    const std::wstring factor = isOnePhase ? L"1" : n(brenvolt::threePhaseFactor);
    begin(L"Power loss");
    compute(
        (isOnePhase ? L"1 (one phase)" : factor + L" (three phases)") +
        L" x drop x full-load current x 0.001");
    compute(
        L"= " + factor + L" x " + row_.drop + L" x " + n(request_.input.fla) + L" x 0.001 = " + row_.loss +
        L" kW");

    if (!request_.input.cost) return;
    begin(L"Yearly cost");
    compute(L"loss x 24 h x 365.25 days x price");
    compute(
        L"= " + row_.loss + L" x 24 x 365.25 x " + n(request_.input.cost->energyPrice) + L" = " +
        row_.yearlyCost);
    source(L"price per kWh", WireField::energyPrice);
  }

  void explainVolts() {
    const brenvolt::DropCircuit circuit = brenvolt::dropCircuitOf(request_.input);
    const double k = circuit.isSinglePhase ? brenvolt::singlePhaseFactor : brenvolt::threePhaseFactor;
    const double m = circuit.isMetres ? brenvolt::feetPerMetre : 1.0;
    const double pf = circuit.powerFactor;
    const brenvolt::Impedance& z = facts_.impedance;
    begin(L"Voltage drop");
    compute(L"k x length x m x 0.0003048 km/ft x current x (R x pf + X x sqrt(1 - pf x pf))");
    compute(
        L"= " + n(k) + L" x " + n(circuit.length) + L" x " + n(m) + L" x 0.0003048 x " + n(circuit.current) +
        L" x (" + n(z.r) + L" x " + n(pf) + L" + " + n(z.x) + L" x " + n(std::sqrt(1.0 - pf * pf)) + L")");
    compute(L"= " + n(brenvolt::voltageDrop(circuit, z)) + L" V, shown as " + row_.drop + L" V");
    source(L"k " + n(k) + (circuit.isSinglePhase ? L": one phase" : L": three phases"));
    source(L"m " + n(m) + (circuit.isMetres ? L": the length is in metres" : L": the length is in feet"));
    source(
        L"current " + n(circuit.current) +
        L" A: full-load current and extra current, without the multiplier");
    source(L"length", WireField::length);
    source(L"units", WireField::units);
    source(L"power factor pf", WireField::powerFactor);
    sourcesOfImpedance();
    source(L"raceway", WireField::raceway);
  }

  void sourcesOfImpedance() {
    const brenvolt::ImpedanceSource& from = facts_.source;
    const std::wstring column = L", column " + request_.choice.raceway;
    const auto cellOf = [&](const std::wstring& size, const std::wstring& cell) {
      return facts_.impedanceTable + L", row SIZE = " + size + column + L", cell \"" + cell + L"\"";
    };
    const std::wstring figures =
        L"X " + n(facts_.impedance.x) + L", R " + n(facts_.impedance.r) + L" ohm/km: ";
    if (!from.cell.empty()) return source(figures + cellOf(from.sizeKey, from.cell));
    const auto& [lower, upper, hasOwnRow] = from.neighbours;
    if (!hasOwnRow || (!lower && !upper))
      return source(
          figures + facts_.impedanceTable + L" has no row with SIZE = " + from.sizeKey + L", so no drop");
    source(figures + (lower && upper ? L"by linear interpolation between" : L"taken from"));
    for (const std::optional<brenvolt::ImpedanceRow>& neighbour : {lower, upper})
      if (neighbour) source(L"  " + cellOf(neighbour->size, neighbour->cell));
  }

  void explainProposal() {
    begin(L"Proposal");
    compute(
        row_.size + (row_.count.empty() ? L"" : L" x " + row_.count) +
        L" is the first size whose ampacity is above the design current: " + row_.ampacity + L" > " +
        n(request_.input.total) + L" A");
    if (index_ == 0) return;
    const WireCandidate& below = result_.rows[index_ - 1];
    compute(L"the previous row, " + below.size + L", has " + below.ampacity + L" A");
  }

  void explainGround() {
    if (request_.groundSizes().empty()) return;
    begin(L"Grounding conductor");
    const std::wstring& expression = request_.groundExpression.text;
    const double rating = brenvolt::ZanExprEvaluator().Evaluate(expression, request_.input.fla);
    compute(
        L"rating = " + expression + L" with i = full-load current " + n(request_.input.fla) + L" = " +
        n(rating) + L" A");
    compute(L"the first size whose MAX is above the rating: " + request_.groundSizes().front());
    source(L"formula: " + request_.groundExpression.origin);
    source(
        L"size " + request_.groundSizes().front() + L": " + request_.groundTable + L", row SIZE_DESC = " +
        request_.groundSizes().front() + L", column MAX");
  }

  const WireRequest& request_;
  const brenvolt::WireLookupResult& result_;
  const std::size_t index_;
  const WireCandidate& row_;
  const brenvolt::WireSizeFacts& facts_;
  std::vector<ExplainedFigure> figures_;
};

} // namespace

std::vector<ExplainedFigure> explainWire(
    const WireRequest& request, const brenvolt::WireLookupResult& result, std::size_t index,
    const brenvolt::WireSizeFacts& facts) {
  return Explanation(request, result, index, facts).run();
}

std::string explanationText(const std::vector<ExplainedFigure>& figures) {
  std::wstring text;
  for (const ExplainedFigure& figure : figures) {
    text += L"\n" + figure.heading + L"\n";
    for (const std::wstring& line : figure.arithmetic)
      text += L"  " + line + L"\n";
    for (const std::wstring& line : figure.sources)
      text += L"    " + line + L"\n";
  }
  return toUtf8(text);
}

std::string explanationJson(const std::vector<ExplainedFigure>& figures) {
  const auto texts = [](const std::vector<std::wstring>& lines) {
    nlohmann::ordered_json array = nlohmann::ordered_json::array();
    for (const std::wstring& line : lines)
      array.push_back(toUtf8(line));
    return array;
  };
  nlohmann::ordered_json array = nlohmann::ordered_json::array();
  for (const ExplainedFigure& figure : figures)
    array.push_back(
        {{"figure", toUtf8(figure.heading)},
         {"arithmetic", texts(figure.arithmetic)},
         {"sources", texts(figure.sources)}});
  return jsonText(array, 2);
}

} // namespace simhost
