// The controls of the configuration dialog.
#pragma once

#include <string_view>

namespace brenvolt::role {

/// Read-only: what the build was called for.
inline constexpr std::wstring_view circuitType = L"type";
inline constexpr std::wstring_view circuitName = L"circuit";
/// The name under which the configuration is saved in the history file.
inline constexpr std::wstring_view historyName = L"historyName";
inline constexpr std::wstring_view units = L"units"; ///< tree
/// Pages: the option groups of the unit, and the input groups of its widget manager.
inline constexpr std::wstring_view optionPages = L"options";
inline constexpr std::wstring_view settingsPages = L"settings";
inline constexpr std::wstring_view insertCurrent = L"insertCurrent";
inline constexpr std::wstring_view insertUpToCurrent = L"insertUpToCurrent";
inline constexpr std::wstring_view insertAll = L"insertAll";
inline constexpr std::wstring_view undoInsertion = L"undo";

} // namespace brenvolt::role
