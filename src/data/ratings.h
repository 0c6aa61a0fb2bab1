// The nine ratings of a motor or load in one table: what tables, labels and lookup commands call each. The records of placed components, the rows of saved configurations, pages, pickers and LISP lists all walk
// this table.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace brenvolt {

enum class TextId : unsigned;

/// A number that is not above the tolerance is not given.
struct Ratings {
  std::wstring type;
  std::wstring load; ///< power or rating figure
  std::wstring units;
  std::wstring voltage;   ///< volts
  std::wstring phase;     ///< "1" or "3"
  std::wstring frequency; ///< hertz
  std::wstring speed;     ///< rpm; a load has none
  double fla = -1.0;      ///< full-load current, amperes
  double flaMultiplier = -1.0;
};

/// The position of each in the table: also that in the record of a placed component and in the row of a saved
/// configuration.
enum class Rating : std::size_t { type, load, units, voltage, phase, frequency, speed, fla, flaMultiplier };
inline constexpr std::size_t ratingCount = 9;

/// Either a text or a number.
struct RatingField {
  std::wstring Ratings::*text;
  double Ratings::*number;
  std::wstring_view column; ///< of the motor and load tables; empty: they have none
  int motorColumn; ///< its place in a motor table that lacks the name, from 1; the first is the row's id
  TextId label;
  std::wstring_view argument; ///< of a lookup command
};

extern const std::array<RatingField, ratingCount> ratingFields;

/// Puts a text into a rating; a number is read from it.
void setRating(Ratings& ratings, std::size_t index, std::wstring_view text);

} // namespace brenvolt
