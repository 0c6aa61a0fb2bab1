// What the main window keeps among the user's settings: texts by name, and the files that were open last.
#pragma once

#include <QStringList>

#include <functional>

namespace simhost {

class UserSettings;

class WindowSettings final {
public:
  /// The settings must outlive it.
  explicit WindowSettings(UserSettings& settings) : settings_(settings) {}
  WindowSettings(const WindowSettings&) = delete;
  WindowSettings& operator=(const WindowSettings&) = delete;

  /// Empty for a name that is not kept.
  [[nodiscard]] QString value(const wchar_t* name) const;
  void setValue(const wchar_t* name, const QString& value);

  /// A list of lines.
  [[nodiscard]] QStringList list(const wchar_t* name) const;
  /// Puts a file at the head of a list of files, which keeps the latest ones.
  void remember(const wchar_t* list, const QString& file);

  /// A list of files has changed.
  std::function<void()> onRemembered;

private:
  UserSettings& settings_;
};

} // namespace simhost
