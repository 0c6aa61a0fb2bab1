// Pages.
#include "simhost/gui/paper_output.h"

#include "circuits/set/sheet_maker.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/gui/painter_sink.h"
#include "simhost/gui/view_transform.h"
#include "simhost/host/errors.h"
#include "simhost/host/files.h"
#include "simhost/qt/qt_text.h"
#include "text/encoding.h"
#include "text/split.h"

#include <QBuffer>
#include <QPdfWriter>

#include <set>

namespace simhost {
namespace {

constexpr int pdfDotsPerInch = 1200;
constexpr double millimetresPerInch = 25.4;

/// A PDF holds the time at which it was made: here the day of the page, so that the same page gives the same bytes.
void setDay(QByteArray& bytes, const QString& date) {
  QByteArray digits;
  for (const QChar letter : date)
    if (letter.isDigit()) digits += letter.toLatin1();
  constexpr qsizetype dayDigits = 8; // year, month and day
  if (digits.size() != dayDigits) digits = "20000101";
  const QByteArray label = "/CreationDate (D:";
  for (qsizetype at = bytes.indexOf(label); at >= 0; at = bytes.indexOf(label, at + 1)) {
    qsizetype place = 0;
    for (qsizetype digit = at + label.size(); digit < bytes.size() && bytes[digit] != ')'; ++digit)
      if (bytes[digit] >= '0' && bytes[digit] <= '9')
        bytes[digit] = place < dayDigits ? digits[place++] : '0';
  }
}

std::optional<double> numberOf(const DrawingDatabase& drawing, std::wstring_view name) {
  const VariableValue* value = drawing.variable(name);
  if (value == nullptr) return std::nullopt;
  if (const double* real = std::get_if<double>(value)) return *real;
  if (const auto* integer = std::get_if<std::int32_t>(value)) return *integer;
  return std::nullopt;
}

/// The paper that a frame says it is for; nothing when it says none.
std::optional<QSizeF> paperOf(const DrawingDatabase& frame) {
  const std::optional<double> width = numberOf(frame, L"PAPER_WIDTH");
  const std::optional<double> height = numberOf(frame, L"PAPER_HEIGHT");
  if (!width || !height || !(*width > 0.0) || !(*height > 0.0)) return std::nullopt;
  return QSizeF(*width, *height);
}

/// The whole paper: the frame has the margins.
QPageLayout layoutOf(const QSizeF& paper) {
  const bool isWide = paper.width() > paper.height();
  return {
      QPageSize(isWide ? paper.transposed() : paper, QPageSize::Millimeter),
      isWide ? QPageLayout::Landscape : QPageLayout::Portrait, QMarginsF(), QPageLayout::Millimeter};
}

/// Shapes with the box around all of them.
struct PageItems {
  std::vector<DisplayItem> items;
  Box extents;
};

std::optional<PageItems> itemsOf(const DrawingDatabase& drawing) {
  std::optional<std::vector<DisplayItem>> items = displayList(drawing, drawing.currentSpace());
  if (!items) return std::nullopt;
  PageItems page{std::move(*items), {}};
  for (const DisplayItem& item : page.items)
    page.extents.include(boxOf(item.shape));
  return page;
}

void paint(QPainter& painter, const PageItems& page, const ViewTransform& view, double pixelsPerMillimetre) {
  PainterSink sink(painter);
  PictureStyle style;
  style.pixel = pixelMillimetres * pixelsPerMillimetre;
  PicturePainter picture(sink, view.place(), style);
  for (const DisplayItem& item : page.items)
    picture.paint(item);
}

/// Where the drawing goes, in pixels: the page, or the area of its frame.
QRectF placeOf(const PaperPage& page, const QSize& pixels, double pixelsPerMillimetre) {
  if (page.frame == nullptr) return QRectF(QPointF(), pixels);
  const double perUnit = pixelsPerMillimetre;
  return {
      page.area.left * perUnit, pixels.height() - page.area.top * perUnit, page.area.width() * perUnit,
      page.area.height() * perUnit};
}

/// In the middle of the place.
ViewTransform viewOf(
    const Box& extents, const QRectF& place, double unitsPerMillimetre, double pixelsPerMillimetre) {
  ViewTransform view = ViewTransform::fitting(extents, place.size().toSize());
  if (unitsPerMillimetre > 0.0)
    view = view.zoomed(
        pixelsPerMillimetre / unitsPerMillimetre / view.scale, QRectF(QPointF(), place.size()).center());
  view.originX += place.left();
  view.originY += place.top();
  return view;
}

bool isInside(const Box& extents, const ViewTransform& view, const QRectF& place) {
  if (extents.isEmpty()) return true;
  constexpr double tolerance = 1.0; // pixel
  const QRectF painted(
      view.toScreen({extents.left, extents.top, 0.0}), view.toScreen({extents.right, extents.bottom, 0.0}));
  return place.adjusted(-tolerance, -tolerance, tolerance, tolerance).contains(painted);
}

/// The electrical codes of the circuits, as a set writes them.
std::wstring codesOf(const DrawingDatabase& drawing, const std::wstring& ofSession) {
  std::set<std::wstring> codes;
  for (const auto& [id, fields] : drawing.store().circuits()) {
    const std::wstring own = circuitField(fields, L"standard-code");
    codes.insert(own.empty() ? ofSession : own);
  }
  if (codes.empty()) return ofSession;
  return brenvolt::join({codes.begin(), codes.end()}, L", ");
}

} // namespace

bool hasOwnFrame(const DrawingDatabase& drawing) {
  return paperOf(drawing).has_value();
}

PaperPage makePage(
    const DrawingDatabase& drawing, const PageSetup& setup, const std::filesystem::path& frames,
    const QString& title, const QString& today, const QString& code) {
  PaperPage page{setup.layout()};
  page.unitsPerMillimetre = setup.unitsPerMillimetre;
  page.title = setup.project.isEmpty() ? title : setup.project + QStringLiteral(" - ") + title;
  page.date = setup.date.isEmpty() ? today : setup.date;
  if (const std::optional<QSizeF> paper = paperOf(drawing)) {
    page.layout = layoutOf(*paper);
    page.isSheet = true;
    return page;
  }
  if (setup.frame.isEmpty()) return page;
  const std::string file = (frames / (setup.frame.toStdString() + ".json")).string();
  LoadedDrawing loaded = loadDrawing(brenvolt::fromUtf8(file));
  if (loaded.drawing == nullptr) throw BadInput(brenvolt::toUtf8(loaded.error));
  page.area = circuits::frameArea(*loaded.drawing, file);
  const std::optional<QSizeF> paper = paperOf(*loaded.drawing);
  if (!paper)
    throw BadInput(
        file + ": has no numbers in the variables PAPER_WIDTH and PAPER_HEIGHT, which say how large the "
               "paper is");
  circuits::fillFrame(
      *loaded.drawing, {{L"PROJECT", fromQt(setup.project)},
                        {L"TITLE", fromQt(title)},
                        {L"DRAWN", fromQt(setup.drawnBy)},
                        {L"REVISION", fromQt(setup.revision)},
                        {L"DATE", fromQt(page.date)},
                        {L"CODE", codesOf(drawing, fromQt(code))},
                        {L"SHEET", L"1"},
                        {L"SHEETS", L"1"}});
  page.frame = std::move(loaded.drawing);
  page.layout = layoutOf(*paper);
  return page;
}

PageResult paintPage(const DrawingDatabase& drawing, QPagedPaintDevice& device, const PaperPage& page) {
  const std::optional<PageItems> shown = itemsOf(drawing);
  const std::optional<PageItems> frame =
      page.frame == nullptr ? std::optional<PageItems>(PageItems()) : itemsOf(*page.frame);
  QPainter painter;
  if (!shown || !frame || !painter.begin(&device)) return PageResult::notPainted;
  const QSize pixels(device.width(), device.height());
  const double perMillimetre = device.logicalDpiX() / millimetresPerInch;
  const ViewTransform paper{perMillimetre, 0.0, static_cast<double>(pixels.height())};
  if (page.isSheet) {
    paint(painter, *shown, paper, perMillimetre);
    return PageResult::whole;
  }
  paint(painter, *frame, paper, perMillimetre);
  const QRectF place = placeOf(page, pixels, perMillimetre);
  const ViewTransform view = viewOf(shown->extents, place, page.unitsPerMillimetre, perMillimetre);
  painter.setClipRect(place);
  paint(painter, *shown, view, perMillimetre);
  return isInside(shown->extents, view, place) ? PageResult::whole : PageResult::cutOff;
}

Fault savePdf(
    const DrawingDatabase& drawing, const std::wstring& path, const PaperPage& page, PageResult* result) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&buffer);
    writer.setResolution(pdfDotsPerInch);
    writer.setCreator(QStringLiteral("brenvolt-gui"));
    writer.setTitle(page.title);
    writer.setPageLayout(page.layout);
    const PageResult painted = paintPage(drawing, writer, page);
    if (painted == PageResult::notPainted) return path + L": the drawing has too many shapes for a page";
    if (result != nullptr) *result = painted;
  }
  setDay(bytes, page.date);
  return writeFileWhole(path, std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
}

} // namespace simhost
