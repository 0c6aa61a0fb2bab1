#include "project/code_record.h"

#include "tests/support/option_groups.h"

#include <doctest/doctest.h>

#include <limits>

using namespace brenvolt;
using namespace brenvolt::test;

TEST_CASE("the option code sums every selected value and needs a choice in each group") {
  constexpr int most = std::numeric_limits<std::int32_t>::max();
  const ZanOptionGroup breaker = makeGroup(L"Disconnect", {{L"Breaker", 1, true}, {L"Fuses", 2, false}});
  const ZanOptionGroup twoMarks = makeGroup(L"Control", {{L"Relay", 10, true}, {L"PLC", 20, true}});
  const ZanOptionGroup open = makeGroup(L"Lamp", {{L"Red", 100, false}, {L"Green", 200, false}});
  const ZanOptionGroup negative = makeGroup(L"Odd", {{L"Minus", -5, true}});
  const ZanOptionGroup huge = makeGroup(L"Huge", {{L"a", most, true}, {L"b", most, true}});
  const struct {
    std::vector<ZanOptionGroup> groups;
    std::int32_t code;
  } rows[] = {
      {{}, -1},
      {{breaker}, 1},
      {{breaker, twoMarks}, 31},
      {{breaker, open}, -1},
      {{open, breaker}, -1},
      {{breaker, negative}, -4},
      {{huge}, most},
      {{makeGroup(L"Empty", {})}, -1},
  };
  for (const auto& row : rows) {
    ZanCodeRecord record;
    record.groups = row.groups;
    CHECK(record.GetOptionCode() == row.code);
  }
}

TEST_CASE("rows run by exact code, and a first list without a match silences the second") {
  const ZanScriptRules one = {{L"(one)", 1, {}}, {L"(blank)", -1, {}}, {L"(one-b)", 1, {}}};
  const ZanScriptRules other = {{L"(uno)", 1, {}}, {L"(dos)", 2, {}}};
  const struct {
    ZanScriptRules first;
    ZanScriptRules second;
    std::int32_t selected; ///< 0 selects nothing
    std::vector<std::wstring> texts;
  } rows[] = {
      {one, other, 1, {L"(one)", L"(one-b)", L"(uno)"}},
      {one, other, 0, {L"(blank)"}},
      {{}, other, 2, {L"(dos)"}},
      {one, other, 2, {}}, // the second list has a match and stays silent
      {{}, {}, 1, {}},
  };
  for (const auto& row : rows) {
    ZanCodeRecord record;
    record.groups = {makeGroup(L"G", {{L"a", 1, row.selected == 1}, {L"b", 2, row.selected == 2}})};
    record.firstRules = row.first;
    record.secondRules = row.second;
    std::vector<std::wstring> texts;
    for (const ZanSharedEntry& entry : record.scriptRows())
      texts.push_back(entry->text);
    CHECK(texts == row.texts);
  }
}
