// Each list as its columns and one function that fills the rows.
#include "circuits/reports/drawing_reports.h"

#include "circuits/reports/circuit_summary.h"
#include "text/compare.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <tuple>
#include <utility>

namespace circuits {

namespace {

using Cell = std::optional<std::wstring>;
using Row = std::vector<Cell>;

/// Motors and loads are fed by a circuit; they are not ordered by its parts list.
const std::set<std::wstring> fedFamilies = {L"MO", L"LD"};
/// What protects a branch.
const std::set<std::wstring> protectionFamilies = {L"CB", L"FU"};

Cell known(const std::wstring& text) {
  return text.empty() ? Cell() : Cell(text);
}

Cell count(std::size_t number) {
  return brenvolt::formatInt(static_cast<std::int64_t>(number));
}

std::wstring joined(const std::vector<std::wstring>& texts, std::wstring_view separator) {
  return brenvolt::join(texts, separator);
}

/// Each text once, as people sort them.
std::vector<std::wstring> sortedOnce(std::vector<std::wstring> texts) {
  std::sort(texts.begin(), texts.end(), comesBefore);
  texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
  return texts;
}

void addNote(Report& report, std::size_t number, const wchar_t* text) {
  if (number != 0) report.notes.push_back(brenvolt::formatInt(static_cast<std::int64_t>(number)) + text);
}

/// A device by what makes it one device in the whole set.
std::wstring deviceKey(const Device& device) {
  return device.tag + L'\n' + device.installation + L'\n' + device.location;
}

struct PartLine {
  std::vector<std::wstring> tags;
  std::wstring family;
  std::size_t quantity = 0;
};

Report partsReport(const std::vector<Sheet>& sheets) {
  Report report{
      L"Parts",
      {{"quantity", L"Quantity", true},
       {"family", L"Family"},
       {"maker", L"Maker"},
       {"catalogue", L"Catalogue number"},
       {"assembly", L"Assembly"},
       {"rating", L"Rating"},
       {"tags", L"Tags"}}};
  // A device that is shown on several sheets is one part, with the catalogue number of the sheet that has it.
  std::map<std::wstring, const Device*> devices;
  std::map<std::tuple<std::wstring, std::wstring, std::wstring, std::wstring, std::wstring>, PartLine> lines;
  const auto add = [&lines](const Device& device, const std::wstring& tag) {
    PartLine& line = lines[{device.family, device.maker, device.catalogue, device.assembly, device.rating}];
    ++line.quantity;
    line.tags.push_back(tag);
  };
  for (const Sheet& sheet : sheets)
    for (const Device& device : sheet.netlist.devices) {
      if (device.family.empty() || fedFamilies.contains(device.family)) continue;
      if (device.family == terminalFamily) {
        Device one = device;
        one.rating.clear();
        for (std::size_t terminal = 0; terminal < device.symbols.size(); ++terminal)
          add(one, device.tag);
      } else if (device.tag.empty()) {
        add(device, L"?");
      } else {
        const auto [place, isNew] = devices.try_emplace(deviceKey(device), &device);
        if (!isNew && place->second->catalogue.empty()) place->second = &device;
      }
    }
  for (const auto& [key, device] : devices)
    add(*device, device->tag);
  std::size_t withoutPart = 0;
  for (auto& [key, line] : lines) {
    const auto& [family, maker, catalogue, assembly, rating] = key;
    if (catalogue.empty()) withoutPart += line.quantity;
    report.rows.push_back(
        {count(line.quantity), known(family), known(maker), known(catalogue), known(assembly), known(rating),
         joined(sortedOnce(std::move(line.tags)), L", ")});
  }
  addNote(report, withoutPart, L" devices have no catalogue number: no part was chosen for them.");
  return report;
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

/// The motor or load at one of the pins; null for none.
const Device* fedDevice(const Netlist& list, const std::vector<std::size_t>& pins) {
  for (const std::size_t pin : pins)
    if (const Device& device = list.devices[list.pins[pin].device]; fedFamilies.contains(device.family))
      return &device;
  return nullptr;
}

std::wstring cableName(const Device& fed) {
  return L"W-" + fed.tag;
}

Report wiresReport(const std::vector<Sheet>& sheets) {
  Report report{
      L"Wires",
      {{"number", L"Number"},
       {"size", L"Size"},
       {"colour", L"Colour"},
       {"from", L"From"},
       {"to", L"To"},
       {"length", L"Length"},
       {"sheet", L"Sheet"}}};
  std::size_t withoutNumber = 0;
  std::size_t stray = 0;
  for (const Sheet& sheet : sheets) {
    const Netlist& list = sheet.netlist;
    const auto add = [&](const Net& net, const std::wstring& layer, std::size_t from, Cell to, Cell length) {
      if (net.number.empty() && net.carriesNumber) ++withoutNumber;
      report.rows.push_back(
          {known(net.number), known(layerSize(layer)), known(layerColour(layer)),
           pinName(list, list.pins[from]), std::move(to), std::move(length), sheet.number});
    };
    for (const Conductor& conductor : list.conductors) {
      const Net& net = list.nets[conductor.net];
      if (conductor.pins.empty()) ++stray;
      // The other end is at a source that the drawing does not show: its cell stays empty.
      if (conductor.pins.size() == 1) {
        add(net, conductor.layer, conductor.pins.front(), Cell(), Cell());
      }
      for (const WireRun& run : conductor.runs) {
        // The length of a list's row is that of the cable to its motor or load.
        const Device* fed = fedDevice(list, {run.from, run.to});
        add(net, run.layer, run.from, pinName(list, list.pins[run.to]),
            fed == nullptr ? Cell() : circuitText(sheet, *fed, L"length"));
      }
    }
  }
  addNote(report, withoutNumber, L" wires have no number: the drawing shows none on their nets.");
  addNote(report, stray, L" wires touch no pin at all and are not in this list.");
  return report;
}

/// What a terminal is wired to on one side.
std::wstring otherEnds(const Netlist& list, const Pin& pin) {
  std::vector<std::wstring> names;
  if (!pin.conductor) return {};
  for (const std::size_t place : list.conductors[*pin.conductor].pins)
    if (const Pin& other = list.pins[place]; &other != &pin) names.push_back(pinName(list, other));
  return joined(names, L", ");
}

/// The other terminals of the strip that one wire connects with this one.
std::wstring jumpersOf(const Netlist& list, const Pin& pin) {
  std::vector<std::wstring> numbers;
  if (!pin.conductor) return {};
  for (const std::size_t place : list.conductors[*pin.conductor].pins)
    if (const Pin& other = list.pins[place]; other.device == pin.device && other.symbol != pin.symbol)
      numbers.push_back(other.number);
  return joined(sortedOnce(std::move(numbers)), L", ");
}

Report terminalsReport(const std::vector<Sheet>& sheets) {
  Report report{
      L"Terminals",
      {{"strip", L"Strip"},
       {"terminal", L"Terminal"},
       {"number", L"Wire number"},
       {"size", L"Size"},
       {"inside", L"One side"},
       {"outside", L"Other side"},
       {"jumper", L"Jumper to"},
       {"cable", L"Cable"},
       {"sheet", L"Sheet"}}};
  std::map<std::pair<std::wstring, std::wstring>, int> uses;
  for (const Sheet& sheet : sheets) {
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
      ++uses[{strip, first.number}];
      const Device* fed = nullptr;
      for (const Pin* pin : pins)
        if (fed == nullptr && pin->conductor) fed = fedDevice(list, list.conductors[*pin->conductor].pins);
      report.rows.push_back(
          {known(strip), known(first.number), wired->net ? known(list.nets[*wired->net].number) : Cell(),
           wired->conductor ? known(list.conductors[*wired->conductor].size) : Cell(),
           known(otherEnds(list, first)), pins.size() > 1 ? known(otherEnds(list, *pins.back())) : Cell(),
           known(jumpersOf(list, *wired)), fed == nullptr ? Cell() : Cell(cableName(*fed)), sheet.number});
    }
  }
  std::stable_sort(report.rows.begin(), report.rows.end(), [](const Row& one, const Row& other) {
    if (one[0] != other[0]) return comesBefore(one[0].value_or(L""), other[0].value_or(L""));
    return comesBefore(one[1].value_or(L""), other[1].value_or(L""));
  });
  const auto twice = static_cast<std::size_t>(
      std::count_if(uses.begin(), uses.end(), [](const auto& use) { return use.second > 1; }));
  addNote(report, twice, L" terminals of a strip are drawn more than once.");
  return report;
}

/// The fields of a motor or load as the parent product keeps them, by their place.
struct LoadField {
  std::size_t place;
  const char* key;
  const wchar_t* title;
};
constexpr std::array loadFields = {
    LoadField{0, "type", L"Type"},         LoadField{1, "load", L"Load"},
    LoadField{2, "units", L"Units"},       LoadField{3, "voltage", L"Voltage (V)"},
    LoadField{4, "phase", L"Phase"},       LoadField{5, "frequency", L"Frequency (Hz)"},
    LoadField{6, "speed", L"Speed (rpm)"}, LoadField{7, "current", L"Full-load current (A)"}};

std::wstring protectionOf(const Sheet& sheet, const std::wstring& circuit) {
  std::vector<std::wstring> texts;
  for (const Device& device : sheet.netlist.devices)
    if (!circuit.empty() && device.circuit == circuit && protectionFamilies.contains(device.family) &&
        !device.rating.empty())
      texts.push_back(device.tag + L' ' + device.rating);
  return joined(sortedOnce(std::move(texts)), L", ");
}

Report motorsReport(const std::vector<Sheet>& sheets) {
  Report report{L"Motors and loads", {{"tag", L"Tag"}, {"circuit", L"Circuit"}}};
  for (const LoadField& field : loadFields)
    report.columns.push_back({field.key, field.title, field.place != 0 && field.place != 2});
  report.columns.push_back({"wires", L"Wires"});
  report.columns.push_back({"length", L"Length"});
  report.columns.push_back({"drop", L"Voltage drop"});
  report.columns.push_back({"protection", L"Protection"});
  report.columns.push_back({"sheet", L"Sheet"});
  std::size_t withoutData = 0;
  for (const Sheet& sheet : sheets)
    for (const Device& device : sheet.netlist.devices) {
      if (!fedFamilies.contains(device.family)) continue;
      const CircuitObject* circuit = circuitOf(sheet, device);
      const std::vector<std::wstring> fields = circuit == nullptr
                                                   ? std::vector<std::wstring>()
                                                   : brenvolt::splitKeepingEmpty(circuit->params, L';');
      Row row = {
          known(device.tag), circuit == nullptr
                                 ? Cell()
                                 : known(
                                       simhost::circuitField(circuit->fields, L"circuit") + L", " +
                                       simhost::circuitField(circuit->fields, L"type"))};
      for (const LoadField& field : loadFields)
        row.push_back(field.place < fields.size() ? known(brenvolt::trim(fields[field.place])) : Cell());
      if (!row[3]) ++withoutData;
      row.push_back(known(wireSizesOf(device.wires)));
      row.push_back(circuitText(sheet, device, L"length"));
      row.push_back(circuitText(sheet, device, L"drop"));
      row.push_back(known(protectionOf(sheet, device.circuit)));
      row.emplace_back(sheet.number);
      report.rows.push_back(std::move(row));
    }
  addNote(report, withoutData, L" motors or loads were drawn without data: nothing is known of their load.");
  return report;
}

Report cablesReport(const std::vector<Sheet>& sheets) {
  Report report{
      L"Cables",
      {{"cable", L"Cable"},
       {"from", L"From"},
       {"to", L"To"},
       {"conductors", L"Conductors"},
       {"length", L"Length"},
       {"raceway", L"Raceway"},
       {"sheet", L"Sheet"}}};
  std::size_t withoutLength = 0;
  for (const Sheet& sheet : sheets) {
    const Netlist& list = sheet.netlist;
    for (std::size_t place = 0; place < list.devices.size(); ++place) {
      const Device& device = list.devices[place];
      if (!fedFamilies.contains(device.family)) continue;
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
      Cell length = circuitText(sheet, device, L"length");
      if (!length) ++withoutLength;
      report.rows.push_back(
          {cableName(device), known(joined(sortedOnce(std::move(from)), L", ")), known(device.tag),
           known(joined(texts, L", ")), std::move(length), circuitText(sheet, device, L"raceway"),
           sheet.number});
    }
  }
  addNote(report, withoutLength, L" cables have no length: the drawings do not keep one.");
  return report;
}

Report sheetsReport(const std::vector<Sheet>& sheets) {
  Report report{
      L"Sheets",
      {{"sheet", L"Sheet"},
       {"title", L"Title"},
       {"file", L"File"},
       {"circuits", L"Circuits", true},
       {"devices", L"Devices", true},
       {"nets", L"Nets", true},
       {"unnumbered", L"Nets without a number", true},
       {"doubled", L"Nets with several numbers", true},
       {"names", L"Circuits by name"}}};
  for (const Sheet& sheet : sheets) {
    const auto nets = [&sheet](const auto& isMeant) {
      return count(static_cast<std::size_t>(
          std::count_if(sheet.netlist.nets.begin(), sheet.netlist.nets.end(), isMeant)));
    };
    std::vector<std::wstring> names;
    for (const CircuitObject& circuit : sheet.circuits)
      names.push_back(circuit.name());
    report.rows.push_back(
        {sheet.number, known(sheet.title), sheet.file, count(sheet.circuits.size()),
         count(sheet.netlist.devices.size()), count(sheet.netlist.nets.size()),
         nets([](const Net& net) { return net.number.empty() && net.carriesNumber; }),
         nets([](const Net& net) { return !net.others.empty(); }), joined(names, L", ")});
  }
  return report;
}

struct KindRow {
  const char* word;
  ReportKind kind;
  Report (*make)(const std::vector<Sheet>&);
};
constexpr std::array kinds = {
    KindRow{"parts", ReportKind::parts, partsReport},
    KindRow{"wires", ReportKind::wires, wiresReport},
    KindRow{"terminals", ReportKind::terminals, terminalsReport},
    KindRow{"motors", ReportKind::motors, motorsReport},
    KindRow{"cables", ReportKind::cables, cablesReport},
    KindRow{"sheets", ReportKind::sheets, sheetsReport}};

std::wstring titleText(const simhost::DrawingDatabase& drawing, std::wstring_view tag) {
  const simhost::EntityNode* node = drawing.store().findBlock(drawing.currentSpace())->first;
  for (; node != nullptr; node = node->next)
    for (const KvDbHandle handle : node->attributes)
      if (const simhost::EntityNode* attribute = drawing.find(handle)) {
        const auto& value = std::get<simhost::Attribute>(attribute->value.shape);
        if (brenvolt::equalsOrdinalNoCase(value.tag, tag) && !value.text.text.empty()) return value.text.text;
      }
  return {};
}

std::optional<std::size_t> columnOf(const Report& report, const std::string& key) {
  const auto found =
      std::find_if(report.columns.begin(), report.columns.end(), [&key](const ReportColumn& column) {
        return column.key == key;
      });
  if (found == report.columns.end()) return std::nullopt;
  return static_cast<std::size_t>(found - report.columns.begin());
}

} // namespace

std::wstring sheetNumber(const simhost::DrawingDatabase& drawing, const std::wstring& file) {
  std::wstring number = titleText(drawing, L"SHEET");
  return number.empty() ? file : number;
}

Sheet readSheet(const simhost::DrawingDatabase& drawing, std::wstring file) {
  std::wstring number = sheetNumber(drawing, file);
  return {
      std::move(number), titleText(drawing, L"TITLE"), std::move(file), readNetlist(drawing),
      circuitsOf(drawing)};
}

std::optional<ReportKind> reportKindOf(std::string_view word) {
  for (const KindRow& row : kinds)
    if (row.word == word) return row.kind;
  return std::nullopt;
}

std::vector<std::string> reportKinds() {
  std::vector<std::string> words;
  for (const KindRow& row : kinds)
    words.emplace_back(row.word);
  return words;
}

Report makeReport(ReportKind kind, const std::vector<Sheet>& sheets) {
  return kinds[static_cast<std::size_t>(kind)].make(sheets);
}

std::optional<std::string> applyLayout(Report& report, const ReportLayout& layout) {
  for (const auto* names : {&layout.columns, &layout.sort})
    for (const std::string& name : *names)
      if (!columnOf(report, name)) return "there is no column \"" + name + "\"";
  for (auto name = layout.sort.rbegin(); name != layout.sort.rend(); ++name) {
    const std::size_t column = *columnOf(report, *name);
    std::stable_sort(report.rows.begin(), report.rows.end(), [column](const Row& one, const Row& other) {
      return comesBefore(one[column].value_or(std::wstring()), other[column].value_or(std::wstring()));
    });
  }
  if (layout.columns.empty()) return std::nullopt;
  Report chosen{report.title, {}, {}, std::move(report.notes)};
  for (const std::string& name : layout.columns)
    chosen.columns.push_back(report.columns[*columnOf(report, name)]);
  for (const Row& row : report.rows) {
    Row cells;
    for (const std::string& name : layout.columns)
      cells.push_back(row[*columnOf(report, name)]);
    chosen.rows.push_back(std::move(cells));
  }
  report = std::move(chosen);
  return std::nullopt;
}

bool comesBefore(std::wstring_view one, std::wstring_view other) {
  const auto isDigit = [](wchar_t character) { return character >= L'0' && character <= L'9'; };
  std::size_t left = 0;
  std::size_t right = 0;
  while (left < one.size() && right < other.size()) {
    if (!isDigit(one[left]) || !isDigit(other[right])) {
      if (one[left] != other[right]) return one[left] < other[right];
      ++left;
      ++right;
      continue;
    }
    const auto number = [&isDigit](std::wstring_view text, std::size_t& at) {
      while (at + 1 < text.size() && text[at] == L'0' && isDigit(text[at + 1]))
        ++at;
      const std::size_t start = at;
      while (at < text.size() && isDigit(text[at]))
        ++at;
      return text.substr(start, at - start);
    };
    const std::wstring_view first = number(one, left);
    const std::wstring_view second = number(other, right);
    if (first.size() != second.size()) return first.size() < second.size();
    if (first != second) return first < second;
  }
  if (one.size() - left != other.size() - right) return one.size() - left < other.size() - right;
  return one < other; // 01 and 1 differ after all
}

} // namespace circuits
