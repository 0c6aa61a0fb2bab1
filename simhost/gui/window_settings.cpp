// Texts and lists of files.
#include "simhost/gui/window_settings.h"

#include "simhost/host/user_settings.h"
#include "simhost/qt/qt_text.h"

#include <QFileInfo>

namespace simhost {
namespace {

constexpr const wchar_t* settingsKey = L"SimHost";
constexpr qsizetype rememberedFiles = 8;

} // namespace

QString WindowSettings::value(const wchar_t* name) const {
  return toQt(settings_.value(settingsKey, name).value_or(L""));
}

void WindowSettings::setValue(const wchar_t* name, const QString& value) {
  static_cast<void>(settings_.setValue(settingsKey, name, fromQt(value)));
}

QStringList WindowSettings::list(const wchar_t* name) const {
  return value(name).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void WindowSettings::remember(const wchar_t* list, const QString& file) {
  const QString full = QFileInfo(file).absoluteFilePath();
  QStringList files = this->list(list);
  files.removeAll(full);
  files.prepend(full);
  setValue(list, files.mid(0, rememberedFiles).join(QLatin1Char('\n')));
  if (onRemembered) onRemembered();
}

} // namespace simhost
