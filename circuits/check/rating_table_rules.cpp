// Motors, loads and the formulas and steps that rate their components.
#include "circuits/check/similar_name.h"
#include "circuits/check/table_rules.h"
#include "data/table_names.h"
#include "expr/expr_evaluator.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/plain_number.h"
#include "text/split.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

namespace circuits {

using brenvolt::equalsOrdinalNoCase;
using brenvolt::formatTrimmed;
using brenvolt::toUpper;

namespace {

/// Full-load currents by type in upper case.
using Currents = std::map<std::wstring, std::vector<double>>;

Currents currentsOf(const SiteTable* motors) {
  Currents currents;
  if (motors == nullptr) return currents;
  const int type = motors->text.columnOf(L"Type");
  const int current = motors->text.columnOf(L"FLA (A)");
  if (type == 0 || current == 0) return currents;
  for (const TableText::Row& row : motors->text.rows)
    if (const std::optional<double> value = brenvolt::plainNumber(row.cell(current)); value && *value > 0.0)
      currents[toUpper(row.cell(type))].push_back(*value);
  for (auto& [name, values] : currents) {
    std::ranges::sort(values);
    values.erase(std::ranges::unique(values).begin(), values.end());
  }
  return currents;
}

/// What the evaluator forgives and an author cannot have meant; empty when there is nothing.
std::wstring slipOf(std::wstring_view formula) {
  std::wstring text(formula);
  std::erase_if(text, [](wchar_t letter) { return brenvolt::isBlank(letter); });
  const auto count = [&text](wchar_t letter) { return std::ranges::count(text, letter); };
  if (count(L'(') != count(L')')) return L"the parentheses do not match";
  if (text.find(L"==") != std::wstring::npos) return L"== compares nothing; = does";
  constexpr std::wstring_view operators = L"+-*/^<>=";
  if (!text.empty() && operators.find(text.back()) != operators.npos) return L"it ends with an operator";
  for (std::size_t i = 1; i < text.size(); ++i) {
    const bool isAfterValue = text[i - 1] == L')' || (text[i - 1] >= L'0' && text[i - 1] <= L'9');
    if (text[i] == L'(' && isAfterValue) return L"an operator is missing before a parenthesis";
    const bool isDivision = text[i - 1] == L'/' && text[i] == L'0';
    if (isDivision && (i + 1 == text.size() || text.find_first_of(L"123456789", i) == text.npos))
      return L"it divides by 0";
  }
  return {};
}

void checkMotors(const SiteTable& table, const ElectricalCode& electrical, Findings& findings) {
  const TableText& text = table.text;
  const int current = text.columnOf(L"FLA (A)");
  for (const TableText::Row& row : text.rows) {
    const std::optional<double> amperes =
        current == 0 ? std::nullopt : brenvolt::plainNumber(row.cell(current));
    const bool isEmpty = current > 0 && brenvolt::trimView(row.cell(current)).empty();
    if (isEmpty || (amperes && *amperes <= 0.0))
      findings.add(
          L"motor-without-current", table.place(row.number, current), {row.cell(current)},
          {{L"table", text.name}});
  }
  struct Choice {
    const wchar_t* column;
    const wchar_t* setting;
  };
  for (const Choice& choice : {Choice{L"Voltage (V)", L"VOLTS"}, Choice{L"Phase", L"PHASE"}}) {
    const int column = text.columnOf(choice.column);
    const std::vector<std::wstring> offered = electrical.listOf(choice.setting);
    if (column == 0 || offered.empty()) continue;
    std::set<std::wstring> reported;
    for (const TableText::Row& row : text.rows) {
      const std::wstring& value = row.cell(column);
      const bool isOffered = value.empty() || std::ranges::find(offered, value) != offered.end();
      if (!isOffered && reported.insert(value).second)
        findings.add(
            L"motor-choice", table.place(row.number, column), {value},
            {{L"value", value}, {L"setting", choice.setting}, {L"options", electrical.options->text.name}});
    }
  }
}

/// The tables by which a code rates its motors and loads. Codes that borrow share some of them.
struct RatingTables {
  const SiteTable* motors;
  const SiteTable* loads;
  const SiteTable* formulas;
  const SiteTable* descriptions;
  const SiteTable* steps;
  auto operator<=>(const RatingTables&) const = default;
};

/// Cells of formulas that are reported: the motors of another code would only repeat it.
using FaultyFormulas = std::set<const std::wstring*>;

class ComponentCheck final {
public:
  ComponentCheck(const RatingTables& tables, FaultyFormulas& faulty, Findings& findings)
      : formulas_(*tables.formulas), descriptions_(tables.descriptions), steps_(tables.steps),
        motors_(tables.motors), loads_(tables.loads), faulty_(faulty), findings_(findings),
        currents_(currentsOf(tables.motors)) {
    for (auto& [type, currents] : currentsOf(tables.loads))
      if (currents_.emplace(type, std::move(currents)).second) loadTypes_.insert(type);
  }

  void run() {
    const int type = formulas_.text.columnOf(L"Type");
    if (type == 0) return;
    checkTypes(type);
    if (descriptions_ == nullptr) return;
    const int code = descriptions_->text.columnOf(L"CODE");
    if (code == 0) return;
    for (const TableText::Row& row : descriptions_->text.rows)
      checkComponent(*descriptions_, row, code, type);
  }

private:
  void checkTypes(int type) {
    std::set<std::wstring> known;
    for (const TableText::Row& row : formulas_.text.rows)
      known.insert(toUpper(row.cell(type)));
    if (motors_ == nullptr) return;
    const int motorType = motors_->text.columnOf(L"Type");
    std::set<std::wstring> reported;
    for (const TableText::Row& row : motors_->text.rows) {
      const std::wstring name = toUpper(row.cell(motorType));
      if (!name.empty() && !known.contains(name) && reported.insert(name).second)
        findings_.add(
            L"motor-type-unrated", motors_->place(row.number, motorType), {row.cell(motorType)},
            {{L"type", row.cell(motorType)}, {L"table", formulas_.text.name}});
    }
  }

  void checkComponent(const SiteTable& table, const TableText::Row& row, int code, int type) {
    const std::wstring& component = row.cell(code);
    if (component.empty()) return;
    const int column = formulas_.text.columnOf(component);
    if (column == 0) {
      findings_.add(
          L"component-without-formula", table.place(row.number, code), {component},
          {{L"component", component},
           {L"table", formulas_.text.name},
           {L"similar", didYouMean(similarName(component, formulas_.text.columns))}});
      return;
    }
    const std::vector<double> limits = limitsOf(component);
    if (steps_ != nullptr && limits.empty())
      findings_.add(
          L"component-without-steps", table.place(row.number, code), {component},
          {{L"component", component}, {L"table", steps_->text.name}});
    for (const TableText::Row& formula : formulas_.text.rows) {
      if (faulty_.contains(&formula.cell(column))) continue;
      if (isNotOfLoad(formula, type, column)) continue;
      const std::wstring name = toUpper(formula.cell(type));
      const auto currents = currents_.find(name);
      const std::vector<double> values = checkFormula(
          formulas_.place(formula.number, column), formula.cell(column),
          currents == currents_.end() ? std::vector<double>() : currents->second, findings_);
      if (values.empty()) faulty_.insert(&formula.cell(column));
      // Without a motor or load of the type, the currents are only assumed.
      if (!values.empty() && !limits.empty() && currents != currents_.end())
        checkSteps(
            formulas_.place(formula.number, column), formula.cell(column), component,
            *(loadTypes_.contains(name) ? loads_ : motors_), values, limits.back());
    }
  }

  /// "0": a load has no such component, as a heater has no overload relay. A motor has all of them.
  bool isNotOfLoad(const TableText::Row& row, int type, int column) const {
    return brenvolt::trimView(row.cell(column)) == L"0" && loadTypes_.contains(toUpper(row.cell(type)));
  }

  /// The steps of a component, ascending.
  std::vector<double> limitsOf(const std::wstring& component) const {
    std::vector<double> limits;
    if (steps_ == nullptr) return limits;
    const int code = steps_->text.columnOf(L"CODE");
    const int most = steps_->text.columnOf(L"MAX");
    if (code == 0 || most == 0) return limits;
    for (const TableText::Row& row : steps_->text.rows)
      if (equalsOrdinalNoCase(row.cell(code), component))
        if (const std::optional<double> limit = brenvolt::plainNumber(row.cell(most)))
          limits.push_back(*limit);
    std::ranges::sort(limits);
    return limits;
  }

  /// @param rated  the table of the motors or loads that the values are for
  void checkSteps(
      const FindingPlace& place, const std::wstring& formula, const std::wstring& component,
      const SiteTable& rated, const std::vector<double>& values, double largest) {
    const double highest = *std::ranges::max_element(values);
    if (highest > largest + brenvolt::numberTolerance)
      findings_.add(
          L"steps-end", place, {formula},
          {{L"component", component},
           {L"table", rated.text.name},
           {L"value", formatTrimmed(highest)},
           {L"largest", formatTrimmed(largest)}});
  }

  const SiteTable& formulas_;
  const SiteTable* descriptions_;
  const SiteTable* steps_;
  const SiteTable* motors_;
  const SiteTable* loads_;
  FaultyFormulas& faulty_;
  Findings& findings_;
  Currents currents_;
  std::set<std::wstring> loadTypes_; ///< in upper case; no motor has them
};

/// A step more than this many times the one below rates what lies between far too high.
constexpr double widestStep = 3.5;

/// The amperes of a rating that is only a number and its unit, such as "20A".
std::optional<double> amperesOf(std::wstring_view rating) {
  rating = brenvolt::trimView(rating);
  if (!rating.ends_with(L'A')) return std::nullopt;
  rating.remove_suffix(1);
  return brenvolt::plainNumber(brenvolt::trim(rating));
}

void checkStepTable(const SiteTable& steps, Findings& findings) {
  const int code = steps.text.columnOf(L"CODE");
  const int most = steps.text.columnOf(L"MAX");
  if (code == 0 || most == 0) return;
  if (const int rating = steps.text.columnOf(L"RATING"); rating != 0)
    for (const TableText::Row& row : steps.text.rows) {
      const std::optional<double> limit = brenvolt::plainNumber(row.cell(most));
      const std::optional<double> amperes = amperesOf(row.cell(rating));
      if (limit && amperes && *amperes < *limit - brenvolt::numberTolerance)
        findings.add(
            L"steps-rating", steps.place(row.number, rating), {row.cell(rating)},
            {{L"component", row.cell(code)}, {L"rating", row.cell(rating)}, {L"limit", row.cell(most)}});
    }
  std::map<std::wstring, std::vector<std::pair<double, int>>> byCode; // limit and row
  for (const TableText::Row& row : steps.text.rows)
    if (const std::optional<double> limit = brenvolt::plainNumber(row.cell(most)))
      byCode[toUpper(row.cell(code))].emplace_back(*limit, row.number);
  for (auto& [component, limits] : byCode) {
    std::ranges::sort(limits);
    for (std::size_t i = 1; i < limits.size(); ++i)
      if (limits[i - 1].first > 0.0 && limits[i].first > widestStep * limits[i - 1].first)
        findings.add(
            L"steps-gap", steps.place(limits[i].second, most), {formatTrimmed(limits[i].first)},
            {{L"component", component},
             {L"from", formatTrimmed(limits[i - 1].first)},
             {L"to", formatTrimmed(limits[i].first)}});
  }
}

} // namespace

std::vector<double> checkFormula(
    const FindingPlace& place, const std::wstring& formula, const std::vector<double>& currents,
    Findings& findings) {
  if (brenvolt::trimView(formula).empty()) {
    findings.add(L"formula-empty", place, {});
    return {};
  }
  if (const std::wstring slip = slipOf(formula); !slip.empty()) {
    findings.add(L"formula-slip", place, {formula}, {{L"formula", formula}, {L"slip", slip}});
    return {};
  }
  std::vector<double> values;
  const std::vector<double> tried = currents.empty() ? std::vector<double>{1.0, 10.0, 100.0} : currents;
  for (const double current : tried) {
    double value = 0.0;
    try {
      value = brenvolt::ZanExprEvaluator().Evaluate(formula, current);
    } catch (const brenvolt::IllegalExprException&) {
      findings.add(
          L"formula-illegal", place, {formula},
          {{L"formula", formula}, {L"current", formatTrimmed(current)}});
      return {};
    }
    if (!std::isfinite(value) || value <= 0.0) {
      findings.add(
          L"formula-value", place, {formula},
          {{L"formula", formula},
           {L"current", formatTrimmed(current)},
           {L"value", std::isfinite(value) ? formatTrimmed(value) : L"no number"}});
      return {};
    }
    values.push_back(value);
  }
  return values;
}

void checkRatingTables(const TableSet& tables, const std::vector<ElectricalCode>& codes, Findings& findings) {
  std::set<const SiteTable*> checked; // borrowed tables serve several codes
  const auto isOwn = [](const SiteTable& table, std::wstring_view family, const ElectricalCode& electrical) {
    return equalsOrdinalNoCase(
        table.text.name, brenvolt::ZanDbReaderUtils::ComposeTableName(family, {}, {}, electrical.name));
  };
  // Motors and loads have the voltages of the code that owns them, not of one that borrows them.
  for (const bool ofOwners : {true, false})
    for (const ElectricalCode& electrical : codes)
      for (const wchar_t* family : {L"MOTOR", L"FEED"}) {
        const SiteTable* table = tables.resolve(family, electrical.name);
        if (table != nullptr && isOwn(*table, family, electrical) == ofOwners && checked.insert(table).second)
          checkMotors(*table, electrical, findings);
      }
  std::set<RatingTables> rated; // formulas are checked with the motors of every code that they serve
  FaultyFormulas faulty;
  for (const ElectricalCode& electrical : codes) {
    const RatingTables each = {
        tables.resolve(L"MOTOR", electrical.name), tables.resolve(L"FEED", electrical.name),
        tables.resolve(L"MOTOR_I_CALC", electrical.name), tables.resolve(L"MOTOR_I_DESC", electrical.name),
        tables.resolve(L"MOTOR_I_MAP", electrical.name)};
    if (each.formulas != nullptr && rated.insert(each).second) ComponentCheck(each, faulty, findings).run();
    if (each.steps != nullptr && checked.insert(each.steps).second) checkStepTable(*each.steps, findings);
  }
}

} // namespace circuits
