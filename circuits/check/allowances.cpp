#include "circuits/check/allowances.h"

#include "simhost/host/files.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/split.h"

#include <algorithm>

namespace circuits {

using brenvolt::equalsOrdinalNoCase;

namespace {

constexpr std::wstring_view checkColumn = L"CHECK";

/// "*" stands for any text; letters compare without case.
bool matches(std::wstring_view pattern, std::wstring_view text) {
  std::size_t starPattern = std::wstring_view::npos;
  std::size_t starText = 0;
  std::size_t p = 0;
  std::size_t t = 0;
  while (t < text.size()) {
    if (p < pattern.size() && pattern[p] == L'*') {
      starPattern = p++;
      starText = t;
    } else if (p < pattern.size() && equalsOrdinalNoCase(pattern.substr(p, 1), text.substr(t, 1))) {
      ++p;
      ++t;
    } else if (starPattern != std::wstring_view::npos) {
      p = starPattern + 1;
      t = ++starText;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(L'*', p) == std::wstring_view::npos;
}

bool isAllowedBy(
    const Allowance& allowance, const Finding& finding, const std::vector<FindingWords>& languages) {
  if (allowance.rule != finding.rule->id) return false;
  if (!allowance.place.empty())
    return std::ranges::any_of(languages, [&](const FindingWords& words) {
      return matches(allowance.place, placeText(finding.place, words));
    });
  return finding.place.file == allowance.at.file && finding.place.sheet == allowance.at.sheet &&
         finding.place.row == allowance.at.row;
}

} // namespace

Allowances::Allowances(const SiteModel& site, std::vector<FindingWords> languages, Findings& findings)
    : languages_(std::move(languages)) {
  languages_.emplace_back(); // English
  readFile(site, findings);
  readColumns(site, findings);
}

void Allowances::add(Allowance allowance, Findings& findings) {
  std::wstring fault;
  const Rule* rule = findRule(allowance.rule);
  if (rule == nullptr)
    fault = L"unknown rule " + allowance.rule;
  else if (rule->kind == CheckKind::allow)
    fault = L"findings about allowances cannot be allowed";
  else if (allowance.reason.empty())
    fault = L"the reason is missing";
  if (fault.empty()) {
    all_.push_back(std::move(allowance));
    return;
  }
  findings.add(L"allow-syntax", allowance.at, {allowance.text}, {{L"reason", fault}});
}

void Allowances::readFile(const SiteModel& site, Findings& findings) {
  const std::optional<std::string> bytes = simhost::readFile(site.folder / allowanceFile);
  if (!bytes) return;
  int row = 0;
  for (const std::wstring& line : brenvolt::splitKeepingEmpty(brenvolt::fromUtf8(*bytes), L'\n')) {
    ++row;
    const std::wstring text = brenvolt::trim(line);
    if (text.empty() || text.starts_with(L'#')) continue;
    const std::vector<std::wstring> fields = brenvolt::splitKeepingEmpty(text, L'|');
    const auto field = [&fields](std::size_t index) {
      return index < fields.size() ? brenvolt::trim(fields[index]) : std::wstring();
    };
    const FindingPlace at = {.file = brenvolt::fromUtf8(allowanceFile), .row = row};
    if (fields.size() < 3 || field(1).empty())
      findings.add(L"allow-syntax", at, {text}, {{L"reason", L"it has no place or no reason"}});
    else
      add({at, text, field(0), field(1), field(2)}, findings);
  }
}

void Allowances::readColumns(const SiteModel& site, Findings& findings) {
  for (const TableText& sheet : site.sheets) {
    const int column = sheet.columnOf(checkColumn);
    if (column == 0) continue;
    for (const TableText::Row& row : sheet.rows)
      for (const std::wstring& line : brenvolt::splitSkippingEmpty(row.cell(column), L'\n')) {
        const std::size_t colon = line.find(L':');
        const std::wstring reason =
            colon == std::wstring::npos ? std::wstring() : brenvolt::trim(line.substr(colon + 1));
        add({site.place(sheet.name, row.number, column),
             line,
             brenvolt::trim(line.substr(0, colon)),
             {},
             reason},
            findings);
      }
  }
}

std::vector<Finding> Allowances::takeAllowed(std::vector<Finding>& findings) {
  std::vector<Finding> allowed;
  std::vector<Finding> kept;
  for (Finding& finding : findings) {
    bool isAllowed = false;
    for (Allowance& allowance : all_)
      if (isAllowedBy(allowance, finding, languages_)) isAllowed = allowance.isUsed = true;
    (isAllowed ? allowed : kept).push_back(std::move(finding));
  }
  findings = std::move(kept);
  return allowed;
}

void Allowances::addUnused(const std::set<CheckKind>& kinds, Findings& findings) const {
  for (const Allowance& allowance : all_)
    if (!allowance.isUsed && kinds.contains(findRule(allowance.rule)->kind))
      findings.add(L"allow-unused", allowance.at, {allowance.text}, {{L"rule", allowance.rule}});
}

} // namespace circuits
