// Arguments and answer of the load picker. Between them the picker runs.
#include "plugin/handlers/power_feed_select.h"

#include "flows/dlg_power_feed.h"
#include "host/host_api_documents.h"
#include "plugin/handlers/argument_fields.h"

namespace brenvolt {

namespace {

using Field = ArgumentField<RatingSelection>;

constexpr Field argumentFields[] = {
    &RatingSelection::type,      &RatingSelection::phase,      &RatingSelection::voltage,
    &RatingSelection::load,      &RatingSelection::units,      &RatingSelection::fla,
    &RatingSelection::frequency, &RatingSelection::multiplier,
};

constexpr Field answerFields[] = {
    &RatingSelection::type,    &RatingSelection::load,       &RatingSelection::units,
    &RatingSelection::voltage, &RatingSelection::phase,      &RatingSelection::frequency,
    &RatingSelection::fla,     &RatingSelection::multiplier,
};

} // namespace

RatingSelection readLoadArguments(const ResultList& arguments) {
  RatingSelection selection;
  readArguments<RatingSelection>(arguments, argumentFields, selection);
  return selection;
}

ResultList loadAnswer(const RatingSelection& selection) {
  return listOf<RatingSelection>(selection, answerFields);
}

ResultList powerFeedSelect(const ResultList& arguments) {
  RatingSelection selection = readLoadArguments(arguments);
  const KvAxDocLock lock;
  return runLoadPicker(kvdsForegroundWindow(), selection) ? loadAnswer(selection) : ResultList();
}

} // namespace brenvolt
