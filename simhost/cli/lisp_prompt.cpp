// Reading forms line by line from a terminal or a pipe.
#include "simhost/cli/lisp_prompt.h"

#include "platform/file_replace.h"
#include "platform/shared_library.h"
#include "simhost/cli/host_run.h"
#include "simhost/host/errors.h"
#include "simhost/lisp/input.h"
#include "simhost/lisp/printer.h"
#include "text/encoding.h"
#include "text/split.h"

#include <editline/readline.h>
#include <unistd.h>

#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <optional>
#include <string>
#include <system_error>

namespace simhost {

namespace {

constexpr int rememberedLines = 1000;

volatile std::sig_atomic_t isInterrupted = 0;

/// The line editor of a terminal.
class EditLibrary final : public brenvolt::SharedLibrary {
public:
  EditLibrary() : SharedLibrary(BRENVOLT_EDIT_LIBRARY) {}

  decltype(&::add_history) add_history = find("add_history");
  decltype(&::read_history) read_history = find("read_history");
  decltype(&::readline) readline = find("readline");
  decltype(&::stifle_history) stifle_history = find("stifle_history");
  decltype(&::using_history) using_history = find("using_history");
  decltype(&::write_history) write_history = find("write_history");
};

const EditLibrary& editor() {
  static const EditLibrary library;
  return library;
}

/// Lines of the input; none at its end.
class LineSource final {
public:
  LineSource() : isTerminal_(::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0) {
    if (!isTerminal_) return;
    if (!editor().fault().empty()) throw BadInput("the prompt: " + brenvolt::toUtf8(editor().fault()));
    std::setlocale(LC_CTYPE, ""); // the width of what is typed
    editor().using_history();
    editor().stifle_history(rememberedLines);
    if (const std::filesystem::path file = historyFile(); !file.empty()) editor().read_history(file.c_str());
    // While a line is typed there is nothing to end but the line: what forms before have drawn must not go with it.
    former_ = std::signal(SIGINT, [](int) { isInterrupted = 1; });
  }
  LineSource(const LineSource&) = delete;
  LineSource& operator=(const LineSource&) = delete;
  ~LineSource() {
    if (!isTerminal_) return;
    std::signal(SIGINT, former_);
    const std::filesystem::path file = historyFile();
    if (file.empty()) return;
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    // A prompt that is killed while it ends must not take the lines of earlier days with it.
    brenvolt::FileReplacement replacement(brenvolt::fromUtf8(file.string()));
    if (replacement.fault()) return;
    editor().write_history(brenvolt::toUtf8(replacement.nameToWrite()).c_str());
    static_cast<void>(replacement.commit());
  }

  /// No line came because the user dropped the one that was being typed.
  [[nodiscard]] bool isDropped() const { return isInterrupted != 0; }
  [[nodiscard]] bool isTerminal() const { return isTerminal_; }

  [[nodiscard]] std::optional<std::string> next(const char* prompt) {
    if (!isTerminal_) {
      std::string line;
      if (!std::getline(std::cin, line)) return std::nullopt;
      return line;
    }
    std::fflush(stdout);
    isInterrupted = 0;
    char* typed = editor().readline(prompt);
    if (typed == nullptr) return std::nullopt;
    std::string line(typed);
    std::free(typed);
    if (!line.empty()) editor().add_history(line.c_str());
    return line;
  }

private:
  static std::filesystem::path historyFile() {
    if (const char* folder = std::getenv("XDG_STATE_HOME"); folder != nullptr && *folder == '/')
      return std::filesystem::path(folder) / "brenvolt" / "history";
    if (const char* home = std::getenv("HOME"); home != nullptr && *home == '/')
      return std::filesystem::path(home) / ".local" / "state" / "brenvolt" / "history";
    return {};
  }

  bool isTerminal_;
  void (*former_)(int) = SIG_DFL;
};

} // namespace

ExitCode runLispPrompt(HostRun& host) {
  LineSource lines;
  bool hasFailed = false;
  CommandLine& commandLine = host.session().commandLine();
  std::wstring text;
  for (;;) {
    const std::optional<std::string> line = lines.next(text.empty() ? "> " : ". ");
    if (!line && lines.isDropped()) {
      commandLine.printLine(L"");
      text.clear();
      continue;
    }
    if (!line) break;
    text += brenvolt::fromUtf8(*line) + L"\n";
    if (brenvolt::trimView(text).empty()) text.clear();
    if (text.empty() || !lisp::isCompleteInput(text)) continue;
    try {
      const lisp::Value value = host.runCommand(text, L"input");
      commandLine.printLine(lisp::printValue(value));
    } catch (const BadInput& error) {
      // A question without an answer ends the whole run, not only its form.
      if (host.session().isCancelled()) throw;
      std::fflush(stdout);
      std::fprintf(stderr, "brenvolt: %s\n", error.what());
      hasFailed = true;
    }
    text.clear();
  }
  if (!text.empty()) throw BadInput("input: the last form is incomplete");
  if (lines.isTerminal()) commandLine.printLine(L"");
  if (hasFailed && !lines.isTerminal()) {
    std::fprintf(stderr, "brenvolt: a form failed, so nothing is saved\n");
    return ExitCode::badInput;
  }
  host.writeResults();
  return ExitCode::done;
}

} // namespace simhost
