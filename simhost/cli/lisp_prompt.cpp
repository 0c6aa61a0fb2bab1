// Reading forms line by line from a terminal or a pipe.
#include "simhost/cli/lisp_prompt.h"

#include "simhost/cli/host_run.h"
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

/// Lines of the input; null at its end.
class LineSource final {
public:
  LineSource() : isTerminal_(::isatty(STDIN_FILENO) != 0 && ::isatty(STDOUT_FILENO) != 0) {
    if (!isTerminal_) return;
    std::setlocale(LC_CTYPE, ""); // the width of what is typed
    using_history();
    stifle_history(rememberedLines);
    if (const std::filesystem::path file = historyFile(); !file.empty()) read_history(file.c_str());
  }
  LineSource(const LineSource&) = delete;
  LineSource& operator=(const LineSource&) = delete;
  ~LineSource() {
    const std::filesystem::path file = isTerminal_ ? historyFile() : std::filesystem::path();
    if (file.empty()) return;
    std::error_code error;
    std::filesystem::create_directories(file.parent_path(), error);
    write_history(file.c_str());
  }

  [[nodiscard]] bool isTerminal() const { return isTerminal_; }

  [[nodiscard]] std::optional<std::string> next(const char* prompt) {
    if (!isTerminal_) {
      std::string line;
      if (!std::getline(std::cin, line)) return std::nullopt;
      return line;
    }
    std::fflush(stdout);
    char* typed = readline(prompt);
    if (typed == nullptr) return std::nullopt;
    std::string line(typed);
    std::free(typed);
    if (!line.empty()) add_history(line.c_str());
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
};

lisp::Interpreter* interruptible = nullptr;

/// While it lives, Ctrl-C ends the form that runs and not the program.
class InterruptScope final {
public:
  explicit InterruptScope(lisp::Interpreter& interpreter) {
    interruptible = &interpreter;
    former_ = std::signal(SIGINT, [](int) {
      if (interruptible != nullptr) interruptible->interrupt();
    });
  }
  InterruptScope(const InterruptScope&) = delete;
  InterruptScope& operator=(const InterruptScope&) = delete;
  ~InterruptScope() {
    std::signal(SIGINT, former_);
    interruptible = nullptr;
  }

private:
  void (*former_)(int);
};

} // namespace

ExitCode runLispPrompt(HostRun& host) {
  LineSource lines;
  bool hasFailed = false;
  CommandLine& commandLine = host.session().commandLine();
  std::wstring text;
  while (const std::optional<std::string> line = lines.next(text.empty() ? "> " : ". ")) {
    text += brenvolt::fromUtf8(*line) + L"\n";
    if (brenvolt::trimView(text).empty()) text.clear();
    if (text.empty() || !lisp::isCompleteInput(text)) continue;
    try {
      const InterruptScope scope(host.interpreter());
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
  if (!text.empty()) throw BadInput("input: a form is not closed");
  if (lines.isTerminal()) commandLine.printLine(L"");
  if (hasFailed && !lines.isTerminal()) return ExitCode::badInput;
  host.writeResults();
  return ExitCode::done;
}

} // namespace simhost
