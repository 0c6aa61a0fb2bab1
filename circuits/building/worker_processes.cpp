// The next piece is a counter in memory that all processes share, so a quick process does more of them.
#include "circuits/building/worker_processes.h"

#include "simhost/host/errors.h"

#include <poll.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

namespace circuits {

using simhost::CannotWrite;

namespace {

using Counter = std::atomic<std::size_t>;
static_assert(Counter::is_always_lock_free, "processes share the counter");

struct UnmapCounter {
  void operator()(Counter* counter) const { ::munmap(counter, sizeof(Counter)); }
};

std::unique_ptr<Counter, UnmapCounter> sharedCounter() {
  void* const memory =
      ::mmap(nullptr, sizeof(Counter), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw CannotWrite("no memory can be shared with a further process");
  return std::unique_ptr<Counter, UnmapCounter>(new (memory) Counter(0));
}

void send(int pipe, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(pipe, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) ::_exit(1);
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

/// How a piece has ended, in the line before its text.
constexpr char isDone = '+';
constexpr char hasFailed = '-';
constexpr char couldNotWrite = '!';

/// A line with the piece, how it ended, and the length of the text that follows.
void sendResult(int pipe, std::size_t piece, char how, const std::string& text) {
  send(
      pipe,
      std::to_string(piece) + ' ' + std::string(1, how) + ' ' + std::to_string(text.size()) + '\n' + text);
}

void doPieces(const std::vector<std::size_t>& pieces, const ProcessWork& work, Counter& next, int pipe) {
  std::function<std::string(std::size_t)> doPiece;
  for (std::size_t place = next++; place < pieces.size(); place = next++) {
    try {
      if (!doPiece) doPiece = work.begin();
      sendResult(pipe, pieces[place], isDone, doPiece(pieces[place]));
    } catch (const CannotWrite& error) {
      next = pieces.size(); // the others could not write either
      sendResult(pipe, pieces[place], couldNotWrite, error.what());
    } catch (const std::exception& error) {
      doPiece = nullptr; // what failed may not be asked again
      if (work.stopsAtFailure) next = pieces.size();
      sendResult(pipe, pieces[place], hasFailed, error.what());
    }
  }
}

struct Worker {
  pid_t process = -1;
  int pipe = -1;
  std::string bytes{};
};

Worker startWorker(const std::vector<std::size_t>& pieces, const ProcessWork& work, Counter& next) {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) throw CannotWrite("no pipe to a further process can be made");
  std::fflush(nullptr);
  const pid_t process = ::fork();
  if (process < 0) throw CannotWrite("no further process can be made");
  if (process == 0) {
    ::close(ends[0]);
    ::prctl(PR_SET_PDEATHSIG, SIGTERM); // nobody waits for pieces when the run has been ended
    // What LISP prints belongs to no single circuit's reader.
    if (std::freopen("/dev/null", "w", stdout) == nullptr) ::_exit(1);
    doPieces(pieces, work, next, ends[1]);
    ::_exit(0);
  }
  ::close(ends[1]);
  return {process, ends[0]};
}

/// Takes the results that have come whole; the reason of what cannot be written goes to `fault`.
void takeResults(std::string& bytes, const ProcessWork& work, std::string& fault) {
  std::size_t start = 0;
  for (std::size_t end = bytes.find('\n'); end != std::string::npos; end = bytes.find('\n', start)) {
    const std::string line = bytes.substr(start, end - start);
    const std::size_t blank = line.find(' ');
    const std::size_t length = std::stoul(line.substr(blank + 3));
    if (bytes.size() < end + 1 + length) break;
    std::string text = bytes.substr(end + 1, length);
    if (line[blank + 1] == couldNotWrite)
      fault = std::move(text);
    else
      work.take({std::stoul(line), line[blank + 1] == hasFailed, std::move(text)});
    start = end + 1 + length;
  }
  bytes.erase(0, start);
}

/// False at the end of a process that did not end well.
bool readWorker(Worker& worker, const ProcessWork& work, std::string& fault) {
  std::array<char, 1 << 16> buffer{};
  const ssize_t count = ::read(worker.pipe, buffer.data(), buffer.size());
  if (count < 0 && errno == EINTR) return true;
  if (count > 0) {
    worker.bytes.append(buffer.data(), static_cast<std::size_t>(count));
    takeResults(worker.bytes, work, fault);
    return true;
  }
  ::close(worker.pipe);
  worker.pipe = -1;
  int status = 0;
  ::waitpid(worker.process, &status, 0);
  return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

void runProcesses(const std::vector<std::size_t>& pieces, const ProcessWork& work) {
  if (pieces.empty()) return;
  const auto next = sharedCounter();
  const std::size_t count = std::min(pieces.size(), static_cast<std::size_t>(std::max(work.processes, 1)));
  std::vector<Worker> workers;
  for (std::size_t number = 0; number < count; ++number)
    workers.push_back(startWorker(pieces, work, *next));
  bool hasBroken = false;
  std::string fault;
  while (std::any_of(workers.begin(), workers.end(), [](const Worker& worker) { return worker.pipe >= 0; })) {
    std::vector<pollfd> waits;
    for (const Worker& worker : workers)
      waits.push_back({worker.pipe, POLLIN, 0});
    if (::poll(waits.data(), waits.size(), -1) < 0 && errno != EINTR) break;
    for (std::size_t index = 0; index < workers.size(); ++index)
      if (workers[index].pipe >= 0 && waits[index].revents != 0 && !readWorker(workers[index], work, fault))
        hasBroken = true;
  }
  if (!fault.empty()) throw CannotWrite(fault);
  if (hasBroken) throw CannotWrite("a process ended before its time; what is whole has been kept");
}

} // namespace circuits
