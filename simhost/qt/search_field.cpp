// Keys of the field.
#include "simhost/qt/search_field.h"

#include <QKeyEvent>

namespace simhost {

SearchField::SearchField(const QString& words) {
  setObjectName(QStringLiteral("search"));
  setPlaceholderText(words);
  setAccessibleName(words);
  setClearButtonEnabled(true);
  connect(this, &QLineEdit::textChanged, this, [this](const QString& text) {
    if (onSearch) onSearch(text);
  });
}

void SearchField::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  if (onEntered) onEntered();
}

void SearchField::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
  case Qt::Key_Return:
  case Qt::Key_Enter:
  case Qt::Key_Down:
    if (onDown) onDown();
    return;
  case Qt::Key_Escape:
    if (text().isEmpty()) break;
    clear();
    return;
  default:
    break;
  }
  QLineEdit::keyPressEvent(event);
}

} // namespace simhost
