// The LISP prompt at a terminal: editing a line, calling a former one back, and leaving.
#include "tool.h"

#include <doctest/doctest.h>

#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <string>

using brenvolt::ToolFolder;

namespace {

/// The tool with a pseudo-terminal for its streams, its home in a folder of the test.
class Terminal final {
public:
  explicit Terminal(const ToolFolder& home) {
    const std::string tool = brenvolt::toolPath();
    const std::string folder = home.path("");
    child_ = ::forkpty(&terminal_, nullptr, nullptr, nullptr);
    if (child_ != 0) return;
    ::setenv("HOME", folder.c_str(), 1);
    ::setenv("TERM", "vt100", 1);
    ::unsetenv("XDG_STATE_HOME");
    ::execl(tool.c_str(), "brenvolt", "lisp", static_cast<char*>(nullptr));
    ::_exit(127);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal() {
    if (isOpen()) ::close(terminal_);
  }

  /// Some containers have no pseudo-terminals.
  [[nodiscard]] bool isOpen() const { return child_ > 0; }

  void type(const std::string& keys) const {
    REQUIRE_EQ(::write(terminal_, keys.data(), keys.size()), static_cast<ssize_t>(keys.size()));
  }

  /// Reads until the screen has this text after the previous one; false when it does not appear within `patience`
  /// milliseconds.
  [[nodiscard]] bool shows(const std::string& text, int patience = 20000) {
    while (screen_.find(text, seen_) == std::string::npos) {
      pollfd wait{terminal_, POLLIN, 0};
      char bytes[512];
      if (::poll(&wait, 1, patience) <= 0) return false;
      const ssize_t count = ::read(terminal_, bytes, sizeof bytes);
      if (count <= 0) return false;
      screen_.append(bytes, static_cast<std::size_t>(count));
    }
    seen_ = screen_.find(text, seen_) + text.size();
    return true;
  }

  /// The same for a prompt, with the line editor ready: it shows its prompt before it takes over the terminal, and
  /// input in between is lost.
  [[nodiscard]] bool prompts(const std::string& text) {
    constexpr int hundredthsOfPatience = 2000;
    if (!shows(text)) return false;
    for (int hundredth = 0; hundredth < hundredthsOfPatience; ++hundredth) {
      termios state{};
      if (::tcgetattr(terminal_, &state) == 0 && (state.c_lflag & ICANON) == 0) return true;
      ::usleep(10'000);
    }
    return false;
  }

  /// Ends the input; the exit code of the tool, -1 when it does not leave.
  [[nodiscard]] int leave() {
    constexpr int tenthsOfPatience = 200;
    for (int tenth = 0; tenth < tenthsOfPatience; ++tenth) {
      // Repeated each second, after an empty line: the line editor shows its prompt before it takes over the terminal,
      // and an end of input in between becomes a character of the line.
      if (tenth % 10 == 0) (void)!::write(terminal_, "\n\x04", 2);
      while (shows("\n", 100)) {
      }
      int status = 0;
      if (::waitpid(child_, &status, WNOHANG) == child_) return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
      ::usleep(10'000); // between the terminal's end and the process's
    }
    ::kill(child_, SIGKILL);
    ::waitpid(child_, nullptr, 0);
    return -1;
  }

private:
  int terminal_ = -1;
  pid_t child_ = -1;
  std::string screen_;
  std::size_t seen_ = 0;
};

const std::string up = "\x1b[A";
const std::string left = "\x1b[D";
const std::string interrupt = "\x03";

} // namespace

TEST_CASE("at a terminal a line can be edited and called back, also by the next start") {
  const ToolFolder home;
  {
    Terminal terminal(home);
    if (!terminal.isOpen()) {
      MESSAGE("skipped: this machine has no pseudo-terminals");
      return;
    }
    REQUIRE(terminal.prompts("> "));
    terminal.type("(* 6 )" + left + "7\n");
    CHECK(terminal.prompts("42\r\n> "));
    terminal.type("(+ 1\n");
    CHECK(terminal.prompts(". "));
    terminal.type("(3");
    CHECK(terminal.shows("(3"));
    terminal.type(interrupt); // drops what was typed
    CHECK(terminal.prompts("\r\n> "));
    terminal.type("(+ 1\n");
    CHECK(terminal.prompts(". "));
    terminal.type("2)\n");
    CHECK(terminal.prompts("3\r\n> "));
    terminal.type("(progn (print (+ 40 1)) (princ \"\\n\") (while T (setq a 1)))\n");
    CHECK(terminal.shows("41"));
    terminal.type(interrupt);
    CHECK(terminal.shows("interrupted"));
    CHECK(terminal.prompts("> "));
    terminal.type("(car 5)\n"); // a fault is reported and does not end the prompt
    CHECK(terminal.shows("input:1"));
    CHECK(terminal.prompts("> "));
    CHECK_EQ(terminal.leave(), 0);
  }
  Terminal terminal(home);
  REQUIRE(terminal.prompts("> "));
  terminal.type(up + up + up + up + up + up + "\n");
  CHECK(terminal.prompts("42\r\n> "));
  CHECK_EQ(terminal.leave(), 0);
}
