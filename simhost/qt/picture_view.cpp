// The picture is rendered once for each drawing and painted at the size there is.
#include "simhost/qt/picture_view.h"

#include "simhost/drawing/drawing_file.h"
#include "simhost/drawing/svg.h"
#include "simhost/qt/offered_circuit.h"
#include "simhost/qt/qt_dialog.h"
#include "simhost/qt/qt_text.h"

#include <QPainter>
#include <QPointer>
#include <QSvgRenderer>
#include <QTabBar>
#include <QVBoxLayout>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <optional>
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

  void showNote(const QString& note) {
    renderer_.load(QByteArray());
    note_ = note;
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

/// The finished circuit, where the windows know it, and the template with its markers as a second view.
class PictureView final : public ControlView {
public:
  PictureView(QtDialog& dialog, TextModel& model)
      : ControlView(dialog, model), text_(model), pane_(new QWidget), views_(new QTabBar(pane_)),
        sheet_(new Sheet(dialog.words().noDrawing)) {
    auto* column = new QVBoxLayout(pane_);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(views_);
    column->addWidget(sheet_, 1);
    views_->setDrawBase(false);
    views_->addTab(dialog.words().finishedCircuit);
    views_->addTab(dialog.words().markers);
    views_->setVisible(facts() != nullptr);
    views_->setFocusPolicy(
        facts() != nullptr ? Qt::TabFocus : Qt::NoFocus); // one view leaves nothing to choose
    pane_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    QObject::connect(views_, &QTabBar::currentChanged, pane_, [this] { refreshLinked(); });
    QObject::connect(pane_, &QObject::destroyed, [facts = facts()] {
      if (facts != nullptr) facts->forgetPicture();
    });
  }
  [[nodiscard]] QWidget& widget() const override { return *pane_; }
  [[nodiscard]] QWidget& focusWidget() const override { return *views_; }
  [[nodiscard]] nlohmann::ordered_json reading() const override {
    return {{"text", toQt(shown_).toStdString()}};
  }

  void refreshLinked() override {
    // What is not seen is neither read nor made.
    if (!text_.isVisible()) return;
    if (facts() == nullptr || views_->currentIndex() > 0) return showDrawing(shown_);
    const OfferedCircuit offered = simhost::offeredCircuit(dialog().views());
    if (shown_.empty() || offered.type.empty()) return showDrawing({});
    const CircuitFacts::Picture picture = facts()->picture(offered, [pane = QPointer<QWidget>(pane_), this] {
      if (pane != nullptr) refreshLinked();
    });
    if (picture.state == CircuitFacts::Picture::State::made) return showDrawing(picture.drawing);
    drawing_.reset();
    sheet_->showNote(picture.note);
  }

private:
  [[nodiscard]] CircuitFacts* facts() const { return dialog().circuitFacts(); }

  void show() override {
    shown_ = text_.Text();
    refreshLinked();
  }

  void showDrawing(const std::wstring& path) {
    if (drawing_ == path) return;
    drawing_ = path;
    sheet_->showFile(path);
  }

  TextModel& text_;
  QWidget* pane_;
  QTabBar* views_;
  Sheet* sheet_;
  std::wstring shown_;                  ///< the template
  std::optional<std::wstring> drawing_; ///< that is painted
};

} // namespace

std::unique_ptr<ControlView> makePictureView(QtDialog& dialog, TextModel& model) {
  return std::make_unique<PictureView>(dialog, model);
}

} // namespace simhost
