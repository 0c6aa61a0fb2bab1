// The devices, pins and nets of a drawing, found in what it shows: symbols with their terminals, lines on wire layers,
// connection dots and wire numbers. Every list that a firm makes from its drawings is made from this.
//
// What the drawing has to keep to:
// - a symbol is a block reference with a FAMILY or with pins; TAG1 or TAG2 names its device; symbols with equal tag,
//   installation and location are one device;
// - an attribute X?TERM?? is at its pin and contains the pin's number; the digit after the X is the side of the symbol;
// - a terminal is a symbol of the family TRMS: TAGSTRIP names the strip, TERM01 the terminal;
// - a wire is a line on a wire layer, which is named COLOUR_SIZE; wires are connected where an end of one touches the
//   other, and where a block without attributes, a connection dot, is on their crossing;
// - an attribute WIRENO of a block on a wire is the number of the wire's net.
#pragma once

#include "simhost/drawing/drawing_database.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace circuits {

/// The family of terminals.
inline constexpr std::wstring_view terminalFamily = L"TRMS";
/// The family of symbols that stand at the end of a wire and say where it goes on: TAG1 names the supply, the pin its line.
inline constexpr std::wstring_view sourceFamily = L"SRC";
/// What the parent product leaves on a motor or load: its data, and its wires.
inline constexpr std::wstring_view paramsApplication = L"ORL_QN_BV_CIRCPARAMS";
inline constexpr std::wstring_view wiresApplication = L"ORL_QN_BV_CIRCPARAMS2";

struct Device {
  std::wstring tag{};
  std::wstring installation{};
  std::wstring location{};
  std::wstring family{};
  std::wstring maker{};
  std::wstring catalogue{};
  std::wstring assembly{};
  std::wstring rating{};
  std::vector<std::wstring> descriptions{};
  std::vector<KvDbHandle> symbols{}; ///< the main one first, then the others in drawing order
  std::wstring params{};  ///< motor or load data that the parent product keeps on it, fields between ";"
  std::wstring wires{};   ///< likewise its wires
  std::wstring circuit{}; ///< id of the main symbol's circuit; empty for symbols drawn by hand
};

struct Pin {
  std::size_t device = 0;
  KvDbHandle symbol;
  std::wstring number; ///< of a terminal, that of the terminal
  wchar_t side = L'0'; ///< digit of the attribute's name
  KvPoint3d position;
  std::optional<std::size_t> net{};       ///< nothing for a pin without a wire
  std::optional<std::size_t> conductor{}; ///< likewise
};

/// A wire as a fitter lays it, between two pins of a conductor.
struct WireRun {
  std::size_t from = 0; ///< pin
  std::size_t to = 0;
  std::wstring layer; ///< whose size and colour it has
};

/// Wires that hang together without going through a terminal.
struct Conductor {
  std::vector<KvDbHandle> wires; ///< in drawing order
  std::vector<std::size_t> pins; ///< from left to right, then from top to bottom
  std::vector<WireRun> runs;     ///< each pin is reached once
  std::wstring layer;            ///< of the wire with the most of its length
  std::wstring colour;
  std::wstring size;
  std::size_t net = 0;
};

struct Net {
  std::wstring number;                ///< empty where the drawing shows none
  std::vector<std::wstring> others{}; ///< further numbers on it, which is a fault of the drawing
  std::vector<std::size_t> conductors{};
  bool carriesNumber = true; ///< wires of layers without wire numbers, grounding conductors, carry none
  std::wstring circuit;      ///< id, of the first wire
};

struct Netlist {
  std::vector<Device> devices;
  std::vector<Pin> pins;
  std::vector<Conductor> conductors;
  std::vector<Net> nets;
};

/// Reads the drawing's current space.
[[nodiscard]] Netlist readNetlist(const simhost::DrawingDatabase& drawing);

/// BLK and 10AWG of a wire layer BLK_10AWG; a layer without a colour is a size.
[[nodiscard]] std::wstring layerColour(const std::wstring& layer);
[[nodiscard]] std::wstring layerSize(const std::wstring& layer);

/// "M1:13"; of a terminal "TB1:3".
[[nodiscard]] std::wstring pinName(const Netlist& netlist, const Pin& pin);

} // namespace circuits
