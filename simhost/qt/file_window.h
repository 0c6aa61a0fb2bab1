// The dialog for file names on the screen, with the flow behind it.
#pragma once

#include "simhost/qt/held_exception.h"
#include "simhost/ui/window_system.h"

#include <QFileDialog>

#include <functional>

class QLineEdit;

namespace simhost {

class FileWindow final : public QFileDialog {
public:
  /// What the user did, for the recording.
  struct Notes {
    std::function<void()> pathSet;      ///< a name was typed or chosen, before it is used
    std::function<void()> typeSet;      ///< before the flow is told
    std::function<void()> typeAnswered; ///< behind it
    std::function<void()> okPressed;    ///< before the flow is asked
  };

  FileWindow(const FileQuestion& question, const FileEvents& events, Notes notes, QWidget* parent);

  /// The name as it stands in the field; with the folder, when that is no longer the one of the question.
  [[nodiscard]] FileAnswer answer() const { return answer_; }
  /// Behind `exec`: what the flow has thrown.
  void throwOn() { thrown_.throwOn(); }
  /// Where the name is typed.
  [[nodiscard]] QLineEdit& nameField() const;

  void accept() override;

private:
  void takeType(const QString& filter);
  [[nodiscard]] std::wstring path() const;

  const FileEvents& events_;
  Notes notes_;
  FileAnswer answer_;
  HeldException thrown_;
  QString folder_; ///< at the opening
  QStringList filters_;
};

} // namespace simhost
