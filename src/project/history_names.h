// The words of the history file. They are the format: a change makes every saved configuration unreadable.
#pragma once

#include <string_view>

namespace brenvolt {

inline constexpr std::wstring_view xmlDeclarationData = L"version=\"1.0\" encoding=\"UTF-16\"";

namespace xmlname {
inline constexpr std::wstring_view brenvoltHistory = L"BrenvoltHistory";
inline constexpr std::wstring_view context = L"Context";
inline constexpr std::wstring_view version = L"Version";
inline constexpr std::wstring_view circuit = L"Circuit";
inline constexpr std::wstring_view circuitType = L"CircuitType";
inline constexpr std::wstring_view history = L"History";
inline constexpr std::wstring_view name = L"Name";
inline constexpr std::wstring_view componentScale = L"ComponentScale";
inline constexpr std::wstring_view circuitScale = L"CircuitScale";
inline constexpr std::wstring_view historyCheck = L"HistoryCheck";
inline constexpr std::wstring_view worksheet = L"Worksheet";
inline constexpr std::wstring_view marker = L"Marker";
inline constexpr std::wstring_view code = L"Code";
inline constexpr std::wstring_view tag = L"Tag";
inline constexpr std::wstring_view catalog = L"Catalog";
inline constexpr std::wstring_view selectOption = L"SelectOption";
inline constexpr std::wstring_view uiTitle = L"UI_TITLE";
inline constexpr std::wstring_view uiPrompt = L"UI_PROMPT";
inline constexpr std::wstring_view uiValue = L"UI_VAL";
inline constexpr std::wstring_view controlGroup = L"ControlGroup";
inline constexpr std::wstring_view motorSetup = L"MotorSetup";
inline constexpr std::wstring_view loadSetup = L"LOADSetup";
inline constexpr std::wstring_view wireSetup = L"WireSetup";
inline constexpr std::wstring_view groundingWireSetup = L"GroundingWireSetup";
inline constexpr std::wstring_view property = L"Property";
inline constexpr std::wstring_view value = L"Value";
} // namespace xmlname

} // namespace brenvolt
