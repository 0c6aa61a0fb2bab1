// From symbols and lines to devices and nets. Every search looks into the square of a point, so the cost is that of
// the wires and pins.
#include "circuits/netlist/netlist.h"

#include "circuits/netlist/squares.h"
#include "simhost/drawing/distance.h"
#include "text/compare.h"
#include "text/split.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>
#include <tuple>
#include <unordered_map>
#include <utility>

namespace circuits {

using simhost::Attribute;
using simhost::BlockReference;
using simhost::distanceBetween;
using simhost::DrawingDatabase;
using simhost::EntityNode;
using simhost::Line;

namespace {

/// How far two points of a drawing may be apart and still be the same, in drawing units.
constexpr double tolerance = 0.01;

struct AttributeValue {
  std::wstring tag; ///< upper case
  const simhost::Text* text;
};
using Attributes = std::vector<AttributeValue>;

Attributes attributesOf(const DrawingDatabase& drawing, const EntityNode& reference) {
  Attributes found;
  for (const KvDbHandle handle : reference.attributes)
    if (const EntityNode* node = drawing.find(handle)) {
      const auto& attribute = std::get<Attribute>(node->value.shape);
      found.push_back({brenvolt::toUpper(attribute.tag), &attribute.text});
    }
  return found;
}

std::wstring textOf(const Attributes& attributes, std::wstring_view tag) {
  for (const AttributeValue& value : attributes)
    if (value.tag == tag) return brenvolt::trim(value.text->text);
  return {};
}

std::wstring dataOf(const simhost::Entity& entity, std::wstring_view application) {
  const std::vector<std::wstring>* texts = simhost::findData(entity, application);
  return texts == nullptr || texts->empty() ? std::wstring() : texts->front();
}

/// X?TERM??: any side, any two digits.
bool isPinTag(const std::wstring& tag) {
  return tag.size() == 8 && tag[0] == L'X' && tag.compare(2, 4, L"TERM") == 0;
}

bool isOn(const Line& line, const KvPoint3d& point) {
  return simhost::distanceToSegment(point, line.from, line.to) <= tolerance;
}

/// Sets that are joined; each knows one of its members as its name.
class Groups final {
public:
  explicit Groups(std::size_t count) : parents_(count) {
    std::iota(parents_.begin(), parents_.end(), std::size_t{0});
  }
  std::size_t of(std::size_t member) {
    while (parents_[member] != member)
      member = parents_[member] = parents_[parents_[member]];
    return member;
  }
  /// The lower name holds, so that the order of joining does not matter.
  void join(std::size_t one, std::size_t other) {
    one = of(one);
    other = of(other);
    parents_[std::max(one, other)] = std::min(one, other);
  }

private:
  std::vector<std::size_t> parents_;
};

/// A symbol's device by what makes devices the same one.
using DeviceKey = std::tuple<std::wstring, std::wstring, std::wstring>;

class Reader final {
public:
  explicit Reader(const DrawingDatabase& drawing)
      : drawing_(drawing), space_(*drawing.store().findBlock(drawing.currentSpace())) {}

  Netlist read() {
    for (const EntityNode* node = space_.first; node != nullptr; node = node->next) {
      if (isWire(*node)) {
        squares_.putAlong(
            std::get<Line>(node->value.shape), tolerance, static_cast<std::uint32_t>(wires_.size()));
        wires_.push_back(node);
      }
      if (node->value.kind() == simhost::EntityKind::blockReference) readReference(*node);
    }
    connect();
    return std::move(netlist_);
  }

private:
  struct Label {
    KvPoint3d position;
    std::wstring number;
  };

  [[nodiscard]] bool isWire(const EntityNode& node) const {
    if (node.value.kind() != simhost::EntityKind::line) return false;
    const simhost::Layer* layer = drawing_.store().findLayer(node.value.layer);
    return layer != nullptr && layer->wireSettings.has_value();
  }

  void readReference(const EntityNode& node) {
    const Attributes attributes = attributesOf(drawing_, node);
    const KvPoint3d position = std::get<BlockReference>(node.value.shape).position;
    if (attributes.empty()) {
      dots_.push_back(position);
    } else if (const std::wstring number = textOf(attributes, L"WIRENO"); !number.empty()) {
      labels_.push_back({position, number});
    } else {
      const bool hasPins = std::any_of(attributes.begin(), attributes.end(), [](const AttributeValue& value) {
        return isPinTag(value.tag);
      });
      const std::wstring family = textOf(attributes, L"FAMILY");
      if (hasPins || !family.empty()) readSymbol(node, attributes, family);
    }
  }

  void readSymbol(const EntityNode& node, const Attributes& attributes, const std::wstring& family) {
    const bool isTerminal = family == terminalFamily;
    std::wstring tag = textOf(attributes, isTerminal ? L"TAGSTRIP" : L"TAG1");
    if (tag.empty() && !isTerminal) tag = textOf(attributes, L"TAG2");
    Device device{tag, textOf(attributes, L"INST"), textOf(attributes, L"LOC"), family};
    device.maker = textOf(attributes, L"MFG");
    device.catalogue = textOf(attributes, L"CAT");
    device.assembly = textOf(attributes, L"ASSYCODE");
    device.rating = textOf(attributes, L"RATING1");
    for (const std::wstring_view name : {L"DESC1", L"DESC2", L"DESC3"})
      if (std::wstring text = textOf(attributes, name); !text.empty())
        device.descriptions.push_back(std::move(text));
    device.symbols = {node.handle};
    device.params = dataOf(node.value, paramsApplication);
    device.wires = dataOf(node.value, wiresApplication);
    if (const auto origin = simhost::provenanceOf(node.value)) device.circuit = origin->circuit;
    const std::size_t place = placeOf(std::move(device));
    const std::wstring terminal = isTerminal ? textOf(attributes, L"TERM01") : std::wstring();
    for (const AttributeValue& value : attributes) {
      if (!isPinTag(value.tag)) continue;
      const std::wstring number = isTerminal ? terminal : brenvolt::trim(value.text->text);
      netlist_.pins.push_back({place, node.handle, number, value.tag[1], value.text->position});
    }
  }

  /// A symbol without a tag is a device of its own. Of several symbols the one that carries the part, else the one with
  /// a rating, else the first is the main one.
  std::size_t placeOf(Device device) {
    const auto rank = [](const Device& one) {
      return !one.catalogue.empty() ? 2 : !one.rating.empty() ? 1 : 0;
    };
    const DeviceKey key{device.tag, device.installation, device.location};
    const auto known = device.tag.empty() ? devices_.end() : devices_.find(key);
    if (known == devices_.end()) {
      const std::size_t place = netlist_.devices.size();
      if (!device.tag.empty()) devices_.emplace(key, place);
      netlist_.devices.push_back(std::move(device));
      return place;
    }
    Device& main = netlist_.devices[known->second];
    if (rank(device) > rank(main)) {
      device.symbols.insert(device.symbols.end(), main.symbols.begin(), main.symbols.end());
      main = std::move(device);
    } else {
      main.symbols.push_back(device.symbols.front());
    }
    return known->second;
  }

  /// The wires through a point, as places in `wires_`, in drawing order.
  [[nodiscard]] std::vector<std::size_t> wiresAt(const KvPoint3d& point) const {
    std::vector<std::size_t> found;
    for (const std::uint32_t wire : squares_.at(Squares::squareOf(point.x), Squares::squareOf(point.y)))
      if (isOn(lineOf(wire), point)) found.push_back(wire);
    return found;
  }

  [[nodiscard]] const Line& lineOf(std::size_t wire) const {
    return std::get<Line>(wires_[wire]->value.shape);
  }

  void connect() {
    Groups groups(wires_.size());
    const auto joinAt = [&](const KvPoint3d& point) {
      const std::vector<std::size_t> here = wiresAt(point);
      for (const std::size_t wire : here)
        groups.join(here.front(), wire);
    };
    for (std::size_t wire = 0; wire < wires_.size(); ++wire) {
      joinAt(lineOf(wire).from);
      joinAt(lineOf(wire).to);
    }
    for (const KvPoint3d& dot : dots_)
      joinAt(dot);
    // A pin joins what meets in it, as a dot does.
    for (const Pin& pin : netlist_.pins)
      joinAt(pin.position);
    makeConductors(groups);
    makeNets();
  }

  void makeConductors(Groups& groups) {
    std::vector<std::size_t> conductorOf(wires_.size());
    std::map<std::size_t, std::size_t> known;
    for (std::size_t wire = 0; wire < wires_.size(); ++wire) {
      const auto [place, isNew] = known.try_emplace(groups.of(wire), netlist_.conductors.size());
      if (isNew) netlist_.conductors.emplace_back();
      conductorOf[wire] = place->second;
      netlist_.conductors[place->second].wires.push_back(wires_[wire]->handle);
    }
    for (std::size_t place = 0; place < netlist_.pins.size(); ++place) {
      Pin& pin = netlist_.pins[place];
      const std::vector<std::size_t> here = wiresAt(pin.position);
      if (here.empty()) continue;
      pin.conductor = conductorOf[here.front()];
      netlist_.conductors[*pin.conductor].pins.push_back(place);
    }
    for (Conductor& conductor : netlist_.conductors) {
      std::stable_sort(conductor.pins.begin(), conductor.pins.end(), [&](std::size_t one, std::size_t other) {
        const KvPoint3d& left = netlist_.pins[one].position;
        const KvPoint3d& right = netlist_.pins[other].position;
        return left.x != right.x ? left.x < right.x : left.y > right.y;
      });
      takeLayer(conductor);
      makeRuns(conductor);
    }
    for (const Label& label : labels_)
      if (const std::vector<std::size_t> here = wiresAt(label.position); !here.empty())
        numbers_[conductorOf[here.front()]].push_back(label.number);
  }

  void takeLayer(Conductor& conductor) const {
    std::map<std::wstring, double> lengths;
    for (const KvDbHandle handle : conductor.wires) {
      const EntityNode& wire = *drawing_.find(handle);
      const Line& line = std::get<Line>(wire.value.shape);
      lengths[wire.value.layer] += distanceBetween(line.from, line.to);
    }
    conductor.layer =
        std::max_element(lengths.begin(), lengths.end(), [](const auto& one, const auto& other) {
          return one.second < other.second;
        })->first;
    conductor.size = layerSize(conductor.layer);
    conductor.colour = layerColour(conductor.layer);
  }

  /// Pins that wires of one layer reach are wired from one to the next. What other layers reach is wired from the
  /// nearest pin that is there already: a tap of a thinner wire is not taken for the thicker one.
  void makeRuns(Conductor& conductor) {
    std::vector<std::pair<std::wstring, std::vector<std::size_t>>>
        layers; // and their pins, from left to right
    for (const std::size_t pin : conductor.pins) {
      std::vector<std::wstring> here;
      for (const std::size_t wire : wiresAt(netlist_.pins[pin].position))
        here.push_back(wires_[wire]->value.layer);
      for (const std::wstring& layer : here) {
        auto known = std::find_if(
            layers.begin(), layers.end(), [&layer](const auto& one) { return one.first == layer; });
        if (known == layers.end()) known = layers.insert(layers.end(), {layer, {}});
        if (known->second.empty() || known->second.back() != pin) known->second.push_back(pin);
      }
    }
    std::stable_sort(layers.begin(), layers.end(), [](const auto& one, const auto& other) {
      return one.second.size() > other.second.size();
    });
    std::vector<std::size_t> reached;
    const auto isReached = [&reached](std::size_t pin) {
      return std::find(reached.begin(), reached.end(), pin) != reached.end();
    };
    for (const auto& [layer, pins] : layers) {
      std::optional<std::size_t> last;
      for (const std::size_t pin : pins)
        if (isReached(pin)) last = pin;
      for (const std::size_t pin : pins) {
        if (isReached(pin)) continue;
        if (!last && !reached.empty())
          last = *std::min_element(reached.begin(), reached.end(), [&](std::size_t one, std::size_t other) {
            return distanceBetween(netlist_.pins[one].position, netlist_.pins[pin].position) <
                   distanceBetween(netlist_.pins[other].position, netlist_.pins[pin].position);
          });
        if (last) conductor.runs.push_back({*last, pin, layer});
        reached.push_back(pin);
        last = pin;
      }
    }
  }

  /// A terminal is one potential: what is wired to its two sides is one net.
  void makeNets() {
    Groups groups(netlist_.conductors.size());
    std::unordered_map<std::uint64_t, std::size_t> terminals;
    for (const Pin& pin : netlist_.pins) {
      if (!pin.conductor || netlist_.devices[pin.device].family != terminalFamily) continue;
      const auto [place, isNew] = terminals.try_emplace(pin.symbol.value(), *pin.conductor);
      if (!isNew) groups.join(place->second, *pin.conductor);
    }
    std::map<std::size_t, std::size_t> known;
    for (std::size_t place = 0; place < netlist_.conductors.size(); ++place) {
      Conductor& conductor = netlist_.conductors[place];
      const auto [net, isNew] = known.try_emplace(groups.of(place), netlist_.nets.size());
      if (isNew) beginNet(conductor);
      conductor.net = net->second;
      netlist_.nets[conductor.net].conductors.push_back(place);
      if (const auto numbers = numbers_.find(place); numbers != numbers_.end())
        for (const std::wstring& number : numbers->second)
          takeNumber(netlist_.nets[conductor.net], number);
    }
    for (Pin& pin : netlist_.pins)
      if (pin.conductor) pin.net = netlist_.conductors[*pin.conductor].net;
  }

  void beginNet(const Conductor& conductor) {
    Net net;
    const EntityNode& wire = *drawing_.find(conductor.wires.front());
    if (const auto origin = simhost::provenanceOf(wire.value)) net.circuit = origin->circuit;
    for (const simhost::WireSetting& setting : *drawing_.store().findLayer(wire.value.layer)->wireSettings)
      if (setting.code == 290) net.carriesNumber = std::get<std::int32_t>(setting.value) != 0;
    netlist_.nets.push_back(std::move(net));
  }

  static void takeNumber(Net& net, const std::wstring& number) {
    if (net.number.empty())
      net.number = number;
    else if (
        net.number != number && std::find(net.others.begin(), net.others.end(), number) == net.others.end())
      net.others.push_back(number);
  }

  const DrawingDatabase& drawing_;
  const simhost::BlockNode& space_;
  Netlist netlist_;
  std::vector<const EntityNode*> wires_;
  Squares squares_; ///< places in `wires_`
  std::vector<KvPoint3d> dots_;
  std::vector<Label> labels_;
  std::map<std::size_t, std::vector<std::wstring>> numbers_; ///< by conductor
  std::map<DeviceKey, std::size_t> devices_;
};

} // namespace

Netlist readNetlist(const DrawingDatabase& drawing) {
  return Reader(drawing).read();
}

std::wstring layerColour(const std::wstring& layer) {
  const std::size_t cut = layer.find(L'_');
  return cut == std::wstring::npos ? std::wstring() : layer.substr(0, cut);
}

std::wstring layerSize(const std::wstring& layer) {
  const std::size_t cut = layer.find(L'_');
  return cut == std::wstring::npos ? layer : layer.substr(cut + 1);
}

std::wstring pinName(const Netlist& netlist, const Pin& pin) {
  const std::wstring& tag = netlist.devices[pin.device].tag;
  return (tag.empty() ? L"?" : tag) + L':' + (pin.number.empty() ? L"?" : pin.number);
}

} // namespace circuits
