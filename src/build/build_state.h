// The data of one build: its input, its progress, and its result. It lives for one call and holds no pointer into the
// drawing: entities are found by handle, markers by id.
#pragma once

#include "build/build_arguments.h"
#include "build/preset_texts.h"
#include "build/undo_manager.h"
#include "config/config_units.h"
#include "config/widget_manager_maker.h"
#include "data/table_watch.h"
#include "drawing/annotation_rows.h"
#include "drawing/history.h"
#include "drawing/markers.h"
#include "project/circuit_list.h"
#include "text/compare.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace brenvolt {

/// CODEs are the same without case.
struct CodeLess {
  using is_transparent = void;
  bool operator()(std::wstring_view left, std::wstring_view right) const {
    return compareOrdinalNoCase(left, right) < 0;
  }
};

/// A component's catalogue data for a marker: the texts in the order of the query.
using PresetRow = std::vector<std::wstring>;

enum class BuildKind {
  direct,
  interactive, ///< followed by the configuration dialog
};

/// The contents of the arguments' preset fields.
struct BuildPresets {
  bool active = false;
  std::vector<std::wstring> wireNumbers;
  std::vector<PresetWire> wires;
  std::map<std::wstring, std::vector<PresetRow>, CodeLess> rows; ///< of placed components, by CODE
};

/// The input of a build. Complete before its rows run, and not changed by them.
struct BuildInput {
  ZanBuildArgs args;
  KvDbHandle lastHandle; ///< markers are searched for after it
  BuildPresets presets;
};

/// The result passed to LISP at the end.
struct BuildResult {
  std::vector<std::wstring> executedCodes;
  std::map<std::wstring, std::vector<std::int32_t>, CodeLess>
      selections; ///< option values by CODE; the first stays
};

/// What outlives a build. The handler lends it: nothing below a handler looks for it.
struct LentValues {
  CircuitContext& circuit; ///< the current circuit
  LentTables tables;
  std::int32_t& lastMarkerId;
};

/// How far a build has come.
struct BuildState {
  /// Both must outlive the build.
  BuildState(const BuildInput& asked, const LentValues& lent)
      : input(asked), circuit(lent.circuit), tables(lent.tables), markers(lent.lastMarkerId),
        maker(lent.circuit, lent.tables) {}

  const BuildInput& input;
  CircuitContext& circuit;
  LentTables tables;
  std::wstring spaceName; ///< the block that receives the circuit
  BuildKind kind = BuildKind::direct;
  bool hasQuit = false; ///< a quit message was seen: nothing more runs
  /// The user wants the other markers run after one has failed. The build counts as failed nevertheless.
  bool goesOnAfterFailure = false;
  bool nestingHasEnded = false; ///< templates were nested too deep: no further nested one runs

  ZanCircuitCatalog catalog;
  ZanDwgMarkerList markers;
  ZanUndoManager undo;
  ZanConfigUnitList units;
  ZanConfigUnitList duplicateUnits; ///< units that repeat one of their level
  ZanWidgetManagerMaker maker;      ///< of the units' managers; keeps the wire positions of all templates
  ZanXmlHistory history;
  HistoryEntry
      entry; ///< what a save stores; its name is that of the configuration that was opened or saved last

  ZanAnnotationDataList
      circuitData; ///< what the circuit carries as a whole, for markers that have none of their own
  std::wstring controlSuffix;     ///< tail of the control marker's CODE, from its last "-" on
  bool controlMarkerSeen = false; ///< the first one fixes the suffix
  /// The preset's motor or load is another one than that of the saved configuration, whose parts were chosen for it.
  bool hasOtherLoad = false;

  BuildResult result;

  [[nodiscard]] bool isInteractive() const { return kind == BuildKind::interactive; }
};

} // namespace brenvolt
