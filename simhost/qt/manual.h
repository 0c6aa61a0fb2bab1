// The manual as help reads it: its pages in the user's language, their sections, and a search over them. A page that the
// language lacks is read in English.
#pragma once

#include <QString>
#include <QStringList>

#include <filesystem>
#include <string_view>
#include <vector>

namespace simhost {

/// What dialogs and main window ask help about.
struct HelpTopic {
  std::wstring_view name;
  const char* page;   ///< file in the folder of the manual
  const char* window; ///< object name of the window that it describes
};

inline constexpr HelpTopic helpTopics[] = {
    {L"circuit_selection_dialog", "circuits.md", "ZanDlgCircuit"},
    {L"circuit_configuration_dialog", "configuration.md", "ZanDlgConfig"},
    {L"select_motor_dialog", "pickers.md", "ZanDlgMotorSelect"},
    {L"select_load_dialog", "pickers.md", "ZanDlgPowerFeed"},
    {L"wire_size_lookup_dialog", "wire-lookup.md", "ZanDlgWireSelect"},
    {L"annotation_presets_dialog", "circuits.md", "ZanDlgAnnotation"},
    {L"existing_circuits", "circuits.md", "ZanDlgExistCircuits"},
    {L"main_window", "main-window.md", ""},
    {L"first_circuit", "first-circuit.md", ""},
};

struct ManualSection {
  QString heading;
  QString anchor; ///< of the heading, as links write it
  int level = 1;
  QString text; ///< without marks
};

struct ManualPage {
  QString name; ///< "pickers.md"
  std::vector<ManualSection> sections;
  [[nodiscard]] QString title() const { return sections.empty() ? name : sections.front().heading; }
};

/// A place that a search found.
struct ManualHit {
  QString page;
  QString anchor;
  QString title;   ///< of the page, and the heading
  QString excerpt; ///< the words in their line
};

class Manual final {
public:
  /// `language`: two letters.
  Manual(const std::filesystem::path& folder, const QString& language);

  /// All pages, in the order of the contents.
  [[nodiscard]] const std::vector<ManualPage>& pages() const { return pages_; }
  /// The file of a page, empty for an unknown one.
  [[nodiscard]] QString file(const QString& page) const;
  /// The anchor of a topic on its page: a mark before a heading, else empty for the beginning of the page.
  [[nodiscard]] QString anchorOf(const QString& page, const QString& topic) const;
  /// The sections in which all words occur, those with a word in the heading first.
  [[nodiscard]] std::vector<ManualHit> search(const QString& words) const;

private:
  QString folder_;
  QString language_;
  std::vector<ManualPage> pages_;
};

/// The topic's row; null for an unknown one.
[[nodiscard]] const HelpTopic* helpTopic(std::wstring_view name);
/// How links name a heading: small letters, a hyphen for each blank.
[[nodiscard]] QString anchorOfHeading(const QString& heading);

} // namespace simhost
