// A simulated host with one empty drawing, for tests that look at the plug-in from LISP's side.
#pragma once

#include "simhost/host/session.h"
#include "simhost/ui/step_queue.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt::test {

/// Makes the windows of the sessions of a test program: without a screen, unless the program sets another maker.
using WindowsMaker =
    std::function<std::unique_ptr<simhost::AnsweredWindows>(std::vector<simhost::AnswerStep> steps)>;
[[nodiscard]] WindowsMaker& windowsMaker();

class LispSession final {
public:
  /// What the user does at each question of the test, in order.
  explicit LispSession(std::vector<simhost::AnswerStep> steps = {});

  /// Evaluates forms and returns the last value as LISP prints it; the message of a LISP error after "error: ".
  std::string eval(std::string_view forms);
  /// What was printed since the last call.
  std::string takePrinted();

  [[nodiscard]] simhost::Session& host() { return session_; }
  [[nodiscard]] simhost::AnsweredWindows& windows() { return *windows_; }

private:
  std::unique_ptr<simhost::AnsweredWindows> windows_;
  simhost::Session session_;
  std::wstring printed_;
};

/// A step in which the user presses the button of a task dialog.
[[nodiscard]] simhost::AnswerStep press(std::string_view taskDialog, int button);

} // namespace brenvolt::test
