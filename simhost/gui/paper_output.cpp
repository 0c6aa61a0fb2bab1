// Pages.
#include "simhost/gui/paper_output.h"

#include "simhost/drawing/drawing_file.h"
#include "simhost/gui/item_painter.h"

#include <QBuffer>
#include <QPdfWriter>

namespace simhost {
namespace {

constexpr int pdfDotsPerInch = 1200;
/// Of the thinnest line: what a plotter's fine pen draws.
constexpr double thinnestMillimetres = 0.25;
constexpr double millimetresPerInch = 25.4;

/// A PDF contains its creation time; its digits are replaced by zeros, which keeps all positions in the file.
void forgetTime(QByteArray& bytes) {
  const QByteArray label = "/CreationDate (D:";
  for (qsizetype at = bytes.indexOf(label); at >= 0; at = bytes.indexOf(label, at + 1))
    for (qsizetype digit = at + label.size(); digit < bytes.size() && bytes[digit] != ')'; ++digit)
      if (bytes[digit] >= '0' && bytes[digit] <= '9') bytes[digit] = '0';
}

} // namespace

bool paintPage(const DrawingDatabase& drawing, QPagedPaintDevice& device, const PageSetup& setup) {
  const std::optional<std::vector<DisplayItem>> items = displayList(drawing, drawing.currentSpace());
  if (!items) return false;
  std::vector<Box> boxes;
  Box extents;
  for (const DisplayItem& item : *items) {
    boxes.push_back(boxOf(item.shape));
    extents.include(boxes.back());
  }
  QPainter painter;
  if (!painter.begin(&device)) return false;
  const QSize page(device.width(), device.height());
  PaintStyle style;
  style.detail = Detail::full;
  style.thinnest = thinnestMillimetres / millimetresPerInch * device.logicalDpiX();
  ViewTransform view = ViewTransform::fitting(extents, page);
  if (setup.unitsPerMillimetre > 0.0) {
    const double wanted = device.logicalDpiX() / millimetresPerInch / setup.unitsPerMillimetre;
    view = view.zoomed(wanted / view.scale, QRectF(QPointF(), page).center());
  }
  ItemPainter painting(painter, view, style);
  for (std::size_t number = 0; number < items->size(); ++number)
    painting.paint((*items)[number], boxes[number]);
  return true;
}

Fault savePdf(
    const DrawingDatabase& drawing, const std::wstring& path, const PageSetup& setup, const QString& title) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&buffer);
    writer.setResolution(pdfDotsPerInch);
    writer.setCreator(QStringLiteral("brenvolt-gui"));
    writer.setTitle(title);
    writer.setPageLayout(setup.layout());
    if (!paintPage(drawing, writer, setup)) return path + L": the drawing has too many shapes for a page";
  }
  forgetTime(bytes);
  return writeFileWhole(path, std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

} // namespace simhost
