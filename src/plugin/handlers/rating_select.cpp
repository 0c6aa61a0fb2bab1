// Arguments and results of the pickers as tables. The picker runs between them.
#include "plugin/handlers/rating_select.h"

#include "data/circuit_data.h"
#include "flows/dlg_motor_select.h"
#include "flows/dlg_power_feed.h"
#include "host/host_api_documents.h"
#include "plugin/process_record.h"

#include <cstddef>

namespace brenvolt {

namespace {

constexpr Rating motorArguments[] = {
    Rating::type,  Rating::phase, Rating::voltage,   Rating::speed,         Rating::load,
    Rating::units, Rating::fla,   Rating::frequency, Rating::flaMultiplier,
};
constexpr Rating motorAnswer[] = {
    Rating::type,      Rating::load,  Rating::units, Rating::voltage,       Rating::phase,
    Rating::frequency, Rating::speed, Rating::fla,   Rating::flaMultiplier,
};
constexpr Rating loadArguments[] = {
    Rating::type,  Rating::phase, Rating::voltage,   Rating::load,
    Rating::units, Rating::fla,   Rating::frequency, Rating::flaMultiplier,
};
constexpr Rating loadAnswer[] = {
    Rating::type,  Rating::load,      Rating::units, Rating::voltage,
    Rating::phase, Rating::frequency, Rating::fla,   Rating::flaMultiplier,
};

const RatingField& fieldOf(Rating rating) {
  return ratingFields[static_cast<std::size_t>(rating)];
}

ResultList pick(
    const ResultList& arguments, const RatingPlaces& places,
    bool (*runPicker)(KvWindow*, const LentTables&, RatingSelection&)) {
  RatingSelection selection = places.read(arguments);
  const KvAxDocLock lock;
  if (!runPicker(kvdsForegroundWindow(), lentTables(), selection)) return {};
  storeSelection(selection, circuitData());
  return places.listOf(selection);
}

} // namespace

const RatingPlaces motorPlaces = {motorArguments, motorAnswer};
const RatingPlaces loadPlaces = {loadArguments, loadAnswer};

RatingSelection RatingPlaces::read(const ResultList& list) const {
  RatingSelection selection;
  ListReader reader(list);
  for (std::size_t place = 0; place < arguments.size() && !reader.atEnd(); ++place, reader.skipElement()) {
    const RatingField& field = fieldOf(arguments[place]);
    if (field.text)
      selection.*field.text = reader.text().value_or(selection.*field.text);
    else
      selection.*field.number = reader.real().value_or(selection.*field.number);
  }
  return selection;
}

ResultList RatingPlaces::listOf(const RatingSelection& selection) const {
  ListBuilder list;
  list.beginList();
  for (const Rating rating : answer) {
    const RatingField& field = fieldOf(rating);
    if (field.text)
      list.addText(selection.*field.text);
    else
      list.addReal(selection.*field.number);
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
