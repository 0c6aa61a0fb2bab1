// Gathering, and one line of JSON.
#include "circuits/set/part_outline.h"

#include "circuits/set/numbering.h"
#include "circuits/set/sheet_maker.h"
#include "text/encoding.h"

#include <nlohmann/json.hpp>

#include <array>
#include <utility>

namespace circuits {

using brenvolt::fromUtf8;
using brenvolt::toUtf8;
using Json = nlohmann::ordered_json;

namespace {

/// Of the form of the text; a part with an outline of another one is built again.
constexpr int outlineVersion = 2;

Json pointsOf(const std::wstring& name, const std::vector<KvPoint3d>& points) {
  Json row = Json::array({toUtf8(name)});
  for (const KvPoint3d& point : points) {
    row.push_back(point.x);
    row.push_back(point.y);
  }
  return row;
}

std::pair<std::wstring, std::vector<KvPoint3d>> readPoints(const Json& row) {
  std::pair<std::wstring, std::vector<KvPoint3d>> result;
  result.first = fromUtf8(row.at(0).get<std::string>());
  for (std::size_t place = 1; place + 1 < row.size(); place += 2)
    result.second.push_back({row.at(place).get<double>(), row.at(place + 1).get<double>(), 0.0});
  return result;
}

} // namespace

PartOutline outlineOf(const simhost::DrawingDatabase& drawing) {
  const Netlist netlist = readNetlist(drawing);
  PartOutline outline{shownExtents(drawing), symbolsOf(drawing, netlist), lineEndsOf(netlist)};
  outline.extents.include(lineReferenceRoom(drawing, netlist));
  for (const auto& [terminal, strip] : terminalNumbers(drawing))
    ++outline.terminals[strip];
  return outline;
}

std::string outlineText(const PartOutline& outline) {
  Json json = {{"version", outlineVersion}};
  const simhost::Box& box = outline.extents;
  if (!box.isEmpty()) json["extents"] = {box.left, box.bottom, box.right, box.top};
  json["symbols"] = Json::array();
  for (const DeviceSymbols& device : outline.symbols)
    json["symbols"].push_back(pointsOf(device.device, device.positions));
  json["lines"] = Json::array();
  for (const LineEnd& end : outline.lineEnds)
    json["lines"].push_back(pointsOf(end.line, {end.position}));
  json["terminals"] = Json::object();
  for (const auto& [strip, count] : outline.terminals)
    json["terminals"][toUtf8(strip)] = count;
  json["drawing"] = {outline.drawing.length, outline.drawing.digest};
  return json.dump() + "\n";
}

std::optional<PartOutline> readOutline(std::string_view text) {
  try {
    const Json json = Json::parse(text);
    if (json.at("version") != outlineVersion) return std::nullopt;
    PartOutline outline;
    if (json.contains("extents")) {
      const auto sides = json.at("extents").get<std::array<double, 4>>();
      outline.extents = {sides[0], sides[1], sides[2], sides[3]};
    }
    for (const Json& row : json.at("symbols")) {
      auto [device, positions] = readPoints(row);
      outline.symbols.push_back({std::move(device), std::move(positions)});
    }
    for (const Json& row : json.at("lines")) {
      const auto [line, positions] = readPoints(row);
      outline.lineEnds.push_back({line, positions.at(0)});
    }
    for (const auto& [strip, count] : json.at("terminals").items())
      outline.terminals[fromUtf8(strip)] = count.get<int>();
    outline.drawing = {
        json.at("drawing").at(0).get<std::size_t>(), json.at("drawing").at(1).get<std::string>()};
    return outline;
  } catch (const std::exception&) {
    return std::nullopt; // half a file of a run that was ended
  }
}

} // namespace circuits
