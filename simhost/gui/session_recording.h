// The recording of the user's commands in `brenvolt-gui`, written after each command, so that it exists even if the
// program crashes.
#pragma once

#include "simhost/qt/qt_windows.h"
#include "simhost/site/command_steps.h"
#include "simhost/site/session_log.h"

#include <string>

namespace simhost {

struct SiteRunOptions;

class SessionRecording final {
public:
  /// Windows and commands must outlive it. Throws CannotWrite.
  SessionRecording(
      const std::string& file, const SiteRunOptions& site, QtWindows& windows, CommandSteps& commands);
  SessionRecording(const SessionRecording&) = delete;
  SessionRecording& operator=(const SessionRecording&) = delete;
  ~SessionRecording();

  /// The last time. Throws CannotWrite.
  void write() { log_.write(); }

private:
  CommandSteps& commands_;
  SessionLog log_;
};

} // namespace simhost
