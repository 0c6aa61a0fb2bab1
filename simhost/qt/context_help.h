// Help on one control: Shift+F1 explains what is under the pointer, else what has the keyboard; "What's this?" explains
// what is clicked next. The words are those that the control has anyway: name, tool tip, description.
#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <string_view>

class QWidget;

namespace simhost {

class ContextHelp final : public QObject {
public:
  /// Works in all windows of the application while it lives.
  explicit ContextHelp(QObject* parent = nullptr);

  /// The words of the link to the manual.
  void setMore(const QString& more) { more_ = more; }
  /// The next click is explained and does nothing.
  static void begin();
  /// The explanation of a control, or of what it is a part of; empty for none.
  [[nodiscard]] static QString textOf(const QWidget& widget);

  /// The user follows the link to the manual in an explanation about this window.
  std::function<void(std::wstring_view topic, QWidget& window)> onMore;

protected:
  bool eventFilter(QObject* object, QEvent* event) override;

private:
  bool explain(QWidget* widget, const QPoint& place) const;
  [[nodiscard]] bool explainAtPointer() const;

  QString more_;
};

} // namespace simhost
