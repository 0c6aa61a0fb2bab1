// `zan_bv_power_feed_select`: the user picks a load from the load table.
#pragma once

#include "host/result_list.h"

#include <string>

namespace brenvolt {

/// What the picker starts from and ends with. 0.0 is a number that the caller did not give.
struct LoadSelection {
  std::wstring type;
  std::wstring phase;
  std::wstring voltage;
  std::wstring power;
  std::wstring units;
  std::wstring frequency;
  double fla = 0.0; ///< amperes
  double derating = 0.0;
};

/// Arguments by position: type phase voltage power units fla frequency derating.
[[nodiscard]] LoadSelection readLoadArguments(const ResultList& arguments);

/// (type power units voltage phase frequency fla derating).
[[nodiscard]] ResultList loadAnswer(const LoadSelection& selection);

[[nodiscard]] ResultList powerFeedSelect(const ResultList& arguments);

} // namespace brenvolt
