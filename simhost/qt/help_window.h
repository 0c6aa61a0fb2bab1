// Help: a page of the manual for each topic of a dialog.
#pragma once

#include <QString>

#include <filesystem>
#include <string_view>

class QWidget;

namespace simhost {

struct HelpTopic {
  std::wstring_view name;
  const char* page; ///< file in the folder of the manual
};

/// All topics that dialogs and main window know.
inline constexpr HelpTopic helpTopics[] = {
    {L"circuit_selection_dialog", "circuits.md"},
    {L"circuit_configuration_dialog", "configuration.md"},
    {L"select_motor_dialog", "pickers.md"},
    {L"select_load_dialog", "pickers.md"},
    {L"wire_size_lookup_dialog", "wire-lookup.md"},
    {L"annotation_presets_dialog", "circuits.md"},
    {L"main_window", "main-window.md"},
};

/// The file of a topic; empty for a topic without a page, or when the page is not there.
[[nodiscard]] std::filesystem::path helpPage(const std::filesystem::path& folder, std::wstring_view topic);

/// Object name of the window.
inline constexpr const char* helpWindowName = "help";

/// Shows a page in a separate window next to `parent` that can be used while a dialog waits. The page begins at the
/// topic.
void showHelpPage(
    const std::filesystem::path& page, std::wstring_view topic, const QString& title, QWidget* parent);

} // namespace simhost
