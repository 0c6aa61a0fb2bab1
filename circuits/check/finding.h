// What a check of a site has found: the rule that is broken, the place, the text with the part at fault, what is wrong
// and what to do. Every finding is made from the table of rules, so its words are the same wherever it is shown.
#pragma once

#include "circuits/check/finding_words.h"

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace circuits {

/// Where something is wrong. What does not apply is empty or 0.
struct FindingPlace {
  std::wstring file{};       ///< below the site's folder where it lies there
  std::wstring sheet{};      ///< of a workbook
  int row = 0;               ///< as a spreadsheet counts, the header is 1; the line of a text file
  int column = 0;            ///< from 1
  std::wstring columnName{}; ///< of a table whose columns are known by name
  std::wstring code{};       ///< CODE of the worksheet's record or of the marker
  std::optional<std::pair<double, double>> position{}; ///< of the marker or the entity, in drawing units
};

/// "zan_brenvolt.xls, sheet M3_DOL, row 25, column 8, CODE MS"
[[nodiscard]] std::wstring placeText(const FindingPlace& place, const FindingWords& words = {});

/// A text with the part of it that is at fault; no length marks the whole text.
struct MarkedText {
  std::wstring text{};
  std::size_t from = 0;
  std::size_t length = 0;
};

struct Finding {
  const Rule* rule = nullptr;
  FindingPlace place;
  MarkedText text;
  std::wstring what;                                           ///< a sentence
  std::wstring remedy;                                         ///< a sentence
  std::vector<std::pair<std::wstring, std::wstring>> values{}; ///< of the placeholders of both
};

/// Values for the placeholders of a rule's sentences, by name.
using RuleValues = std::initializer_list<std::pair<std::wstring_view, std::wstring>>;

/// Gathers the findings of a run.
class Findings final {
public:
  void add(std::wstring_view rule, FindingPlace place, MarkedText text, RuleValues values);
  void add(std::wstring_view rule, FindingPlace place, RuleValues values) {
    add(rule, std::move(place), {}, values);
  }
  void add(Finding finding) { all_.push_back(std::move(finding)); }

  [[nodiscard]] std::size_t count() const { return all_.size(); }
  /// Whether a rule has been broken at all.
  [[nodiscard]] bool has(std::wstring_view rule) const;
  /// In the order of file and place, those that are equal in everything once.
  [[nodiscard]] std::vector<Finding> take();

private:
  std::vector<Finding> all_;
};

/// The same findings with their sentences in another language.
void translate(std::vector<Finding>& findings, const FindingWords& words);

/// "1 error, 2 warnings, 0 notes"
[[nodiscard]] std::wstring countsText(const std::vector<Finding>& findings, const FindingWords& words);
/// The finding as several lines, the text's fault marked below it.
[[nodiscard]] std::wstring findingText(const Finding& finding, const FindingWords& words);
/// All rules as a table in Markdown, a heading and a table for each kind.
[[nodiscard]] std::wstring rulesTable(const FindingWords& words);

} // namespace circuits
