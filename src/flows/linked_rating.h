// Current, multiplier and total of a picker follow each other in both directions. Numbers only, nothing of a window.
#pragma once

#include <optional>

namespace brenvolt {

/// The numbers that the three fields show; amperes but for the multiplier.
struct RatingNumbers {
  double current = 0.0;
  double multiplier = 0.0;
  double total = 0.0;
};

/// What must be shown again. A field without a number keeps the typed text.
struct RatingChanges {
  std::optional<double> current;
  std::optional<double> multiplier;
  std::optional<double> total;
};

class LinkedRating final {
public:
  /// Starts from a current and a multiplier; all three are shown.
  [[nodiscard]] RatingChanges begin(double current, double multiplier);

  /// A row of the table was selected. A row without a current changes nothing.
  [[nodiscard]] RatingChanges rowSelected(double rowCurrent, const RatingNumbers& shown);
  /// The user left a field; `shown` is what the fields hold then.
  [[nodiscard]] RatingChanges leftCurrent(const RatingNumbers& shown);
  /// A multiplier that is not above 1e-6 is replaced by the last valid one.
  [[nodiscard]] RatingChanges leftMultiplier(const RatingNumbers& shown);
  [[nodiscard]] RatingChanges leftTotal(const RatingNumbers& shown);

  /// The last good multiplier.
  [[nodiscard]] double multiplier() const { return multiplier_; }

private:
  [[nodiscard]] std::optional<double> newTotal(double current, double multiplier);

  double multiplier_ = 0.0;
  double total_ = 0.0;
};

} // namespace brenvolt
