// Process time of `brenvolt lisp -e FORM`, module and all, beside a program that prints one line. Both are started
// in turns, and the smallest time of each counts: that is the one nothing else got into.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

namespace {

constexpr int rounds = 60;
constexpr double allowedRatio = 5.0;

/// User and system time of one run in milliseconds; below 0 when it failed.
double timeOf(const char* const* arguments) {
  const pid_t child = ::fork();
  if (child == 0) {
    const int sink = ::open("/dev/null", O_WRONLY);
    ::dup2(sink, STDOUT_FILENO);
    ::execv(arguments[0], const_cast<char* const*>(arguments));
    ::_exit(127);
  }
  int status = 0;
  rusage usage{};
  if (child < 0 || ::wait4(child, &status, 0, &usage) != child || status != 0) return -1.0;
  const auto milliseconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
  };
  return milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
}

} // namespace

int main(int count, char** words) {
  const std::string own(words[0]);
  const std::string folder = count > 1 ? words[1] : own.substr(0, own.find_last_of('/'));
  const std::string tool = folder + "/brenvolt";
  const std::string yardstick = folder + "/one_line";
  const char* const toolCall[] = {
      tool.c_str(), "lisp", "--settings", "/dev/null/none", "-e", "(string-append \"a\" \"b\")", nullptr};
  const char* const yardstickCall[] = {yardstick.c_str(), nullptr};
  double toolTime = std::numeric_limits<double>::max();
  double yardstickTime = toolTime;
  for (int round = 0; round < rounds; ++round) {
    const double ofTool = timeOf(toolCall);
    const double ofYardstick = timeOf(yardstickCall);
    if (ofTool < 0.0 || ofYardstick < 0.0) {
      std::fprintf(stderr, "startup_bench: a program could not be run\n");
      return EXIT_FAILURE;
    }
    toolTime = std::min(toolTime, ofTool);
    yardstickTime = std::min(yardstickTime, ofYardstick);
  }
  std::printf(
      "start, module, one form: %.2f ms; a program that prints one line: %.2f ms; ratio %.2f, allowed %.1f\n",
      toolTime, yardstickTime, toolTime / yardstickTime, allowedRatio);
  return EXIT_SUCCESS;
}
