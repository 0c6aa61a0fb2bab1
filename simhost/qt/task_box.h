// A task dialog on the screen: its text, its buttons, and the check box "do not ask again".
#pragma once

#include "simhost/qt/window_words.h"
#include "simhost/ui/window_system.h"

#include <QDialog>

class QCheckBox;

namespace simhost {

class TaskBox final : public QDialog {
public:
  TaskBox(const TaskQuestion& question, const WindowWords& words, QWidget* parent);

  /// The user's answer; a cancel until there is one.
  [[nodiscard]] TaskAnswer answer() const;

private:
  int button_ = kvui::cancel;
  QCheckBox* hide_ = nullptr; ///< null for a question that cannot be hidden
};

} // namespace simhost
