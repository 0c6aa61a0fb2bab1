#include "widgets/numeric_edit.h"

#include "text/numbers.h"
#include "text/split.h"

namespace brenvolt {

std::wstring ZanNumericEdit::text() const {
  return trim(field_.Text());
}

double ZanNumericEdit::value() const {
  return toDouble(field_.Text());
}

bool ZanNumericEdit::isValid() const {
  return isGiven(value());
}

bool ZanNumericEdit::isValid(double highest) const {
  return isValid() && value() <= highest;
}

void ZanNumericEdit::setValue(double value) {
  field_.SetText(formatTrimmed(value, decimals_));
}

} // namespace brenvolt
