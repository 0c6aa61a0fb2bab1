#include "flows/config_pick.h"

#include "data/circuit_data.h"
#include "data/entity_records.h"
#include "host/host_api_lisp.h"
#include "host/resources.h"
#include "text/numbers.h"

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

void takeOver(const ZanCircParams& record) {
  ZanCircuitData& circuit = circuitData();
  circuit.type = record.get(circparam::type);
  circuit.load = record.get(circparam::load);
  circuit.units = record.get(circparam::units);
  circuit.voltage = record.get(circparam::voltage);
  circuit.phase = record.get(circparam::phase);
  circuit.frequency = record.get(circparam::frequency);
  circuit.speed = record.get(circparam::speed);
  circuit.fla = toDouble(record.get(circparam::fla));
  circuit.flaMultiplier = toDouble(record.get(circparam::multiplier));
}

} // namespace

std::optional<std::vector<std::wstring>> pickMotorRatings() {
  const std::optional<ZanCircParams> record = ask(motorPick);
  if (!record) return std::nullopt;
  takeOver(*record);
  // The record begins with these nine in the order that is wanted.
  std::vector<std::wstring> values;
  for (std::size_t position = circparam::type; position <= circparam::multiplier; ++position)
    values.push_back(record->get(position));
  return values;
}

std::optional<std::vector<std::wstring>> pickLoadRatings() {
  const std::optional<ZanCircParams> record = ask(loadPick);
  if (!record) return std::nullopt;
  takeOver(*record);
  std::vector<std::wstring> values;
  for (std::size_t position = circparam::type; position <= circparam::multiplier; ++position)
    if (position != circparam::speed) values.push_back(record->get(position));
  return values;
}

} // namespace brenvolt
