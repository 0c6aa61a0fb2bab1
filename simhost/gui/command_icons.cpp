// Paths on a square of 24 units.
#include "simhost/gui/command_icons.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include <string_view>

namespace simhost {
namespace {

struct IconRow {
  std::string_view name;
  const char* path;
};
constexpr IconRow icons[] = {
    {"new", "M6 3 H14 L18 7 V21 H6 Z M14 3 V7 H18"},
    {"open", "M3 19 V6 H9 L11 8 H21 V19 Z"},
    {"save", "M4 4 H17 L20 7 V20 H4 Z M8 4 V9 H15 V4 M8 20 V14 H16 V20"},
    {"undo", "M9 5 L4 10 L9 15 M4 10 H14 A5 5 0 0 1 14 20 H10"},
    {"redo", "M15 5 L20 10 L15 15 M20 10 H10 A5 5 0 0 0 10 20 H14"},
    {"extents", "M3 8 V3 H8 M16 3 H21 V8 M21 16 V21 H16 M8 21 H3 V16 M8 8 H16 V16 H8 Z"},
    {"window", "M16 10 A6 6 0 1 1 4 10 A6 6 0 1 1 16 10 M14.5 14.5 L21 21 M7.5 8 H12.5 V12 H7.5 Z"},
    {"circuit",
     "M5 2 V8 M12 2 V8 M19 2 V8 M5 8 L8 14 M12 8 L15 14 M19 8 L22 14 M5 15 V22 M12 15 V22 M19 15 V22"},
    {"motor", "M21 12 A9 9 0 1 1 3 12 A9 9 0 1 1 21 12 M8 16 V8 L12 13 L16 8 V16"},
    {"load", "M12 2 V6 M8 6 H16 V18 H8 Z M12 18 V22"},
    {"wire", "M2 12 H22 M7 17 L11 7 M11 17 L15 7 M15 17 L19 7"},
    {"edit_wire", "M2 19 H13 M5 22 L9 16 M13 14 L20 7 L17 4 L10 11 L9 15 Z"},
};

} // namespace

QIcon commandIcon(const char* name, const QColor& colour) {
  for (const IconRow& row : icons) {
    if (row.name != name) continue;
    const QByteArray svg =
        "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 24 24\"><path d=\"" + QByteArray(row.path) +
        "\" fill=\"none\" stroke=\"" + colour.name().toLatin1() +
        "\" stroke-width=\"1.6\" stroke-linecap=\"round\" stroke-linejoin=\"round\"/></svg>";
    QSvgRenderer renderer(svg);
    QIcon icon;
    for (const int size : {24, 48, 72}) { // up to three times the usual density
      QPixmap pixmap(size, size);
      pixmap.fill(Qt::transparent);
      QPainter painter(&pixmap);
      renderer.render(&painter);
      painter.end();
      icon.addPixmap(pixmap);
    }
    return icon;
  }
  return {};
}

} // namespace simhost
