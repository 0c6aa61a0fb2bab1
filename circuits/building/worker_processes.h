// Work for several processes: this one hands out pieces by number, the others send back a text for each. A piece does not
// know which process does it, so the results are the same whatever the number of processes.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace circuits {

struct PieceResult {
  std::size_t piece = 0;
  bool hasFailed = false;
  std::string text; ///< the answer, or why it failed
};

struct ProcessWork {
  /// Called in each process before its first piece, and after one that failed; what it returns does a piece. Both may
  /// throw.
  std::function<std::function<std::string(std::size_t)>()> begin;
  /// Called in this process, in the order in which the pieces become ready.
  std::function<void(PieceResult)> take;
  int processes = 1;
  bool stopsAtFailure = true; ///< then nothing more is begun after one
};

/// Does all pieces. Throws CannotWrite when a process cannot be made, ends by itself, or cannot write: nothing more is
/// begun then.
void runProcesses(const std::vector<std::size_t>& pieces, const ProcessWork& work);

} // namespace circuits
