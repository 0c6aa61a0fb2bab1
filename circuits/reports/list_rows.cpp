// Each list as one function from a sheet to its rows.
#include "circuits/reports/list_rows.h"

#include "circuits/provenance/load_data.h"
#include "circuits/reports/circuit_summary.h"
#include "circuits/reports/protection_limits.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>

namespace circuits {

namespace {

using Cell = std::optional<std::wstring>;

Cell known(const std::wstring& text) {
  return text.empty() ? Cell() : Cell(text);
}

Cell count(std::size_t number) {
  return brenvolt::formatInt(static_cast<std::int64_t>(number));
}

/// A row for each device and for each terminal: what it is and how it is named. What makes devices of several sheets one
/// is in the first cells.
ListRows partRows(const Sheet& sheet) {
  ListRows list;
  for (const Device& device : sheet.netlist.devices) {
    if (device.family.empty() || device.family == sourceFamily || isFed(device)) continue;
    const bool isTerminal = device.family == terminalFamily;
    const ReportRow row = {known(device.tag),      known(device.installation),
                           known(device.location), device.family,
                           known(device.maker),    known(device.catalogue),
                           known(device.assembly), isTerminal ? Cell() : known(device.rating)};
    list.rows.insert(list.rows.end(), isTerminal ? device.symbols.size() : 1, row);
  }
  return list;
}

const CircuitObject* circuitOf(const Sheet& sheet, const Device& device) {
  for (const CircuitObject& circuit : sheet.circuits)
    if (circuit.id == device.circuit) return &circuit;
  return nullptr;
}

/// What the drawing keeps of the circuit that a device belongs to.
Cell circuitText(const Sheet& sheet, const Device& device, std::wstring_view name) {
  const CircuitObject* circuit = circuitOf(sheet, device);
  return circuit == nullptr ? Cell() : known(simhost::circuitField(circuit->fields, name));
}

/// The cable of a motor or load by its own data; of several motors of a circuit each has its own.
Cell cableLength(const Sheet& sheet, const Device& device) {
  if (const std::wstring length = setupText(device.params, L"Wire length"); brenvolt::toDouble(length) > 0.0)
    return length + L' ' + setupText(device.params, L"Length units");
  return circuitText(sheet, device, L"length");
}

/// The motor or load at one of the pins; null for none.
const Device* fedDevice(const Netlist& list, const std::vector<std::size_t>& pins) {
  for (const std::size_t pin : pins)
    if (const Device& device = list.devices[list.pins[pin].device]; isFed(device)) return &device;
  return nullptr;
}

std::wstring cableName(const Device& fed) {
  return L"W-" + fed.tag;
}

ListRows wireRows(const Sheet& sheet) {
  ListRows result;
  // In the order of the notes.
  std::size_t& withoutNumber = result.missing[0];
  std::size_t& stray = result.missing[1];
  std::size_t& open = result.missing[2];
  const Netlist& list = sheet.netlist;
  const auto add = [&](const Net& net, const std::wstring& layer, std::size_t from, Cell to, Cell length) {
    if (net.number.empty() && net.carriesNumber) ++withoutNumber;
    result.rows.push_back(
        {known(net.number), known(layerSize(layer)), known(layerColour(layer)),
         pinName(list, list.pins[from]), std::move(to), std::move(length), sheet.number});
  };
  for (const Conductor& conductor : list.conductors) {
    const Net& net = list.nets[conductor.net];
    if (conductor.pins.empty()) ++stray;
    // What the other end is wired to is not on the drawing: its cell stays empty.
    if (conductor.pins.size() == 1) {
      ++open;
      add(net, conductor.layer, conductor.pins.front(), Cell(), Cell());
    }
    for (const WireRun& run : conductor.runs) {
      // The length of a list's row is that of the cable to its motor or load.
      const Device* fed = fedDevice(list, {run.from, run.to});
      add(net, run.layer, run.from, pinName(list, list.pins[run.to]),
          fed == nullptr ? Cell() : cableLength(sheet, *fed));
    }
  }
  return result;
}

/// What a terminal is wired to on one side.
std::wstring otherEnds(const Netlist& list, const Pin& pin) {
  std::vector<std::wstring> names;
  if (!pin.conductor) return {};
  for (const std::size_t place : list.conductors[*pin.conductor].pins)
    if (const Pin& other = list.pins[place]; &other != &pin) names.push_back(pinName(list, other));
  return brenvolt::join(names, L", ");
}

/// The other terminals of the strip that one wire connects with this one.
std::wstring jumpersOf(const Netlist& list, const Pin& pin) {
  std::vector<std::wstring> numbers;
  if (!pin.conductor) return {};
  for (const std::size_t place : list.conductors[*pin.conductor].pins)
    if (const Pin& other = list.pins[place]; other.device == pin.device && other.symbol != pin.symbol)
      numbers.push_back(other.number);
  return brenvolt::join(sortedOnce(std::move(numbers)), L", ");
}

ListRows terminalRows(const Sheet& sheet) {
  ListRows result;
  const Netlist& list = sheet.netlist;
  std::map<std::uint64_t, std::vector<const Pin*>> sides;
  std::vector<std::uint64_t> order;
  for (const Pin& pin : list.pins) {
    if (list.devices[pin.device].family != terminalFamily) continue;
    auto& pins = sides[pin.symbol.value()];
    if (pins.empty()) order.push_back(pin.symbol.value());
    pins.push_back(&pin);
  }
  for (const std::uint64_t symbol : order) {
    const std::vector<const Pin*>& pins = sides[symbol];
    const Pin& first = *pins.front();
    const std::wstring& strip = list.devices[first.device].tag;
    const Pin* const wired = first.net ? &first : pins.back();
    const Device* fed = nullptr;
    for (const Pin* pin : pins)
      if (fed == nullptr && pin->conductor) fed = fedDevice(list, list.conductors[*pin->conductor].pins);
    result.rows.push_back(
        {known(strip), known(first.number), wired->net ? known(list.nets[*wired->net].number) : Cell(),
         wired->conductor ? known(list.conductors[*wired->conductor].size) : Cell(),
         known(otherEnds(list, first)), pins.size() > 1 ? known(otherEnds(list, *pins.back())) : Cell(),
         known(jumpersOf(list, *wired)), fed == nullptr ? Cell() : Cell(cableName(*fed)), sheet.number});
  }
  return result;
}

ListRows motorRows(const Sheet& sheet) {
  ListRows result;
  const Protections protections(sheet);
  for (const Device& device : sheet.netlist.devices) {
    if (!isFed(device)) continue;
    const CircuitObject* circuit = circuitOf(sheet, device);
    const std::vector<std::wstring> fields = brenvolt::splitKeepingEmpty(device.params, L';');
    ReportRow row = {
        known(device.tag), circuit == nullptr ? Cell()
                                              : known(
                                                    simhost::circuitField(circuit->fields, L"circuit") +
                                                    L", " + simhost::circuitField(circuit->fields, L"type"))};
    for (const LoadField& field : loadFields())
      row.push_back(field.place < fields.size() ? known(brenvolt::trim(fields[field.place])) : Cell());
    if (!row[3]) ++result.missing[0];
    row.push_back(known(wireSizesOf(device.wires)));
    row.push_back(cableLength(sheet, device));
    row.push_back(circuitText(sheet, device, L"drop"));
    const Protection protection = protections.of(device);
    if (protection.isAboveConductors) ++result.missing[1];
    if (!protection.feeder.empty()) ++result.missing[2];
    row.push_back(known(protection.text));
    row.emplace_back(sheet.number);
    result.rows.push_back(std::move(row));
  }
  return result;
}

ListRows cableRows(const Sheet& sheet) {
  ListRows result;
  const Netlist& list = sheet.netlist;
  for (std::size_t place = 0; place < list.devices.size(); ++place) {
    const Device& device = list.devices[place];
    if (!isFed(device)) continue;
    // The part outside the cabinet: conductors of its pins, by size, and their sources.
    std::map<std::wstring, int> sizes;
    std::vector<std::wstring> from;
    for (const Pin& pin : list.pins) {
      if (pin.device != place || !pin.conductor) continue;
      const Conductor& conductor = list.conductors[*pin.conductor];
      const bool isGround = !list.nets[conductor.net].carriesNumber;
      ++sizes[(isGround ? L"PE " : L"") + conductor.size];
      // The grounding conductors of several motors are connected, so they do not show the way of a cable.
      for (const std::size_t other : conductor.pins)
        if (const Pin& end = list.pins[other]; end.device != place && !isGround)
          from.push_back(list.devices[end.device].tag);
    }
    std::vector<std::wstring> texts;
    for (const auto& [size, number] : sizes)
      texts.push_back(brenvolt::formatInt(number) + L" x " + size);
    Cell length = cableLength(sheet, device);
    if (!length) ++result.missing[0];
    result.rows.push_back(
        {cableName(device), known(brenvolt::join(sortedOnce(std::move(from)), L", ")), known(device.tag),
         known(brenvolt::join(texts, L", ")), std::move(length), circuitText(sheet, device, L"raceway"),
         sheet.number});
  }
  return result;
}

ListRows sheetRows(const Sheet& sheet) {
  ListRows result;
  const auto nets = [&sheet](const auto& isMeant) {
    return count(static_cast<std::size_t>(
        std::count_if(sheet.netlist.nets.begin(), sheet.netlist.nets.end(), isMeant)));
  };
  std::vector<std::wstring> names;
  for (const CircuitObject& circuit : sheet.circuits)
    names.push_back(circuit.name());
  result.rows.push_back(
      {sheet.number, known(sheet.title), sheet.file, count(sheet.circuits.size()),
       count(sheet.netlist.devices.size()), count(sheet.netlist.nets.size()),
       nets([](const Net& net) { return net.number.empty() && net.carriesNumber; }),
       nets([](const Net& net) { return !net.others.empty(); }), brenvolt::join(names, L", ")});
  return result;
}

} // namespace

std::vector<std::wstring> sortedOnce(std::vector<std::wstring> texts) {
  std::sort(texts.begin(), texts.end(), comesBefore);
  texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
  return texts;
}

const std::array<LoadField, 8>& loadFields() {
  static const std::array<LoadField, 8> fields = {
      {{0, "type", L"Type"},
       {1, "load", L"Load"},
       {2, "units", L"Units"},
       {3, "voltage", L"Voltage (V)"},
       {4, "phase", L"Phase"},
       {5, "frequency", L"Frequency (Hz)"},
       {6, "speed", L"Speed (rpm)"},
       {7, "current", L"Full-load current (A)"}}};
  return fields;
}

ListRows rowsOf(ReportKind kind, const Sheet& sheet) {
  switch (kind) {
  case ReportKind::parts:
    return partRows(sheet);
  case ReportKind::wires:
    return wireRows(sheet);
  case ReportKind::terminals:
    return terminalRows(sheet);
  case ReportKind::motors:
    return motorRows(sheet);
  case ReportKind::cables:
    return cableRows(sheet);
  case ReportKind::sheets:
    return sheetRows(sheet);
  }
  return {};
}

void pack(std::string& bytes, std::string_view text) {
  bytes += std::to_string(text.size());
  bytes += ':';
  bytes += text;
}

std::string_view unpack(std::string_view& bytes) {
  const std::size_t colon = bytes.find(':');
  const std::string_view text =
      bytes.substr(colon + 1, static_cast<std::size_t>(std::stoul(std::string(bytes.substr(0, colon)))));
  bytes.remove_prefix(colon + 1 + text.size());
  return text;
}

std::string packed(const ListRows& list) {
  std::string bytes;
  for (const std::size_t number : list.missing)
    pack(bytes, std::to_string(number));
  for (const ReportRow& row : list.rows) {
    pack(bytes, std::to_string(row.size()));
    for (const Cell& cell : row)
      pack(bytes, cell ? '=' + brenvolt::toUtf8(*cell) : std::string());
  }
  return bytes;
}

ListRows unpacked(std::string_view bytes) {
  const auto number = [&bytes] { return static_cast<std::size_t>(std::stoul(std::string(unpack(bytes)))); };
  ListRows list;
  for (std::size_t& missing : list.missing)
    missing = number();
  while (!bytes.empty()) {
    ReportRow row(number());
    for (Cell& cell : row)
      if (const std::string_view text = unpack(bytes); !text.empty())
        cell = brenvolt::fromUtf8(text.substr(1));
    list.rows.push_back(std::move(row));
  }
  return list;
}

} // namespace circuits
