// The LISP prompt: its output, an input line, the history of lines, and completion of names.
#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <string_view>

class QCompleter;
class QLabel;

namespace simhost {

class PromptPane final : public QWidget {
public:
  static constexpr int rememberedLines = 200;

  explicit PromptPane(const QString& hint, QWidget* parent = nullptr);

  void print(std::wstring_view text);
  /// The oldest line first.
  void setHistory(QStringList lines);
  [[nodiscard]] const QStringList& history() const { return history_; }

  /// A whole form was entered.
  std::function<void(const QString& form)> onForm;
  /// The names that completion offers, in lower case.
  std::function<QStringList()> onNames;
  /// The history has grown.
  std::function<void()> onHistoryChanged;

  /// The names that begin with the word left of the cursor.
  [[nodiscard]] QStringList candidates() const;

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

private:
  void enter();
  /// Shows an older (-1) or newer (1) line; the line being typed follows the newest.
  void recall(int step);
  void complete();
  void replaceWord(const QString& name);
  [[nodiscard]] QString wordAtCursor() const;

  QPlainTextEdit* output_;
  QLabel* mark_;
  QLineEdit* input_;
  QCompleter* completer_;
  QStringList history_;
  qsizetype recalled_ = 0; ///< place in the history; its size while a new line is typed
  QString typed_;
  QString unfinished_; ///< earlier lines of a form that is not closed yet
};

} // namespace simhost
