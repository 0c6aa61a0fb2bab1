// A field that narrows a table or a tree down as one types. It is not a control of a form: a flow sees what is selected
// afterwards.
#pragma once

#include <QLineEdit>

#include <functional>

namespace simhost {

class SearchField final : public QLineEdit {
public:
  /// `words`: what stands in it while it is empty, which is its name as well.
  explicit SearchField(const QString& words);

  std::function<void(const QString& text)> onSearch;
  /// Enter or arrow down: on to what was found.
  std::function<void()> onDown;
  /// The keyboard has come.
  std::function<void()> onEntered;

protected:
  void focusInEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
};

} // namespace simhost
