// All that one build knows, from its arguments to the codes it has run. It lives for one call and holds no pointer
// into the drawing: entities are reached by handle, markers by id.
#pragma once

#include "build/build_arguments.h"
#include "build/preset_texts.h"
#include "build/undo_manager.h"
#include "config/config_units.h"
#include "drawing/annotation_rows.h"
#include "drawing/history.h"
#include "drawing/markers.h"
#include "drawing/wire_formatter.h"
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

struct BuildState {
  ZanBuildArgs args;
  KvDbHandle lastHandle;  ///< markers are looked for behind it
  std::wstring spaceName; ///< the block that receives the circuit
  BuildKind kind = BuildKind::direct;
  bool hasQuit = false;         ///< a quit message was seen: nothing more runs
  bool nestingHasEnded = false; ///< templates were nested too deep: no further nested one runs

  ZanCircuitCatalog catalog;
  ZanDwgMarkerList markers;
  ZanWireFormatter wireFormatter;
  ZanUndoManager undo;
  ZanConfigUnitList units;
  ZanConfigUnitList duplicateUnits; ///< units that repeat one of their level
  ZanXmlHistory history;

  ZanAnnotationDataList
      circuitData; ///< what the circuit carries as a whole, for markers that have none of their own
  std::vector<std::wstring> executedCodes;
  std::map<std::wstring, std::vector<std::int32_t>, CodeLess>
      selections; ///< option values by CODE; the first stays

  bool presetActive = false;
  std::vector<std::wstring> wireNumbers;
  std::vector<PresetWire> presetWires;
  std::map<std::wstring, std::vector<PresetRow>, CodeLess> presetRows;
  std::wstring controlSuffix;     ///< tail of the control marker's CODE, from its last "-" on
  bool controlMarkerSeen = false; ///< the first one fixes the suffix

  [[nodiscard]] bool isInteractive() const { return kind == BuildKind::interactive; }
};

} // namespace brenvolt
