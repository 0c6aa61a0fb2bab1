// Reading devices with several symbols, and writing beside each where the others are.
#include "circuits/set/cross_references.h"

#include "circuits/set/label_places.h"
#include "circuits/set/numbering.h"
#include "simhost/drawing/display_list.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

namespace circuits {

using simhost::Box;
using simhost::DrawingDatabase;
using simhost::Text;

namespace {

constexpr double textHeight = 1.5;
constexpr std::wstring_view referenceLayer = L"CROSS_REFERENCES";
constexpr double gap = 0.6;

double numberOf(const DrawingDatabase& drawing, std::wstring_view name) {
  const simhost::VariableValue* value = drawing.variable(name);
  if (value == nullptr) return 0.0;
  if (const double* real = std::get_if<double>(value)) return *real;
  const auto* integer = std::get_if<std::int32_t>(value);
  return integer == nullptr ? 0.0 : *integer;
}

std::wstring keyOf(const Device& device) {
  return device.tag + L'\n' + device.installation + L'\n' + device.location;
}

/// Equal for the ends of one line of one supply.
std::wstring lineOf(const Netlist& netlist, const Pin& pin) {
  return keyOf(netlist.devices[pin.device]) + L'\n' + pin.number;
}

KvPoint3d insertionPoint(const DrawingDatabase& drawing, KvDbHandle symbol) {
  return std::get<simhost::BlockReference>(drawing.find(symbol)->value.shape).position;
}

/// The symbols of a device, the one that the others refer to first.
std::vector<KvDbHandle> orderedSymbols(const Netlist& netlist, std::size_t device) {
  std::vector<KvDbHandle> symbols = netlist.devices[device].symbols;
  const auto isCoil = [&](KvDbHandle symbol) {
    return std::any_of(netlist.pins.begin(), netlist.pins.end(), [&](const Pin& pin) {
      return pin.device == device && pin.symbol == symbol && pin.number == L"A1";
    });
  };
  std::stable_partition(symbols.begin(), symbols.end(), isCoil);
  return symbols;
}

bool hasReferences(const Device& device) {
  return !device.tag.empty() && device.family != terminalFamily && device.family != sourceFamily &&
         device.symbols.size() > 1;
}

/// Below, above and beside what a symbol shows.
std::vector<Text> candidatesAround(const Box& box, const std::wstring& text, double scale) {
  const double height = textHeight * scale;
  const double middle = (box.left + box.right) / 2.0;
  const double half = (box.bottom + box.top) / 2.0;
  const auto at = [&](double x, double y, simhost::Justification justification) {
    return Text{{x, y, 0.0}, text, height, 0.0, justification};
  };
  using simhost::Justification;
  std::vector<Text> candidates;
  const double near = gap * scale;
  const auto aboveAndBelow = [&](double step) {
    candidates.push_back(at(middle, box.bottom - near - height - step, Justification::centre));
    candidates.push_back(at(middle, box.top + near + step, Justification::centre));
  };
  aboveAndBelow(0.0);
  candidates.push_back(at(box.right + near, box.bottom - near - height, Justification::left));
  candidates.push_back(at(box.left - near, box.bottom - near - height, Justification::right));
  candidates.push_back(at(box.right + near, half, Justification::left));
  candidates.push_back(at(box.left - near, half, Justification::right));
  for (const double step : {1.5, 3.0})
    aboveAndBelow(step * height);
  return candidates;
}

std::wstring placeOf(
    const KvPoint3d& position, const std::wstring& sheet, const SheetZones& zones, const KvPoint3d& offset) {
  const std::wstring zone = zones.at({position.x + offset.x, position.y + offset.y, 0.0});
  return zone.empty() ? sheet : sheet + L'.' + zone;
}

} // namespace

SheetZones::SheetZones(const DrawingDatabase& frame)
    : left_(numberOf(frame, L"ZONE_LEFT")), top_(numberOf(frame, L"ZONE_TOP")),
      columns_(static_cast<int>(numberOf(frame, L"ZONE_COLUMNS"))),
      rows_(static_cast<int>(numberOf(frame, L"ZONE_ROWS"))) {
  if (columns_ < 1 || rows_ < 1) return;
  columnWidth_ = (numberOf(frame, L"ZONE_RIGHT") - left_) / columns_;
  rowHeight_ = (top_ - numberOf(frame, L"ZONE_BOTTOM")) / rows_;
}

std::wstring SheetZones::at(const KvPoint3d& point) const {
  if (!exist()) return {};
  const double column = (point.x - left_) / columnWidth_;
  const double row = (top_ - point.y) / rowHeight_;
  constexpr int letters = 26;
  if (!(column >= 0.0 && column < columns_ && row >= 0.0 && row < std::min(rows_, letters))) return {};
  return std::wstring(1, static_cast<wchar_t>(L'A' + static_cast<int>(row))) +
         brenvolt::formatInt(static_cast<std::int64_t>(column) + 1);
}

std::vector<DeviceSymbols> symbolsOf(const DrawingDatabase& drawing, const Netlist& netlist) {
  std::vector<DeviceSymbols> devices;
  for (std::size_t device = 0; device < netlist.devices.size(); ++device) {
    if (!hasReferences(netlist.devices[device])) continue;
    devices.push_back({keyOf(netlist.devices[device]), {}});
    for (const KvDbHandle symbol : orderedSymbols(netlist, device))
      devices.back().positions.push_back(insertionPoint(drawing, symbol));
  }
  return devices;
}

void addSymbolPlaces(
    SymbolPlaces& places, const std::vector<DeviceSymbols>& devices, const std::wstring& sheet,
    const SheetZones& zones, const KvPoint3d& offset) {
  for (const DeviceSymbols& device : devices)
    for (const KvPoint3d& position : device.positions)
      places[device.device].push_back(placeOf(position, sheet, zones, offset));
}

std::vector<std::pair<std::wstring, KvDbHandle>> lineSymbols(const Netlist& netlist) {
  std::vector<std::pair<std::wstring, KvDbHandle>> symbols;
  for (const Pin& pin : netlist.pins)
    if (netlist.devices[pin.device].family == sourceFamily)
      symbols.emplace_back(lineOf(netlist, pin), pin.symbol);
  return symbols;
}

std::vector<LineEnd> lineEndsOf(const Netlist& netlist) {
  std::vector<LineEnd> ends;
  for (const Pin& pin : netlist.pins)
    if (netlist.devices[pin.device].family == sourceFamily)
      ends.push_back({lineOf(netlist, pin), pin.position});
  return ends;
}

void addLinePlaces(
    LinePlaces& places, const std::vector<LineEnd>& ends, std::size_t number, const std::wstring& sheet,
    const SheetZones& zones, const KvPoint3d& offset) {
  for (const LineEnd& end : ends)
    places[end.line].emplace_back(number, placeOf(end.position, sheet, zones, offset));
}

Box lineReferenceRoom(const DrawingDatabase& drawing, const Netlist& netlist) {
  constexpr std::wstring_view longest = L"<000.A00 >000.A00";
  Box room;
  for (const Pin& pin : netlist.pins) {
    if (netlist.devices[pin.device].family != sourceFamily) continue;
    for (const KvDbHandle handle : drawing.find(pin.symbol)->attributes) {
      const simhost::EntityNode* node = drawing.find(handle);
      if (node == nullptr) continue;
      const auto& attribute = std::get<simhost::Attribute>(node->value.shape);
      if (!brenvolt::equalsOrdinalNoCase(attribute.tag, lineReferenceTag)) continue;
      Text text = attribute.text;
      text.text = longest;
      room.include(simhost::boxOf(text));
    }
  }
  return room;
}

void fillLineReferences(
    DrawingDatabase& sheet, const Netlist& netlist, const LinePlaces& places, std::size_t number) {
  std::map<std::wstring, std::size_t> next; // of each line, the end on this sheet that comes next
  for (const auto& [line, symbol] : lineSymbols(netlist)) {
    const auto known = places.find(line);
    if (known == places.end()) continue;
    const auto& ends = known->second;
    const auto [place, isFirst] = next.try_emplace(line, 0);
    if (isFirst)
      place->second = static_cast<std::size_t>(
          std::find_if(ends.begin(), ends.end(), [number](const auto& end) { return end.first == number; }) -
          ends.begin());
    const std::size_t end = place->second++;
    if (end >= ends.size()) continue;
    std::wstring text = end == 0 ? std::wstring() : L"<" + ends[end - 1].second;
    if (end + 1 < ends.size()) text += (text.empty() ? L">" : L" >") + ends[end + 1].second;
    setAttribute(sheet, symbol, lineReferenceTag, text);
  }
}

double scaleOf(const DrawingDatabase& drawing, const std::wstring& circuit) {
  const auto record = drawing.store().circuits().find(circuit);
  if (record == drawing.store().circuits().end()) return 1.0;
  const double scale = brenvolt::toDouble(simhost::circuitField(record->second, L"component-scale"));
  return scale > 0.0 ? scale : 1.0;
}

void drawReferences(
    DrawingDatabase& sheet, const Netlist& netlist, const SymbolPlaces& places, const std::wstring& circuit) {
  const auto items = simhost::displayList(sheet, sheet.currentSpace());
  if (!items) return;
  LabelPlaces free(sheet, *items);
  std::map<std::uint64_t, Box> boxes;
  for (const simhost::DisplayItem& item : *items)
    if (!isEmptyText(item.shape)) boxes[item.entity.value()].include(simhost::boxOf(item.shape));
  if (sheet.store().findLayer(std::wstring(referenceLayer)) == nullptr)
    sheet.putLayer({std::wstring(referenceLayer), simhost::Colour{0x70, 0x40, 0x90}});
  for (std::size_t device = 0; device < netlist.devices.size(); ++device) {
    const Device& owner = netlist.devices[device];
    const auto known = places.find(keyOf(owner));
    if (!hasReferences(owner) || known == places.end()) continue;
    std::optional<KvDbHandle> main = orderedSymbols(netlist, device).front();
    for (const KvDbHandle symbol : orderedSymbols(netlist, device)) {
      const simhost::EntityNode* node = sheet.find(symbol);
      const auto origin = simhost::provenanceOf(node->value);
      if (!circuit.empty() && (!origin || origin->circuit != circuit)) continue;
      // Each contact stands in a place once, however many poles are there.
      std::vector<std::wstring> texts = {known->second.front()};
      if (symbol == main) {
        texts.assign(known->second.begin() + 1, known->second.end());
        std::stable_sort(texts.begin(), texts.end());
        texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
      }
      simhost::Entity entity{
          free.freest(candidatesAround(
              boxes[symbol.value()], brenvolt::join(texts, L" "),
              origin ? scaleOf(sheet, origin->circuit) : 1.0)),
          std::wstring(referenceLayer)};
      if (origin) simhost::setProvenance(entity, {origin->circuit, std::wstring(referenceCode), 1});
      sheet.addEntity(sheet.currentSpace(), std::move(entity));
    }
  }
}

} // namespace circuits
