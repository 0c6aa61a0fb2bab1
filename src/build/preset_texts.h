// The preset fields of a build's arguments: short texts by which a caller fixes options, component data, wire numbers
// and wires before the build. All of them skip what they cannot read.
#pragma once

#include "project/circuit_list.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// "CODE=1,2;CODE=..." as defaults of the worksheet: each value selects its option group's option of that value. "-1"
/// and an empty right side leave the selection; a value without an option keeps the group's last selected option, or
/// takes its first. Text in brackets, "[...]", is skipped with them; a part must hold exactly one "=".
void applyPresetDefaults(std::wstring_view presetText, ZanCircuitCatalog& catalog);

/// The same for the record of one CODE.
void applyPresetOptions(std::wstring_view presetText, std::wstring_view code, ZanCodeRecord& record);

/// One part "CODE[=HANDLE]=1,2" of a preset text: a placed component whose data the marker takes over.
struct MarkerPreset {
  std::wstring code;
  std::wstring handle;
  std::vector<std::int32_t> values;
  std::int32_t sum = 0;
};

/// The parts of a preset text that name a handle; only the bracket characters are dropped.
[[nodiscard]] std::vector<MarkerPreset> parseMarkerPresets(std::wstring_view presetText);

/// The wire numbers of `"a";"b";"";"c"`, empty ones kept: positions count.
[[nodiscard]] std::vector<std::wstring> parseCodeHandles(std::wstring_view codeHandleText);

inline constexpr std::wstring_view conductorKind = L"1";
inline constexpr std::wstring_view groundingKind = L"3";

/// A wire of a preset: what its record begins with, a second word, and its kind.
struct PresetWire {
  std::wstring firstWord;
  std::wstring secondWord;
  std::wstring kind;
};

/// The wires of `(("2AWG" "x" "1") ("6AWG" "x" "3"))`.
[[nodiscard]] std::vector<PresetWire> parsePresetWires(std::wstring_view wireText);

} // namespace brenvolt
