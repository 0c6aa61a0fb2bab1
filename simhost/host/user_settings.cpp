// The settings file, and the host's functions on it.
#include "simhost/host/user_settings.h"

#include "host/host_api_documents.h"
#include "platform/file_lock.h"
#include "platform/file_replace.h"
#include "simhost/host/files.h"
#include "simhost/host/session.h"
#include "simhost/json/json_text.h"
#include "simhost/ui/file_names.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <memory>
#include <system_error>

namespace simhost {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

bool UserSettings::hasKey(std::wstring_view key) {
  read();
  return keys_.contains(key);
}

std::optional<std::wstring> UserSettings::value(std::wstring_view key, std::wstring_view name) {
  read();
  const auto values = keys_.find(key);
  if (values == keys_.end()) return std::nullopt;
  const auto found = values->second.find(name);
  if (found == values->second.end()) return std::nullopt;
  return found->second;
}

bool UserSettings::setValue(std::wstring_view key, std::wstring_view name, std::wstring_view value) {
  const std::unique_ptr<brenvolt::FileLock> turn = takeTurn();
  readAgain();
  Values& values = keys_[std::wstring(key)];
  const auto found = values.find(name);
  if (found != values.end() && found->second == value) return true;
  values[std::wstring(name)] = value;
  return write();
}

int UserSettings::hiddenAnswer(std::wstring_view key) {
  if (const auto answer = inThisRun_.find(key); answer != inThisRun_.end()) return answer->second;
  read();
  const auto found = hidden_.find(key);
  return found == hidden_.end() ? 0 : found->second;
}

bool UserSettings::setHiddenAnswer(std::wstring_view key, int button) {
  const std::unique_ptr<brenvolt::FileLock> turn = takeTurn();
  readAgain();
  hidden_[std::wstring(key)] = button;
  return write();
}

void UserSettings::read() {
  if (isRead_) return;
  isRead_ = true;
  std::error_code error;
  if (std::filesystem::exists(file_, error) && !std::filesystem::is_regular_file(file_, error)) {
    // A device or a folder must not be put aside, nor written over.
    commandLine_.printLine(fromUtf8(file_.string()) + L": not a file; settings are kept for this run only");
    file_.clear();
  }
  if (file_.empty()) return;
  readFromFile();
}

void UserSettings::readFromFile() {
  const std::optional<std::string> bytes = readFile(file_);
  if (!bytes || parse(*bytes)) return;
  // The user's file is kept: the next change would write over it.
  std::error_code error;
  const brenvolt::KeptFile kept = brenvolt::keepBeside(textOfPath(file_), L"damaged");
  if (kept.fault) {
    commandLine_.printLine(
        textOfPath(file_) + L": damaged settings file, left unchanged; settings are kept for this run only");
    file_.clear();
    return;
  }
  std::filesystem::remove(file_, error);
  commandLine_.printLine(textOfPath(file_) + L": damaged settings, kept as " + kept.path);
}

std::unique_ptr<brenvolt::FileLock> UserSettings::takeTurn() const {
  if (file_.empty()) return nullptr;
  std::error_code error;
  std::filesystem::create_directories(file_.parent_path(), error);
  // Without the lock the change is made anyway: settings are a convenience that must not block the user.
  return std::make_unique<brenvolt::FileLock>(textOfPath(file_));
}

void UserSettings::readAgain() {
  read();
  if (!file_.empty()) readFromFile();
}

bool UserSettings::parse(const std::string& bytes) {
  const Json file = tryParseJson(bytes);
  if (!file.is_object()) return false;
  const Json values = file.value("values", Json::object());
  const Json hidden = file.value("hidden", Json::object());
  if (!values.is_object() || !hidden.is_object()) return false;
  auto keys = keys_;
  auto buttons = hidden_;
  for (const auto& [key, names] : values.items()) {
    if (!names.is_object()) return false;
    Values& kept = keys[fromUtf8(key)];
    for (const auto& [name, value] : names.items()) {
      if (!value.is_string()) return false;
      kept[fromUtf8(name)] = fromUtf8(value.get<std::string>());
    }
  }
  for (const auto& [key, button] : hidden.items()) {
    if (!button.is_number_integer()) return false;
    buttons[fromUtf8(key)] = button.get<int>();
  }
  keys_ = std::move(keys);
  hidden_ = std::move(buttons);
  return true;
}

bool UserSettings::write() {
  if (file_.empty()) return true;
  Json file = {{"hidden", Json::object()}, {"values", Json::object()}};
  for (const auto& [key, values] : keys_)
    for (const auto& [name, value] : values)
      file["values"][toUtf8(key)][toUtf8(name)] = toUtf8(value);
  for (const auto& [key, button] : hidden_)
    file["hidden"][toUtf8(key)] = button;
  const std::string reason = replaceFile(file_, jsonText(file, 2) + "\n");
  if (reason.empty()) return true;
  commandLine_.printLine(L"settings not saved: " + fromUtf8(reason));
  return false;
}

std::filesystem::path defaultSettingsFile() {
  if (const char* folder = std::getenv("XDG_CONFIG_HOME"); folder != nullptr && *folder == '/')
    return std::filesystem::path(folder) / "brenvolt" / "settings.json";
  if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/')
    return std::filesystem::path(home) / ".config" / "brenvolt" / "settings.json";
  return {};
}

} // namespace simhost

using simhost::Session;

bool kvdsUserKeyExists(const wchar_t* key) {
  Session* session = Session::current();
  return session != nullptr && key != nullptr && session->settings().hasKey(key);
}

bool kvdsReadUserValue(const wchar_t* key, const wchar_t* name, std::wstring& value) {
  Session* session = Session::current();
  if (session == nullptr || key == nullptr || name == nullptr) return false;
  std::optional<std::wstring> found = session->settings().value(key, name);
  if (!found) return false;
  value = std::move(*found);
  return true;
}

bool kvdsWriteUserValue(const wchar_t* key, const wchar_t* name, const wchar_t* value) {
  Session* session = Session::current();
  if (session == nullptr || key == nullptr || name == nullptr || value == nullptr) return false;
  return session->settings().setValue(key, name, value);
}
