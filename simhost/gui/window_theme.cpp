// The palettes.
#include "simhost/gui/window_theme.h"

#include "simhost/qt/host_style.h"

#include <QApplication>
#include <QFont>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

#include <memory>

namespace simhost {
namespace {

QPalette paletteFor(Paper paper) {
  if (paper == Paper::light) {
    const std::unique_ptr<QStyle> fusion(QStyleFactory::create(QStringLiteral("Fusion")));
    return fusion->standardPalette();
  }
  // The style draws outlines in a darker window colour, which has too little contrast here: fields and check boxes
  // need outlines much darker than the window.
  QPalette palette(QColor(0x50, 0x56, 0x60), QColor(0x38, 0x3d, 0x45));
  palette.setColor(QPalette::Base, QColor(0x1f, 0x22, 0x27));
  palette.setColor(QPalette::AlternateBase, QColor(0x27, 0x2b, 0x31));
  palette.setColor(QPalette::Highlight, QColor(0x2f, 0x74, 0xc0));
  palette.setColor(QPalette::Link, QColor(0x6c, 0xb0, 0xf0));
  for (const QPalette::ColorRole role :
       {QPalette::Text, QPalette::WindowText, QPalette::ButtonText, QPalette::HighlightedText,
        QPalette::BrightText})
    palette.setColor(role, QColor(0xe6, 0xe8, 0xea));
  palette.setColor(QPalette::PlaceholderText, QColor(0x8a, 0x90, 0x98));
  palette.setColor(QPalette::ToolTipBase, QColor(0x22, 0x25, 0x2b));
  palette.setColor(QPalette::ToolTipText, QColor(0xe6, 0xe8, 0xea));
  for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
    palette.setColor(QPalette::Disabled, role, QColor(0x86, 0x8c, 0x94));
  return palette;
}

} // namespace

void applyTheme(Paper paper) {
  QApplication::setStyle(new HostStyle);
  QApplication::setPalette(paletteFor(paper));
  // Light letters on a dark ground look thinner than they are.
  QFont letters = QApplication::font();
  letters.setWeight(paper == Paper::dark ? QFont::Medium : QFont::Normal);
  QApplication::setFont(letters);
}

QColor bannerColour(Paper paper) {
  return paper == Paper::dark ? QColor(0x5a, 0x46, 0x1e) : QColor(0xff, 0xf3, 0xcd);
}

} // namespace simhost
