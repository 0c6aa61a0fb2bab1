// What the host stores for its user: values by the key of a dialog, and the answers to hidden dialogs. One JSON file,
// read at the first use and written with every change.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace brenvolt {
class FileLock;
}

namespace simhost {

class CommandLine;

class UserSettings final {
public:
  /// An empty file name keeps everything in memory.
  UserSettings(std::filesystem::path file, CommandLine& commandLine)
      : file_(std::move(file)), commandLine_(commandLine) {}

  [[nodiscard]] bool hasKey(std::wstring_view key);
  [[nodiscard]] std::optional<std::wstring> value(std::wstring_view key, std::wstring_view name);
  /// False, with the reason on the command line, when the file cannot be written; the value holds for this run then.
  bool setValue(std::wstring_view key, std::wstring_view name, std::wstring_view value);

  /// The button kept for a hidden dialog, 0 for none.
  [[nodiscard]] int hiddenAnswer(std::wstring_view key);
  bool setHiddenAnswer(std::wstring_view key, int button);
  /// Answers a dialog that can be hidden in this run, and in no later one.
  void answerInThisRun(std::wstring_view key, int button) { inThisRun_[std::wstring(key)] = button; }

private:
  using Values = std::map<std::wstring, std::wstring, std::less<>>;

  void read();
  /// A file that is damaged is kept under another name.
  void readFromFile();
  /// Nobody else changes the file while this is held.
  [[nodiscard]] std::unique_ptr<brenvolt::FileLock> takeTurn() const;
  /// Takes in what another run has saved meanwhile, so that a change of ours does not lose it.
  void readAgain();
  [[nodiscard]] bool parse(const std::string& bytes);
  [[nodiscard]] bool write();

  std::filesystem::path file_;
  CommandLine& commandLine_;
  bool isRead_ = false;
  std::map<std::wstring, Values, std::less<>> keys_;
  std::map<std::wstring, int, std::less<>> hidden_;
  std::map<std::wstring, int, std::less<>> inThisRun_;
};

/// "brenvolt/settings.json" in the user's folder for settings (XDG_CONFIG_HOME, else ~/.config); empty when the
/// environment names none.
[[nodiscard]] std::filesystem::path defaultSettingsFile();

} // namespace simhost
