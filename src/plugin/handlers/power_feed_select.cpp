// Arguments and answer of the load picker. The call answers nil: this module has no picker dialog yet.
#include "plugin/handlers/power_feed_select.h"

#include "plugin/handlers/argument_fields.h"

namespace brenvolt {

namespace {

using Field = ArgumentField<LoadSelection>;

constexpr Field argumentFields[] = {
    &LoadSelection::type,  &LoadSelection::phase, &LoadSelection::voltage,   &LoadSelection::power,
    &LoadSelection::units, &LoadSelection::fla,   &LoadSelection::frequency, &LoadSelection::derating,
};

constexpr Field answerFields[] = {
    &LoadSelection::type,  &LoadSelection::power,     &LoadSelection::units, &LoadSelection::voltage,
    &LoadSelection::phase, &LoadSelection::frequency, &LoadSelection::fla,   &LoadSelection::derating,
};

} // namespace

LoadSelection readLoadArguments(const ResultList& arguments) {
  LoadSelection selection;
  readArguments<LoadSelection>(arguments, argumentFields, selection);
  return selection;
}

ResultList loadAnswer(const LoadSelection& selection) {
  return listOf<LoadSelection>(selection, answerFields);
}

ResultList powerFeedSelect(const ResultList& arguments) {
  static_cast<void>(arguments);
  return ResultList();
}

} // namespace brenvolt
