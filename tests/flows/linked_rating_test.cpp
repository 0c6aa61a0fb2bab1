// Current, multiplier and total in both directions.
#include "flows/linked_rating.h"

#include "text/encoding.h"
#include "text/numbers.h"

#include <doctest/doctest.h>

#include <string>

using namespace brenvolt;

namespace {

enum class Act { row, current, multiplier, total };

/// "-" for a field that keeps its text.
std::string told(const RatingChanges& changes) {
  std::string text;
  for (const auto& number : {changes.current, changes.multiplier, changes.total})
    text += (text.empty() ? "" : " ") + (number ? toUtf8(formatTrimmed(*number)) : "-");
  return text;
}

} // namespace

TEST_CASE("the numbers of a picker follow each other, and an untouched field keeps its text") {
  struct Row {
    const char* promise = nullptr;
    double fla = 0.0, multiplier = 0.0; ///< at the start
    Act act{};
    RatingNumbers shown; ///< what the fields hold after it
    double rowCurrent = 0.0;
    const char* changes = nullptr; ///< current, multiplier, total
  };
  const Row rows[] = {
      {"a row gives its current", 0, 1.25, Act::row, {0, 1.25, 0}, 14, "14 - 17.5"},
      {"a row of the same current changes no total", 14, 1.25, Act::row, {14, 1.25, 17.5}, 14, "14 - -"},
      {"a row without a current leaves all alone", 14, 1.25, Act::row, {14, 1.25, 17.5}, 0, "- - -"},
      {"without a multiplier the total is the current", 0, 0, Act::row, {0, 0, 0}, 14, "14 - 14"},
      {"a typed current", 14, 1.25, Act::current, {20, 1.25, 17.5}, 0, "- - 25"},
      {"a total changed by less than 1e-5", 14, 1, Act::current, {14.000009, 1, 14}, 0, "- - -"},
      {"a current that changes it by more", 14, 1, Act::current, {14.00002, 1, 14}, 0, "- - 14.00002"},
      {"a typed multiplier", 14, 1.25, Act::multiplier, {14, 2, 17.5}, 0, "- - 28"},
      {"a multiplier of 0 returns", 14, 1.25, Act::multiplier, {14, 0, 17.5}, 0, "- 1.25 -"},
      {"one of nothing returns", 14, 1.25, Act::multiplier, {14, 1e-6, 17.5}, 0, "- 1.25 -"},
      {"a total gives the current", 14, 1.25, Act::total, {14, 1.25, 25}, 0, "20 - -"},
      {"a total that was not changed", 14, 1.25, Act::total, {14, 1.25, 17.5}, 0, "- - -"},
      {"a total without a multiplier is the current", 14, 0, Act::total, {14, 0, 25}, 0, "25 - -"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.promise);
    LinkedRating linked;
    static_cast<void>(linked.begin(row.fla, row.multiplier));
    const RatingChanges changes = row.act == Act::row          ? linked.rowSelected(row.rowCurrent, row.shown)
                                  : row.act == Act::current    ? linked.leftCurrent(row.shown)
                                  : row.act == Act::multiplier ? linked.leftMultiplier(row.shown)
                                                               : linked.leftTotal(row.shown);
    CHECK_EQ(told(changes), row.changes);
  }
}
