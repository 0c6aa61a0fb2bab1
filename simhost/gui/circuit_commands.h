// Commands on a placed circuit as a whole. Each is about the selected circuit; without one it asks. What fails leaves the
// drawing as it was.
#pragma once

#include "circuits/building/circuit_rebuild.h"
#include "simhost/gui/window_services.h"
#include "simhost/site/saved_configurations.h"

namespace simhost {

class CircuitPlacing;
class CircuitSelection;
class DrawingFiles;
class DrawingView;
class ViewPicks;

class CircuitCommands final {
public:
  /// All must outlive it.
  CircuitCommands(
      const WindowServices& services, DrawingView& view, const DrawingFiles& files,
      CircuitSelection& selection, ViewPicks& picks, CircuitPlacing& placing)
      : services_(services), view_(view), files_(files), selection_(selection), picks_(picks),
        placing_(placing) {}
  CircuitCommands(const CircuitCommands&) = delete;
  CircuitCommands& operator=(const CircuitCommands&) = delete;

  void editWireSize();
  void move();
  void copy();
  void erase();
  void report();
  /// Opens the configuration dialog with the circuit's choices, and builds it again in its place.
  void configure();
  /// Saves its choices as a configuration of the site.
  void saveConfiguration();

private:
  /// Steps of a command on a circuit: returns a line that reports the change, nothing when the user cancels.
  using Steps = std::function<std::optional<QString>(
      const CommandRunner::Evaluate& evaluate, const circuits::CircuitObject& circuit)>;
  /// Runs a command on the selected circuit, or on one that the user picks.
  void run(HostText command, const Steps& steps);
  /// As `run`, for what a recording cannot contain: its steps are no LISP of the site. Refused during a recording.
  void runUnrecorded(HostText command, const Steps& steps);
  [[nodiscard]] std::string siteFolder() const;
  [[nodiscard]] circuits::RebuildRequest requestFor(
      const circuits::CircuitObject& circuit, const SiteConfigurations& site) const;

  WindowServices services_;
  DrawingView& view_;
  const DrawingFiles& files_;
  CircuitSelection& selection_;
  ViewPicks& picks_;
  CircuitPlacing& placing_;
};

} // namespace simhost
