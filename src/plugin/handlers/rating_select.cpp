// Arguments and answers of the pickers as tables. Between them the picker runs.
#include "plugin/handlers/rating_select.h"

#include "flows/dlg_motor_select.h"
#include "flows/dlg_power_feed.h"
#include "host/host_api_documents.h"

#include <cstddef>

namespace brenvolt {

namespace {

using Selection = RatingSelection;

constexpr RatingField motorArguments[] = {
    &Selection::type,  &Selection::phase, &Selection::voltage,   &Selection::speed,      &Selection::load,
    &Selection::units, &Selection::fla,   &Selection::frequency, &Selection::multiplier,
};
constexpr RatingField motorAnswer[] = {
    &Selection::type,      &Selection::load,  &Selection::units, &Selection::voltage,    &Selection::phase,
    &Selection::frequency, &Selection::speed, &Selection::fla,   &Selection::multiplier,
};
constexpr RatingField loadArguments[] = {
    &Selection::type,  &Selection::phase, &Selection::voltage,   &Selection::load,
    &Selection::units, &Selection::fla,   &Selection::frequency, &Selection::multiplier,
};
constexpr RatingField loadAnswer[] = {
    &Selection::type,  &Selection::load,      &Selection::units, &Selection::voltage,
    &Selection::phase, &Selection::frequency, &Selection::fla,   &Selection::multiplier,
};

ResultList pick(
    const ResultList& arguments, const RatingPlaces& places, bool (*runPicker)(KvWindow*, RatingSelection&)) {
  RatingSelection selection = places.read(arguments);
  const KvAxDocLock lock;
  return runPicker(kvdsForegroundWindow(), selection) ? places.listOf(selection) : ResultList();
}

} // namespace

const RatingPlaces motorPlaces = {motorArguments, motorAnswer};
const RatingPlaces loadPlaces = {loadArguments, loadAnswer};

RatingSelection RatingPlaces::read(const ResultList& list) const {
  RatingSelection selection;
  ListReader reader(list);
  for (std::size_t place = 0; place < arguments.size() && !reader.atEnd(); ++place, reader.skipElement()) {
    if (const auto* text = std::get_if<std::wstring Selection::*>(&arguments[place])) {
      selection.** text = reader.text().value_or(selection.**text);
    } else {
      double& number = selection.*std::get<double Selection::*>(arguments[place]);
      number = reader.real().value_or(number);
    }
  }
  return selection;
}

ResultList RatingPlaces::listOf(const RatingSelection& selection) const {
  ListBuilder list;
  list.beginList();
  for (const RatingField& field : answer) {
    if (const auto* text = std::get_if<std::wstring Selection::*>(&field)) {
      list.addText(selection.**text);
    } else {
      list.addReal(selection.*std::get<double Selection::*>(field));
    }
  }
  return list.endList().take();
}

ResultList motorSelect(const ResultList& arguments) {
  return pick(arguments, motorPlaces, runMotorPicker);
}

ResultList powerFeedSelect(const ResultList& arguments) {
  return pick(arguments, loadPlaces, runLoadPicker);
}

} // namespace brenvolt
