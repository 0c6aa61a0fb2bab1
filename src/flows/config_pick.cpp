#include "flows/config_pick.h"

#include "data/entity_records.h"
#include "host/host_api_lisp.h"
#include "host/resources.h"

#include <array>
#include <cstddef>

namespace brenvolt {

namespace {

/// A placed component's record with the fields that one of its readers gives, or nothing.
template <std::size_t size>
std::optional<ZanCircParams> recordOf(
    KvDbObjectId id, RecordStatus (*read)(KvDbObjectId, std::array<std::wstring, size>&),
    const std::array<std::size_t, size>& order) {
  std::array<std::wstring, size> fields;
  if (read(id, fields) != RecordStatus::ok) return std::nullopt;
  ZanCircParams record;
  for (std::size_t i = 0; i < size; ++i)
    record.set(order[i], fields[i]);
  return record;
}

struct Pick {
  TextId prompt;
  bool (*isWanted)(KvDbObjectId);
  std::optional<ZanCircParams> (*read)(KvDbObjectId);
};

constexpr Pick motorPick = {TextId::pickMotorPrompt, isMotorEntity, [](KvDbObjectId id) {
                              return recordOf(id, readMotorFields, motorFieldOrder);
                            }};
constexpr Pick loadPick = {TextId::pickLoadPrompt, isPowerFeedEntity, [](KvDbObjectId id) {
                             return recordOf(id, readPowerFeedFields, powerFeedFieldOrder);
                           }};

std::optional<ZanCircParams> ask(const Pick& pick) {
  const std::wstring prompt = loadText(pick.prompt);
  for (;;) {
    KvEntityName entity{};
    KvPoint3d point{};
    if (kvedEntSel(prompt.c_str(), entity, point) != kvstatus::normal) return std::nullopt;
    KvDbObjectId id;
    if (kvdbGetObjectId(id, entity) != KvDbStatus::ok || !pick.isWanted(id)) continue;
    if (std::optional<ZanCircParams> record = pick.read(id)) return record;
  }
}

void takeOver(const ZanCircParams& record, Ratings& ratings) {
  for (std::size_t index = 0; index < ratingCount; ++index)
    setRating(ratings, index, record.get(index));
}

} // namespace

std::optional<std::vector<std::wstring>> pickMotorRatings(ZanCircuitData& circuit) {
  const std::optional<ZanCircParams> record = ask(motorPick);
  if (!record) return std::nullopt;
  takeOver(*record, circuit);
  // The record begins with these nine in the required order.
  std::vector<std::wstring> values;
  for (std::size_t position = circparam::type; position <= circparam::multiplier; ++position)
    values.push_back(record->get(position));
  return values;
}

std::optional<std::vector<std::wstring>> pickLoadRatings(ZanCircuitData& circuit) {
  const std::optional<ZanCircParams> record = ask(loadPick);
  if (!record) return std::nullopt;
  takeOver(*record, circuit);
  std::vector<std::wstring> values;
  for (std::size_t position = circparam::type; position <= circparam::multiplier; ++position)
    if (position != circparam::speed) values.push_back(record->get(position));
  return values;
}

} // namespace brenvolt
