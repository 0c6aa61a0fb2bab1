// Where the keyboard is.
#include "simhost/qt/host_style.h"

#include <QAbstractScrollArea>
#include <QPainter>
#include <QStyleOption>

namespace simhost {

HostStyle::HostStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void HostStyle::drawPrimitive(
    PrimitiveElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const {
  // Ticks, tabs and the like: the style's own mark is a line of one pixel.
  if (element == PE_FrameFocusRect) return paintFocus(*painter, option->rect, option->palette);
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void HostStyle::drawControl(
    ControlElement element, const QStyleOption* option, QPainter* painter, const QWidget* widget) const {
  QProxyStyle::drawControl(element, option, painter, widget);
  // A table or tree without a current row would not show at all that keys go to it.
  const bool isArea = qobject_cast<const QAbstractScrollArea*>(widget) != nullptr;
  if (element == CE_ShapedFrame && isArea && widget->hasFocus())
    paintFocus(*painter, option->rect, option->palette);
}

void HostStyle::paintFocus(QPainter& painter, const QRect& place, const QPalette& palette) {
  constexpr int width = 2;
  painter.save();
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(palette.color(QPalette::Highlight), width));
  painter.drawRect(place.adjusted(1, 1, -1, -1));
  painter.restore();
}

} // namespace simhost
