// Insertion runs as the dialog sees them: which units go in, what a run has brought, and what an undone one takes away.
#pragma once

#include "build/driver.h"
#include "flows/config_pages.h"

namespace brenvolt {

enum class InsertScope { current, upToCurrent, all };

enum class RunResult { succeeded, failed };

/// Whether a unit can go in with the next run: it is neither inserted nor part of a run that failed, which has to be
/// taken back first.
[[nodiscard]] bool waits(const ZanConfigUnit& unit);

/// Marks units for the next run, and no others. True when any is marked.
/// @param current may be null: then nothing is marked but with `all`
bool markUnits(const ZanConfigUnitList& units, const ZanConfigUnit* current, InsertScope scope);

/// Behind a run: new units get pages, those that ran are shown as inserted, and the tree goes on to what comes next. The
/// units of a run that failed are locked as they stand, since some of them are drawn: it can be taken back as a whole.
void adoptRun(const ZanConfigUnitList& units, ConfigPages& pages, RunResult result);

/// Takes the last run back, its new units with it. False, and nothing changed but that the run may no longer be parted
/// from the one before, when the host refuses.
[[nodiscard]] bool takeBackRun(ZanBrenvolt& build, ConfigPages& pages);

/// Takes the choices of all units that are not inserted into their markers; nothing is run.
void takeRest(ZanBrenvolt& build);

[[nodiscard]] bool isEachInserted(const ZanConfigUnitList& units);

} // namespace brenvolt
