#include "flows/rating_memory.h"

#include "host/host_api_documents.h"
#include "text/numbers.h"

#include <cmath>

namespace brenvolt {

namespace {

bool isGivenByCaller(double number) {
  return std::abs(number) > givenNumberTolerance;
}

/// Phase and units say nothing of themselves: with these alone the kept values are taken.
bool isNothingGiven(const RatingSelection& selection) {
  return selection.type.empty() && selection.voltage.empty() && selection.speed.empty() &&
         selection.load.empty() && selection.frequency.empty() && !isGivenByCaller(selection.fla) &&
         !isGivenByCaller(selection.flaMultiplier);
}

void readKept(const RatingPickerKind& kind, ZanOptTableReader& options, RatingSelection& selection) {
  for (std::size_t column = 0; column < kind.keptTexts.size(); ++column)
    if (kind.keptTexts[column] != nullptr)
      kvdsReadUserValue(kind.dialogName, kind.keptTexts[column], selection.*kind.texts[column]);

  std::wstring text;
  selection.fla = kind.absentFla;
  if (kvdsReadUserValue(kind.dialogName, kind.keptFla, text)) {
    const double kept = toDouble(text);
    selection.fla = kept < numberTolerance ? 0.0 : kept;
  }
  if (kvdsReadUserValue(kind.dialogName, kind.keptMultiplier, text)) {
    const double kept = toDouble(text);
    selection.flaMultiplier = kept < numberTolerance ? kind.fallbackMultiplier : kept;
  } else {
    selection.flaMultiplier = options.GetFlaMultiplier();
  }
}

} // namespace

void completeSelection(const RatingPickerKind& kind, ZanOptTableReader& options, RatingSelection& selection) {
  if (isNothingGiven(selection) && kvdsUserKeyExists(kind.dialogName))
    readKept(kind, options, selection);
  else if (!isGivenByCaller(selection.flaMultiplier))
    selection.flaMultiplier = options.GetFlaMultiplier();
}

void keepSelection(const RatingPickerKind& kind, const RatingSelection& selection) {
  for (std::size_t column = 0; column < kind.keptTexts.size(); ++column)
    if (kind.keptTexts[column] != nullptr)
      kvdsWriteUserValue(kind.dialogName, kind.keptTexts[column], (selection.*kind.texts[column]).c_str());
  kvdsWriteUserValue(kind.dialogName, kind.keptFla, formatDouble(selection.fla).c_str());
  kvdsWriteUserValue(kind.dialogName, kind.keptMultiplier, formatDouble(selection.flaMultiplier).c_str());
}

} // namespace brenvolt
