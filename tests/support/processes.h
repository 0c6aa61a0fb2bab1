// Work in processes of its own: what happens when several programs are at it, and when one is killed.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace brenvolt::test {

/// What the work returns is the exit code.
template <class Work>
pid_t startProcess(Work work) {
  const pid_t child = ::fork();
  if (child == 0) ::_exit(work());
  return child;
}

/// The exit code; -1 for a process that was killed.
inline int waitFor(pid_t child) {
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace brenvolt::test
