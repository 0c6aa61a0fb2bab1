// The option tables: settings that are missing or misspelt, and values outside their range.
#include "circuits/check/similar_name.h"
#include "circuits/check/table_rules.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/plain_number.h"
#include "text/split.h"

#include <algorithm>
#include <limits>
#include <set>

namespace circuits {

using brenvolt::equalsOrdinalNoCase;
using brenvolt::formatTrimmed;

namespace {

/// A setting that the program reads, and what its values may be.
struct Setting {
  const wchar_t* name;
  enum class Content { words, number, bracket, sizes, formula } content;
  double least = 0.0;
  double most = std::numeric_limits<double>::max();
  const wchar_t* without; ///< what happens when it is missing
};
using Setting::Content::bracket;
using Setting::Content::formula;
using Setting::Content::number;
using Setting::Content::sizes;
using Setting::Content::words;
constexpr double noLimit = std::numeric_limits<double>::max();
constexpr double tiny = 0.001;

constexpr Setting settings[] = {
    {L"FULLNAME", words, 0, noLimit, L"the code is not listed"},
    {L"W_STD", words, 0, noLimit, L"AWG is taken"},
    {L"W_METAL", words, 0, noLimit, L"CU is taken"},
    {L"W_INSUL", words, 0, noLimit, L"the first insulation is taken"},
    {L"VOLTS", number, 1, noLimit, L"no voltage is offered"},
    {L"PHASE", number, 1, 3, L"no phase is offered"},
    {L"FLA_MULT", number, 1, 3, L"1.25 is taken"},
    {L"LEN_LIST", number, tiny, noLimit, L"no length is offered"},
    {L"LEN_UNITS", words, 0, noLimit, L"no unit is offered"},
    {L"M_POWERFACTOR", number, 0.1, 1, L"no power factor is offered"},
    {L"F_POWERFACTOR", number, 0.1, 1, L"no power factor is offered"},
    {L"V_DROP", number, tiny, 100, L"no limit is offered"},
    {L"KWH_COST", number, 0, noLimit, L"no cost of losses is shown"},
    {L"KWH_COST_UNITS", words, 0, noLimit, L"costs have no currency"},
    {L"PARALLEL_MAX_CNT", number, 1, 100, L"no parallel conductors are offered"},
    {L"PARALLEL_MIN_SIZE", sizes, 0, noLimit, L"no parallel conductors are offered"},
    {L"AMPG_MAX", formula, 0, noLimit, L"no grounding conductor is found"},
    {L"T_AMBIENT", bracket, 0, noLimit, L"the lowest temperature is taken"},
    {L"C_LOAD", number, 0.1, 1, L"wires of builds are not derated"},
};

class OptionCheck final {
public:
  OptionCheck(const TableSet& tables, const ElectricalCode& electrical, Findings& findings)
      : tables_(tables), electrical_(electrical), table_(*electrical.options), findings_(findings),
        default_(table_.text.columnOf(L"DEFAULT")), list_(table_.text.columnOf(L"LIST")) {}

  void run() {
    if (default_ == 0 || list_ == 0) return; // a finding of their own
    for (const Setting& setting : settings)
      checkSetting(setting);
    checkNames();
    checkInsulations();
  }

private:
  void checkNames() {
    const int column = table_.text.columnOf(L"CODE");
    std::vector<std::wstring> known;
    for (const Setting& setting : settings)
      known.emplace_back(setting.name);
    for (const TableText::Row& row : table_.text.rows) {
      const std::wstring& name = row.cell(column);
      if (std::ranges::any_of(
              known, [&name](const std::wstring& each) { return equalsOrdinalNoCase(each, name); }))
        continue;
      findings_.add(
          L"option-unknown", table_.place(row.number, column), {name},
          {{L"setting", name}, {L"similar", didYouMean(similarName(name, known))}});
    }
  }

  void checkSetting(const Setting& setting) {
    const TableText::Row* row = electrical_.rowOf(setting.name);
    if (row == nullptr || brenvolt::trimView(row->cell(default_)).empty()) {
      findings_.add(
          L"option-missing", row == nullptr ? table_.place() : table_.place(row->number, default_),
          {{L"setting", setting.name}, {L"table", table_.text.name}, {L"without", setting.without}});
      return;
    }
    const std::wstring& value = row->cell(default_);
    checkValue(setting, *row, default_, value);
    const std::vector<std::wstring> all = brenvolt::splitKeepingEmpty(row->cell(list_), L';');
    if (row->cell(list_).empty()) return;
    for (const std::wstring& item : all) {
      if (item.empty()) {
        findings_.add(L"option-list", table_.place(row->number, list_), {row->cell(list_)}, {});
        return;
      }
      checkValue(setting, *row, list_, item);
    }
    const bool isListed = std::ranges::any_of(all, [&value](const std::wstring& item) {
      const bool isEqual = brenvolt::plainNumber(item) && brenvolt::plainNumber(value) &&
                           *brenvolt::plainNumber(item) == *brenvolt::plainNumber(value);
      return isEqual || equalsOrdinalNoCase(item, value);
    });
    if (!isListed && setting.content != formula)
      findings_.add(
          L"option-default", table_.place(row->number, default_), {value},
          {{L"setting", setting.name}, {L"value", value}});
  }

  void checkValue(const Setting& setting, const TableText::Row& row, int column, const std::wstring& value) {
    const FindingPlace place = table_.place(row.number, column);
    const auto wrong = [&](const std::wstring& expected) {
      const std::wstring& cell = row.cell(column);
      findings_.add(
          L"option-value", place, {cell, std::min(cell.find(value), cell.size()), value.size()},
          {{L"setting", setting.name}, {L"value", value}, {L"expected", expected}});
    };
    switch (setting.content) {
    case words:
      return;
    case number: {
      const std::optional<double> amount = brenvolt::plainNumber(value);
      if (!amount)
        wrong(L"a number with a decimal point");
      else if (*amount < setting.least || *amount > setting.most)
        wrong(
            setting.most == noLimit ? L"at least " + formatTrimmed(setting.least)
                                    : formatTrimmed(setting.least) + L" to " + formatTrimmed(setting.most));
      return;
    }
    case bracket: {
      const std::wstring_view degrees = std::wstring_view(value).substr(0, value.size() - 1);
      const bool isBracket = (value.back() == L'C' || value.back() == L'c') && brenvolt::plainNumber(degrees);
      if (!isBracket) wrong(L"degrees and C, such as 30C");
      return;
    }
    case sizes:
      checkSizes(place, value);
      return;
    case formula:
      checkGround(place, value);
      return;
    }
  }

  [[nodiscard]] const SiteTable* wireTable(const wchar_t* family) const {
    return tables_.resolve(
        family, electrical_.defaultOf(L"W_METAL"), electrical_.defaultOf(L"W_STD"), electrical_.name);
  }

  /// The first one that the ampacity table holds counts; none, and nothing runs in parallel.
  void checkSizes(const FindingPlace& place, const std::wstring& value) {
    const SiteTable* ampacities = wireTable(L"AMP");
    if (ampacities == nullptr) return;
    const auto column = ampacities->text.columnOf(L"SIZE");
    for (const std::wstring& size : brenvolt::splitSkippingEmpty(value, L';'))
      for (const TableText::Row& row : ampacities->text.rows)
        if (equalsOrdinalNoCase(row.cell(column), brenvolt::trim(size))) return;
    findings_.add(L"option-size", place, {value}, {{L"value", value}, {L"table", ampacities->text.name}});
  }

  void checkGround(const FindingPlace& place, const std::wstring& value) {
    const std::vector<double> ratings = checkFormula(place, value, currents(), findings_);
    const SiteTable* grounds = wireTable(L"AMPG");
    if (ratings.empty() || grounds == nullptr) return;
    double largest = 0.0;
    const int column = grounds->text.columnOf(L"MAX");
    for (const TableText::Row& row : grounds->text.rows)
      largest = std::max(largest, brenvolt::plainNumber(row.cell(column)).value_or(0.0));
    const double highest = *std::ranges::max_element(ratings);
    if (column != 0 && highest >= largest)
      findings_.add(
          L"ground-end", place, {value},
          {{L"value", formatTrimmed(highest)},
           {L"largest", formatTrimmed(largest)},
           {L"table", grounds->text.name}});
  }

  [[nodiscard]] std::vector<double> currents() const {
    std::vector<double> amperes;
    const SiteTable* motors = tables_.resolve(L"MOTOR", electrical_.name);
    const int column = motors == nullptr ? 0 : motors->text.columnOf(L"FLA (A)");
    if (column == 0) return amperes;
    for (const TableText::Row& row : motors->text.rows)
      if (const std::optional<double> value = brenvolt::plainNumber(row.cell(column)); value && *value > 0.0)
        amperes.push_back(*value);
    std::ranges::sort(amperes);
    return amperes;
  }

  void checkInsulations() {
    const TableText::Row* row = electrical_.rowOf(L"W_INSUL");
    if (row == nullptr) return;
    std::vector<std::wstring> known;
    for (const std::wstring& metal : electrical_.listOf(L"W_METAL")) {
      const SiteTable* table =
          tables_.resolve(L"INSUL", metal, electrical_.defaultOf(L"W_STD"), electrical_.name);
      const int column = table == nullptr ? 0 : table->text.columnOf(L"INSUL");
      if (column == 0) continue;
      for (const TableText::Row& each : table->text.rows)
        known.push_back(each.cell(column));
    }
    if (known.empty()) return;
    const auto check = [&](int column, const std::wstring& value) {
      const bool isKnown = std::ranges::any_of(
          known, [&value](const std::wstring& each) { return equalsOrdinalNoCase(each, value); });
      const std::wstring& cell = row->cell(column);
      if (!isKnown && !value.empty())
        findings_.add(
            L"option-insulation", table_.place(row->number, column),
            {cell, std::min(cell.find(value), cell.size()), value.size()},
            {{L"value", value}, {L"similar", didYouMean(similarName(value, known))}});
    };
    check(default_, row->cell(default_));
    for (const std::wstring& item : electrical_.listOf(L"W_INSUL"))
      check(list_, item);
  }

  const TableSet& tables_;
  const ElectricalCode& electrical_;
  const SiteTable& table_;
  Findings& findings_;
  int default_;
  int list_;
};

} // namespace

void checkOptions(const TableSet& tables, const std::vector<ElectricalCode>& codes, Findings& findings) {
  for (const ElectricalCode& electrical : codes) {
    const bool isOwn = electrical.options != nullptr &&
                       (electrical.name.empty() ||
                        equalsOrdinalNoCase(electrical.options->text.name, L"OPT_" + electrical.name));
    if (isOwn) OptionCheck(tables, electrical, findings).run();
  }
}

} // namespace circuits
