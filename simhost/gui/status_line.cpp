// The parts of the bar, and the words for results.
#include "simhost/gui/status_line.h"

#include "simhost/gui/result_line.h"
#include "simhost/host/session.h"
#include "simhost/lisp/printer.h"
#include "simhost/qt/qt_text.h"
#include "simhost/site/site_run.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QStatusBar>
#include <QToolButton>

namespace simhost {

void StatusLine::build(QStatusBar& bar) {
  bar_ = &bar;
  hover_ = new QLabel(&bar);
  hover_->setMinimumWidth(1); // a long text must not make the window wider
  place_ = new QLabel(&bar);
  place_->setMinimumWidth(bar.fontMetrics().horizontalAdvance(QStringLiteral("-00000.00, -00000.00")));
  place_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  copyResult_ = new QToolButton(&bar);
  copyResult_->setText(texts_(HostText::copyResult));
  copyResult_->setAutoRaise(true);
  copyResult_->hide();
  QObject::connect(copyResult_, &QToolButton::clicked, copyResult_, [button = copyResult_] {
    QGuiApplication::clipboard()->setText(button->property("line").toString());
  });
  bar.addPermanentWidget(copyResult_);
  bar.addPermanentWidget(hover_);
  bar.addPermanentWidget(place_);
}

QString StatusLine::text() const {
  return bar_->currentMessage();
}

QString StatusLine::hoverText() const {
  return hover_->text();
}

void StatusLine::say(const QString& text) {
  bar_->showMessage(text);
}

void StatusLine::sayBusy() {
  say(texts_(HostText::busy));
}

void StatusLine::showOutcome(const CommandOutcome& outcome, HostText command) {
  using Kind = CommandOutcome::Kind;
  switch (outcome.kind) {
  case Kind::refused:
    return sayBusy();
  case Kind::cancelled:
    return say(texts_(HostText::cancelled));
  case Kind::failed:
    site_.session().commandLine().printLine(outcome.message);
    return say(texts_(HostText::notDone, {toQt(outcome.message).simplified()}));
  case Kind::done:
    site_.session().commandLine().printLine(lisp::printValue(outcome.value));
    const QString line = resultLine(texts_, command, outcome.value);
    copyResult_->setVisible(!line.isEmpty());
    copyResult_->setProperty("line", line);
    say(line.isEmpty() ? texts_(HostText::ready) : line);
  }
}

void StatusLine::showFault(const QString& reason) {
  site_.session().commandLine().printLine(fromQt(reason));
  say(texts_(HostText::notDone, {reason}));
}

bool StatusLine::showWritten(const Fault& fault, HostText text, const QString& file) {
  if (fault)
    showFault(toQt(*fault));
  else
    say(texts_(text, {file}));
  return !fault;
}

void StatusLine::showPlace(const KvPoint3d& point) {
  const auto number = [](double value) { return QString::number(value, 'f', 2); };
  place_->setText(number(point.x) + QStringLiteral(", ") + number(point.y));
}

void StatusLine::showHover(const QString& text) {
  hover_->setText(text);
}

} // namespace simhost
