// Joined to the tests of controls and gestures, this file makes their dialog run in real windows.
#include "tests/simhost_qt/piloted_windows.h"
#include "tests/simhost_ui/test_dialogs.h"

namespace {

const bool isSet = [] {
  simhost::windowsMaker() = [](std::vector<simhost::AnswerStep> steps, std::string source) {
    return std::make_unique<simhost::test::PilotedWindows>(std::move(steps), std::move(source));
  };
  return true;
}();

} // namespace
