// The controls of the motor picker and the load picker. The two forms differ in one filter list.
#pragma once

#include <string_view>

namespace brenvolt::role {

/// Filter lists: rows of the grid that have the chosen text in this column. Frequency is on the motor form, phase on
/// the load form.
inline constexpr std::wstring_view typeFilter = L"typeFilter";
inline constexpr std::wstring_view voltageFilter = L"voltageFilter";
inline constexpr std::wstring_view frequencyFilter = L"frequencyFilter";
inline constexpr std::wstring_view phaseFilter = L"phaseFilter";

inline constexpr std::wstring_view current = L"current"; ///< full-load current, amperes
inline constexpr std::wstring_view multiplier = L"multiplier";
inline constexpr std::wstring_view total = L"total"; ///< current x multiplier, amperes
/// Tick: cells of the grid can be changed and rows added.
inline constexpr std::wstring_view edit = L"edit";
/// Button: take the motor or load from the drawing.
inline constexpr std::wstring_view pick = L"pick";
inline constexpr std::wstring_view database = L"database"; ///< path of the tables' database
inline constexpr std::wstring_view table = L"table";       ///< name of the table that is shown

} // namespace brenvolt::role
