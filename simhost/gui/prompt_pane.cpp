// Lines, history and completion.
#include "simhost/gui/prompt_pane.h"

#include "simhost/lisp/input.h"
#include "simhost/qt/qt_text.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QScrollBar>
#include <QStringListModel>
#include <QVBoxLayout>

#include <utility>

namespace simhost {
namespace {

constexpr int keptOutputLines = 5000;

bool endsWord(QChar character) {
  return character.isSpace() || QStringLiteral("()'\";`,").contains(character);
}

} // namespace

PromptPane::PromptPane(const QString& hint, QWidget* parent)
    : QWidget(parent), output_(new QPlainTextEdit(this)), mark_(new QLabel(QStringLiteral(">"), this)),
      input_(new QLineEdit(this)), completer_(new QCompleter(this)) {
  const QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  for (QWidget* widget :
       {static_cast<QWidget*>(output_), static_cast<QWidget*>(mark_), static_cast<QWidget*>(input_)})
    widget->setFont(fixed);
  output_->setReadOnly(true);
  output_->setMaximumBlockCount(keptOutputLines);
  output_->setFocusPolicy(Qt::ClickFocus);
  input_->setPlaceholderText(hint);
  input_->setObjectName(QStringLiteral("prompt"));
  output_->setObjectName(QStringLiteral("output"));
  input_->installEventFilter(this);
  completer_->setWidget(input_);
  completer_->setCompletionMode(QCompleter::PopupCompletion);
  completer_->setCaseSensitivity(Qt::CaseInsensitive);
  input_->setAccessibleName(hint);
  output_->setAccessibleName(hint);
  completer_->setModel(new QStringListModel(completer_));
  connect(
      completer_, QOverload<const QString&>::of(&QCompleter::activated), this,
      [this](const QString& name) { replaceWord(name); });
  connect(input_, &QLineEdit::returnPressed, this, [this] { enter(); });

  auto* line = new QHBoxLayout;
  line->setContentsMargins(4, 0, 0, 0);
  line->addWidget(mark_);
  line->addWidget(input_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  column->addWidget(output_, 1);
  column->addLayout(line);
}

void PromptPane::print(std::wstring_view text) {
  // Scrolls to the new end only when the end is visible.
  QScrollBar* bar = output_->verticalScrollBar();
  const bool isAtEnd = bar->value() == bar->maximum();
  QTextCursor cursor(output_->document());
  cursor.movePosition(QTextCursor::End);
  cursor.insertText(toQt(text));
  if (isAtEnd) bar->setValue(bar->maximum());
}

void PromptPane::setHistory(QStringList lines) {
  history_ = std::move(lines);
  while (history_.size() > rememberedLines)
    history_.removeFirst();
  recalled_ = history_.size();
}

void PromptPane::enter() {
  const QString line = input_->text();
  if (line.trimmed().isEmpty() && unfinished_.isEmpty()) return;
  input_->clear();
  if (!line.trimmed().isEmpty() && (history_.isEmpty() || history_.last() != line)) {
    setHistory(history_ + QStringList(line));
    if (onHistoryChanged) onHistoryChanged();
  }
  recalled_ = history_.size();
  print((unfinished_.isEmpty() ? L"> " : L". ") + fromQt(line) + L"\n");
  unfinished_ += line + QLatin1Char('\n');
  const bool isComplete = lisp::isCompleteInput(fromQt(unfinished_));
  mark_->setText(isComplete ? QStringLiteral(">") : QStringLiteral("."));
  if (isComplete && onForm) onForm(std::exchange(unfinished_, QString()));
}

void PromptPane::recall(int step) {
  const qsizetype place = recalled_ + step;
  if (place < 0 || place > history_.size()) return;
  if (recalled_ == history_.size()) typed_ = input_->text();
  recalled_ = place;
  input_->setText(place == history_.size() ? typed_ : history_[place]);
}

QString PromptPane::wordAtCursor() const {
  const QString ahead = input_->text().left(input_->cursorPosition());
  qsizetype start = ahead.size();
  while (start > 0 && !endsWord(ahead[start - 1]))
    --start;
  return ahead.mid(start);
}

QStringList PromptPane::candidates() const {
  const QString word = wordAtCursor();
  QStringList found;
  if (word.isEmpty() || !onNames) return found;
  for (const QString& name : onNames())
    if (name.startsWith(word, Qt::CaseInsensitive)) found.append(name);
  return found;
}

void PromptPane::complete() {
  const QStringList found = candidates();
  if (found.isEmpty()) return;
  if (found.size() == 1) return replaceWord(found.first());
  static_cast<QStringListModel*>(completer_->model())->setStringList(found);
  completer_->setCompletionPrefix(wordAtCursor());
  QAbstractItemView* popup = completer_->popup();
  const int width = popup->sizeHintForColumn(0) + popup->verticalScrollBar()->sizeHint().width();
  const QString ahead = input_->text().left(input_->cursorPosition() - wordAtCursor().size());
  const QRect place(input_->fontMetrics().horizontalAdvance(ahead), 0, width, input_->height());
  completer_->complete(place);
}

void PromptPane::replaceWord(const QString& name) {
  input_->setCursorPosition(input_->cursorPosition());
  for (qsizetype count = wordAtCursor().size(); count > 0; --count)
    input_->backspace();
  input_->insert(name);
}

bool PromptPane::eventFilter(QObject* watched, QEvent* event) {
  if (watched == input_ && event->type() == QEvent::KeyPress) {
    switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Up:
      recall(-1);
      return true;
    case Qt::Key_Down:
      recall(1);
      return true;
    case Qt::Key_Tab:
      if (input_->text().isEmpty()) return false; // nothing to complete: on to the next control
      complete();
      return true;
    default:
      break;
    }
  }
  return QWidget::eventFilter(watched, event);
}

} // namespace simhost
