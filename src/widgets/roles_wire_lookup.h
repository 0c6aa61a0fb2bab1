// The controls of the wire lookup: their roles, and a table that says of each which event means that the user changed
// it. One form serves motors, loads and placed circuits.
#pragma once

#include "host/host_api_ui.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace brenvolt {

enum class WireControl {
  standard,
  metal,
  insulation,
  voltage,
  phase,
  current, ///< of the motor or load, amperes
  multiplier,
  extraCurrent,
  total,
  dropTick,
  length,
  lengthUnits,
  raceway,
  powerFactor,
  dropLimitTick,
  dropLimit, ///< percent
  continuousTick,
  continuousFactor,
  energyPrice, ///< per kWh
  fillTick,
  fillRange,
  fillFactor,
  spareTick, ///< with its two inputs it enters no calculation
  spareInput1,
  spareInput2,
  ambientTick,
  ambientRange,
  ambientFactor,
  overallFactor,
  parallelTick,
  parallelCount,
  parallelMinSize,
  groundSize,
  showUndersized,
  report, ///< button
};
inline constexpr std::size_t wireControlCount = 35;

enum class WireControlKind { edit, list, editableList, tick, button };

struct WireControlRow {
  WireControl control;
  std::wstring_view role;
  WireControlKind kind;
};

/// In the order of `WireControl`.
inline constexpr WireControlRow wireControls[wireControlCount] = {
    {WireControl::standard, L"wireStandard", WireControlKind::list},
    {WireControl::metal, L"wireMetal", WireControlKind::list},
    {WireControl::insulation, L"insulation", WireControlKind::list},
    {WireControl::voltage, L"voltage", WireControlKind::editableList},
    {WireControl::phase, L"phase", WireControlKind::list},
    {WireControl::current, L"current", WireControlKind::edit},
    {WireControl::multiplier, L"multiplier", WireControlKind::edit},
    {WireControl::extraCurrent, L"extraCurrent", WireControlKind::edit},
    {WireControl::total, L"totalCurrent", WireControlKind::edit},
    {WireControl::dropTick, L"voltageDrop", WireControlKind::tick},
    {WireControl::length, L"length", WireControlKind::editableList},
    {WireControl::lengthUnits, L"lengthUnits", WireControlKind::list},
    {WireControl::raceway, L"raceway", WireControlKind::list},
    {WireControl::powerFactor, L"powerFactor", WireControlKind::editableList},
    {WireControl::dropLimitTick, L"limitDrop", WireControlKind::tick},
    {WireControl::dropLimit, L"dropLimit", WireControlKind::list},
    {WireControl::continuousTick, L"continuousLoad", WireControlKind::tick},
    {WireControl::continuousFactor, L"continuousFactor", WireControlKind::edit},
    {WireControl::energyPrice, L"energyPrice", WireControlKind::edit},
    {WireControl::fillTick, L"fillCorrection", WireControlKind::tick},
    {WireControl::fillRange, L"fillRange", WireControlKind::list},
    {WireControl::fillFactor, L"fillFactor", WireControlKind::edit},
    {WireControl::spareTick, L"spare", WireControlKind::tick},
    {WireControl::spareInput1, L"spareInput1", WireControlKind::edit},
    {WireControl::spareInput2, L"spareInput2", WireControlKind::edit},
    {WireControl::ambientTick, L"ambientCorrection", WireControlKind::tick},
    {WireControl::ambientRange, L"ambientRange", WireControlKind::list},
    {WireControl::ambientFactor, L"ambientFactor", WireControlKind::edit},
    {WireControl::overallFactor, L"overallFactor", WireControlKind::edit},
    {WireControl::parallelTick, L"parallel", WireControlKind::tick},
    {WireControl::parallelCount, L"parallelCount", WireControlKind::list},
    {WireControl::parallelMinSize, L"parallelMinSize", WireControlKind::list},
    {WireControl::groundSize, L"groundSize", WireControlKind::list},
    {WireControl::showUndersized, L"showUndersized", WireControlKind::tick},
    {WireControl::report, L"report", WireControlKind::button},
};

[[nodiscard]] constexpr const WireControlRow& rowOf(WireControl control) {
  return wireControls[static_cast<std::size_t>(control)];
}

[[nodiscard]] constexpr std::wstring_view roleOf(WireControl control) {
  return rowOf(control).role;
}

/// Whether an event of this kind says that the user is done with a control. A list that can be typed into has two: an
/// entry was chosen, or the typed text was left.
[[nodiscard]] constexpr bool raises(WireControlKind control, KvUiEventKind event) {
  switch (control) {
  case WireControlKind::edit:
    return event == KvUiEventKind::committed;
  case WireControlKind::list:
  case WireControlKind::tick:
    return event == KvUiEventKind::changed;
  case WireControlKind::editableList:
    return event == KvUiEventKind::changed || event == KvUiEventKind::committed;
  case WireControlKind::button:
    return event == KvUiEventKind::clicked;
  }
  return false;
}

/// The control that an event says was changed.
[[nodiscard]] constexpr std::optional<WireControl> changedControl(const KvUiEvent& event) {
  for (const WireControlRow& row : wireControls)
    if (row.role == event.role && raises(row.kind, event.kind)) return row.control;
  return std::nullopt;
}

/// Controls that only show something or that the flow reads when it needs them.
namespace role {
inline constexpr std::wstring_view energyNote = L"energyNote";
inline constexpr std::wstring_view reportTitle = L"reportTitle";
} // namespace role

} // namespace brenvolt
