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
  write(); // a place that cannot be written is told before somebody works for nothing
  commands_.onCommand = [this](const SessionCommand& command) {
    log_.add(command);
    try {
      log_.write();
    } catch (const CannotWrite&) {
      // The end tells it; nobody is to be kept from his work meanwhile.
    }
  };
}

SessionRecording::~SessionRecording() {
  commands_.onCommand = nullptr;
}

} // namespace simhost
