// Numbers that only a whole set can give: terminals that go on from sheet to sheet, and contacts of one device that
// differ.
#pragma once

#include "circuits/netlist/netlist.h"

#include <map>
#include <string>
#include <vector>

namespace circuits {

/// Gives the terminals of each strip the numbers after those that the strip has had, in drawing order. `last` holds the
/// last number of each strip and is counted on.
void numberTerminals(simhost::DrawingDatabase& drawing, std::map<std::wstring, int>& last);

/// Contacts of one device that bear the same numbers are counted: of 13 and 14 the second one becomes 23 and 24, the
/// third 33 and 34, in drawing order. Numbers of other forms stay.
void numberContacts(simhost::DrawingDatabase& drawing);

/// What a site labels: the wires of one layer of a net.
struct NetLabel {
  std::wstring number{};    ///< empty where the drawing shows none and the net should have one
  bool needsNumber = false; ///< once for each net
  KvPoint3d place{};        ///< the middle of the longest wire, a level one where there is any
  bool isLevel = true;      ///< that wire runs from left to right
  std::wstring colour{};
  std::wstring size{};
  std::vector<simhost::Line> wires{}; ///< that wire first
};

/// The nets of a circuit in the order of their first wires, for a site's LISP to number and to label. A net that has
/// wires of several layers has a label for each, since each has its own size and colour.
[[nodiscard]] std::vector<NetLabel> netLabels(
    const simhost::DrawingDatabase& drawing, const Netlist& netlist, const std::wstring& circuit);

} // namespace circuits
