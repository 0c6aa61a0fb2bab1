// Records the commands of a session while it runs, so that its recording can be replayed. A drawing that was
// overwritten after it was opened, and a changed project, are kept next to the recording in their former state.
#pragma once

#include "simhost/ui/session_file.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace simhost {

class SessionLog final {
public:
  /// Makes the text of the recording when the run is known.
  using Recording = std::function<std::string(const SessionRun& run)>;

  /// `file`: the path of the recording. `run`: known members; paths are relative to the working directory.
  SessionLog(std::filesystem::path file, SessionRun run, Recording recording);

  void add(const SessionCommand& command);
  /// Writes the present recording and the drawings that it needs. Throws CannotWrite.
  void write();

private:
  /// A drawing as it was when it was opened.
  struct Opened {
    std::string SessionRun::*first = nullptr; ///< the one of the start; else
    std::size_t command = 0;                  ///< the one that this command opened
    std::string bytes;
  };
  void open(Opened place);
  [[nodiscard]] static std::string& fileOf(SessionRun& run, const Opened& place);

  std::filesystem::path file_;
  SessionRun run_;
  Recording recording_;
  std::vector<Opened> opened_;
};

} // namespace simhost
