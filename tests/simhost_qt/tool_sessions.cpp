// Joined to the tool, this file makes its sessions run in real windows.
#include "simhost/cli/host_run.h"
#include "tests/simhost_qt/piloted_windows.h"

#include <cstdlib>

namespace {

using simhost::test::PilotedWindows;
using simhost::test::RecordOf;

const bool isSet = [] {
  simhost::windowsMaker() = [](std::vector<simhost::AnswerStep> steps, std::string source) {
    const bool asPerson = std::getenv("BRENVOLT_RECORD_PERSON") != nullptr;
    return std::make_unique<PilotedWindows>(
        std::move(steps), std::move(source), asPerson ? RecordOf::person : RecordOf::pilot);
  };
  return true;
}();

} // namespace
