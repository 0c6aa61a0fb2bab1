// From a control to its words.
#include "simhost/qt/context_help.h"

#include "simhost/qt/manual.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <QWhatsThis>

namespace simhost {
namespace {

struct Words {
  QString name;
  QString text;
};

QString plain(QString text) {
  text.remove(QLatin1Char('&'));
  while (text.endsWith(QLatin1Char(':')) || text.endsWith(QLatin1Char('.')))
    text.chop(1);
  return text;
}

Words wordsOf(const QAction& action) {
  return {plain(action.text()), action.whatsThis().isEmpty() ? action.toolTip() : action.whatsThis()};
}

Words wordsOf(const QWidget& widget) {
  if (const auto* menu = qobject_cast<const QMenu*>(&widget);
      menu != nullptr && menu->activeAction() != nullptr)
    return wordsOf(*menu->activeAction());
  if (const auto* tool = qobject_cast<const QToolButton*>(&widget);
      tool != nullptr && tool->defaultAction() != nullptr)
    return wordsOf(*tool->defaultAction());
  if (const auto* label = qobject_cast<const QLabel*>(&widget); label != nullptr && label->buddy() != nullptr)
    return wordsOf(*label->buddy());
  Words words{widget.accessibleName(), widget.whatsThis()};
  const auto* button = qobject_cast<const QAbstractButton*>(&widget);
  if (words.name.isEmpty() && button != nullptr) words.name = plain(button->text());
  if (words.text.isEmpty()) words.text = widget.accessibleDescription();
  if (words.text.isEmpty()) words.text = widget.toolTip();
  if (widget.isWindow() && words.name.isEmpty()) words.name = plain(widget.windowTitle());
  return words;
}

/// The widget or the nearest one around it that has words.
const QWidget* explained(const QWidget* widget) {
  for (; widget != nullptr; widget = widget->parentWidget()) {
    const Words words = wordsOf(*widget);
    if (!words.name.isEmpty() || !words.text.isEmpty()) return widget;
    if (widget->isWindow()) return nullptr;
  }
  return nullptr;
}

std::wstring_view topicOf(const QWidget& window) {
  for (const HelpTopic& row : helpTopics)
    if (window.objectName() == QLatin1String(row.window)) return row.name;
  return L"main_window";
}

bool isHelpKey(const QKeyEvent& key) {
  return key.key() == Qt::Key_F1 && key.modifiers() == Qt::ShiftModifier;
}

} // namespace

ContextHelp::ContextHelp(QObject* parent) : QObject(parent) {
  qApp->installEventFilter(this);
}

void ContextHelp::begin() {
  QWhatsThis::enterWhatsThisMode();
}

QString ContextHelp::textOf(const QWidget& widget) {
  const QWidget* const found = explained(&widget);
  if (found == nullptr) return {};
  const Words words = wordsOf(*found);
  QString text;
  if (!words.name.isEmpty()) text = QStringLiteral("<b>%1</b>").arg(words.name.toHtmlEscaped());
  if (!words.text.isEmpty() && words.text != words.name)
    text += QStringLiteral("<p>%1</p>")
                .arg(words.text.toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>")));
  return text;
}

bool ContextHelp::explain(QWidget* widget, const QPoint& place) const {
  QString text = widget == nullptr ? QString() : textOf(*widget);
  if (text.isEmpty()) return false;
  text += QStringLiteral("<p><a href=\"manual\">%1</a></p>").arg(more_.toHtmlEscaped());
  QWhatsThis::showText(place, text, widget);
  return true;
}

bool ContextHelp::explainAtPointer() const {
  const QWidget* const popup = QApplication::activePopupWidget();
  const QWidget* const window = popup != nullptr ? popup : QApplication::activeWindow();
  QWidget* const under = QApplication::widgetAt(QCursor::pos());
  if (under != nullptr && under->window() == window && explain(under, QCursor::pos())) return true;
  QWidget* const focus = QApplication::focusWidget();
  return focus != nullptr && explain(focus, focus->mapToGlobal(focus->rect().center()));
}

bool ContextHelp::eventFilter(QObject* object, QEvent* event) {
  switch (event->type()) {
  case QEvent::ShortcutOverride:
    if (!isHelpKey(*static_cast<QKeyEvent*>(event))) break;
    event->accept();
    return true;
  case QEvent::KeyPress:
    if (!object->isWidgetType() || !isHelpKey(*static_cast<QKeyEvent*>(event))) break;
    static_cast<void>(explainAtPointer());
    return true;
  case QEvent::QueryWhatsThis:
    if (!object->isWidgetType()) break;
    event->setAccepted(explained(static_cast<QWidget*>(object)) != nullptr);
    return true;
  case QEvent::WhatsThis:
    if (!object->isWidgetType()) break;
    event->setAccepted(explain(static_cast<QWidget*>(object), static_cast<QHelpEvent*>(event)->globalPos()));
    return true;
  case QEvent::WhatsThisClicked:
    if (!object->isWidgetType() || !onMore) break;
    onMore(topicOf(*static_cast<QWidget*>(object)->window()), *static_cast<QWidget*>(object)->window());
    return true;
  default:
    break;
  }
  return QObject::eventFilter(object, event);
}

} // namespace simhost
