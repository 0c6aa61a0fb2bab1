#include "platform/guarded_child.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>

namespace brenvolt::tables {

namespace {

constexpr std::size_t chunkSize = 65536;
/// A length in a stream that a crashing child garbled must not make the parent ask for all memory.
constexpr std::int64_t longestText = std::int64_t{1} << 31;

/// What a library prints or dumps about a damaged file is of no use to anybody.
void silence() {
  const int nowhere = open("/dev/null", O_RDWR);
  if (nowhere >= 0) {
    dup2(nowhere, STDIN_FILENO);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
  }
  const rlimit noCore{0, 0};
  setrlimit(RLIMIT_CORE, &noCore);
  for (const int signalNumber : {SIGPIPE, SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGTERM, SIGINT}) {
    std::signal(signalNumber, SIG_DFL);
  }
}

} // namespace

void ChildWriter::byte(char value) {
  put(&value, 1);
}

void ChildWriter::integer(std::int64_t value) {
  put(&value, sizeof value);
}

void ChildWriter::text(std::string_view value) {
  integer(static_cast<std::int64_t>(value.size()));
  put(value.data(), value.size());
}

void ChildWriter::put(const void* data, std::size_t size) {
  buffer_.append(static_cast<const char*>(data), size);
  if (buffer_.size() >= chunkSize) flush();
}

void ChildWriter::flush() {
  std::size_t written = 0;
  while (written < buffer_.size()) {
    const ssize_t count = write(descriptor_, buffer_.data() + written, buffer_.size() - written);
    if (count < 0 && errno == EINTR) continue;
    // Nobody listens any more.
    if (count <= 0) _exit(1);
    written += static_cast<std::size_t>(count);
  }
  buffer_.clear();
}

bool ChildReader::byte(char& value) {
  return take(&value, 1);
}

bool ChildReader::integer(std::int64_t& value) {
  return take(&value, sizeof value);
}

bool ChildReader::text(std::string& value) {
  std::int64_t size = 0;
  if (!integer(size)) return false;
  if (size < 0 || size > longestText) {
    reason_ = L"it is damaged";
    return false;
  }
  value.resize(static_cast<std::size_t>(size));
  return take(value.data(), value.size());
}

bool ChildReader::take(void* data, std::size_t size) {
  auto* target = static_cast<char*>(data);
  while (size > 0) {
    if (at_ == buffer_.size() && !fill()) return false;
    const std::size_t part = std::min(size, buffer_.size() - at_);
    std::memcpy(target, buffer_.data() + at_, part);
    at_ += part;
    target += part;
    size -= part;
  }
  return true;
}

bool ChildReader::fill() {
  pollfd wait{descriptor_, POLLIN, 0};
  int ready = 0;
  do {
    ready = poll(&wait, 1, limits_.silenceMilliseconds);
  } while (ready < 0 && errno == EINTR);
  if (ready <= 0) {
    reason_ = L"it is damaged: reading it does not end";
    return false;
  }
  std::array<char, chunkSize> chunk{};
  const ssize_t count = read(descriptor_, chunk.data(), chunk.size());
  if (count <= 0) {
    reason_ = L"it is damaged: reading it broke off";
    return false;
  }
  taken_ += static_cast<std::uint64_t>(count);
  if (taken_ > limits_.bytes) {
    reason_ = L"it is damaged: it seems to contain more than its size allows";
    return false;
  }
  buffer_.assign(chunk.data(), static_cast<std::size_t>(count));
  at_ = 0;
  return true;
}

bool runGuarded(
    const ChildLimits& limits, const std::function<void(ChildWriter&)>& work,
    const std::function<void(ChildReader&)>& receive, std::wstring& error) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    error = L"no pipe for the reading process";
    return false;
  }
  const pid_t child = fork();
  if (child < 0) {
    close(ends[0]);
    close(ends[1]);
    error = L"the reading process cannot be started";
    return false;
  }
  if (child == 0) {
    close(ends[0]);
    silence();
    ChildWriter writer(ends[1]);
    work(writer);
    writer.flush();
    // Not `exit`: the parent's open files and databases are not the child's to close.
    _exit(0);
  }
  close(ends[1]);
  {
    ChildReader reader(ends[0], limits);
    receive(reader);
  }
  close(ends[0]);
  kill(child, SIGKILL);
  while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
  }
  return true;
}

} // namespace brenvolt::tables
