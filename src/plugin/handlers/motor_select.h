// `zan_bv_motor_select`: the user picks a motor from the motor table.
#pragma once

#include "host/result_list.h"

#include <string>

namespace brenvolt {

/// What the picker starts from and ends with. 0.0 is a number that the caller did not give.
struct MotorSelection {
  std::wstring type;
  std::wstring phase;
  std::wstring voltage;
  std::wstring speed;
  std::wstring power;
  std::wstring units;
  std::wstring frequency;
  double fla = 0.0; ///< amperes
  double derating = 0.0;
};

/// Arguments by position: type phase voltage speed power units fla frequency derating.
[[nodiscard]] MotorSelection readMotorArguments(const ResultList& arguments);

/// (type power units voltage phase frequency speed fla derating): the order of the fields of `ZanCircuitData`, where
/// power is `load` and derating `flaMultiplier`.
[[nodiscard]] ResultList motorAnswer(const MotorSelection& selection);

[[nodiscard]] ResultList motorSelect(const ResultList& arguments);

} // namespace brenvolt
