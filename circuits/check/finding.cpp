#include "circuits/check/finding.h"

#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <tuple>

namespace circuits {

using brenvolt::formatInt;

namespace {

/// Longer texts are shown around the part at fault.
constexpr std::size_t shownLength = 100;

/// The sentence with its "{name}" filled in. A name without a value is a slip in a rule, and stays visible.
template <typename Values>
std::wstring filled(std::wstring_view sentence, const Values& values) {
  std::wstring text;
  while (!sentence.empty()) {
    const std::size_t open = sentence.find(L'{');
    text += sentence.substr(0, open);
    if (open == std::wstring_view::npos) break;
    const std::size_t close = sentence.find(L'}', open);
    const std::wstring_view name = sentence.substr(open + 1, close - open - 1);
    const auto value =
        std::find_if(values.begin(), values.end(), [name](const auto& each) { return each.first == name; });
    if (value == values.end())
      text += sentence.substr(open, close - open + 1);
    else
      text += value->second;
    sentence.remove_prefix(close + 1);
  }
  return text;
}

std::wstring coordinate(double value) {
  return brenvolt::formatTrimmed(value, 3);
}

auto sortKey(const Finding& finding) {
  const FindingPlace& place = finding.place;
  return std::tie(
      place.file, place.sheet, place.row, place.column, place.columnName, place.code, place.position,
      finding.rule->id, finding.what, finding.text.from, finding.text.text);
}

/// The line of a text that holds the part at fault, cut to what can be shown; the part moves with it.
MarkedText shownLine(const MarkedText& whole) {
  MarkedText line = whole;
  if (line.length == 0) line.length = line.text.size() - std::min(line.from, line.text.size());
  const std::size_t begin = line.text.rfind(L'\n', line.from == 0 ? 0 : line.from - 1);
  const std::size_t start = begin == std::wstring::npos || line.from == 0 ? 0 : begin + 1;
  line.text = line.text.substr(start, line.text.find(L'\n', line.from) - start);
  line.from -= start;
  if (line.text.size() > shownLength && line.from + line.length > shownLength) {
    const std::size_t cut = line.from - std::min<std::size_t>(line.from, shownLength / 3);
    line.text = L"..." + line.text.substr(cut);
    line.from = line.from - cut + 3;
  }
  if (line.text.size() > shownLength) line.text = line.text.substr(0, shownLength) + L"...";
  std::replace(line.text.begin(), line.text.end(), L'\t', L' ');
  line.length = std::min(line.length, line.text.size() - std::min(line.from, line.text.size()));
  return line;
}

} // namespace

std::wstring placeText(const FindingPlace& place, const FindingWords& words) {
  const auto named = [&words](const wchar_t* name, const std::wstring& value) {
    return words.word(L"place", name) + L" " + value;
  };
  std::vector<std::wstring> parts;
  if (!place.file.empty()) parts.push_back(place.file);
  if (!place.sheet.empty()) parts.push_back(named(L"sheet", place.sheet));
  if (place.row > 0) parts.push_back(named(L"row", formatInt(place.row)));
  if (!place.columnName.empty())
    parts.push_back(named(L"column", place.columnName));
  else if (place.column > 0)
    parts.push_back(named(L"column", formatInt(place.column)));
  if (!place.code.empty()) parts.push_back(L"CODE " + place.code);
  if (place.position)
    parts.push_back(
        named(L"at", coordinate(place.position->first) + L"," + coordinate(place.position->second)));
  return brenvolt::join(parts, L", ");
}

void Findings::add(std::wstring_view rule, FindingPlace place, MarkedText text, RuleValues values) {
  const Rule& broken = ruleOf(rule);
  all_.push_back(
      {&broken,
       std::move(place),
       std::move(text),
       filled(broken.sentence, values),
       filled(broken.remedy, values),
       {values.begin(), values.end()}});
}

bool Findings::has(std::wstring_view rule) const {
  return std::ranges::any_of(all_, [rule](const Finding& each) { return each.rule->id == rule; });
}

std::vector<Finding> Findings::take() {
  std::ranges::stable_sort(
      all_, [](const Finding& left, const Finding& right) { return sortKey(left) < sortKey(right); });
  const auto repeated = std::ranges::unique(
      all_, [](const Finding& left, const Finding& right) { return sortKey(left) == sortKey(right); });
  all_.erase(repeated.begin(), repeated.end());
  return std::exchange(all_, {});
}

void translate(std::vector<Finding>& findings, const FindingWords& words) {
  for (Finding& finding : findings) {
    auto values = finding.values;
    for (auto& [name, value] : values)
      value = words.phrase(name, value);
    finding.what = filled(words.part(*finding.rule, L"sentence"), values);
    finding.remedy = filled(words.part(*finding.rule, L"remedy"), values);
  }
}

std::wstring countsText(const std::vector<Finding>& findings, const FindingWords& words) {
  std::wstring text;
  for (const auto& [severity, one, many] :
       {std::tuple(Severity::error, L"error", L"errors"),
        std::tuple(Severity::warning, L"warning", L"warnings"),
        std::tuple(Severity::note, L"note", L"notes")}) {
    const auto count = std::ranges::count_if(
        findings, [wanted = severity](const Finding& each) { return each.rule->severity == wanted; });
    text += (text.empty() ? L"" : L", ") + formatInt(count) + L" " +
            words.word(L"counts", count == 1 ? one : many);
  }
  return text;
}

std::wstring findingText(const Finding& finding, const FindingWords& words) {
  std::wstring text = words.word(L"severity", severityName(finding.rule->severity)) + L" " +
                      std::wstring(finding.rule->id) + L": " + placeText(finding.place, words) + L"\n";
  if (!finding.text.text.empty()) {
    const MarkedText line = shownLine(finding.text);
    text += L"    " + line.text + L"\n";
    text += L"    " + std::wstring(line.from, L' ') +
            std::wstring(std::max<std::size_t>(line.length, 1), L'^') + L"\n";
  }
  return text + L"  " + finding.what + L"\n  " + finding.remedy + L"\n";
}

std::wstring rulesTable(const FindingWords& words) {
  std::wstring text;
  for (int number = 0; number < kindCount; ++number) {
    const auto kind = static_cast<CheckKind>(number);
    if (std::ranges::none_of(rules(), [kind](const Rule& rule) { return rule.kind == kind; })) continue;
    text += L"### " + std::wstring(kindName(kind)) + L"\n\n|";
    for (const wchar_t* title : {L"rule", L"severity", L"what is wrong", L"example", L"remedy"})
      text += L" " + words.word(L"title", title) + L" |";
    text += L"\n|---|---|---|---|---|\n";
    for (const Rule& rule : rules()) {
      if (rule.kind != kind) continue;
      text += L"| `" + std::wstring(rule.id) + L"` | ";
      text += words.word(L"severity", severityName(rule.severity)) + L" | ";
      for (const wchar_t* part : {L"sentence", L"example", L"remedy"})
        text += brenvolt::replaceAll(words.part(rule, part), L"|", L"\\|") + L" | ";
      text.back() = L'\n';
    }
    text += L"\n";
  }
  text.pop_back();
  return text;
}

} // namespace circuits
