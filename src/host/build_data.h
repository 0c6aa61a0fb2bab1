// The settings that the parent product's LISP keeps in one symbol for a circuit: its position, its four scales, the
// trace flag and the workbook.
#pragma once

#include "host/host_api_types.h"

#include <string>

namespace brenvolt {

/// In LISP: (name point scaleA scaleD scaleC scaleB trace workbook). The order of the scales is that of LISP.
struct BuildData {
  KvPoint3d point;
  double scaleA = 1.0; ///< of the circuit
  double scaleD = 1.0;
  double scaleC = 1.0;
  double scaleB = 1.0; ///< of components
  bool trace = false;
  std::wstring workbook;
};

/// Reads the symbol by element position; a nested list is one element. An element of an unexpected type leaves its
/// field unchanged, and so do missing elements for trace and workbook. Returns false, with `data` untouched, when the
/// symbol is not a list or ends before its fourth scale.
[[nodiscard]] bool readBuildData(BuildData& data);

/// Writes name, scales and trace flag back into the symbol; all other elements stay, and a missing trace flag is added.
/// A symbol that is not a list becomes (name nil scaleA scaleD scaleC scaleB trace); so does one whose value cannot be
/// passed on, which is reported on the command line. False, with the symbol untouched, when the list has not all four
/// scales or the host refuses.
[[nodiscard]] bool writeBuildData(const std::wstring& name, const BuildData& data);

} // namespace brenvolt
