#include "data/ratings.h"

#include "host/resources.h"
#include "text/numbers.h"

namespace brenvolt {

namespace {

constexpr RatingField textField(
    std::wstring Ratings::*text, std::wstring_view column, int motorColumn, TextId label,
    std::wstring_view argument) {
  return {text, nullptr, column, motorColumn, label, argument};
}

constexpr RatingField numberField(
    double Ratings::*number, std::wstring_view column, int motorColumn, TextId label,
    std::wstring_view argument) {
  return {nullptr, number, column, motorColumn, label, argument};
}

} // namespace

const std::array<RatingField, ratingCount> ratingFields = {
    textField(&Ratings::type, L"Type", 2, TextId::dataType, L"@type"),
    textField(&Ratings::load, L"Load", 6, TextId::dataLoad, L"@load"),
    textField(&Ratings::units, L"Units", 7, TextId::dataUnits, L"@units"),
    textField(&Ratings::voltage, L"Voltage (V)", 4, TextId::dataVoltage, L"@voltage"),
    textField(&Ratings::phase, L"Phase", 3, TextId::dataPhase, L"@phase"),
    textField(&Ratings::frequency, L"Frequency (HZ)", 9, TextId::dataFrequency, L"@frequency"),
    textField(&Ratings::speed, L"Speed (RPM)", 5, TextId::dataSpeed, L"@speed"),
    numberField(&Ratings::fla, L"FLA (A)", 8, TextId::dataFla, L"@fla"),
    numberField(&Ratings::flaMultiplier, {}, 0, TextId::dataMultiplier, L"@flamult"),
};

void setRating(Ratings& ratings, std::size_t index, std::wstring_view text) {
  const RatingField& field = ratingFields.at(index);
  if (field.text)
    ratings.*field.text = text;
  else
    ratings.*field.number = toDouble(text);
}

} // namespace brenvolt
