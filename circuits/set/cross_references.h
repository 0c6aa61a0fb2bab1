// Cross references: a coil names the places of its contacts, a contact that of its coil, each by sheet and zone.
#pragma once

#include "circuits/netlist/netlist.h"

#include <map>
#include <string>
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
[[nodiscard]] std::vector<DeviceSymbols> symbolsOf(const simhost::DrawingDatabase& drawing);

/// Adds where these symbols are on a sheet onto which their drawing is moved by `offset`.
void addSymbolPlaces(
    SymbolPlaces& places, const std::vector<DeviceSymbols>& devices, const std::wstring& sheet,
    const SheetZones& zones, const KvPoint3d& offset);

/// The CODE under which the texts are marked.
inline constexpr std::wstring_view referenceCode = L"XREF";
/// Draws the references of the symbols of a circuit, of all circuits without one, where they cover nothing. They belong
/// to their circuits.
void drawReferences(
    simhost::DrawingDatabase& sheet, const SymbolPlaces& places, const std::wstring& circuit = {});

} // namespace circuits
