// Numbers that only a whole set can give: terminals that go on from sheet to sheet, and contacts of one device that
// differ.
#pragma once

#include "circuits/netlist/netlist.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace circuits {

/// The attributes with the numbers of terminals, each with its strip, in drawing order.
[[nodiscard]] std::vector<std::pair<KvDbHandle, std::wstring>> terminalNumbers(
    const simhost::DrawingDatabase& drawing);
/// Gives the terminals of each strip the numbers after the last one that the strip has had, in drawing order.
void numberTerminals(simhost::DrawingDatabase& drawing, std::map<std::wstring, int> last);

/// The text of an attribute; empty for a symbol without it.
[[nodiscard]] std::wstring attributeText(
    const simhost::DrawingDatabase& drawing, KvDbHandle symbol, std::wstring_view tag);
/// Gives an attribute a text; a symbol without it stays as it is.
void setAttribute(
    simhost::DrawingDatabase& drawing, KvDbHandle symbol, std::wstring_view tag, const std::wstring& text);

/// Contacts of one device that bear the same numbers are counted: of 13 and 14 the second one becomes 23 and 24, the
/// third 33 and 34, in drawing order. Numbers of other forms stay. Of the netlist, the numbers of pins are not true any
/// more then, all else is.
void numberContacts(simhost::DrawingDatabase& drawing, const Netlist& netlist);

/// An end of a wire that meets nothing: it goes on elsewhere.
struct FreeEnd {
  std::wstring number; ///< of its net, empty where the drawing shows none
  KvPoint3d position;
  double degrees = 0.0; ///< of the direction in which the wire leaves
  std::wstring colour;
  std::wstring size;
};
/// In the order of the circuit's nets.
[[nodiscard]] std::vector<FreeEnd> freeEnds(
    const simhost::DrawingDatabase& drawing, const Netlist& netlist, const std::wstring& circuit);

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
