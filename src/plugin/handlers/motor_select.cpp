// Arguments and answer of the motor picker. Between them the picker runs.
#include "plugin/handlers/motor_select.h"

#include "flows/dlg_motor_select.h"
#include "host/host_api_documents.h"
#include "plugin/handlers/argument_fields.h"

namespace brenvolt {

namespace {

using Field = ArgumentField<RatingSelection>;

constexpr Field argumentFields[] = {
    &RatingSelection::type,  &RatingSelection::phase,     &RatingSelection::voltage,
    &RatingSelection::speed, &RatingSelection::load,      &RatingSelection::units,
    &RatingSelection::fla,   &RatingSelection::frequency, &RatingSelection::multiplier,
};

constexpr Field answerFields[] = {
    &RatingSelection::type,    &RatingSelection::load,  &RatingSelection::units,
    &RatingSelection::voltage, &RatingSelection::phase, &RatingSelection::frequency,
    &RatingSelection::speed,   &RatingSelection::fla,   &RatingSelection::multiplier,
};

} // namespace

RatingSelection readMotorArguments(const ResultList& arguments) {
  RatingSelection selection;
  readArguments<RatingSelection>(arguments, argumentFields, selection);
  return selection;
}

ResultList motorAnswer(const RatingSelection& selection) {
  return listOf<RatingSelection>(selection, answerFields);
}

ResultList motorSelect(const ResultList& arguments) {
  RatingSelection selection = readMotorArguments(arguments);
  const KvAxDocLock lock;
  return runMotorPicker(kvdsForegroundWindow(), selection) ? motorAnswer(selection) : ResultList();
}

} // namespace brenvolt
