// Pages kept by Cairo, which embeds fonts as subsets and keeps texts as texts. Sheets are painted by the walk that paints
// every picture of a drawing.
#include "circuits/export/paper.h"

#include "platform/shared_library.h"
#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/picture_painter.h"
#include "simhost/host/errors.h"
#include "text/encoding.h"

#include <cairo-pdf.h>
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <map>
#include <numbers>
#include <system_error>
#include <utility>

namespace circuits {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using simhost::Box;
using simhost::DrawingDatabase;
using simhost::PicturePoint;
using simhost::Stroke;

namespace {

/// The library that draws pages.
class CairoLibrary final : public brenvolt::SharedLibrary {
public:
  CairoLibrary() : SharedLibrary(BRENVOLT_CAIRO_LIBRARY) {}

  decltype(&::cairo_arc) arc = find("cairo_arc");
  decltype(&::cairo_arc_negative) arc_negative = find("cairo_arc_negative");
  decltype(&::cairo_close_path) close_path = find("cairo_close_path");
  decltype(&::cairo_create) create = find("cairo_create");
  decltype(&::cairo_destroy) destroy = find("cairo_destroy");
  decltype(&::cairo_identity_matrix) identity_matrix = find("cairo_identity_matrix");
  decltype(&::cairo_line_to) line_to = find("cairo_line_to");
  decltype(&::cairo_move_to) move_to = find("cairo_move_to");
  decltype(&::cairo_new_path) new_path = find("cairo_new_path");
  decltype(&::cairo_pdf_surface_add_outline) pdf_surface_add_outline = find("cairo_pdf_surface_add_outline");
  decltype(&::cairo_pdf_surface_create) pdf_surface_create = find("cairo_pdf_surface_create");
  decltype(&::cairo_pdf_surface_restrict_to_version) pdf_surface_restrict_to_version =
      find("cairo_pdf_surface_restrict_to_version");
  decltype(&::cairo_pdf_surface_set_metadata) pdf_surface_set_metadata =
      find("cairo_pdf_surface_set_metadata");
  decltype(&::cairo_pdf_surface_set_page_label) pdf_surface_set_page_label =
      find("cairo_pdf_surface_set_page_label");
  decltype(&::cairo_pdf_surface_set_size) pdf_surface_set_size = find("cairo_pdf_surface_set_size");
  decltype(&::cairo_restore) restore = find("cairo_restore");
  decltype(&::cairo_rotate) rotate = find("cairo_rotate");
  decltype(&::cairo_save) save = find("cairo_save");
  decltype(&::cairo_scale) scale = find("cairo_scale");
  decltype(&::cairo_select_font_face) select_font_face = find("cairo_select_font_face");
  decltype(&::cairo_set_dash) set_dash = find("cairo_set_dash");
  decltype(&::cairo_set_font_size) set_font_size = find("cairo_set_font_size");
  decltype(&::cairo_set_line_cap) set_line_cap = find("cairo_set_line_cap");
  decltype(&::cairo_set_line_join) set_line_join = find("cairo_set_line_join");
  decltype(&::cairo_set_line_width) set_line_width = find("cairo_set_line_width");
  decltype(&::cairo_set_source_rgba) set_source_rgba = find("cairo_set_source_rgba");
  decltype(&::cairo_show_page) show_page = find("cairo_show_page");
  decltype(&::cairo_show_text) show_text = find("cairo_show_text");
  decltype(&::cairo_status_to_string) status_to_string = find("cairo_status_to_string");
  decltype(&::cairo_stroke) stroke = find("cairo_stroke");
  decltype(&::cairo_surface_destroy) surface_destroy = find("cairo_surface_destroy");
  decltype(&::cairo_surface_finish) surface_finish = find("cairo_surface_finish");
  decltype(&::cairo_surface_status) surface_status = find("cairo_surface_status");
  decltype(&::cairo_tag_begin) tag_begin = find("cairo_tag_begin");
  decltype(&::cairo_tag_end) tag_end = find("cairo_tag_end");
  decltype(&::cairo_text_extents) text_extents = find("cairo_text_extents");
  decltype(&::cairo_translate) translate = find("cairo_translate");
};

const CairoLibrary& cairo() {
  static const CairoLibrary library;
  return library;
}

constexpr double pointsPerMillimetre = 72.0 / 25.4;
constexpr double ruleMillimetres = 0.18; ///< lines of lists
constexpr double marginMillimetres = 10.0;

struct SurfaceRelease {
  void operator()(cairo_surface_t* surface) const { cairo().surface_destroy(surface); }
};
struct PainterRelease {
  void operator()(cairo_t* painter) const { cairo().destroy(painter); }
};

double paperNumber(const DrawingDatabase& drawing, std::wstring_view name) {
  const simhost::VariableValue* value = drawing.variable(name);
  if (value == nullptr) return 0.0;
  if (const double* real = std::get_if<double>(value)) return *real;
  const auto* integer = std::get_if<std::int32_t>(value);
  return integer == nullptr ? 0.0 : *integer;
}

/// What goes into an attribute of a tag, between single quotes.
std::string tagText(const std::string& text) {
  std::string result;
  for (const char character : text) {
    if (character == '\'' || character == '\\') result += '\\';
    result += character;
  }
  return result;
}

/// A PDF with pages for sheets and for lists.
class PdfPages final : public simhost::PictureSink {
public:
  PdfPages(const std::string& file, const std::map<std::wstring, std::size_t>& pagesOfTags)
      : pagesOfTags_(pagesOfTags), surface_(cairo().pdf_surface_create(file.c_str(), 100.0, 100.0)),
        cairo_(cairo().create(surface_.get())) {
    cairo().pdf_surface_restrict_to_version(surface_.get(), CAIRO_PDF_VERSION_1_5);
    cairo().set_line_cap(cairo_.get(), CAIRO_LINE_CAP_ROUND);
    cairo().set_line_join(cairo_.get(), CAIRO_LINE_JOIN_ROUND);
  }

  void setTitle(const std::wstring& title) {
    cairo().pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_TITLE, toUtf8(title).c_str());
    cairo().pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_CREATOR, "ZanBrenvolt");
    // The same set gives the same file: the time of printing is not part of it.
    cairo().pdf_surface_set_metadata(surface_.get(), CAIRO_PDF_METADATA_CREATE_DATE, "2000-01-01T00:00:00Z");
  }

  /// A page with its bookmark and label; all that follows is in millimetres. Lists count y upwards from its lower left
  /// corner.
  void beginPage(double width, double height, const std::wstring& label, const std::wstring& bookmark) {
    ++page_;
    height_ = height;
    cairo().pdf_surface_set_size(surface_.get(), width * pointsPerMillimetre, height * pointsPerMillimetre);
    cairo().identity_matrix(cairo_.get());
    cairo().scale(cairo_.get(), pointsPerMillimetre, pointsPerMillimetre);
    cairo().pdf_surface_set_page_label(surface_.get(), toUtf8(label).c_str());
    const std::string destination = "page" + std::to_string(page_);
    cairo().tag_begin(cairo_.get(), CAIRO_TAG_DEST, ("name='" + destination + "' x=0 y=0").c_str());
    cairo().tag_end(cairo_.get(), CAIRO_TAG_DEST);
    cairo().pdf_surface_add_outline(
        surface_.get(), CAIRO_PDF_OUTLINE_ROOT, toUtf8(bookmark).c_str(),
        ("dest='" + destination + "'").c_str(), static_cast<cairo_pdf_outline_flags_t>(0));
  }
  void endPage() { cairo().show_page(cairo_.get()); }

  [[nodiscard]] std::optional<std::string> finish() {
    cairo_.reset();
    cairo().surface_finish(surface_.get());
    const cairo_status_t status = cairo().surface_status(surface_.get());
    if (status == CAIRO_STATUS_SUCCESS) return std::nullopt;
    return cairo().status_to_string(status);
  }

  // Of a picture in millimetres, y downwards from the page's upper left corner.
  void line(const PicturePoint& from, const PicturePoint& to, const Stroke& stroke) override {
    cairo().move_to(cairo_.get(), from.x, from.y);
    cairo().line_to(cairo_.get(), to.x, to.y);
    draw(stroke);
  }
  void path(const std::vector<PicturePoint>& points, bool isClosed, const Stroke& stroke) override {
    for (const PicturePoint& point : points)
      cairo().line_to(cairo_.get(), point.x, point.y);
    if (isClosed) cairo().close_path(cairo_.get());
    draw(stroke);
  }
  void circle(const PicturePoint& centre, double radius, const Stroke& stroke) override {
    cairo().arc(cairo_.get(), centre.x, centre.y, radius, 0.0, 2.0 * std::numbers::pi);
    draw(stroke);
  }
  void arc(const simhost::PictureArc& arc, const Stroke& stroke) override {
    // y runs downwards here, so the arc is gone through the other way.
    cairo().arc_negative(
        cairo_.get(), arc.centre.x, arc.centre.y, arc.radius, -arc.startDegrees * radians,
        -(arc.startDegrees + arc.turnDegrees) * radians);
    draw(stroke);
  }
  void text(const simhost::PictureText& text) override {
    setColour(text.colour);
    showText(text);
  }

  /// A line of a list at a place of the page; a tag among the known ones becomes a link.
  void paintCell(double x, double y, double size, const std::wstring& cell) {
    if (!cell.empty()) text({cell, {x, height_ - y}, size, 0.0, 0.0, {}});
  }
  void paintRule(double x1, double x2, double y) {
    constexpr std::uint8_t grey = 0x99;
    line({x1, height_ - y}, {x2, height_ - y}, {{grey, grey, grey}, ruleMillimetres});
  }
  [[nodiscard]] double widthOf(const std::wstring& text, double size) {
    setFont(size);
    cairo_text_extents_t extents;
    cairo().text_extents(cairo_.get(), toUtf8(text).c_str(), &extents);
    return extents.x_advance;
  }

private:
  static constexpr double radians = std::numbers::pi / 180.0;

  void setColour(simhost::Colour colour, double opacity = 1.0) {
    constexpr double brightest = 255.0;
    cairo().set_source_rgba(
        cairo_.get(), colour.red / brightest, colour.green / brightest, colour.blue / brightest, opacity);
  }

  /// Along the path that has been made.
  void draw(const Stroke& stroke) {
    setColour(stroke.colour, stroke.opacity);
    const std::vector<double> none;
    const std::vector<double>& dashes = stroke.dashes == nullptr ? none : *stroke.dashes;
    cairo().set_dash(cairo_.get(), dashes.data(), static_cast<int>(dashes.size()), 0.0);
    cairo().set_line_width(cairo_.get(), stroke.width);
    cairo().stroke(cairo_.get());
    cairo().new_path(cairo_.get());
  }

  void setFont(double size) {
    cairo().select_font_face(
        cairo_.get(), simhost::pictureFont, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo().set_font_size(cairo_.get(), size);
  }

  void showText(const simhost::PictureText& text) {
    const std::wstring shown(text.text);
    const double start = text.anchor > 0.0 ? -text.anchor * widthOf(shown, text.size) : 0.0;
    setFont(text.size);
    cairo().save(cairo_.get());
    cairo().translate(cairo_.get(), text.position.x, text.position.y);
    cairo().rotate(cairo_.get(), -text.rotationDegrees * radians);
    cairo().move_to(cairo_.get(), start, 0.0);
    const auto page = pagesOfTags_.find(shown);
    const bool isLink = page != pagesOfTags_.end() && page->second != page_;
    if (isLink)
      cairo().tag_begin(
          cairo_.get(), CAIRO_TAG_LINK,
          ("dest='" + tagText("page" + std::to_string(page->second)) + "'").c_str());
    cairo().show_text(cairo_.get(), toUtf8(shown).c_str());
    if (isLink) cairo().tag_end(cairo_.get(), CAIRO_TAG_LINK);
    cairo().restore(cairo_.get());
    // A text leaves a current point, from which a line would be drawn to the next shape.
    cairo().new_path(cairo_.get());
  }

  const std::map<std::wstring, std::size_t>& pagesOfTags_;
  std::unique_ptr<cairo_surface_t, SurfaceRelease> surface_;
  std::unique_ptr<cairo_t, PainterRelease> cairo_;
  std::size_t page_ = 0;
  double height_ = 0.0; ///< of the page
};

void paintSheet(PdfPages& pages, const PaperSheet& sheet) {
  const simhost::LoadedDrawing loaded = simhost::loadDrawing(fromUtf8(sheet.file));
  if (loaded.drawing == nullptr) throw simhost::BadInput(toUtf8(loaded.error));
  const DrawingDatabase& drawing = *loaded.drawing;
  const auto items = simhost::displayList(drawing, drawing.currentSpace());
  if (!items)
    throw simhost::BadInput(
        sheet.file + ": its blocks are nested so deep that it shows too many shapes to be painted");
  double width = paperNumber(drawing, L"PAPER_WIDTH");
  double height = paperNumber(drawing, L"PAPER_HEIGHT");
  KvPoint3d origin;
  if (!(width > 0.0) || !(height > 0.0)) {
    Box box;
    for (const simhost::DisplayItem& item : *items)
      box.include(simhost::boxOf(item.shape));
    if (box.isEmpty()) box.includeAround({}, marginMillimetres);
    width = box.width() + 2.0 * marginMillimetres;
    height = box.height() + 2.0 * marginMillimetres;
    origin = {box.left - marginMillimetres, box.bottom - marginMillimetres, 0.0};
  }
  // The largest page that readers take is 200 inches.
  if (std::max(width, height) > 5080.0)
    throw simhost::BadInput(sheet.file + ": is larger than a page can be, 5080 mm; put it on sheets");
  pages.beginPage(
      width, height, sheet.number, sheet.title.empty() ? sheet.number : sheet.number + L"  " + sheet.title);
  simhost::PictureStyle style;
  style.pixel = simhost::pixelMillimetres;
  simhost::PicturePainter painter(pages, {1.0, {origin.x, origin.y + height, 0.0}}, style);
  for (const simhost::DisplayItem& item : *items)
    painter.paint(item);
  pages.endPage();
}

/// A list on pages of A4, landscape: columns as wide as their longest text, cut where the page ends.
class ListPages final {
public:
  ListPages(PdfPages& pages, const Report& report, const std::wstring& project)
      : pages_(pages), report_(report), project_(project) {}

  void paint() {
    beginPage();
    measure();
    heading();
    for (const auto& row : report_.rows) {
      if (y_ < bottom_) nextPage();
      line(row);
    }
    for (const ReportNote& note : report_.notes) {
      if (y_ < bottom_) nextPage();
      pages_.paintCell(left_, y_, size_, note.text);
      y_ -= lineHeight_;
    }
    pages_.endPage();
  }

private:
  void beginPage() {
    ++page_;
    const std::wstring number = report_.title + L" " + std::to_wstring(page_);
    pages_.beginPage(pageWidth_, pageHeight_, number, number);
    pages_.paintCell(left_, pageHeight_ - 16.0, 5.0, report_.title);
    const std::wstring corner =
        project_ + (project_.empty() ? L"" : L",  ") + L"page " + std::to_wstring(page_);
    pages_.paintCell(pageWidth_ - left_ - pages_.widthOf(corner, size_), pageHeight_ - 16.0, size_, corner);
    y_ = pageHeight_ - 26.0;
  }
  void nextPage() {
    pages_.endPage();
    beginPage();
    heading();
  }

  void measure() {
    double all = 0.0;
    for (std::size_t column = 0; column < report_.columns.size(); ++column) {
      double width = pages_.widthOf(report_.columns[column].title, size_);
      for (const auto& row : report_.rows)
        width = std::max(width, pages_.widthOf(row[column].value_or(std::wstring()), size_));
      widths_.push_back(width + gap_);
      all += widths_.back();
    }
    // Too wide for the page: the widest columns give way.
    const double room = pageWidth_ - 2.0 * left_;
    for (double excess = all - room; excess > 0.01;) {
      const auto widest = std::max_element(widths_.begin(), widths_.end());
      const double cut = std::min(excess, std::max(*widest * 0.1, 0.1));
      *widest -= cut;
      excess -= cut;
    }
  }

  void heading() {
    std::vector<std::optional<std::wstring>> titles;
    for (const ReportColumn& column : report_.columns)
      titles.emplace_back(column.title);
    line(titles);
    pages_.paintRule(left_, pageWidth_ - left_, y_ + lineHeight_ - 1.2);
    firstRow_ = y_;
  }

  using Lines = std::vector<std::vector<std::wstring>>;

  /// A text that its column cannot hold goes on below: nothing of a list is cut off.
  [[nodiscard]] Lines linesOf(const std::vector<std::optional<std::wstring>>& cells) {
    std::vector<std::wstring> rests;
    for (const auto& cell : cells)
      rests.push_back(cell.value_or(std::wstring()));
    Lines lines;
    for (bool isLeft = true; isLeft;) {
      isLeft = false;
      std::vector<std::wstring>& parts = lines.emplace_back();
      for (std::size_t column = 0; column < rests.size(); ++column) {
        parts.push_back(fitting(rests[column], widths_[column] - gap_));
        rests[column].erase(0, parts.back().size());
        isLeft = isLeft || !rests[column].empty();
      }
    }
    return lines;
  }

  void line(const std::vector<std::optional<std::wstring>>& cells) {
    const Lines lines = linesOf(cells);
    // A row stays on one page, unless it is longer than that.
    const double height = static_cast<double>(lines.size() - 1) * lineHeight_;
    if (y_ < firstRow_ && y_ - height < bottom_ && height < firstRow_ - bottom_) nextPage();
    for (const std::vector<std::wstring>& parts : lines) {
      if (y_ < bottom_) nextPage();
      double x = left_;
      for (std::size_t column = 0; column < parts.size(); ++column) {
        pages_.paintCell(x, y_, size_, parts[column]);
        x += widths_[column];
      }
      y_ -= lineHeight_;
    }
  }

  /// The longest beginning of the text that fits, up to a blank where there is one; a character at least.
  [[nodiscard]] std::wstring fitting(const std::wstring& text, double width) {
    if (pages_.widthOf(text, size_) <= width + 0.01) return text;
    std::size_t length = 1;
    while (length < text.size() && pages_.widthOf(text.substr(0, length + 1), size_) <= width)
      ++length;
    const std::size_t blank = text.rfind(L' ', length);
    return text.substr(
        0, blank != std::wstring::npos && blank > 0 ? std::min(blank + 1, text.size()) : length);
  }

  static constexpr double pageWidth_ = 297.0;
  static constexpr double pageHeight_ = 210.0;
  static constexpr double left_ = 12.0;
  static constexpr double bottom_ = 12.0;
  static constexpr double size_ = 2.8;
  static constexpr double lineHeight_ = 4.4;
  static constexpr double gap_ = 3.0;

  PdfPages& pages_;
  const Report& report_;
  const std::wstring& project_;
  std::vector<double> widths_;
  double y_ = 0.0;
  double firstRow_ = -1.0; ///< of the page, below the heading
  int page_ = 0;
};

} // namespace

std::optional<std::string> writePdf(
    const std::string& out, const std::vector<PaperSheet>& sheets, const PaperOptions& options) {
  if (!cairo().fault().empty()) return out + ": " + toUtf8(cairo().fault());
  std::map<std::wstring, std::size_t> pagesOfTags;
  for (std::size_t sheet = 0; sheet < sheets.size(); ++sheet)
    for (const std::wstring& tag : sheets[sheet].tags)
      pagesOfTags.try_emplace(tag, sheet + 1);
  // Beside the file first: one that is there stays whole until the new one is.
  const std::string beside = out + ".part";
  std::error_code error;
  try {
    PdfPages pages(beside, pagesOfTags);
    pages.setTitle(options.title);
    for (const PaperSheet& sheet : sheets)
      paintSheet(pages, sheet);
    for (const Report& list : options.lists)
      ListPages(pages, list, options.project).paint();
    if (const auto reason = pages.finish()) {
      std::filesystem::remove(beside, error);
      return out + ": " + *reason;
    }
  } catch (...) {
    std::filesystem::remove(beside, error);
    throw;
  }
  std::filesystem::rename(beside, out, error);
  if (!error) return std::nullopt;
  const std::string reason = out + ": " + error.message();
  std::filesystem::remove(beside, error);
  return reason;
}

} // namespace circuits
