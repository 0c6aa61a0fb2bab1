// What the host needs from a window system: questions to the user, dialogs, prompts and messages. One implementation
// answers from a file, another one from a screen; the code above does not know which one runs.
#pragma once

#include "host/host_api_database.h"
#include "host/host_api_ui.h"
#include "simhost/ui/window.h"

#include <array>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace simhost {

struct TaskButton {
  int id = 0;
  std::wstring label;
};

/// A task dialog with its parameters filled in.
struct TaskQuestion {
  std::wstring key;
  std::wstring title;
  std::wstring text;
  std::vector<TaskButton> buttons;
  bool isHideable = false; ///< offers to answer the same for good
  std::vector<KdTaskDialogParameter> parameters{};

  /// A parameter's text; empty for a name that there is not.
  [[nodiscard]] std::wstring_view parameter(std::wstring_view name) const {
    for (const KdTaskDialogParameter& each : parameters)
      if (each.name == name) return each.text;
    return {};
  }
};

struct TaskAnswer {
  int button = kvui::cancel;
  bool hideForGood = false;
};

/// The user's answer to a request for one entity.
struct EntityPick {
  enum class Kind { entity, nothing, cancelled };
  Kind kind = Kind::cancelled;
  KvDbHandle handle;
  KvPoint3d point;
};

/// The host's dialog for file names, as requested by its caller.
struct FileQuestion {
  bool isSave = false;
  std::wstring defaultExtension;
  std::wstring fileName;
  std::wstring folder;
  std::vector<std::wstring> types; ///< titles of the file types
};

/// The state of an open file dialog; `type` counts from 1.
struct FileAnswer {
  bool isOk = false;
  std::wstring path;
  int type = 1;
};

/// The events of an open file dialog for its flow.
struct FileEvents {
  std::function<std::wstring(int type, const std::wstring& path)> typeChanged; ///< returns the new path
  std::function<bool(const FileAnswer&)> accept; ///< false leaves the dialog open
};

/// A dialog while it runs: its controls by role. Roles and control kinds come from the form.
class DialogWindow : public KvWindow {
public:
  /// Null for a role that the form lacks.
  [[nodiscard]] virtual KvUiControl* control(std::wstring_view role) = 0;
  virtual void setTitle(std::wstring_view title) = 0;
  virtual void setTooltips(const std::wstring& file, const std::wstring& prefix, int mode) = 0;
  /// A window without a movable bar only keeps the split.
  virtual void setSplit(const KvUiSplit& split) { split_ = split; }
  [[nodiscard]] virtual KvUiSplit split() const { return split_; }
  virtual void startTimer(int timer, int milliseconds) = 0;
  virtual void killTimer(int timer) = 0;
  virtual bool beginEditorCommand() = 0;
  virtual void completeEditorCommand() = 0;
  /// Raises the dialog's events until it is ended.
  virtual void run() = 0;

private:
  KvUiSplit split_;
};

class WindowSystem {
public:
  WindowSystem() = default;
  WindowSystem(const WindowSystem&) = delete;
  WindowSystem& operator=(const WindowSystem&) = delete;
  virtual ~WindowSystem();

  /// Where the forms of dialogs are found, one file each.
  void setFormFolder(std::filesystem::path folder) { formFolder_ = std::move(folder); }
  [[nodiscard]] const std::filesystem::path& formFolder() const { return formFolder_; }
  /// Two letters: the language of the forms' words.
  void setLanguage(std::string language) { language_ = std::move(language); }
  [[nodiscard]] const std::string& language() const { return language_; }

  [[nodiscard]] virtual TaskAnswer askTask(const TaskQuestion& question) = 0;
  [[nodiscard]] virtual EntityPick pickEntity(const std::wstring& prompt, bool emptyIsAllowed) = 0;
  [[nodiscard]] virtual FileAnswer askFile(const FileQuestion& question, const FileEvents& events) = 0;
  /// The window of a form, null when the system does not know it; the reason is then in `failure`.
  [[nodiscard]] virtual std::unique_ptr<DialogWindow> openDialog(
      const std::wstring& form, CKvUiDialog& dialog) = 0;

  /// Shown and recorded; false when the system has no screen, so that the text is printed on the command line.
  virtual bool showMessage(const std::wstring& text) = 0;
  virtual bool showHelp(const std::wstring& topic) = 0;

  /// Null without a screen.
  [[nodiscard]] virtual KvWindow* mainWindow() = 0;
  [[nodiscard]] virtual KvWindow* foregroundWindow() = 0;
  /// Null when the user cannot be asked at all.
  [[nodiscard]] virtual KvWindow* promptFrame() = 0;
  virtual void showWaitCursor(bool isShown) = 0;

  [[nodiscard]] virtual bool messageWaiting() = 0;
  /// False when the message was the request to quit.
  virtual bool pumpMessage() = 0;
  virtual void postQuit() = 0;
  /// The user has left the program: what runs ends as cancelled.
  [[nodiscard]] virtual bool hasLeft() const { return false; }
  /// A question is open: no other command may begin.
  [[nodiscard]] virtual bool isBusy() const { return false; }
  /// At the start of a new run: forgets how the previous one ended, if another one can follow.
  virtual void beginRun() {}

  /// Why the run cannot continue: a question without an answer. Empty otherwise. Every later question is cancelled at
  /// once, so that everything open ends soon.
  [[nodiscard]] virtual const std::wstring& failure() const = 0;

private:
  std::filesystem::path formFolder_ = "resources/forms";
  std::string language_ = "en";
};

/// The window system of this process, null before it is set.
[[nodiscard]] WindowSystem* windowSystem();
void setWindowSystem(WindowSystem* system);

} // namespace simhost
