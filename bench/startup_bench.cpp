// Process time of the tool for a small task, beside a program that prints one line: a LISP form with the module and
// all, and the wire of one circuit. All are started in turns, and the smallest time of each counts: that is the one
// nothing else got into.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

namespace {

constexpr int rounds = 60;

struct Task {
  const char* title;
  std::vector<const char*> words;
  double allowedRatio;
};

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
  const std::vector<Task> tasks = {
      {"start, module, one form",
       {"lisp", "--settings", "/dev/null/none", "-e", "(string-append \"a\" \"b\")"},
       5.0},
      {"the wire of one circuit",
       {"wire", "--site", "site", "--fla", "52", "--voltage", "460", "--phase", "3", "--length", "250"},
       2.5},
  };
  const char* const yardstickCall[] = {yardstick.c_str(), nullptr};
  for (const Task& task : tasks) {
    std::vector<const char*> call = {tool.c_str()};
    call.insert(call.end(), task.words.begin(), task.words.end());
    call.push_back(nullptr);
    double toolTime = timeOf(call.data()); // the first one may build the site's database
    double yardstickTime = std::numeric_limits<double>::max();
    for (int round = 0; round < rounds; ++round) {
      const double ofTool = timeOf(call.data());
      const double ofYardstick = timeOf(yardstickCall);
      if (ofTool < 0.0 || ofYardstick < 0.0) {
        std::fprintf(stderr, "startup_bench: a program could not be run\n");
        return EXIT_FAILURE;
      }
      toolTime = std::min(toolTime, ofTool);
      yardstickTime = std::min(yardstickTime, ofYardstick);
    }
    std::printf(
        "%s: %.2f ms; a program that prints one line: %.2f ms; ratio %.2f, allowed %.1f\n", task.title,
        toolTime, yardstickTime, toolTime / yardstickTime, task.allowedRatio);
  }
  return EXIT_SUCCESS;
}
