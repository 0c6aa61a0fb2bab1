// The data of a placed component: the record in its entity data, and the tests for the kind of a picked entity.
#pragma once

#include "host/host_api_database.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// Positions of the record, from 0; 9 to 27 are wire data.
namespace circparam {
inline constexpr std::size_t type = 0, load = 1, units = 2, voltage = 3, phase = 4, frequency = 5, speed = 6,
                             fla = 7, multiplier = 8, extraCurrent = 9, wireStandard = 10, wireMetal = 11,
                             insulation = 12, temperature = 13, length = 14, lengthUnits = 15, raceway = 16,
                             powerFactor = 17, dropLimit = 18, continuousFactor = 19, fillRange = 20,
                             fillFactor = 21, ambientRange = 22, ambientFactor = 23, overallFactor = 24,
                             parallelCount = 25, parallelMinSize = 26, energyPrice = 27, groundWire = 28,
                             controlCode = 29, wire = 30;
inline constexpr std::size_t count = 31;
/// Those before it, type to speed, say which motor or load it is; the rest follows from them.
inline constexpr std::size_t identity = speed + 1;
} // namespace circparam

/// The record of a placed component: texts by position.
class ZanCircParams final {
public:
  /// Empty beyond the last position.
  [[nodiscard]] std::wstring get(std::size_t index) const;
  /// A text beyond the last position is dropped.
  void set(std::size_t index, std::wstring_view text);

private:
  std::array<std::wstring, circparam::count> fields_;
};

/// The result of reading a record.
enum class RecordStatus : int {
  ok = 0,
  notABlockReference = 8,
  invalidId = 16,
};

/// Reads the record of a component from both its entity data applications.
RecordStatus readCircParams(KvDbObjectId id, ZanCircParams& record);
/// One field of the record.
RecordStatus readCircField(KvDbObjectId id, std::size_t index, std::wstring& text);

/// Type, phase, voltage, speed, load, units, current, multiplier, frequency of a motor.
RecordStatus readMotorFields(KvDbObjectId id, std::array<std::wstring, 9>& fields);
/// Type, phase, voltage, load, units, current, multiplier, frequency of a load.
RecordStatus readPowerFeedFields(KvDbObjectId id, std::array<std::wstring, 8>& fields);

/// The positions that these two read, in their order.
inline constexpr std::array<std::size_t, 9> motorFieldOrder = {
    circparam::type,  circparam::phase, circparam::voltage,    circparam::speed,    circparam::load,
    circparam::units, circparam::fla,   circparam::multiplier, circparam::frequency};
inline constexpr std::array<std::size_t, 8> powerFeedFieldOrder = {
    circparam::type,  circparam::phase, circparam::voltage,    circparam::load,
    circparam::units, circparam::fla,   circparam::multiplier, circparam::frequency};

/// Whether the entity carries a component's record.
[[nodiscard]] bool hasCircParams(KvDbObjectId id);
/// Whether it is a block reference with a tag and two terminals of different numbers.
[[nodiscard]] bool isDevice(KvDbObjectId id);
/// Whether it is a motor or a load: by the block's name, or by its record.
[[nodiscard]] bool isMotorEntity(KvDbObjectId id);
[[nodiscard]] bool isPowerFeedEntity(KvDbObjectId id);

/// The texts that attributes and attribute definitions of a tag have in the current space of the working database,
/// each once, empty ones left out. Empty when the document cannot be locked.
[[nodiscard]] std::vector<std::wstring> readAttributeTexts(std::wstring_view tag);

/// Parses the two texts of entity data: the record's fields, and the wires' list that adds wire and grounding
/// wire.
[[nodiscard]] ZanCircParams parseCircParams(std::wstring_view fields, std::wstring_view wires);

} // namespace brenvolt
