// Resource modules: texts by number and task dialogs by key, read from one plain text file for each language, which a
// translator edits. docs/resources.md describes the files.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace simhost {

struct DialogButtonText {
  int id = 0;
  std::wstring label;
};

struct DialogText {
  std::wstring title;
  std::wstring text;
  std::vector<DialogButtonText> buttons; ///< in the order in which they are shown
  bool isHideable = false;
};

} // namespace simhost

/// What one resource module holds for one language.
class KvResourceModule final {
public:
  std::wstring name;
  std::map<unsigned, std::wstring> texts;
  std::map<std::wstring, simhost::DialogText, std::less<>> dialogs;
};

namespace simhost {

/// Reads a language file into a module: a first file fills it, a second one of another language puts its words over
/// those that are there. Which dialogs there are, their buttons and whether they can be hidden is up to the first
/// file. Throws BadInput with file and line.
enum class LanguageRole { base, translation };
void readLanguageFile(
    std::string_view bytes, const std::string& fileName, LanguageRole role, KvResourceModule& module);

/// All modules that are loaded.
class ResourceLibrary final {
public:
  ResourceLibrary(std::filesystem::path folder, std::string language)
      : folder_(std::move(folder)), language_(std::move(language)) {}

  /// Loads the module of a name ("ZanBrenvoltRes.dll") from the folder of that name without its ending. Null when
  /// its English file is not there. A damaged file throws BadInput.
  [[nodiscard]] KvResourceModule* load(std::wstring_view name);
  void free(KvResourceModule* module);
  /// All loaded modules get the texts of this language and stay where they are. A damaged file throws BadInput, and
  /// nothing has changed.
  void choose(const std::string& language);

private:
  /// The texts of a module in this language, English for what it lacks; nothing without an English file.
  [[nodiscard]] std::optional<KvResourceModule> read(
      std::wstring_view name, const std::string& language) const;

  std::filesystem::path folder_;
  std::string language_;
  std::vector<std::unique_ptr<KvResourceModule>> modules_;
};

/// The folder "resources" beside the program.
[[nodiscard]] std::filesystem::path defaultResourceFolder();
/// The folder of the program that runs.
[[nodiscard]] std::filesystem::path programFolder();
/// The language of the user's environment (LC_ALL, LC_MESSAGES, LANG) as two letters; "en" for none.
[[nodiscard]] std::string languageOfEnvironment();

} // namespace simhost
