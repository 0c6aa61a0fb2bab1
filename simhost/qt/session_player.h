// Plays the steps of an answer file in the windows, visibly, and takes pictures of them.
#pragma once

#include "simhost/qt/qt_windows.h"
#include "simhost/qt/window_pilot.h"
#include "simhost/ui/step_queue.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace simhost {

class SessionPlayer final : public DrawingPicker, private WindowPilot {
public:
  struct Options {
    /// The folder for a picture of each window when the session closes it: `<dialog>.png`, from the second one of a
    /// kind `<dialog>_2.png`. Empty for no pictures.
    std::filesystem::path pictures;
    int pause = 0; ///< milliseconds between two actions, for an observer
  };

  /// Answers instead of the user while it lives. `source` names the steps in messages; the windows must outlive it.
  SessionPlayer(QtWindows& windows, std::vector<AnswerStep> steps, std::string source, Options options);
  ~SessionPlayer() override;

  /// Why the session could not go on, empty while all is well.
  [[nodiscard]] const std::wstring& failure() const { return steps_.failure(); }
  [[nodiscard]] std::size_t unusedSteps() const { return steps_.unused(); }
  [[nodiscard]] EntityPick pickEntity(const std::wstring& prompt, bool emptyIsAllowed) override;

private:
  void drive(QtDialog& dialog) override;
  void drive(TaskBox& box, const TaskQuestion& question) override;
  void drive(FileWindow& window, DialogRecord& record) override;
  void drive(QMessageBox& box) override;

  /// Pauses for the observer, then takes the picture, which replaces an earlier one with the same name.
  void show(QWidget& window, const std::string& name);
  void waitForPreview();
  /// The name of the next window of a kind.
  [[nodiscard]] std::string nameOfNext(const std::string& kind);
  void tellFailure();

  QtWindows& windows_;
  StepQueue steps_;
  Options options_;
  std::map<std::string, int> opened_; ///< windows of each kind so far
};

} // namespace simhost
