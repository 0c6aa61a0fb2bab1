// The controls of the circuit selection and of the dialogs that it opens: existing circuits, annotation presets and
// the list of values.
#pragma once

#include <string_view>

namespace brenvolt::role {

/// @name Circuit selection
/// @{
inline constexpr std::wstring_view workbook = L"workbook"; ///< path, read-only; its tooltip shows all of it
inline constexpr std::wstring_view circuitTree = L"circuits"; ///< tree: circuits, below each its types
/// Button: shows and hides the pane of the picture.
inline constexpr std::wstring_view previewToggle = L"previewToggle";
/// Text, read-only: the path of the chosen type's template drawing, empty when there is none. A screen shows the
/// drawing in its place.
inline constexpr std::wstring_view preview = L"preview";
inline constexpr std::wstring_view history = L"history"; ///< list: a new configuration, then the saved ones
inline constexpr std::wstring_view deleteHistory =
    L"deleteHistory";                                    ///< button; Delete in the list is the same
inline constexpr std::wstring_view summary = L"summary"; ///< grid: name and value of what a history holds
/// Radio buttons of one group: what the circuit starts from. The first one is used with every saved configuration.
inline constexpr std::wstring_view newConfiguration = L"newConfiguration";
inline constexpr std::wstring_view usePresets = L"usePresets";
inline constexpr std::wstring_view useExisting = L"useExisting";
inline constexpr std::wstring_view choosePresets = L"choosePresets";   ///< button: annotation presets
inline constexpr std::wstring_view chooseExisting = L"chooseExisting"; ///< button: existing circuits
/// Tick: the components of the existing circuit are taken over too.
inline constexpr std::wstring_view takeComponents = L"takeComponents";
inline constexpr std::wstring_view circuitScale = L"circuitScale";
inline constexpr std::wstring_view componentScale = L"componentScale";
inline constexpr std::wstring_view rungSpacing = L"rungSpacing";
inline constexpr std::wstring_view spacing = L"spacing";
/// Button: closes like OK, but the circuit is configured before its insertion.
inline constexpr std::wstring_view configure = L"configure";
/// @}

/// Grid of the existing circuits, and of the presets.
inline constexpr std::wstring_view existingGrid = L"existing";
inline constexpr std::wstring_view presetGrid = L"presets";

/// @name Annotation presets
/// @{
inline constexpr std::wstring_view presetKey = L"presetKey"; ///< text, read-only
inline constexpr std::wstring_view valuesFromDrawing = L"valuesFromDrawing";
inline constexpr std::wstring_view valuesFromProject = L"valuesFromProject";
/// @}

inline constexpr std::wstring_view valueList = L"values"; ///< list of values, one of which is chosen

} // namespace brenvolt::role
