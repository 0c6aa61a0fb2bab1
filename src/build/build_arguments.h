// The arguments of `zan_bv_build_circuit`.
#pragma once

#include "host/host_api_database.h"
#include "host/host_api_types.h"
#include "host/result_list.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brenvolt {

struct ZanBuildArgs {
  std::wstring workbook;
  std::wstring worksheet;
  std::wstring circuit;
  std::wstring type;
  std::wstring historyName;
  std::wstring presetText;
  bool directBuild = false;
  std::wstring lastHandleText; ///< of the last entity before the template; empty: none
  double scaleA = 1.0;         ///< of the circuit
  double scaleB = 1.0;         ///< of components: the value of #scl
  double scaleC = 1.0;
  double scaleD = 1.0;
  bool trace = false;
  KvPoint3d insertPoint;
  std::int32_t undoPosition = 0;
  std::wstring codeHandleText;
  std::wstring drawingIndex;
  std::wstring wireText;
  /// The preset fields hold also where the saved configuration says something else; an empty one leaves what it says.
  bool isPresetOverHistory = false;
};

/// Parses the arguments: one list, or separate items, by position. Nothing when workbook, worksheet or handle are of a
/// wrong type, or workbook or worksheet are empty; any other wrong type is passed over. The scales, trace flag,
/// point and the rank of the preset are not among the arguments.
[[nodiscard]] std::optional<ZanBuildArgs> parseBuildArguments(const ResultList& arguments);

} // namespace brenvolt
