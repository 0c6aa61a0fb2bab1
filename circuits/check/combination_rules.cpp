// Every sum that the options of a CODE can make, without listing every combination: sums are gathered group by group, each
// with one combination that makes it.
#include "circuits/check/workbook_rules.h"

#include "text/numbers.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>

namespace circuits {

using brenvolt::formatInt;

namespace {

/// More sums than an author can have meant; the record is not looked at any further then.
constexpr std::size_t mostSums = 100000;

using Choice = std::vector<const SheetOption*>;

/// A sum and what makes it.
struct Sum {
  Choice first;
  Choice second; ///< another combination with the same sum; empty for none
};
using Sums = std::map<std::int64_t, Sum>;

/// "Circuit breaker, Nontime delay"
std::wstring textOf(const Choice& choice) {
  std::wstring text;
  for (const SheetOption* option : choice)
    text += (text.empty() ? L"" : L" + ") + option->text;
  return text;
}

Choice with(const Choice& choice, const SheetOption& option) {
  Choice more;
  more.reserve(choice.size() + 1);
  more = choice;
  more.push_back(&option);
  return more;
}

/// Nothing when there are too many.
std::optional<Sums> sumsOf(const SheetCode& code) {
  Sums sums;
  sums[0] = {};
  for (const SheetGroup& group : code.groups) {
    Sums next;
    std::set<std::int32_t> seen; // equal values of a group are a finding of their own
    for (const SheetOption& option : group.options) {
      if (!seen.insert(option.value).second) continue;
      for (const auto& [sum, made] : sums) {
        Sum& entry = next[sum + option.value];
        for (const Choice* choice : {&made.first, &made.second}) {
          if (choice == &made.second && made.second.empty()) continue;
          if (entry.first.empty())
            entry.first = with(*choice, option);
          else if (entry.second.empty())
            entry.second = with(*choice, option);
        }
      }
      if (next.size() > mostSums) return std::nullopt;
    }
    if (!group.options.empty()) sums = std::move(next);
  }
  return sums;
}

class CombinationCheck final {
public:
  CombinationCheck(const SiteModel& site, const SheetModel& model, const SheetCode& code, Findings& findings)
      : site_(site), model_(model), code_(code), findings_(findings) {}

  void run() {
    if (code_.groups.empty()) {
      checkReach({}, true);
      return;
    }
    for (const SheetForm& form : code_.forms)
      wanted_.insert(form.forCode);
    const std::optional<Sums> sums = sumsOf(code_);
    if (!sums) {
      findings_.add(L"combination-too-many", at(code_.row, sheetcolumn::code), {{L"code", code_.code}});
      return;
    }
    const bool canBeIncomplete =
        std::ranges::any_of(code_.groups, [](const SheetGroup& group) { return !group.hasDefault(); });
    checkReach(*sums, canBeIncomplete);
    for (const auto& [sum, made] : *sums)
      checkSum(sum, made);
    checkSilence(*sums);
  }

private:
  FindingPlace at(int row, int column) const { return site_.place(model_, code_, row, column); }

  /// Codes that no combination reaches, each once, at its first form.
  void checkReach(const Sums& sums, bool isIncompleteReached) {
    std::set<std::int32_t> reported;
    for (const SheetForm& form : code_.forms) {
      const bool isReached =
          form.forCode == incompleteCode ? isIncompleteReached : sums.contains(form.forCode);
      if (isReached || !reported.insert(form.forCode).second) continue;
      if (form.forCode == incompleteCode)
        findings_.add(
            L"forms-without-code", at(form.row, sheetcolumn::forCode),
            {form.cell, form.from, form.text.size()}, {{L"code", code_.code}});
      else
        findings_.add(
            L"combination-unreached", at(form.row, sheetcolumn::forCode), {formatInt(form.forCode)},
            {{L"code", formatInt(form.forCode)}, {L"reached", reachedText(sums)}});
    }
  }

  static std::wstring reachedText(const Sums& sums) {
    constexpr std::size_t most = 8;
    if (sums.empty()) return L"only a blank code, because the record has no group";
    std::wstring text;
    std::size_t count = 0;
    for (const auto& [sum, made] : sums) {
      if (count++ == most) return text + L", ...";
      text += (text.empty() ? L"" : L", ") + formatInt(sum) + L" (" + textOf(made.first) + L")";
    }
    return text;
  }

  void checkSum(std::int64_t sum, const Sum& made) {
    if (!made.second.empty())
      findings_.add(
          L"combination-twice", at(made.second.back()->row, sheetcolumn::value), {made.second.back()->text},
          {{L"sum", formatInt(sum)}, {L"first", textOf(made.first)}, {L"second", textOf(made.second)}});
    // A choice that draws nothing has the value 0; a record that draws nothing at all only asks.
    const bool hasForms =
        std::ranges::any_of(wanted_, [](std::int32_t code) { return code != incompleteCode; });
    if (sum == 0 || !hasForms || wanted_.contains(static_cast<std::int32_t>(sum))) return;
    findings_.add(
        L"combination-without-forms", at(made.first.back()->row, sheetcolumn::value),
        {made.first.back()->text},
        {{L"sum", formatInt(sum)}, {L"options", textOf(made.first)}, {L"code", code_.code}});
  }

  /// A first list that is not empty but has no form for a code silences the second list for it.
  void checkSilence(const Sums& sums) {
    std::set<std::int32_t> first;
    for (const SheetForm& form : code_.forms)
      if (form.column == sheetcolumn::firstForms) first.insert(form.forCode);
    if (first.empty()) return;
    for (const SheetForm& form : code_.forms)
      if (form.column == sheetcolumn::secondForms && !first.contains(form.forCode) &&
          sums.contains(form.forCode))
        findings_.add(
            L"second-list-silent", at(form.row, form.column), {form.cell, form.from, form.text.size()},
            {{L"code", formatInt(form.forCode)}});
  }

  const SiteModel& site_;
  const SheetModel& model_;
  const SheetCode& code_;
  Findings& findings_;
  std::set<std::int32_t> wanted_; ///< codes for which there are forms
};

} // namespace

void checkCombinations(const SiteModel& site, const SheetModel& sheet, Findings& findings) {
  for (const SheetCode& code : sheet.codes)
    if (code.hasTitle && !code.isRepeated) CombinationCheck(site, sheet, code, findings).run();
}

} // namespace circuits
