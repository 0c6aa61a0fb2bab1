// A picture that a painter of Qt keeps: on the screen, in a PDF, on a printer. Lines of one stroke are collected and
// painted together: most of a circuit drawing is lines, and changing the pen costs more than a line.
#pragma once

#include "simhost/drawing/picture_painter.h"

#include <QColor>
#include <QFont>
#include <QLineF>
#include <QPainter>

#include <optional>
#include <vector>

namespace simhost {

class PainterSink final : public PictureSink {
public:
  /// The painter must outlive it and not be used elsewhere meanwhile.
  explicit PainterSink(QPainter& painter);
  PainterSink(const PainterSink&) = delete;
  PainterSink& operator=(const PainterSink&) = delete;
  /// Everything is painted then.
  ~PainterSink() override { flush(); }

  void line(const PicturePoint& from, const PicturePoint& to, const Stroke& stroke) override;
  void path(const std::vector<PicturePoint>& points, bool isClosed, const Stroke& stroke) override;
  void circle(const PicturePoint& centre, double radius, const Stroke& stroke) override;
  void arc(const PictureArc& arc, const Stroke& stroke) override;
  void text(const PictureText& text) override;

private:
  void take(const Stroke& stroke);
  void flush();

  QPainter& painter_;
  std::optional<Stroke> stroke_; ///< that the painter has a pen for
  std::vector<QLineF> lines_;    ///< of this stroke, not painted yet
  QFont font_;
};

[[nodiscard]] QColor colourOf(Colour colour);
[[nodiscard]] QColor paperColour(Paper paper);

} // namespace simhost
