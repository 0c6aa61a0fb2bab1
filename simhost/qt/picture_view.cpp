// The picture is rendered once for each drawing and painted at the size there is.
#include "simhost/qt/picture_view.h"

#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/svg.h"
#include "simhost/qt/qt_dialog.h"
#include "simhost/qt/qt_text.h"

#include <QPainter>
#include <QSvgRenderer>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace simhost {

namespace {

constexpr int margin = 8;

/// A sheet of paper with the drawing on it: drawings have dark lines on any palette.
class Sheet final : public QWidget {
public:
  explicit Sheet(QString emptyNote) : emptyNote_(std::move(emptyNote)) {
    setMinimumSize(200, 140);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  }

  void showFile(const std::wstring& path) {
    renderer_.load(QByteArray());
    note_.clear();
    if (path.empty()) {
      note_ = emptyNote_;
    } else {
      LoadedDrawing loaded = loadDrawing(path);
      const SvgPicture picture = loaded.drawing == nullptr
                                     ? SvgPicture{{}, loaded.error}
                                     : renderSvg(*loaded.drawing, loaded.drawing->currentSpace());
      note_ = toQt(picture.error);
      if (note_.isEmpty()) renderer_.load(QByteArray::fromStdString(picture.svg));
    }
    update();
  }

protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.fillRect(rect(), Qt::white);
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    const QRectF room = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
    if (!renderer_.isValid()) {
      painter.setPen(Qt::darkGray);
      painter.drawText(room, Qt::AlignCenter | Qt::TextWordWrap, note_);
      return;
    }
    const QSizeF size = QSizeF(renderer_.defaultSize()).scaled(room.size(), Qt::KeepAspectRatio);
    QRectF place(QPointF(), size);
    place.moveCenter(room.center());
    painter.setRenderHint(QPainter::Antialiasing);
    renderer_.render(&painter, place);
  }

private:
  QSvgRenderer renderer_;
  QString emptyNote_; ///< while no drawing is named
  QString note_;      ///< why there is no picture
};

class PictureView final : public ControlView {
public:
  PictureView(QtDialog& dialog, TextModel& model)
      : ControlView(dialog, model), text_(model), sheet_(new Sheet(dialog.words().noDrawing)) {}
  [[nodiscard]] QWidget& widget() const override { return *sheet_; }
  [[nodiscard]] nlohmann::ordered_json reading() const override {
    return {{"text", toQt(shown_).toStdString()}};
  }

private:
  void show() override {
    // What is not seen is not read.
    const std::wstring path = text_.Text();
    if (path != shown_ || !isLoaded_) {
      shown_ = path;
      isLoaded_ = text_.isVisible();
      if (isLoaded_) sheet_->showFile(path);
    }
  }

  TextModel& text_;
  Sheet* sheet_;
  std::wstring shown_;
  bool isLoaded_ = false;
};

} // namespace

std::unique_ptr<ControlView> makePictureView(QtDialog& dialog, TextModel& model) {
  return std::make_unique<PictureView>(dialog, model);
}

} // namespace simhost
