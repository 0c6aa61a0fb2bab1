// A placed circuit opened in the configuration dialog with its choices, and its choices saved under a name. Both start
// from what the drawing keeps of the circuit (`placed_choices.h`), so the site's saved configurations may have changed.
#pragma once

#include "circuits/building/circuit_rebuild.h"

#include <string>

namespace circuits {

struct ConfigureResult {
  bool isBuilt = false; ///< false when the user has left the dialog: nothing has changed
  /// Why the configuration that the dialog has saved is not among the site's; empty when it is.
  std::string notSaved{};
};

/// Opens the dialog; OK builds the circuit again in its place as `rebuildCircuit` does, with the wires of the dialog, and
/// what the dialog saves goes to the site's saved configurations. Throws BadInput with the reasons, a line each; nothing
/// has changed then.
[[nodiscard]] ConfigureResult configureCircuit(simhost::SiteRun& run, const RebuildRequest& request);

/// Saves the circuit's choices among the site's saved configurations, in place of one of this name. The drawing is as
/// before. Throws BadInput.
void saveConfiguration(simhost::SiteRun& run, const RebuildRequest& request, const std::wstring& name);

} // namespace circuits
