// The rows of the circuits panel: the circuits of a drawing, and whether they still agree with the site.
#pragma once

#include "circuits/provenance/circuit_objects.h"
#include "simhost/gui/host_texts.h"
#include "simhost/site/saved_configurations.h"

#include <QString>

#include <array>
#include <string>
#include <vector>

namespace simhost {

enum class CircuitColumn { number, tag, type, load, wire, sheet, state };
inline constexpr std::size_t circuitColumnCount = 7;

struct CircuitRow {
  std::wstring id{};
  std::array<QString, circuitColumnCount> cells{};
  QString notes{};      ///< the reasons of the state, one per line; empty for an unchanged circuit
  QString searchText{}; ///< all by which it is found, tags of its components too
};

/// Whether the key is of the circuit's type.
[[nodiscard]] bool isOfType(const brenvolt::HistoryKey& key, const circuits::CircuitObject& circuit);
/// Whether the workbook has the circuit's type.
[[nodiscard]] bool hasType(const SiteConfigurations& site, const circuits::CircuitObject& circuit);

/// `sheet`: the drawing's number. `site`: null when there is no site or it cannot be read; nothing is out of date then.
[[nodiscard]] std::vector<CircuitRow> circuitRows(
    const std::vector<circuits::CircuitObject>& circuits, const std::wstring& sheet,
    const SiteConfigurations* site, const HostTexts& texts);

} // namespace simhost
