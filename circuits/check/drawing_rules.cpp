#include "circuits/check/drawing_rules.h"

#include "circuits/netlist/netlist.h"
#include "simhost/drawing/box_index.h"
#include "simhost/drawing/display_list.h"
#include "simhost/drawing/distance.h"
#include "text/compare.h"
#include "text/split.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace circuits {

using brenvolt::equalsOrdinalNoCase;
using simhost::Box;
using simhost::DisplayItem;
using simhost::distanceBetween;
using simhost::EntityNode;

namespace {

/// Two places nearer than this are one, in drawing units.
constexpr double samePlace = 0.01;
/// Texts that overlap by less than this part of the smaller height are still legible.
constexpr double allowedOverlap = 0.15;

/// Whether a wire that ends at the point is connected to what a shape shows; texts connect nothing, circles also at their
/// centre.
bool isConnected(const simhost::Shape& shape, const KvPoint3d& point) {
  if (std::holds_alternative<simhost::Text>(shape)) return false;
  const auto* circle = std::get_if<simhost::Circle>(&shape);
  return simhost::distanceTo(shape, point) <= samePlace ||
         (circle != nullptr && distanceBetween(circle->centre, point) <= samePlace);
}

struct Wire {
  KvDbHandle handle;
  std::wstring layer;
  KvPoint3d from;
  KvPoint3d to;
};

class DrawingCheck final {
public:
  DrawingCheck(const DrawnCircuit& circuit, ReportedFindings& reported, Findings& findings)
      : circuit_(circuit), store_(circuit.drawing.store()), reported_(reported), findings_(findings) {
    const simhost::BlockNode* space = store_.findBlock(circuit.drawing.currentSpace());
    for (const EntityNode* node = space->first; node != nullptr; node = node->next)
      if (!node->isErased) nodes_.push_back(node);
    if (const auto items = simhost::displayList(circuit.drawing, circuit.drawing.currentSpace()))
      items_ = *items;
    for (const EntityNode* node : nodes_) {
      const auto* line = std::get_if<simhost::Line>(&node->value.shape);
      if (line != nullptr && isWireLayer(node->value.layer))
        wires_.push_back({node->handle, node->value.layer, line->from, line->to});
    }
    std::vector<Box> boxes;
    for (const DisplayItem& item : items_) {
      Box box = simhost::boxOf(item.shape);
      box.left -= samePlace;
      box.right += samePlace;
      box.bottom -= samePlace;
      box.top += samePlace;
      boxes.push_back(box);
    }
    index_ = simhost::BoxIndex(boxes);
  }

  void run() {
    for (const EntityNode* node : nodes_)
      checkComponent(*node);
    for (const auto& [component, unrated] : unrated_)
      if (!rated_.contains(component))
        add(L"run-no-rating", unrated.place,
            {{L"block", unrated.block}, {L"tag", component.second}, {L"choices", circuit_.choices}});
    checkParts();
    for (const Wire& wire : wires_)
      for (const KvPoint3d& end : {wire.from, wire.to})
        checkEnd(wire, end);
    for (const WireStart& start : circuit_.starts)
      checkStart(start);
    checkTexts();
    checkBridges();
  }

private:
  [[nodiscard]] bool isWireLayer(const std::wstring& name) const {
    const simhost::Layer* layer = store_.findLayer(name);
    return layer != nullptr && layer->wireSettings.has_value();
  }

  void add(std::wstring_view rule, FindingPlace place, RuleValues values) {
    if (reported_.insert(std::wstring(rule) + placeText(place)).second)
      findings_.add(rule, std::move(place), values);
  }

  [[nodiscard]] FindingPlace at(const KvPoint3d& point, const std::wstring& code = {}) const {
    FindingPlace place = circuit_.place;
    place.code = code;
    // Rounded, so that the same place is one finding in every build.
    place.position = {std::round(point.x * 100) / 100, std::round(point.y * 100) / 100};
    return place;
  }

  [[nodiscard]] std::optional<std::wstring> attributeOf(const EntityNode& node, std::wstring_view tag) const {
    for (const KvDbHandle handle : node.attributes) {
      const EntityNode* attribute = store_.findEntity(handle);
      if (attribute == nullptr || attribute->isErased) continue;
      const auto* value = std::get_if<simhost::Attribute>(&attribute->value.shape);
      if (value != nullptr && equalsOrdinalNoCase(value->tag, tag)) return value->text.text;
    }
    return std::nullopt;
  }

  void checkComponent(const EntityNode& node) {
    const auto* reference = std::get_if<simhost::BlockReference>(&node.value.shape);
    if (reference == nullptr) return;
    const simhost::BlockNode* block = store_.findBlock(reference->block);
    const std::wstring name = block == nullptr ? std::wstring() : block->name;
    std::optional<std::wstring> tag = attributeOf(node, L"TAG1");
    if (!tag) tag = attributeOf(node, L"TAG2");
    if (!tag) return;
    const auto code = circuit_.codes.find(node.handle.value());
    const std::wstring placedBy = code == circuit_.codes.end() ? std::wstring() : code->second;
    if (brenvolt::trimView(*tag).empty())
      add(L"run-no-tag", at(reference->position, placedBy),
          {{L"block", name}, {L"choices", circuit_.choices}});
    if (const auto part = attributeOf(node, L"CAT"); part && !placedBy.empty())
      placed_[brenvolt::toUpper(placedBy)].push_back({at(reference->position, placedBy), name, *tag, *part});
    const std::optional<std::wstring> rating = attributeOf(node, L"RATING1");
    if (!rating || !circuit_.rated.contains(brenvolt::toUpper(placedBy))) return;
    const Component component = {brenvolt::toUpper(placedBy), *tag};
    if (brenvolt::trimView(*rating).empty())
      unrated_.try_emplace(component, Unrated{at(reference->position, placedBy), name});
    else
      rated_.insert(component);
  }

  [[nodiscard]] std::vector<const DisplayItem*> itemsNear(const KvPoint3d& point) const {
    const Box area = {point.x - samePlace, point.y - samePlace, point.x + samePlace, point.y + samePlace};
    std::vector<const DisplayItem*> near;
    for (const std::uint32_t number : index_.meeting(area))
      if (isConnected(items_[number].shape, point)) near.push_back(&items_[number]);
    return near;
  }

  [[nodiscard]] const Wire* wireOf(KvDbHandle handle) const {
    const auto found = std::ranges::find(wires_, handle, &Wire::handle);
    return found == wires_.end() ? nullptr : &*found;
  }

  void checkEnd(const Wire& wire, const KvPoint3d& end) {
    const bool isStart = std::ranges::any_of(circuit_.starts, [&end](const WireStart& start) {
      return std::hypot(start.x - end.x, start.y - end.y) <= samePlace;
    });
    bool isAttached = isStart;
    const Wire* crossed = nullptr;
    bool hasDot = false;
    for (const DisplayItem* item : itemsNear(end)) {
      if (item->entity == wire.handle) continue;
      isAttached = true;
      const Wire* other = wireOf(item->entity);
      if (other == nullptr)
        hasDot = true; // a dot or a symbol: the connection is meant
      else if (distanceBetween(other->from, end) > samePlace && distanceBetween(other->to, end) > samePlace)
        crossed = other;
    }
    if (!isAttached)
      add(L"run-open-wire", at(end), {{L"layer", wire.layer}, {L"choices", circuit_.choices}});
    else if (crossed != nullptr && !hasDot && !isStart)
      add(L"run-wire-on-wire", at(end),
          {{L"layer", wire.layer}, {L"other", crossed->layer}, {L"choices", circuit_.choices}});
  }

  void checkStart(const WireStart& start) {
    if (start.layer.empty()) return;
    const KvPoint3d point{start.x, start.y, 0.0};
    const std::wstring* other = nullptr;
    for (const EntityNode* node : nodes_) {
      const auto* line = std::get_if<simhost::Line>(&node->value.shape);
      if (line == nullptr) continue;
      const bool beginsHere =
          distanceBetween(line->from, point) <= samePlace || distanceBetween(line->to, point) <= samePlace;
      if (!beginsHere) continue;
      if (!equalsOrdinalNoCase(node->value.layer, start.layer)) {
        other = &node->value.layer; // a feeder of another size may end here
        continue;
      }
      if (!isWireLayer(node->value.layer))
        add(L"run-wire-layer", at(point, start.code),
            {{L"layer", node->value.layer}, {L"choices", circuit_.choices}});
      return;
    }
    if (other != nullptr)
      add(L"run-wire-unsized", at(point, start.code),
          {{L"layer", *other}, {L"expected", start.layer}, {L"choices", circuit_.choices}});
  }

  void checkTexts() {
    struct Shown {
      const simhost::Text* text;
      Box box;
    };
    std::vector<Shown> texts;
    for (const DisplayItem& item : items_) {
      const auto* text = std::get_if<simhost::Text>(&item.shape);
      if (text == nullptr || brenvolt::trimView(text->text).empty()) continue;
      Box box;
      for (const KvPoint3d& corner : simhost::textCorners(*text))
        box.include(corner);
      const double margin = allowedOverlap * std::min(box.width(), box.height());
      box.left += margin;
      box.right -= margin;
      box.bottom += margin;
      box.top -= margin;
      texts.push_back({text, box});
    }
    std::vector<Box> boxes;
    for (const Shown& shown : texts)
      boxes.push_back(shown.box);
    const simhost::BoxIndex index(boxes);
    for (std::uint32_t i = 0; i < texts.size(); ++i)
      for (const std::uint32_t j : index.meeting(boxes[i]))
        if (j > i)
          add(L"run-texts-overlap", at(texts[i].text->position),
              {{L"first", texts[i].text->text},
               {L"second", texts[j].text->text},
               {L"choices", circuit_.choices}});
  }

  /// Conductors that begin at a wire position of a motor, each with the position without the motor's letter. Those of
  /// two motors begin at one supply.
  [[nodiscard]] std::map<std::size_t, std::wstring> linesOf(const Netlist& netlist) {
    std::map<std::size_t, std::wstring> lines;
    for (const WireStart& start : circuit_.starts) {
      if (start.layer.empty()) continue;
      const KvPoint3d point{start.x, start.y, 0.0};
      const std::wstring name = brenvolt::toUpper(start.code.substr(0, start.code.find(L'-')));
      for (std::size_t i = 0; i < netlist.conductors.size(); ++i) {
        const bool beginsHere =
            std::ranges::any_of(netlist.conductors[i].wires, [&](const KvDbHandle handle) {
              const Wire* wire = wireOf(handle);
              return wire != nullptr && (distanceBetween(wire->from, point) <= samePlace ||
                                         distanceBetween(wire->to, point) <= samePlace);
            });
        if (!beginsHere) continue;
        const auto [line, isNew] = lines.try_emplace(i, name);
        if (!isNew && line->second != name)
          add(L"run-lines-joined", at(point, start.code),
              {{L"first", line->second}, {L"second", name}, {L"choices", circuit_.choices}});
      }
    }
    return lines;
  }

  /// The two ends of each pole of the components: pins on different sides, level with each other.
  struct Pole {
    const Pin* from;
    const Pin* to;
  };
  [[nodiscard]] static std::vector<Pole> polesOf(const Netlist& netlist) {
    std::map<std::uint64_t, std::vector<const Pin*>> bySymbol;
    for (const Pin& pin : netlist.pins) {
      const std::wstring& family = netlist.devices[pin.device].family;
      // Both sides of a terminal are one, and a source has one side.
      if (pin.conductor && family != terminalFamily && family != sourceFamily)
        bySymbol[pin.symbol.value()].push_back(&pin);
    }
    std::vector<Pole> poles;
    for (const auto& [symbol, pins] : bySymbol)
      for (std::size_t i = 0; i < pins.size(); ++i)
        for (std::size_t j = i + 1; j < pins.size(); ++j) {
          const KvPoint3d& one = pins[i]->position;
          const KvPoint3d& other = pins[j]->position;
          const bool isLevel =
              std::abs(one.x - other.x) <= samePlace || std::abs(one.y - other.y) <= samePlace;
          if (pins[i]->side != pins[j]->side && isLevel) poles.push_back({pins[i], pins[j]});
        }
    return poles;
  }

  /// A wire that joins both ends of a pole makes the component useless. One that joins two poles shorts the lines on
  /// them. Jumpers between pins that no lines reach, as those
  /// of a transformer, are meant.
  void checkBridges() {
    const Netlist netlist = readNetlist(circuit_.drawing);
    std::map<std::size_t, std::wstring> lines = linesOf(netlist);
    const std::vector<Pole> poles = polesOf(netlist);
    for (const Pole& pole : poles)
      if (pole.from->conductor == pole.to->conductor)
        add(L"run-bridged", at(pole.from->position),
            {{L"tag", netlist.devices[pole.from->device].tag}, {L"choices", circuit_.choices}});
    // A line goes on through the poles. Where several meet, as after reversing contactors, it keeps its first name.
    for (bool hasGrown = true; hasGrown;) {
      hasGrown = false;
      for (const Pole& pole : poles)
        for (const auto& [from, to] :
             {std::pair(*pole.from->conductor, *pole.to->conductor),
              std::pair(*pole.to->conductor, *pole.from->conductor)})
          if (const auto line = lines.find(from); line != lines.end())
            hasGrown = lines.try_emplace(to, std::wstring(line->second)).second || hasGrown;
    }
    for (std::size_t i = 0; i < poles.size(); ++i)
      for (std::size_t j = i + 1; j < poles.size() && poles[j].from->symbol == poles[i].from->symbol; ++j)
        checkPoles(netlist, lines, poles[i], poles[j]);
    for (auto first = poles.begin(); first != poles.end();) {
      const auto next = std::find_if(
          first, poles.end(), [first](const Pole& each) { return each.from->symbol != first->from->symbol; });
      if (next - first == 2) checkUnswitched(netlist, lines, first[0], first[1]);
      first = next;
    }
  }

  using Lines = std::map<std::size_t, std::wstring>; ///< names of lines by conductor
  [[nodiscard]] static std::wstring lineOf(const Lines& lines, const Pin* pin) {
    const auto line = lines.find(*pin->conductor);
    return line == lines.end() ? std::wstring() : line->second;
  }

  /// Two poles in three lines leave the third line as it is, where its wire goes by beside them. A fourth wire is a
  /// neutral, and one pole is that of an instrument: both are meant.
  void checkUnswitched(const Netlist& netlist, const Lines& lines, const Pole& one, const Pole& other) {
    std::map<std::wstring, std::vector<std::size_t>> conductors; // by line, without the grounding conductor
    for (const auto& [conductor, line] : lines)
      if (line.find(L'E') == std::wstring::npos) conductors[line].push_back(conductor);
    constexpr std::size_t phases = 3;
    const std::wstring first = lineOf(lines, one.from);
    const std::wstring second = lineOf(lines, other.from);
    const bool isTwoOfThree = conductors.size() == phases && first != second && conductors.contains(first) &&
                              conductors.contains(second);
    if (!isTwoOfThree) return;
    conductors.erase(first);
    conductors.erase(second);
    const auto& [line, itsConductors] = *conductors.begin();
    for (const std::size_t conductor : itsConductors)
      for (const KvDbHandle handle : netlist.conductors[conductor].wires)
        if (const Wire* wire = wireOf(handle); wire != nullptr && goesBy(*wire, one, other))
          add(L"run-line-unswitched", at(one.from->position),
              {{L"tag", netlist.devices[one.from->device].tag},
               {L"first", first},
               {L"second", second},
               {L"line", line},
               {L"choices", circuit_.choices}});
  }

  /// Whether a wire runs beside two poles over their whole length, about where a third pole would be.
  [[nodiscard]] static bool goesBy(const Wire& wire, const Pole& one, const Pole& other) {
    const bool isHorizontal = std::abs(one.from->position.y - one.to->position.y) <= samePlace;
    const auto along = [isHorizontal](const KvPoint3d& point) { return isHorizontal ? point.x : point.y; };
    const auto across = [isHorizontal](const KvPoint3d& point) { return isHorizontal ? point.y : point.x; };
    const double place = across(wire.from);
    const double ofOne = across(one.from->position);
    const double ofOther = across(other.from->position);
    const auto pole = std::minmax({along(one.from->position), along(one.to->position)});
    const auto covered = std::minmax({along(wire.from), along(wire.to)});
    constexpr double reach = 1.5; // times the distance between the poles
    return std::abs(place - across(wire.to)) <= samePlace && covered.first <= pole.first + samePlace &&
           covered.second >= pole.second - samePlace &&
           std::min(std::abs(place - ofOne), std::abs(place - ofOther)) <= reach * std::abs(ofOne - ofOther);
  }

  void checkPoles(const Netlist& netlist, const Lines& lines, const Pole& one, const Pole& other) {
    for (const auto& [pin, end, otherPin, otherEnd] :
         {std::tuple(one.from, one.to, other.from, other.to),
          std::tuple(one.to, one.from, other.to, other.from)}) {
      const std::wstring first = lineOf(lines, pin);
      const std::wstring second = lineOf(lines, otherPin);
      if (first.empty() || second.empty() || first == second || end->conductor != otherEnd->conductor)
        continue;
      // Behind a star contactor the lines meet, and nothing else is there.
      const bool isStarPoint =
          std::ranges::all_of(netlist.conductors[*end->conductor].pins, [&](const std::size_t place) {
            return netlist.pins[place].symbol == end->symbol;
          });
      if (isStarPoint) continue;
      add(L"run-lines-joined", at(end->position),
          {{L"first", first}, {L"second", second}, {L"choices", circuit_.choices}});
    }
  }

  /// CODE and tag: several symbols may show one component, and one of them says its rating.
  using Component = std::pair<std::wstring, std::wstring>;
  struct Unrated {
    FindingPlace place;
    std::wstring block;
  };

  /// Each part that was handed to the forms of a CODE is on one of its components, if it placed any.
  void checkParts() {
    for (const auto& [code, parts] : circuit_.parts) {
      const auto placed = placed_.find(code);
      if (placed == placed_.end()) continue;
      const std::vector<Placed>& components = placed->second;
      for (const auto& [table, number] : parts) {
        const auto has = [&number](const Placed& each) { return equalsOrdinalNoCase(each.part, number); };
        if (std::ranges::any_of(components, has)) continue;
        const auto empty = std::ranges::find_if(
            components, [](const Placed& each) { return brenvolt::trimView(each.part).empty(); });
        const Placed& shown = empty == components.end() ? components.front() : *empty;
        add(L"run-no-part", shown.place,
            {{L"block", shown.block},
             {L"tag", shown.tag},
             {L"table", table},
             {L"part", number},
             {L"choices", circuit_.choices}});
      }
    }
  }

  const DrawnCircuit& circuit_;
  const simhost::DrawingStore& store_;
  ReportedFindings& reported_;
  Findings& findings_;
  std::vector<const EntityNode*> nodes_;
  std::vector<DisplayItem> items_;
  std::vector<Wire> wires_;
  simhost::BoxIndex index_;
  /// A component that can hold a part.
  struct Placed {
    FindingPlace place;
    std::wstring block;
    std::wstring tag;
    std::wstring part; ///< catalogue number, may be empty
  };
  std::map<std::wstring, std::vector<Placed>> placed_; ///< by CODE, in upper case
  std::map<Component, Unrated> unrated_;               ///< the first symbol of each without a rating
  std::set<Component> rated_;
};

} // namespace

void checkDrawing(const DrawnCircuit& circuit, ReportedFindings& reported, Findings& findings) {
  DrawingCheck(circuit, reported, findings).run();
}

} // namespace circuits
