// The data of a motor or load, and its wires, as its symbol carries them: texts that the parent product reads by position.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace circuits {

/// The fields in the order in which symbols and saved configurations keep them. They are read by position; the names are
/// what a list shows.
inline constexpr std::array loadSetupNames = {
    L"Type",
    L"Load",
    L"Units",
    L"Voltage (V)",
    L"Phase",
    L"Frequency (Hz)",
    L"Speed (RPM)",
    L"Full-load current (A)",
    L"Multiplier",
    L"Additional current (A)",
    L"Wire size standard",
    L"Conductor metal",
    L"Insulation",
    L"Temperature rating",
    L"Wire length",
    L"Length units",
    L"Raceway",
    L"Power factor",
    L"Voltage drop limit (%)",
    L"Continuous load factor",
    L"Conductors in raceway",
    L"Fill correction factor",
    L"Ambient temperature",
    L"Ambient correction factor",
    L"Overall correction factor",
    L"Parallel conductors",
    L"Smallest parallel size",
    L"Energy price",
    L"Grounding conductor size",
    L"Control"};

/// In the texts of a wire: its kind is that of the grounding conductor.
inline constexpr std::wstring_view groundKind = L"3";

/// A field by its name in `loadSetupNames`, without blanks around it; empty where the data does not have it.
[[nodiscard]] std::wstring setupText(std::wstring_view params, std::wstring_view name);

/// The texts of `(("10AWG" "BLK_10AWG" "1")...)`, three for each wire: size, layer, kind.
[[nodiscard]] std::vector<std::wstring> wireTexts(std::wstring_view wires);

} // namespace circuits
