// Insertion runs of the dialog: which units are inserted, what a run has added, and what undoing it removes.
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

/// After a run: new units get pages, those that ran are shown as inserted, and the tree selects the next one. The
/// units of a failed run are locked unchanged, since some of them are drawn: the run can be undone as a whole.
void adoptRun(const ZanConfigUnitList& units, ConfigPages& pages, RunResult result);

/// Undoes the last run with its new units. False when the host refuses; then nothing is changed except that the run
/// can no longer be separated from the previous one.
[[nodiscard]] bool takeBackRun(ZanBrenvolt& build, ConfigPages& pages);

/// Takes the choices of all units that are not inserted into their markers; nothing is run.
void takeRest(ZanBrenvolt& build);

[[nodiscard]] bool isEachInserted(const ZanConfigUnitList& units);

} // namespace brenvolt
