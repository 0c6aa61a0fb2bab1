// The dialog for file names on the screen, with its flow.
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
    std::function<void()> typeSet;      ///< before the flow is notified
    std::function<void()> typeAnswered; ///< afterwards
    std::function<void()> okPressed;    ///< before the flow is called
  };

  FileWindow(const FileQuestion& question, const FileEvents& events, Notes notes, QWidget* parent);

  /// The name in the field; with the folder, if the user has changed it.
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
