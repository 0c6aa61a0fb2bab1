// The controls of the wire lookup that only show something, or that no figure follows from.
#pragma once

#include <string_view>

namespace brenvolt::role {

inline constexpr std::wstring_view energyNote = L"energyNote";
inline constexpr std::wstring_view reportTitle = L"reportTitle";
inline constexpr std::wstring_view report = L"report";
/// Spare conductors: a tick with two inputs for the user's notes.
inline constexpr std::wstring_view spare = L"spare";
inline constexpr std::wstring_view spareInput1 = L"spareInput1";
inline constexpr std::wstring_view spareInput2 = L"spareInput2";

} // namespace brenvolt::role
