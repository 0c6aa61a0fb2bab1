#include "flows/linked_rating.h"

#include "text/numbers.h"

#include <cmath>

namespace brenvolt {

namespace {

constexpr double smallestMultiplier = 1e-6;

bool differ(double left, double right) {
  return std::abs(left - right) >= numberTolerance;
}

} // namespace

RatingChanges LinkedRating::begin(double current, double multiplier) {
  multiplier_ = multiplier;
  total_ = current * multiplier;
  return {current, multiplier_, total_};
}

std::optional<double> LinkedRating::newTotal(double current, double multiplier) {
  const double total = multiplier == 0.0 ? current : current * multiplier;
  if (!differ(total, total_)) return std::nullopt;
  total_ = total;
  return total;
}

RatingChanges LinkedRating::rowSelected(double rowCurrent, const RatingNumbers& shown) {
  if (rowCurrent == 0.0) return {};
  return {rowCurrent, std::nullopt, newTotal(rowCurrent, shown.multiplier)};
}

RatingChanges LinkedRating::leftCurrent(const RatingNumbers& shown) {
  return {std::nullopt, std::nullopt, newTotal(shown.current, shown.multiplier)};
}

RatingChanges LinkedRating::leftMultiplier(const RatingNumbers& shown) {
  RatingChanges changes;
  if (shown.multiplier > smallestMultiplier)
    multiplier_ = shown.multiplier;
  else
    changes.multiplier = multiplier_;
  changes.total = newTotal(shown.current, multiplier_);
  return changes;
}

RatingChanges LinkedRating::leftTotal(const RatingNumbers& shown) {
  total_ = shown.total;
  const double current = shown.multiplier == 0.0 ? total_ : total_ / shown.multiplier;
  if (!differ(current, shown.current)) return {};
  return {current, std::nullopt, std::nullopt};
}

} // namespace brenvolt
