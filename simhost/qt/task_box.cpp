// Laying out a question: command buttons below each other, closing buttons in a row.
#include "simhost/qt/task_box.h"

#include "simhost/qt/qt_text.h"

#include <QCheckBox>
#include <QCommandLinkButton>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSet>
#include <QStyle>
#include <QVBoxLayout>

namespace simhost {

namespace {

/// A line of text wider than this is hard to read.
constexpr int widestText = 480;

/// The label with its first letter marked that no other button has.
QString withLetter(QString label, QSet<QChar>& taken) {
  for (qsizetype at = 0; at < label.size(); ++at) {
    if (!label[at].isLetter() || taken.contains(label[at].toLower())) continue;
    taken.insert(label[at].toLower());
    return label.insert(at, QLatin1Char('&'));
  }
  return label;
}

} // namespace

TaskBox::TaskBox(const TaskQuestion& question, const WindowWords& words, QWidget* parent) : QDialog(parent) {
  setObjectName(toQt(question.key));
  setWindowTitle(toQt(question.title));
  auto* column = new QVBoxLayout(this);
  column->setSizeConstraint(QLayout::SetFixedSize);

  auto* top = new QHBoxLayout;
  top->setSpacing(style()->pixelMetric(QStyle::PM_LayoutLeftMargin));
  auto* icon = new QLabel;
  const int size = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
  const bool decides = question.buttons.size() > 1;
  const auto picture = decides ? QStyle::SP_MessageBoxQuestion : QStyle::SP_MessageBoxInformation;
  icon->setPixmap(style()->standardIcon(picture, nullptr, this).pixmap(size, size));
  top->addWidget(icon, 0, Qt::AlignTop);
  auto* text = new QLabel(toQt(question.text));
  text->setObjectName("text");
  text->setTextFormat(Qt::PlainText);
  text->setWordWrap(true);
  const int wanted =
      text->fontMetrics().boundingRect(0, 0, widestText, 10000, Qt::TextWordWrap, text->text()).width();
  text->setFixedWidth(std::min(wanted + 8, widestText));
  top->addWidget(text, 1);
  column->addLayout(top);

  auto* row = new QHBoxLayout;
  row->addStretch();
  QSet<QChar> letters;
  QAbstractButton* safe = nullptr;
  for (const TaskButton& button : question.buttons) {
    const bool isCommand = button.id >= kvui::firstCommand;
    QAbstractButton* shown = nullptr;
    if (isCommand) {
      shown = new QCommandLinkButton(withLetter(toQtPlain(button.label), letters));
      column->addWidget(shown);
    } else {
      shown = new QPushButton(withLetter(toQtPlain(button.label), letters));
      row->addWidget(shown);
    }
    shown->setObjectName(QString::number(button.id));
    if (safe == nullptr || button.id == kvui::cancel || button.id == kvui::no) safe = shown;
    connect(shown, &QAbstractButton::clicked, this, [this, id = button.id] {
      button_ = id;
      accept();
    });
  }
  if (question.isHideable) {
    hide_ = new QCheckBox(words.hideForGood);
    hide_->setObjectName("hide");
    column->addWidget(hide_);
  }
  column->addLayout(row);
  // Of several answers Enter gives the one that changes nothing: what deletes, replaces or goes on without something
  // is never a slip of the hand.
  if (auto* push = qobject_cast<QPushButton*>(safe)) push->setDefault(true);
  if (safe != nullptr) safe->setFocus();
}

TaskAnswer TaskBox::answer() const {
  TaskAnswer answer;
  answer.button = button_;
  answer.hideForGood = hide_ != nullptr && hide_->isChecked();
  return answer;
}

} // namespace simhost
