// Small conductors of loads, and feeders of several motors, each by its own rule.
#include "circuits/reports/protection_limits.h"

#include "circuits/provenance/load_data.h"
#include "circuits/reports/list_rows.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string_view>
#include <utility>

namespace circuits {

namespace {

constexpr std::wstring_view loadFamily = L"LD";
const std::set<std::wstring> fedFamilies = {L"MO", std::wstring(loadFamily)};
/// What protects a branch or a feeder.
const std::set<std::wstring> protectionFamilies = {L"CB", L"FU"};
/// A switch without fuses protects nothing, but the feeder to it can be too small.
constexpr std::wstring_view switchFamily = L"DS";

constexpr std::wstring_view copper = L"CU";
constexpr std::wstring_view aluminium = L"AL";

/// The highest rating in A of what protects a small conductor: NEC 240.4(D).
struct SmallConductor {
  std::wstring_view metal;
  std::wstring_view size;
  double mostAmperes;
};
constexpr std::array<SmallConductor, 5> smallConductors = {
    {{copper, L"14AWG", 15.0},
     {copper, L"12AWG", 20.0},
     {copper, L"10AWG", 30.0},
     {aluminium, L"12AWG", 15.0},
     {aluminium, L"10AWG", 25.0}}};

/// Ampacity in A at 75C of NEC 310.16; 0 for a size that the table does not have in this metal.
struct FeederConductor {
  std::wstring_view size;
  double copperAmperes;
  double aluminiumAmperes;
};
constexpr std::array<FeederConductor, 19> feederConductors = {
    {{L"14AWG", 20.0, 0.0},
     {L"12AWG", 25.0, 20.0},
     {L"10AWG", 35.0, 30.0},
     {L"8AWG", 50.0, 40.0},
     {L"6AWG", 65.0, 50.0},
     {L"4AWG", 85.0, 65.0},
     {L"3AWG", 100.0, 75.0},
     {L"2AWG", 115.0, 90.0},
     {L"1AWG", 130.0, 100.0},
     {L"1/0AWG", 150.0, 120.0},
     {L"2/0AWG", 175.0, 135.0},
     {L"3/0AWG", 200.0, 155.0},
     {L"4/0AWG", 230.0, 180.0},
     {L"250KCMIL", 255.0, 205.0},
     {L"300KCMIL", 285.0, 230.0},
     {L"350KCMIL", 310.0, 250.0},
     {L"400KCMIL", 335.0, 270.0},
     {L"500KCMIL", 380.0, 310.0},
     {L"600KCMIL", 420.0, 340.0}}};

/// Standard ratings in A, NEC 240.6(A), as far as the conductors above need them.
constexpr std::array<double, 24> standardRatings = {15,  20,  25,  30,  35,  40,  45,  50,
                                                    60,  70,  80,  90,  100, 110, 125, 150,
                                                    175, 200, 225, 250, 300, 350, 400, 450};

/// The metal of a motor's or load's conductors, which are copper where its data do not say otherwise.
std::wstring metalOf(const Device& fed) {
  const std::wstring metal = setupText(fed.params, L"Conductor metal");
  return metal.empty() ? std::wstring(copper) : metal;
}

/// The limit for the conductors of a load. Null for larger ones and for those of a motor, which an overload relay protects
/// (NEC 240.4(G)).
const SmallConductor* smallConductorOf(const Device& fed) {
  const std::vector<std::wstring> wires = wireTexts(fed.wires);
  if (fed.family != loadFamily || wires.empty()) return nullptr;
  const std::wstring metal = metalOf(fed);
  const auto found = std::find_if(smallConductors.begin(), smallConductors.end(), [&](const auto& each) {
    return each.size == wires.front() && each.metal == metal;
  });
  return found == smallConductors.end() ? nullptr : &*found;
}

/// Nothing for a size that is not in the table.
std::optional<double> ampacityOf(const std::wstring& size, const std::wstring& metal) {
  for (const FeederConductor& each : feederConductors) {
    const double ampacity = metal == copper      ? each.copperAmperes
                            : metal == aluminium ? each.aluminiumAmperes
                                                 : 0.0;
    if (each.size == size && ampacity > 0.0) return ampacity;
  }
  return std::nullopt;
}

/// The next standard rating is allowed for an ampacity: NEC 240.4(B).
double standardRating(double ampacity) {
  return *std::lower_bound(standardRatings.begin(), standardRatings.end(), ampacity);
}

/// Sides of a symbol are numbered from the right, against the clock, by powers of two: a line that enters at one leaves
/// at the opposite one.
wchar_t oppositeSide(wchar_t side) {
  constexpr std::array<std::pair<wchar_t, wchar_t>, 4> sides = {
      {{L'1', L'4'}, {L'4', L'1'}, {L'2', L'8'}, {L'8', L'2'}}};
  const auto found =
      std::find_if(sides.begin(), sides.end(), [side](const auto& each) { return each.first == side; });
  return found == sides.end() ? L'0' : found->second;
}

} // namespace

bool isFed(const Device& device) {
  return fedFamilies.contains(device.family);
}

Protections::Protections(const Sheet& sheet) : list_(sheet.netlist), pins_(list_.devices.size()) {
  for (std::size_t pin = 0; pin < list_.pins.size(); ++pin)
    pins_[list_.pins[pin].device].push_back(pin);
}

Protection Protections::of(const Device& fed) const {
  Protection result;
  std::vector<std::wstring> texts;
  const SmallConductor* const small = smallConductorOf(fed);
  for (std::size_t place = 0; place < list_.devices.size(); ++place) {
    const Device& device = list_.devices[place];
    const bool protects = protectionFamilies.contains(device.family);
    if (fed.circuit.empty() || device.circuit != fed.circuit || (!protects && device.family != switchFamily))
      continue;
    if (protects && device.rating.empty()) {
      if (isProtection(place)) texts.push_back(device.tag + L" (no rating)");
    } else if (std::wstring text = feederFault(place, fed); !text.empty()) {
      result.feeder = text;
      texts.push_back(std::move(text));
    } else if (!protects) {
      continue;
    } else if (
        small != nullptr && brenvolt::toDouble(device.rating) > small->mostAmperes && isProtection(place)) {
      texts.push_back(
          device.tag + L' ' + device.rating + L" (" + std::wstring(small->size) + L": " +
          brenvolt::formatTrimmed(small->mostAmperes) + L"A at most)");
      result.isAboveConductors = true;
    } else {
      texts.push_back(device.tag + L' ' + device.rating);
    }
  }
  result.text = brenvolt::join(sortedOnce(std::move(texts)), L", ");
  return result;
}

/// Of more than one pole: what protects a branch has two at least, a fuse of a control circuit has one.
bool Protections::isProtection(std::size_t device) const {
  constexpr std::size_t leastPins = 4;
  return protectionFamilies.contains(list_.devices[device].family) && pins_[device].size() >= leastPins;
}

/// "FU1 100A (feeder 10AWG: 49A at most)"; empty where nothing is wrong, or the device protects no feeder. By NEC 430.62 the
/// limit follows from the motors, or from the conductors where they carry more than the motors need (430.24); those of a
/// motor are not under 240.4(D). A switch has no such limit.
std::wstring Protections::feederFault(std::size_t device, const Device& fed) const {
  const std::optional<Feeder> feeder = feederOf(device);
  // Sizes of another system are not under this code.
  if (!feeder || !(feeder->size.ends_with(L"AWG") || feeder->size.ends_with(L"KCMIL"))) return {};
  const std::optional<FeederLoad> load = loadOf(*feeder);
  const std::optional<double> ampacity = ampacityOf(feeder->size, metalOf(fed));
  const double most = std::max(load ? load->highestRating : 0.0, ampacity ? standardRating(*ampacity) : 0.0);
  const std::wstring& rating = list_.devices[device].rating;
  const bool protects = protectionFamilies.contains(list_.devices[device].family);
  std::wstring fault;
  if (load && ampacity && brenvolt::isGiven(load->leastAmpacity - *ampacity))
    fault = L" carries " + brenvolt::formatTrimmed(*ampacity) + L"A, its motors need " +
            brenvolt::formatTrimmed(load->leastAmpacity) + L"A";
  else if (!protects || !brenvolt::isGiven(brenvolt::toDouble(rating) - most))
    return {};
  else if (load && ampacity)
    fault = L": " + brenvolt::formatTrimmed(most) + L"A at most";
  else
    fault = L": its limit is not known";
  return list_.devices[device].tag + L' ' + rating + L" (feeder " + feeder->size + fault + L")";
}

std::optional<Protections::Feeder> Protections::feederOf(std::size_t device) const {
  Feeder feeder;
  for (const std::size_t place : pins_[device]) {
    const Pin& pin = list_.pins[place];
    if (!pin.conductor) continue;
    std::set<std::size_t> behind;
    for (const std::size_t other : list_.conductors[*pin.conductor].pins)
      if (const Pin& end = list_.pins[other];
          end.device != device && end.side == oppositeSide(pin.side) && isProtection(end.device))
        behind.insert(end.device);
    if (behind.size() < 2) continue;
    feeder.branches = std::move(behind);
    feeder.loadSide = pin.side;
  }
  if (feeder.branches.empty()) return std::nullopt;
  // Only the feeder leads to its protection; behind it, the branches begin on the same conductor.
  for (const std::size_t place : pins_[device])
    if (const Pin& pin = list_.pins[place]; pin.conductor && pin.side == oppositeSide(feeder.loadSide))
      feeder.size = list_.conductors[*pin.conductor].size;
  return feeder;
}

/// The highest rating is the largest protection of a branch and the full-load currents of the other motors, and not the
/// next standard rating (NEC 430.62(A)); the ampacity is that for 125 % of the largest current and the others (430.24).
/// Nothing where one of these is not known.
std::optional<Protections::FeederLoad> Protections::loadOf(const Feeder& feeder) const {
  struct Branch {
    double rating;
    double current; ///< of its motors
  };
  std::vector<Branch> branches;
  double all = 0.0;
  double largest = 0.0;
  for (const std::size_t place : feeder.branches) {
    Branch branch{brenvolt::toDouble(list_.devices[place].rating), 0.0};
    for (const std::size_t motor : fedBehind(place, feeder.loadSide)) {
      const double current =
          brenvolt::toDouble(setupText(list_.devices[motor].params, L"Full-load current (A)"));
      if (!brenvolt::isGiven(current)) return std::nullopt;
      branch.current += current;
      largest = std::max(largest, current);
    }
    if (!brenvolt::isGiven(branch.rating) || !brenvolt::isGiven(branch.current)) return std::nullopt;
    all += branch.current;
    branches.push_back(branch);
  }
  constexpr double continuousPart = 0.25;
  FeederLoad load{0.0, all + continuousPart * largest};
  for (const Branch& branch : branches)
    load.highestRating = std::max(load.highestRating, branch.rating + all - branch.current);
  return load;
}

/// Motors and loads that the lines from this side of a device reach, through what is in them.
std::set<std::size_t> Protections::fedBehind(std::size_t device, wchar_t loadSide) const {
  std::set<std::size_t> found;
  std::vector<std::size_t> pins = pins_[device];
  std::set<std::uint64_t> reached;
  for (std::size_t at = 0; at < pins.size(); ++at) {
    const Pin& pin = list_.pins[pins[at]];
    if (pin.side != loadSide || !pin.conductor) continue;
    const Conductor& conductor = list_.conductors[*pin.conductor];
    if (!list_.nets[conductor.net].carriesNumber) continue; // a grounding conductor
    for (const std::size_t other : conductor.pins) {
      const Pin& end = list_.pins[other];
      if (isFed(list_.devices[end.device])) found.insert(end.device);
      if (end.side != oppositeSide(loadSide) || !reached.insert(end.symbol.value()).second) continue;
      // Other symbols of the device, such as the contacts of a contactor, are not in this line.
      for (const std::size_t own : pins_[end.device])
        if (list_.pins[own].symbol == end.symbol) pins.push_back(own);
    }
  }
  return found;
}

namespace {

std::vector<std::wstring> faultsOf(const simhost::DrawingDatabase& drawing) {
  const Sheet sheet = readSheet(drawing, {});
  const Protections protections(sheet);
  std::vector<std::wstring> texts;
  for (const Device& device : sheet.netlist.devices) {
    if (!isFed(device)) continue;
    const Protection protection = protections.of(device);
    if (protection.isAboveConductors)
      texts.push_back(device.tag + L": " + protection.text + L": choose larger conductors (NEC 240.4(D))");
    if (!protection.feeder.empty())
      texts.push_back(
          protection.feeder + L": choose larger conductors or a smaller rating (NEC 430.24, 430.62)");
  }
  return sortedOnce(std::move(texts));
}

} // namespace

NewProtectionFaults::NewProtectionFaults(const simhost::DrawingDatabase& drawing)
    : drawing_(drawing), former_(faultsOf(drawing)) {}

std::vector<std::wstring> NewProtectionFaults::texts() const {
  std::vector<std::wstring> texts = faultsOf(drawing_);
  std::erase_if(texts, [this](const std::wstring& text) {
    return std::find(former_.begin(), former_.end(), text) != former_.end();
  });
  return texts;
}

} // namespace circuits
