// Shifting, scaling and filling in.
#include "simhost/gui/picture_cache.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace simhost {
namespace {

constexpr int pieceSize = 256;
/// Around a piece: how far a line reaches beyond its points, in pixels of the window.
constexpr double lineReach = 4.0;
constexpr double smallestGridPixels = 14.0;
constexpr int strongEvery = 5;

/// Moves the rows of an image within it; what comes in from outside keeps its old pixels.
void scroll(QImage& image, const QPoint& by) {
  const int width = image.width() - std::abs(by.x());
  const int height = image.height() - std::abs(by.y());
  if (width <= 0 || height <= 0) return;
  const int bytesPerPixel = image.depth() / 8;
  const int fromX = std::max(0, -by.x());
  const int toX = std::max(0, by.x());
  const auto length = static_cast<std::size_t>(width) * static_cast<std::size_t>(bytesPerPixel);
  for (int count = 0; count < height; ++count) {
    // Downwards moves begin at the bottom, so that no row is overwritten before it has been moved.
    const int row = by.y() > 0 ? height - 1 - count : count;
    const int from = row + std::max(0, -by.y());
    const int to = row + std::max(0, by.y());
    uchar* const target = image.scanLine(to) + static_cast<std::ptrdiff_t>(toX) * bytesPerPixel;
    const uchar* const source = image.scanLine(from) + static_cast<std::ptrdiff_t>(fromX) * bytesPerPixel;
    std::memmove(target, source, length);
  }
}

} // namespace

double gridStep(double scale) {
  const double smallest = smallestGridPixels / scale;
  const double power = std::pow(10.0, std::floor(std::log10(smallest)));
  for (const double factor : {1.0, 2.0, 5.0})
    if (power * factor >= smallest) return power * factor;
  return power * 10.0;
}

void PictureCache::resize(const QSize& size, double ratio) {
  if (std::exchange(ratio_, ratio) != ratio) invalidate();
  if (size == image_.size()) return;
  QImage larger(size.expandedTo({1, 1}), QImage::Format_RGB32);
  larger.fill(paperColour(paper_));
  if (!image_.isNull()) QPainter(&larger).drawImage(0, 0, image_);
  const QRegion known = QRegion(image_.rect()) - dirty_;
  image_ = std::move(larger);
  dirty_ = QRegion(image_.rect()) - known;
}

void PictureCache::setPaper(Paper paper) {
  paper_ = paper;
  invalidate();
}

void PictureCache::setGrid(bool isShown) {
  hasGrid_ = isShown;
  invalidate();
}

void PictureCache::setView(const ViewTransform& view) {
  const double ratio = view.scale / view_.scale;
  const QPointF start(view.originX - view_.originX * ratio, view.originY - view_.originY * ratio);
  if (!image_.isNull()) {
    QImage moved(image_.size(), QImage::Format_RGB32);
    moved.fill(paperColour(paper_));
    QPainter painter(&moved);
    painter.drawImage(QRectF(start, QSizeF(image_.size()) * ratio), image_);
    painter.end();
    image_ = std::move(moved);
  }
  view_ = view;
  invalidate();
}

void PictureCache::pan(const QPoint& pixels) {
  if (pixels.isNull()) return;
  view_ = view_.moved(pixels);
  image_.detach();
  scroll(image_, pixels);
  const QRegion kept = (QRegion(image_.rect()) - dirty_).translated(pixels);
  dirty_ = QRegion(image_.rect()) - kept;
}

bool PictureCache::paint(std::chrono::milliseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (!dirty_.isEmpty()) {
    const QPoint middle = image_.rect().center();
    const auto distance = [&middle](const QRect& rect) { return (rect.center() - middle).manhattanLength(); };
    const QRect nearest =
        *std::min_element(dirty_.begin(), dirty_.end(), [&](const QRect& one, const QRect& other) {
          return distance(one) < distance(other);
        });
    // Of a large rectangle the piece around its own middle.
    QRect piece(0, 0, std::min(pieceSize, nearest.width()), std::min(pieceSize, nearest.height()));
    piece.moveCenter(nearest.contains(middle) ? middle : nearest.center());
    piece = piece.intersected(nearest);
    paintPiece(piece);
    dirty_ -= piece;
    if (std::chrono::steady_clock::now() >= end) break;
  }
  return dirty_.isEmpty();
}

void PictureCache::finish() {
  while (!dirty_.isEmpty()) {
    const QRect whole = *dirty_.begin();
    paintPiece(whole);
    dirty_ -= whole;
  }
}

void PictureCache::paintPiece(const QRect& piece) {
  QPainter painter(&image_);
  painter.setClipRect(piece);
  painter.fillRect(piece, paperColour(paper_));
  if (hasGrid_) paintGrid(painter, piece);
  const double reach = lineReach * ratio_;
  const QRectF reached = QRectF(piece).adjusted(-reach, -reach, reach, reach);
  PainterSink sink(painter);
  PicturePainter picture(sink, view_.place(), {paper_, Detail::screen, ratio_});
  for (const std::uint32_t number : scene_.itemsIn(view_.toDrawing(reached)))
    picture.paint(scene_.items()[number], scene_.box(number));
}

void PictureCache::paintGrid(QPainter& painter, const QRect& piece) const {
  const double step = gridStep(view_.scale / ratio_);
  const Box area = view_.toDrawing(QRectF(piece));
  const QColor weak = paper_ == Paper::light ? QColor(0xf0, 0xf2, 0xf4) : QColor(0x27, 0x2b, 0x31);
  const QColor strong = paper_ == Paper::light ? QColor(0xe0, 0xe4, 0xe8) : QColor(0x32, 0x37, 0x3e);
  painter.setRenderHint(QPainter::Antialiasing, false);
  for (const bool isStrong : {false, true}) {
    painter.setPen(QPen(isStrong ? strong : weak, ratio_));
    const auto isAsked = [isStrong](double line) {
      return (std::fmod(std::abs(line), strongEvery) < 0.5) == isStrong;
    };
    for (double line = std::floor(area.left / step); line <= std::ceil(area.right / step); ++line) {
      if (!isAsked(line)) continue;
      const int x = static_cast<int>(std::floor(view_.toScreen({line * step, 0.0, 0.0}).x()));
      painter.drawLine(x, piece.top(), x, piece.bottom());
    }
    for (double line = std::floor(area.bottom / step); line <= std::ceil(area.top / step); ++line) {
      if (!isAsked(line)) continue;
      const int y = static_cast<int>(std::floor(view_.toScreen({0.0, line * step, 0.0}).y()));
      painter.drawLine(piece.left(), y, piece.right(), y);
    }
  }
}

} // namespace simhost
