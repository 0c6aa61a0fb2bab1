// The look of all windows: Qt's own style with the place of the keyboard marked so that it is seen in both themes.
#pragma once

#include <QProxyStyle>

namespace simhost {

class HostStyle final : public QProxyStyle {
public:
  HostStyle();

  void drawPrimitive(
      PrimitiveElement element, const QStyleOption* option, QPainter* painter,
      const QWidget* widget) const override;
  void drawControl(
      ControlElement element, const QStyleOption* option, QPainter* painter,
      const QWidget* widget) const override;

  /// The mark around what has the keyboard.
  static void paintFocus(QPainter& painter, const QRect& place, const QPalette& palette);
};

} // namespace simhost
