// Current, multiplier, extra current and total: one row for each way of changing them.
#include "data/linked_currents.h"

#include <doctest/doctest.h>

#include "text/encoding.h"
#include "text/split.h"

using namespace brenvolt;

namespace {

/// "current|multiplier|extra|total".
CurrentTexts textsOf(const char* shown) {
  const std::vector<std::wstring> texts = splitKeepingEmpty(fromUtf8(shown), L'|');
  return {texts.at(0), texts.at(1), texts.at(2), texts.at(3)};
}

std::string shown(const CurrentTexts& texts) {
  return toUtf8(join({texts.current, texts.multiplier, texts.extra, texts.total}, L"|"));
}

} // namespace

TEST_CASE("current, multiplier, extra current and total follow each other") {
  using enum CurrentField;
  struct Row {
    const char* promise;
    const char* before; ///< as loaded
    CurrentField left;
    const wchar_t* typed;
    const char* after;
    const char* again; ///< what is computed again: grounding sizes, the table
  };
  const Row rows[] = {
      {"a current gives the total", "10|1.25||", current, L"28", "28|1.25||35", "grounding table"},
      {"extra current is added after the factor", "10|1.25|4|", current, L"28", "28|1.25|4|39",
       "grounding table"},
      {"no current, no change", "10|1.25||", current, L"", "|1.25||12.5", ""},
      {"a current without a multiplier waits for it", "|||", current, L"28", "28|||", ""},
      {"a multiplier gives the total", "28|1.25||", multiplier, L"1", "28|1||28", "table"},
      {"a blanked multiplier comes back", "28|1.25||", multiplier, L"", "28|1.25||35", ""},
      {"letters are not a multiplier", "28|1.2500||", multiplier, L"abc", "28|1.25||35", ""},
      {"a multiplier without a current yields the current", "|||50", multiplier, L"1.25", "40|1.25||50",
       "grounding"},
      {"a multiplier alone yields a current of nothing", "|||", multiplier, L"1.25", "0|1.25||", "grounding"},
      {"an extra current moves the total", "28|1.25|5|", extra, L"7.5", "28|1.25|7.5|42.5", "table"},
      {"an extra current of 0 asks for no new table", "28|1.25|5|", extra, L"0", "28|1.25|0|35", ""},
      {"a blanked extra current does", "28|1.25|5|", extra, L"", "28|1.25||35", "table"},
      {"a larger total becomes extra current", "28|1.25||", total, L"45", "28|1.25|10|45", "table"},
      {"a smaller one takes from it first", "28|1.25|10|", total, L"40", "28|1.25|5|40", "table"},
      {"a total below that changes the current", "28|1.25|10|", total, L"25", "20|1.25|0|25",
       "grounding table"},
      {"a blanked total empties current and extra current", "28|1.25|10|", total, L"", "|1.25||", "table"},
      {"a total that is not a number is 0", "28|1.25|10|", total, L"abc", "0|1.25|0|0", "table"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    LinkedCurrents currents;
    CurrentTexts texts = textsOf(row.before);
    currents.begin(texts);
    (row.left == current      ? texts.current
     : row.left == multiplier ? texts.multiplier
     : row.left == extra      ? texts.extra
                              : texts.total) = row.typed;
    const CurrentEffects effects = currents.left(row.left, texts);
    CHECK_EQ(shown(texts), row.after);
    const std::string again = row.again;
    CHECK_EQ(effects.groundSizes, again.starts_with("grounding"));
    CHECK_EQ(effects.refresh, again.ends_with("table"));
  }
}

TEST_CASE("a total that was rounded for its field is not a change when it is left as it is") {
  LinkedCurrents currents;
  CurrentTexts texts = textsOf("3.33333|1.2|2.00003|");
  currents.begin(texts);
  const std::wstring totalAsShown = texts.total;
  static_cast<void>(currents.left(CurrentField::total, texts));
  CHECK_EQ(shown(texts), "3.33333|1.2|2|" + toUtf8(totalAsShown));
}
