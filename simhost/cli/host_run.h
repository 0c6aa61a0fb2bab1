// One run of the host for a subcommand: the options that all such subcommands share, a session with the plug-in
// loaded and a document open, and what is written at the end.
#pragma once

#include "simhost/cli/command_table.h"
#include "simhost/site/session_log.h"
#include "simhost/site/site_run.h"
#include "simhost/ui/step_queue.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace simhost {

struct HostOptions {
  std::string site;     ///< folder with site.lsp
  std::string database; ///< engineering tables in place of the site's own
  std::string drawing;  ///< opened instead of an empty one
  std::string answers;
  std::string record;
  std::string save;
  std::string svg;
  std::string settings;
  std::string module;
  std::string language;

  [[nodiscard]] OptionRows rows();
};

/// The option --module.
[[nodiscard]] OptionRow moduleRow(std::string& module);

/// Creates the windows of a run: without a screen, unless another maker is set before.
using WindowsMaker =
    std::function<std::unique_ptr<AnsweredWindows>(std::vector<AnswerStep> steps, std::string source)>;
[[nodiscard]] WindowsMaker& windowsMaker();

class HostRun final {
public:
  /// Reads answers and drawing, loads the module and the site. Throws BadInput, and CannotWrite when a file of the
  /// options cannot be written at the end.
  explicit HostRun(const HostOptions& options);

  [[nodiscard]] SiteRun& site() { return *site_; }
  [[nodiscard]] AnsweredWindows& windows() { return *windows_; }
  [[nodiscard]] Session& session() { return site_->session(); }
  [[nodiscard]] lisp::Interpreter& interpreter() { return site_->interpreter(); }

  /// Runs a LISP text; a LISP error and a run that was ended throw BadInput.
  lisp::Value run(std::wstring_view text, std::wstring_view fileName);
  /// Calls a LISP function with arguments that are values already.
  lisp::Value call(std::wstring_view function, std::span<const lisp::Value> arguments);
  /// The same as `run`, as one more command of the recorded session.
  lisp::Value runCommand(std::wstring_view text, std::wstring_view fileName);

  /// Makes the recording a session that `replay` can run. The paths of `run` lead from the working directory.
  void recordAsSession(const SessionRun& run);
  /// Writes drawing and picture as requested, and the recording once more: it needs the opened drawing, which may be
  /// the one that is written. Throws CannotWrite.
  void writeResults();
  /// Writes the recording, also of a failed run: it shows the question without an answer. Throws CannotWrite.
  void writeRecording();

private:
  HostOptions options_;
  std::unique_ptr<AnsweredWindows> windows_;
  std::unique_ptr<SiteRun> site_;
  std::optional<SessionLog> log_; ///< of a recording that is a session
};

/// What a session file runs. Throws BadInput, also for an answer file without a run.
[[nodiscard]] SessionRun readSession(const std::string& file);

} // namespace simhost
