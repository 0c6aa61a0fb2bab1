// Following the commands.
#include "simhost/gui/session_recording.h"

#include "simhost/host/errors.h"
#include "simhost/site/site_run.h"

namespace simhost {

namespace {

SessionRun startOf(const SiteRunOptions& site) {
  SessionRun run;
  run.drawing = site.drawing;
  run.project = site.project;
  run.language = site.language;
  return run;
}

} // namespace

SessionRecording::SessionRecording(
    const std::string& file, const SiteRunOptions& site, QtWindows& windows, CommandSteps& commands)
    : commands_(commands), log_(file, startOf(site), [&windows](const SessionRun& run) {
        windows.recorder().setRun(run);
        return windows.recording();
      }) {
  write(); // a path that cannot be written is reported before the user works in vain
  commands_.onCommand = [this](const SessionCommand& command) {
    log_.add(command);
    try {
      log_.write();
    } catch (const CannotWrite&) {
      // Reported at the end; the user's work must not be interrupted meanwhile.
    }
  };
}

SessionRecording::~SessionRecording() {
  commands_.onCommand = nullptr;
}

} // namespace simhost
