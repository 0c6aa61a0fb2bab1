// The lines of the circuits panel: what a drawing says of its circuits, and whether that is still what the site says.
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
  QString notes{}; ///< what is behind the state, a line each; empty for a circuit that is as it was built
  QString searchText{}; ///< all by which it is found, tags of its components too
};

/// `sheet`: the drawing's number. `site`: null when there is no site or it cannot be read; nothing is out of date then.
[[nodiscard]] std::vector<CircuitRow> circuitRows(
    const std::vector<circuits::CircuitObject>& circuits, const std::wstring& sheet,
    const SiteConfigurations* site, const HostTexts& texts);

} // namespace simhost
