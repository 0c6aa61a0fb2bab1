// Positions as four numbers, so that the file of settings is readable.
#include "simhost/qt/window_places.h"

#include "simhost/host/user_settings.h"
#include "simhost/qt/qt_dialog.h"
#include "simhost/qt/qt_text.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace simhost {

namespace {

constexpr std::wstring_view placesKey = L"WindowPlaces";

/// The name that the flow gives, else that of the form.
std::wstring nameOf(const QtDialog& dialog) {
  const std::wstring& given = const_cast<QtDialog&>(dialog).access().state().name;
  return given.empty() ? dialog.name() : given;
}

QString textOf(const QRect& place) {
  return QStringLiteral("%1 %2 %3 %4").arg(place.x()).arg(place.y()).arg(place.width()).arg(place.height());
}

} // namespace

void restorePlace(UserSettings& settings, QtDialog& dialog) {
  const QStringList parts =
      toQt(settings.value(placesKey, nameOf(dialog)).value_or(L"")).split(QLatin1Char(' '));
  if (parts.size() != 4) return;
  const QRect kept(parts[0].toInt(), parts[1].toInt(), parts[2].toInt(), parts[3].toInt());
  const QScreen* screen = QGuiApplication::screenAt(kept.center());
  if (screen == nullptr || kept.isEmpty()) return;
  const QRect available = screen->availableGeometry();
  QWidget& frame = dialog.frame();
  frame.resize(kept.size().boundedTo(available.size()).expandedTo(frame.minimumSizeHint()));
  // Kept on a larger screen, it may be beside this one.
  const auto inside = [](int place, int first, int room) {
    return std::clamp(place, first, first + std::max(room, 0));
  };
  frame.move(
      inside(kept.x(), available.left(), available.width() - frame.width()),
      inside(kept.y(), available.top(), available.height() - frame.height()));
}

void fitToScreen(QWidget& window) {
  // Off the screen, no size limits a window.
  if (QGuiApplication::platformName() == QStringLiteral("offscreen")) return;
  constexpr QSize frame(8, 32); // of a usual window manager
  window.resize(window.size().boundedTo(window.screen()->availableSize() - frame));
}

void keepPlace(UserSettings& settings, const QtDialog& dialog) {
  const std::wstring place = fromQt(textOf(QRect(dialog.frame().pos(), dialog.frame().size())));
  if (settings.value(placesKey, nameOf(dialog)) != place) settings.setValue(placesKey, nameOf(dialog), place);
}

} // namespace simhost
