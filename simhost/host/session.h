// One run of the host: everything that outlives a call, in one place. The functions of the host's face find it
// through `Session::current()`.
#pragma once

#include "simhost/host/circuit_recorder.h"
#include "simhost/host/command_line.h"
#include "simhost/host/documents.h"
#include "simhost/host/errors.h"
#include "simhost/host/function_registry.h"
#include "simhost/host/inserted_drawings.h"
#include "simhost/host/module_loader.h"
#include "simhost/host/resource_module.h"
#include "simhost/host/user_settings.h"
#include "simhost/ui/window_system.h"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace simhost {

struct SessionOptions {
  /// Where LISP of the site looks for files; empty for none.
  std::filesystem::path siteFolder;
  /// Holds one folder for each resource module.
  std::filesystem::path resourceFolder = defaultResourceFolder();
  /// Two letters; English fills what the language lacks.
  std::string language = "en";
  /// Empty keeps the user's settings in memory only.
  std::filesystem::path settingsFile;
};

class Session final {
public:
  /// One session at a time. The windows must outlive it.
  Session(SessionOptions options, WindowSystem& windows);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session();

  /// Null while there is none.
  [[nodiscard]] static Session* current();

  [[nodiscard]] const SessionOptions& options() const { return options_; }
  /// From now on texts and forms are in this language. Throws BadInput for damaged texts, and nothing has changed.
  void chooseLanguage(const std::string& language);
  [[nodiscard]] CommandLine& commandLine() { return commandLine_; }
  [[nodiscard]] WindowSystem& windows() { return windows_; }
  [[nodiscard]] DocumentManager& documents() { return documents_; }
  [[nodiscard]] FunctionRegistry& functions() { return functions_; }
  [[nodiscard]] CircuitRecorder& circuits() { return circuits_; }
  [[nodiscard]] ResourceLibrary& resources() { return resources_; }
  [[nodiscard]] UserSettings& settings() { return settings_; }
  [[nodiscard]] ModuleLoader& modules() { return modules_; }

  /// Opens a new document, gives its LISP the functions of host and drawing, and notifies the modules. It is then
  /// current and active. `fileName` may be empty.
  Document& openDocument(std::wstring fileName, std::unique_ptr<DrawingDatabase> drawing);

  /// The file with this name: in the site's folder, else as given. Empty when it does not exist.
  [[nodiscard]] std::filesystem::path findFile(std::wstring_view name) const;

  /// Ends the running LISP: after the native code has returned, no form continues.
  void cancelRun() { isCancelled_ = true; }
  /// Cancelled, or a question had no answer.
  [[nodiscard]] bool isCancelled() const {
    return isCancelled_ || windows_.hasLeft() || !windows_.failure().empty();
  }
  void endIfCancelled() const {
    if (isCancelled()) throw lisp::Cancelled();
  }
  /// At the start of a new run.
  void clearCancel() { isCancelled_ = false; }

  /// Why the last call from native code into LISP failed; empty when it went through.
  [[nodiscard]] const std::wstring& callError() const { return callError_; }
  void setCallError(std::wstring error) { callError_ = std::move(error); }

  /// An answer that a task dialog gets without being shown; `note` sees the question.
  struct StandingAnswer {
    int button = 0;
    std::function<void(const TaskQuestion&)> note;
  };
  void answerAlways(std::wstring_view key, StandingAnswer answer) {
    standingAnswers_[std::wstring(key)] = std::move(answer);
  }
  /// Null for a dialog that is to be shown.
  [[nodiscard]] const StandingAnswer* standingAnswer(std::wstring_view key) const {
    const auto found = standingAnswers_.find(key);
    return found == standingAnswers_.end() ? nullptr : &found->second;
  }

private:
  SessionOptions options_;
  WindowSystem& windows_;
  CommandLine commandLine_;
  UserSettings settings_;
  ResourceLibrary resources_;
  CircuitRecorder circuits_;
  FunctionRegistry functions_;
  InsertedDrawings insertedDrawings_;
  DocumentManager documents_;
  ModuleLoader modules_;
  bool isCancelled_ = false;
  std::wstring callError_;
  std::map<std::wstring, StandingAnswer, std::less<>> standingAnswers_;
};

} // namespace simhost
