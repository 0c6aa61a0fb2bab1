#include "data/linked_currents.h"

#include "data/wire_sizing.h"
#include "text/numbers.h"
#include "text/split.h"

namespace brenvolt {

namespace {

constexpr int decimals = 4;
constexpr std::wstring_view zero = L"0";

bool isBlankText(const std::wstring& text) {
  return trimView(text).empty();
}

bool isValidText(const std::wstring& text) {
  return isGiven(toDouble(text));
}

/// A field keeps no text that is neither a number nor blank.
void showZeroUnlessBlank(std::wstring& text) {
  if (!isBlankText(text)) text = zero;
}

} // namespace

void LinkedCurrents::begin(CurrentTexts& texts) {
  multiplier_ = toDouble(texts.multiplier);
  extra_ = toDouble(texts.extra);
  if (isValidText(texts.current) && isGiven(multiplier_))
    showTotal(texts, totalCurrent(toDouble(texts.current), multiplier_, extra_));
  else
    total_ = toDouble(texts.total);
}

CurrentEffects LinkedCurrents::left(CurrentField field, CurrentTexts& texts) {
  switch (field) {
  case CurrentField::current:
    return leftCurrent(texts);
  case CurrentField::multiplier:
    return leftMultiplier(texts);
  case CurrentField::extra:
    return leftExtra(texts);
  case CurrentField::total:
    return leftTotal(texts);
  }
  return {};
}

void LinkedCurrents::showTotal(CurrentTexts& texts, double total) {
  texts.total = formatTrimmed(total, decimals);
  total_ = shownCurrent(total);
}

CurrentEffects LinkedCurrents::leftCurrent(CurrentTexts& texts) {
  if (!isValidText(texts.current) || isBlankText(texts.multiplier)) return {};
  showTotal(texts, totalCurrent(toDouble(texts.current), toDouble(texts.multiplier), extra_));
  return {.groundSizes = true, .refresh = true};
}

CurrentEffects LinkedCurrents::leftMultiplier(CurrentTexts& texts) {
  if (!isValidText(texts.multiplier)) {
    texts.multiplier = formatTrimmed(multiplier_, decimals);
    return {};
  }
  multiplier_ = toDouble(texts.multiplier);
  if (!isBlankText(texts.current)) {
    showTotal(texts, totalCurrent(toDouble(texts.current), multiplier_, extra_));
    return {.groundSizes = false, .refresh = true};
  }
  if (!isBlankText(texts.total) && !isValidText(texts.total)) return {};
  texts.current = formatTrimmed((toDouble(texts.total) - extra_) / multiplier_, decimals);
  return {.groundSizes = true, .refresh = false};
}

CurrentEffects LinkedCurrents::leftExtra(CurrentTexts& texts) {
  if (isValidText(texts.extra)) {
    const double difference = toDouble(texts.extra) - extra_;
    extra_ = toDouble(texts.extra);
    showTotal(texts, total_ + difference);
    return {.groundSizes = false, .refresh = true};
  }
  extra_ = 0.0;
  showTotal(texts, totalCurrent(toDouble(texts.current), toDouble(texts.multiplier), extra_));
  const bool wasBlanked = isBlankText(texts.extra);
  showZeroUnlessBlank(texts.extra);
  return {.groundSizes = false, .refresh = wasBlanked};
}

CurrentEffects LinkedCurrents::leftTotal(CurrentTexts& texts) {
  if (!isValidText(texts.total)) {
    texts.current = texts.extra = isBlankText(texts.total) ? std::wstring_view() : zero;
    showZeroUnlessBlank(texts.total);
    extra_ = total_ = 0.0;
    return {.groundSizes = false, .refresh = true};
  }
  CurrentEffects effects;
  effects.refresh = true;
  const double total = toDouble(texts.total);
  const double difference = total - total_;
  if (isGiven(difference) || isGiven(extra_ + difference)) {
    extra_ += difference;
    texts.extra = formatTrimmed(extra_, decimals);
  } else {
    extra_ = 0.0;
    texts.extra = zero;
    if (isGiven(multiplier_)) {
      texts.current = formatTrimmed(total / multiplier_, decimals);
      effects.groundSizes = true;
    }
  }
  total_ = total;
  return effects;
}

} // namespace brenvolt
