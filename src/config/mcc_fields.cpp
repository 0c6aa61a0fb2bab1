#include "config/mcc_fields.h"

#include "text/numbers.h"

#include <algorithm>

namespace brenvolt {

Ratings startRatings() {
  Ratings ratings;
  ratings.fla = 1.0;
  ratings.flaMultiplier = 0.0;
  return ratings;
}

std::vector<std::size_t> mccFieldsOf(MccMode mode) {
  std::vector<std::size_t> list;
  for (std::size_t field = 0; field < ratingCount; ++field)
    if (mode == MccMode::motor || field != speedField) list.push_back(field);
  return list;
}

std::vector<ZanGroupRow> mccEmptyRows(MccMode mode) {
  std::vector<ZanGroupRow> rows;
  for (const std::size_t field : mccFieldsOf(mode)) {
    std::optional<std::wstring> label = findText(ratingFields[field].label);
    if (!label) continue;
    const std::size_t choices = ratingFields[field].text ? 2 : 0;
    rows.push_back({std::move(*label), std::vector<std::wstring>(choices)});
  }
  return rows;
}

void storeUserValue(CircuitContext& context, MccMode mode, std::size_t field, std::wstring_view value) {
  if (mode == MccMode::load && field == multiplierField)
    context.load.flaMultiplier = toDouble(value);
  else
    setRating(context.circuit, field, value);
}

bool isTypedNumber(std::wstring_view text) {
  return text.empty() || formatDouble(toDouble(text)).starts_with(text);
}

std::vector<ZanScriptVariable> mccArguments(MccMode mode, const std::vector<ZanGroupRow>& rows) {
  const std::vector<std::size_t> list = mccFieldsOf(mode);
  std::vector<ZanScriptVariable> arguments;
  for (std::size_t row = 0; row < std::min(rows.size(), list.size()); ++row) {
    const RatingField& field = ratingFields[list[row]];
    const std::wstring value = rows[row].value();
    arguments.push_back(
        field.text ? ZanScriptVariable::ofText(field.argument, value)
                   : ZanScriptVariable::ofReal(field.argument, toDouble(value)));
  }
  return arguments;
}

} // namespace brenvolt
