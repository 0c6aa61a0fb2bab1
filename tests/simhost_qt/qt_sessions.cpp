// Joined to a test program of dialogs, this file makes its sessions run in real windows.
#include "tests/simhost_qt/piloted_windows.h"
#include "tests/support/lisp_session.h"

namespace {

const bool isSet = [] {
  brenvolt::test::windowsMaker() = [](std::vector<simhost::AnswerStep> steps) {
    return std::make_unique<simhost::test::PilotedWindows>(std::move(steps), "the test");
  };
  return true;
}();

} // namespace
