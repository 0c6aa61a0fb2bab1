// Arguments and answer of the motor picker. The call answers nil: this module has no picker dialog yet.
#include "plugin/handlers/motor_select.h"

#include "plugin/handlers/argument_fields.h"

namespace brenvolt {

namespace {

using Field = ArgumentField<MotorSelection>;

constexpr Field argumentFields[] = {
    &MotorSelection::type,  &MotorSelection::phase,     &MotorSelection::voltage,
    &MotorSelection::speed, &MotorSelection::power,     &MotorSelection::units,
    &MotorSelection::fla,   &MotorSelection::frequency, &MotorSelection::derating,
};

constexpr Field answerFields[] = {
    &MotorSelection::type,    &MotorSelection::power, &MotorSelection::units,
    &MotorSelection::voltage, &MotorSelection::phase, &MotorSelection::frequency,
    &MotorSelection::speed,   &MotorSelection::fla,   &MotorSelection::derating,
};

} // namespace

MotorSelection readMotorArguments(const ResultList& arguments) {
  MotorSelection selection;
  readArguments<MotorSelection>(arguments, argumentFields, selection);
  return selection;
}

ResultList motorAnswer(const MotorSelection& selection) {
  return listOf<MotorSelection>(selection, answerFields);
}

ResultList motorSelect(const ResultList& arguments) {
  static_cast<void>(arguments);
  return ResultList();
}

} // namespace brenvolt
