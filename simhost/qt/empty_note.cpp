// A label over the view's viewport, visible while there are no rows.
#include "simhost/qt/empty_note.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QLabel>

namespace simhost {

namespace {

class EmptyNote final : public QLabel {
public:
  EmptyNote(QAbstractItemView& view, const QString& words) : QLabel(words, view.viewport()), view_(view) {
    setObjectName(QStringLiteral("emptyNote"));
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    setAlignment(Qt::AlignCenter);
    setMargin(12);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setForegroundRole(QPalette::PlaceholderText);
    view.viewport()->installEventFilter(this);
    QAbstractItemModel* model = view.model();
    connect(model, &QAbstractItemModel::modelReset, this, [this] { follow(); });
    connect(model, &QAbstractItemModel::rowsInserted, this, [this] { follow(); });
    connect(model, &QAbstractItemModel::rowsRemoved, this, [this] { follow(); });
    follow();
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Resize) follow();
    return QLabel::eventFilter(watched, event);
  }

private:
  void follow() {
    setGeometry(view_.viewport()->rect());
    setVisible(view_.model()->rowCount(view_.rootIndex()) == 0);
  }

  QAbstractItemView& view_;
};

} // namespace

void showWhenEmpty(QAbstractItemView& view, const QString& words) {
  if (!words.isEmpty()) new EmptyNote(view, words);
}

} // namespace simhost
