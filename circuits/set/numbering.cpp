// Changing texts of attributes, in drawing order.
#include "circuits/set/numbering.h"

#include "simhost/drawing/distance.h"
#include "text/compare.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>
#include <utility>
#include <vector>

namespace circuits {

using simhost::DrawingDatabase;
using simhost::EntityNode;

namespace {

/// How far two points of a drawing may be apart and still be the same, in drawing units.
constexpr double touchDistance = 0.01;

void setText(DrawingDatabase& drawing, KvDbHandle attribute, const std::wstring& text) {
  simhost::Entity value = drawing.find(attribute)->value;
  std::get<simhost::Attribute>(value.shape).text.text = text;
  drawing.changeEntity(attribute, std::move(value));
}

KvDbHandle attributeOf(const DrawingDatabase& drawing, const EntityNode& node, std::wstring_view tag) {
  for (const KvDbHandle handle : node.attributes)
    if (const EntityNode* attribute = drawing.find(handle))
      if (brenvolt::equalsOrdinalNoCase(std::get<simhost::Attribute>(attribute->value.shape).tag, tag))
        return handle;
  return {};
}

std::wstring textOf(const DrawingDatabase& drawing, KvDbHandle attribute) {
  return attribute.isNull() ? std::wstring()
                            : std::get<simhost::Attribute>(drawing.find(attribute)->value.shape).text.text;
}

bool isContactNumber(const std::wstring& number) {
  return number.size() == 2 && number[0] >= L'1' && number[0] <= L'9' && number[1] >= L'1' &&
         number[1] <= L'4';
}

double lengthOf(const simhost::Line& line) {
  return simhost::distanceBetween(line.from, line.to);
}

} // namespace

std::vector<std::pair<KvDbHandle, std::wstring>> terminalNumbers(const DrawingDatabase& drawing) {
  std::vector<std::pair<KvDbHandle, std::wstring>> terminals;
  const EntityNode* node = drawing.store().findBlock(drawing.currentSpace())->first;
  for (; node != nullptr; node = node->next) {
    if (textOf(drawing, attributeOf(drawing, *node, L"FAMILY")) != terminalFamily) continue;
    const KvDbHandle terminal = attributeOf(drawing, *node, L"TERM01");
    if (!terminal.isNull())
      terminals.emplace_back(terminal, textOf(drawing, attributeOf(drawing, *node, L"TAGSTRIP")));
  }
  return terminals;
}

void numberTerminals(DrawingDatabase& drawing, std::map<std::wstring, int> last) {
  for (const auto& [terminal, strip] : terminalNumbers(drawing))
    setText(drawing, terminal, brenvolt::formatInt(++last[strip]));
}

std::wstring attributeText(const DrawingDatabase& drawing, KvDbHandle symbol, std::wstring_view tag) {
  const EntityNode* node = drawing.find(symbol);
  return node == nullptr ? std::wstring() : textOf(drawing, attributeOf(drawing, *node, tag));
}

void setAttribute(
    DrawingDatabase& drawing, KvDbHandle symbol, std::wstring_view tag, const std::wstring& text) {
  const EntityNode* node = drawing.find(symbol);
  const KvDbHandle attribute = node == nullptr ? KvDbHandle() : attributeOf(drawing, *node, tag);
  if (!attribute.isNull()) setText(drawing, attribute, text);
}

void numberContacts(DrawingDatabase& drawing, const Netlist& netlist) {
  // By device, the tens that its contacts have.
  std::map<std::size_t, std::set<wchar_t>> taken;
  std::map<std::uint64_t, std::vector<const Pin*>> contacts;
  std::vector<std::uint64_t> order;
  for (const Pin& pin : netlist.pins) {
    if (!isContactNumber(pin.number)) continue;
    std::vector<const Pin*>& pins = contacts[pin.symbol.value()];
    if (pins.empty()) order.push_back(pin.symbol.value());
    pins.push_back(&pin);
  }
  // Drawing order, which the list of pins keeps.
  for (const std::uint64_t symbol : order) {
    const std::vector<const Pin*>& pins = contacts[symbol];
    std::set<wchar_t>& tens = taken[pins.front()->device];
    wchar_t ten = pins.front()->number[0];
    while (tens.contains(ten) && ten < L'9')
      ++ten;
    tens.insert(ten);
    if (ten == pins.front()->number[0]) continue;
    const EntityNode& node = *drawing.find(KvDbHandle(symbol));
    for (const KvDbHandle handle : std::vector<KvDbHandle>(node.attributes)) {
      const std::wstring text = textOf(drawing, handle);
      const bool isPin = std::any_of(pins.begin(), pins.end(), [&](const Pin* pin) {
        const auto& value = std::get<simhost::Attribute>(drawing.find(handle)->value.shape);
        return pin->number == text && pin->position == value.text.position;
      });
      if (isPin) setText(drawing, handle, std::wstring(1, ten) + text[1]);
    }
  }
}

std::vector<FreeEnd> freeEnds(
    const DrawingDatabase& drawing, const Netlist& netlist, const std::wstring& circuit) {
  const simhost::BlockNode& space = *drawing.store().findBlock(drawing.currentSpace());
  // A wire ends where nothing else is: no other wire, and no pin or dot of a block.
  const auto isFree = [&](const EntityNode& wire, const KvPoint3d& point) {
    simhost::Box area;
    area.includeAround(point, touchDistance);
    for (const EntityNode* other : drawing.store().meeting(space, area)) {
      if (other == &wire) continue;
      if (const auto* reference = std::get_if<simhost::BlockReference>(&other->value.shape)) {
        if (simhost::distanceBetween(reference->position, point) <= touchDistance) return false;
      } else if (const auto* line = std::get_if<simhost::Line>(&other->value.shape);
                 line != nullptr && simhost::distanceToSegment(point, line->from, line->to) <= touchDistance)
        return false;
    }
    return true;
  };
  std::vector<FreeEnd> ends;
  for (const Conductor& conductor : netlist.conductors) {
    const Net& net = netlist.nets[conductor.net];
    if (net.circuit != circuit) continue;
    for (const KvDbHandle handle : conductor.wires) {
      const EntityNode& wire = *drawing.find(handle);
      const auto& line = std::get<simhost::Line>(wire.value.shape);
      for (const auto& [end, other] : {std::pair{line.from, line.to}, std::pair{line.to, line.from}}) {
        const bool hasPin =
            std::any_of(conductor.pins.begin(), conductor.pins.end(), [&, at = end](std::size_t pin) {
              return simhost::distanceBetween(netlist.pins[pin].position, at) <= touchDistance;
            });
        if (hasPin || !isFree(wire, end)) continue;
        const double degrees = std::atan2(end.y - other.y, end.x - other.x) * 180.0 / std::numbers::pi;
        ends.push_back(
            {net.number, end, std::round(degrees), layerColour(wire.value.layer),
             layerSize(wire.value.layer)});
      }
    }
  }
  return ends;
}

std::vector<NetLabel> netLabels(
    const DrawingDatabase& drawing, const Netlist& netlist, const std::wstring& circuit) {
  std::vector<NetLabel> labels;
  for (const Net& net : netlist.nets) {
    if (net.circuit != circuit) continue;
    std::vector<std::pair<std::wstring, std::vector<simhost::Line>>> layers;
    for (const std::size_t place : net.conductors)
      for (const KvDbHandle handle : netlist.conductors[place].wires) {
        const simhost::Entity& wire = drawing.find(handle)->value;
        auto layer = std::find_if(
            layers.begin(), layers.end(), [&wire](const auto& one) { return one.first == wire.layer; });
        if (layer == layers.end()) layer = layers.insert(layers.end(), {wire.layer, {}});
        layer->second.push_back(std::get<simhost::Line>(wire.shape));
      }
    bool needsNumber = net.number.empty() && net.carriesNumber;
    for (auto& [layer, wires] : layers) {
      std::stable_sort(wires.begin(), wires.end(), [](const auto& one, const auto& other) {
        return simhost::isLevel(one) != simhost::isLevel(other) ? simhost::isLevel(one)
                                                                : lengthOf(one) > lengthOf(other);
      });
      const simhost::Line& first = wires.front();
      NetLabel label{net.number, needsNumber};
      label.place = {(first.from.x + first.to.x) / 2.0, (first.from.y + first.to.y) / 2.0, 0.0};
      label.isLevel = simhost::isLevel(first);
      label.colour = layerColour(layer);
      label.size = layerSize(layer);
      label.wires = std::move(wires);
      labels.push_back(std::move(label));
      needsNumber = false;
    }
  }
  return labels;
}

} // namespace circuits
