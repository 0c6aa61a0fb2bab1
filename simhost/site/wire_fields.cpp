// The rules of typed fields.
#include "simhost/site/wire_fields.h"

#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/plain_number.h"

namespace simhost {

namespace {

bool isAbove0(std::wstring_view text) {
  return brenvolt::isGiven(brenvolt::plainNumber(text).value_or(0.0));
}

bool isFraction(std::wstring_view text) {
  return isAbove0(text) && *brenvolt::plainNumber(text) <= 1.0;
}

std::wstring_view without(std::wstring_view text, std::wstring_view ending) {
  if (text.size() >= ending.size() &&
      brenvolt::equalsOrdinalNoCase(text.substr(text.size() - ending.size()), ending))
    text.remove_suffix(ending.size());
  return text;
}

bool keeps(WireFieldRule rule, std::wstring_view text) {
  switch (rule) {
  case WireFieldRule::name:
    return text.find_first_of(L"'[]") == std::wstring_view::npos;
  case WireFieldRule::positive:
    return isAbove0(text);
  case WireFieldRule::notNegative:
    return brenvolt::plainNumber(text).value_or(-1.0) >= 0.0;
  case WireFieldRule::fraction:
    return isFraction(text);
  case WireFieldRule::multiplier: {
    const double number = brenvolt::plainNumber(text).value_or(0.0);
    return number >= 1.0 && number <= 3.0;
  }
  case WireFieldRule::factor:
    return isAbove0(text) && brenvolt::plainNumber(text).value_or(0.0) <= 2.0;
  case WireFieldRule::fractionOrOff:
    return isOff(text) || isFraction(text);
  case WireFieldRule::percentOrOff:
    return isOff(text) || isAbove0(without(text, L"%"));
  case WireFieldRule::phase:
    return text == L"1" || text == L"3";
  case WireFieldRule::lengthUnits:
    return brenvolt::equalsOrdinalNoCase(text, L"FT") || brenvolt::equalsOrdinalNoCase(text, L"M");
  case WireFieldRule::degrees:
    return brenvolt::plainInteger(without(text, L"C")).has_value();
  case WireFieldRule::count:
    return brenvolt::plainInteger(text).value_or(0) > 0;
  }
  return false;
}

const char* expectation(WireFieldRule rule) {
  switch (rule) {
  case WireFieldRule::name:
    return "must not contain quotes or brackets";
  case WireFieldRule::positive:
    return "must be a number above 0";
  case WireFieldRule::notNegative:
    return "must be a number that is not negative";
  case WireFieldRule::fraction:
    return "must be a number above 0 and at most 1";
  case WireFieldRule::multiplier:
    return "must be a number from 1 to 3, such as 1.25";
  case WireFieldRule::factor:
    return "must be a number above 0 and at most 2, such as 0.8 for 80 %";
  case WireFieldRule::fractionOrOff:
    return "must be a number above 0 and at most 1, or off";
  case WireFieldRule::percentOrOff:
    return "must be a number above 0, or off";
  case WireFieldRule::phase:
    return "must be 1 or 3";
  case WireFieldRule::lengthUnits:
    return "must be FT or M";
  case WireFieldRule::degrees:
    return "must be whole degrees, such as 40C";
  case WireFieldRule::count:
    return "must be a whole number above 0";
  }
  return "";
}

} // namespace

bool isOff(std::wstring_view text) {
  return brenvolt::equalsOrdinalNoCase(text, offText);
}

std::optional<std::string> wireTextFault(WireFieldRule rule, std::wstring_view text) {
  if (keeps(rule, text)) return std::nullopt;
  return "\"" + brenvolt::toUtf8(text) + "\" " + expectation(rule);
}

} // namespace simhost
