// Current, multiplier, extra current and total: one row for each way of changing them.
#include "data/linked_currents.h"

#include <doctest/doctest.h>

#include "text/encoding.h"

using namespace brenvolt;

namespace {

struct Row {
  const char* promise = nullptr;
  CurrentTexts before; ///< as loaded
  CurrentField left{};
  const wchar_t* typed = nullptr;
  CurrentTexts after;
  bool groundSizes = false;
  bool refresh = false;
};

constexpr CurrentField current = CurrentField::current;
constexpr CurrentField multiplier = CurrentField::multiplier;
constexpr CurrentField extra = CurrentField::extra;
constexpr CurrentField total = CurrentField::total;

const Row rows[] = {
    {"a current gives the total",
     {L"10", L"1.25", L"", L""},
     current,
     L"28",
     {L"28", L"1.25", L"", L"35"},
     true,
     true},
    {"the extra current is added behind the multiplier",
     {L"10", L"1.25", L"4", L""},
     current,
     L"28",
     {L"28", L"1.25", L"4", L"39"},
     true,
     true},
    {"no current, no change",
     {L"10", L"1.25", L"", L""},
     current,
     L"",
     {L"", L"1.25", L"", L"12.5"},
     false,
     false},
    {"a current without a multiplier waits for it",
     {L"", L"", L"", L""},
     current,
     L"28",
     {L"28", L"", L"", L""},
     false,
     false},
    {"a multiplier gives the total",
     {L"28", L"1.25", L"", L""},
     multiplier,
     L"1",
     {L"28", L"1", L"", L"28"},
     false,
     true},
    {"a blanked multiplier comes back",
     {L"28", L"1.25", L"", L""},
     multiplier,
     L"",
     {L"28", L"1.25", L"", L"35"},
     false,
     false},
    {"letters are no multiplier",
     {L"28", L"1.2500", L"", L""},
     multiplier,
     L"abc",
     {L"28", L"1.25", L"", L"35"},
     false,
     false},
    {"a multiplier without a current yields the current and leaves the table alone",
     {L"", L"", L"", L"50"},
     multiplier,
     L"1.25",
     {L"40", L"1.25", L"", L"50"},
     true,
     false},
    {"a multiplier alone yields a current of nothing",
     {L"", L"", L"", L""},
     multiplier,
     L"1.25",
     {L"0", L"1.25", L"", L""},
     true,
     false},
    {"an extra current moves the total",
     {L"28", L"1.25", L"5", L""},
     extra,
     L"7.5",
     {L"28", L"1.25", L"7.5", L"42.5"},
     false,
     true},
    {"an extra current of 0 changes the total without a new table",
     {L"28", L"1.25", L"5", L""},
     extra,
     L"0",
     {L"28", L"1.25", L"0", L"35"},
     false,
     false},
    {"a blanked extra current asks for a new table",
     {L"28", L"1.25", L"5", L""},
     extra,
     L"",
     {L"28", L"1.25", L"", L"35"},
     false,
     true},
    {"a larger total becomes extra current",
     {L"28", L"1.25", L"", L""},
     total,
     L"45",
     {L"28", L"1.25", L"10", L"45"},
     false,
     true},
    {"a smaller total takes from the extra current first",
     {L"28", L"1.25", L"10", L""},
     total,
     L"40",
     {L"28", L"1.25", L"5", L"40"},
     false,
     true},
    {"a total below that changes the current",
     {L"28", L"1.25", L"10", L""},
     total,
     L"25",
     {L"20", L"1.25", L"0", L"25"},
     true,
     true},
    {"a blanked total empties current and extra current",
     {L"28", L"1.25", L"10", L""},
     total,
     L"",
     {L"", L"1.25", L"", L""},
     false,
     true},
    {"a total that is no number is 0",
     {L"28", L"1.25", L"10", L""},
     total,
     L"abc",
     {L"0", L"1.25", L"0", L"0"},
     false,
     true},
};

std::wstring& textOf(CurrentTexts& texts, CurrentField field) {
  switch (field) {
  case CurrentField::current:
    return texts.current;
  case CurrentField::multiplier:
    return texts.multiplier;
  case CurrentField::extra:
    return texts.extra;
  case CurrentField::total:
    break;
  }
  return texts.total;
}

std::string shown(const CurrentTexts& texts) {
  return toUtf8(texts.current + L" x " + texts.multiplier + L" + " + texts.extra + L" = " + texts.total);
}

} // namespace

TEST_CASE("current, multiplier, extra current and total follow each other") {
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    LinkedCurrents currents;
    CurrentTexts texts = row.before;
    currents.begin(texts);
    textOf(texts, row.left) = row.typed;
    const CurrentEffects effects = currents.left(row.left, texts);
    CHECK_EQ(shown(texts), shown(row.after));
    CHECK_EQ(effects.groundSizes, row.groundSizes);
    CHECK_EQ(effects.refresh, row.refresh);
  }
}

TEST_CASE("a total that was rounded for its field is no change when it is left as it is") {
  LinkedCurrents currents;
  CurrentTexts texts = {L"3.33333", L"1.2", L"2.00003", L""};
  currents.begin(texts);
  const std::wstring totalAsShown = texts.total;
  static_cast<void>(currents.left(CurrentField::total, texts));
  CHECK(texts.extra == L"2");
  CHECK(texts.total == totalAsShown);
  CHECK(texts.current == L"3.33333");
}
