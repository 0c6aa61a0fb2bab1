// Current, multiplier, extra current and total of the wire lookup follow each other in both directions. Here are the
// four texts and nothing of a window, so that every case can be read as a row of a table.
#pragma once

#include <string>

namespace brenvolt {

/// What the four fields show.
struct CurrentTexts {
  std::wstring current; ///< of the motor or load, amperes
  std::wstring multiplier;
  std::wstring extra; ///< amperes
  std::wstring total; ///< current x multiplier + extra, amperes

  [[nodiscard]] bool operator==(const CurrentTexts&) const = default;
};

enum class CurrentField { current, multiplier, extra, total };

/// What must be computed again after a change.
struct CurrentEffects {
  bool groundSizes = false;
  bool refresh = false;
};

class LinkedCurrents final {
public:
  /// Takes over what the fields show, and fills the total when current and multiplier are both known.
  void begin(CurrentTexts& texts);

  /// The user left a field: the others follow.
  ///
  /// Some effects look like mistakes but are intentional: a multiplier that yields the current, and an extra current
  /// typed as "0", change the numbers without a refresh.
  [[nodiscard]] CurrentEffects left(CurrentField field, CurrentTexts& texts);

private:
  CurrentEffects leftCurrent(CurrentTexts& texts);
  CurrentEffects leftMultiplier(CurrentTexts& texts);
  CurrentEffects leftExtra(CurrentTexts& texts);
  CurrentEffects leftTotal(CurrentTexts& texts);
  void showTotal(CurrentTexts& texts, double total);

  // The last good values. The total is kept as shown: leaving its field untouched must not count as a change.
  double multiplier_ = 0.0;
  double extra_ = 0.0;
  double total_ = 0.0;
};

} // namespace brenvolt
