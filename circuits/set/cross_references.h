// Cross references, each by sheet and zone: a coil names the places of its contacts, a contact that of its coil, a wire
// that goes on those where it was before and where it is next.
#pragma once

#include "circuits/netlist/netlist.h"
#include "simhost/drawing/box.h"

#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace circuits {

/// The zones of a sheet, from the variables of its frame: ZONE_COLUMNS and ZONE_ROWS over ZONE_LEFT, ZONE_BOTTOM,
/// ZONE_RIGHT, ZONE_TOP. A drawing without them has none.
class SheetZones final {
public:
  explicit SheetZones(const simhost::DrawingDatabase& frame);
  [[nodiscard]] bool exist() const { return columnWidth_ > 0.0 && rowHeight_ > 0.0; }
  /// "C5": rows have letters from the top, columns numbers from the left. Empty outside of the zones and without any.
  [[nodiscard]] std::wstring at(const KvPoint3d& point) const;

private:
  double left_ = 0.0;
  double top_ = 0.0;
  double columnWidth_ = 0.0;
  double rowHeight_ = 0.0;
  int columns_ = 0;
  int rows_ = 0;
};

/// "001.C5" for each symbol of the devices that have several, by device; the one that the others refer to comes first:
/// a coil, else the one that carries the part.
using SymbolPlaces = std::map<std::wstring, std::vector<std::wstring>>;

/// A device with several symbols, the one that the others refer to first.
struct DeviceSymbols {
  std::wstring device;
  std::vector<KvPoint3d> positions;
};
[[nodiscard]] std::vector<DeviceSymbols> symbolsOf(
    const simhost::DrawingDatabase& drawing, const Netlist& netlist);

/// Adds where these symbols are on a sheet onto which their drawing is moved by `offset`.
void addSymbolPlaces(
    SymbolPlaces& places, const std::vector<DeviceSymbols>& devices, const std::wstring& sheet,
    const SheetZones& zones, const KvPoint3d& offset);

/// The symbols where wires go on, each with its line, in drawing order.
[[nodiscard]] std::vector<std::pair<std::wstring, KvDbHandle>> lineSymbols(const Netlist& netlist);
/// Where a wire goes on: a pin of a symbol of the family of supplies. Equal lines are one supply's, such as L1 of MCC-1.
struct LineEnd {
  std::wstring line;
  KvPoint3d position;
};
/// In drawing order.
[[nodiscard]] std::vector<LineEnd> lineEndsOf(const Netlist& netlist);

/// The places of each line's ends through the set, each with the number of its sheet.
using LinePlaces = std::map<std::wstring, std::vector<std::pair<std::size_t, std::wstring>>>;
void addLinePlaces(
    LinePlaces& places, const std::vector<LineEnd>& ends, std::size_t number, const std::wstring& sheet,
    const SheetZones& zones, const KvPoint3d& offset);
/// The attribute of a supply's symbol that says where its line was before and where it is next.
inline constexpr std::wstring_view lineReferenceTag = L"XREF";
/// The room that these texts will take.
[[nodiscard]] simhost::Box lineReferenceRoom(const simhost::DrawingDatabase& drawing, const Netlist& netlist);
/// Fills the attributes of the sheet's line ends: "<001.B2 >002.B2".
void fillLineReferences(
    simhost::DrawingDatabase& sheet, const Netlist& netlist, const LinePlaces& places, std::size_t number);

/// How large the circuit's components were drawn; 1 where the drawing does not say it.
[[nodiscard]] double scaleOf(const simhost::DrawingDatabase& drawing, const std::wstring& circuit);

/// The CODE under which the texts are marked.
inline constexpr std::wstring_view referenceCode = L"XREF";
/// Draws the references of the symbols of a circuit, of all circuits without one, where they cover nothing. They belong
/// to their circuits.
void drawReferences(
    simhost::DrawingDatabase& sheet, const Netlist& netlist, const SymbolPlaces& places,
    const std::wstring& circuit = {});

} // namespace circuits
