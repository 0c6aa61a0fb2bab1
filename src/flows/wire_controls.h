// The controls of the wire lookup: the field of the lookup that each shows, its role in the window, and which event
// means that the user changed it. One layout serves motors, loads and placed circuits.
#pragma once

#include "data/wire_input.h"
#include "host/host_api_ui.h"

#include <optional>
#include <string_view>

namespace brenvolt {

enum class WireControlKind { edit, list, editableList, tick };

struct WireControlRow {
  LookupField field;
  std::wstring_view role;
  WireControlKind kind;
};

/// In the order of `LookupField`.
inline constexpr WireControlRow wireControls[lookupFieldCount] = {
    {LookupField::standard, L"wireStandard", WireControlKind::list},
    {LookupField::metal, L"wireMetal", WireControlKind::list},
    {LookupField::insulation, L"insulation", WireControlKind::list},
    {LookupField::voltage, L"voltage", WireControlKind::editableList},
    {LookupField::phase, L"phase", WireControlKind::list},
    {LookupField::current, L"current", WireControlKind::edit},
    {LookupField::multiplier, L"multiplier", WireControlKind::edit},
    {LookupField::extraCurrent, L"extraCurrent", WireControlKind::edit},
    {LookupField::total, L"totalCurrent", WireControlKind::edit},
    {LookupField::dropTick, L"voltageDrop", WireControlKind::tick},
    {LookupField::length, L"length", WireControlKind::editableList},
    {LookupField::lengthUnits, L"lengthUnits", WireControlKind::list},
    {LookupField::raceway, L"raceway", WireControlKind::list},
    {LookupField::powerFactor, L"powerFactor", WireControlKind::editableList},
    {LookupField::dropLimitTick, L"limitDrop", WireControlKind::tick},
    {LookupField::dropLimit, L"dropLimit", WireControlKind::list},
    {LookupField::continuousTick, L"continuousLoad", WireControlKind::tick},
    {LookupField::continuousFactor, L"continuousFactor", WireControlKind::edit},
    {LookupField::energyPrice, L"energyPrice", WireControlKind::edit},
    {LookupField::fillTick, L"fillCorrection", WireControlKind::tick},
    {LookupField::fillRange, L"fillRange", WireControlKind::list},
    {LookupField::fillFactor, L"fillFactor", WireControlKind::edit},
    {LookupField::ambientTick, L"ambientCorrection", WireControlKind::tick},
    {LookupField::ambientRange, L"ambientRange", WireControlKind::list},
    {LookupField::ambientFactor, L"ambientFactor", WireControlKind::edit},
    {LookupField::overallFactor, L"overallFactor", WireControlKind::edit},
    {LookupField::parallelTick, L"parallel", WireControlKind::tick},
    {LookupField::parallelCount, L"parallelCount", WireControlKind::list},
    {LookupField::parallelMinSize, L"parallelMinSize", WireControlKind::list},
    {LookupField::groundSize, L"groundSize", WireControlKind::list},
    {LookupField::showUndersized, L"showUndersized", WireControlKind::tick},
};

[[nodiscard]] constexpr const WireControlRow& rowOf(LookupField field) {
  return wireControls[static_cast<std::size_t>(field)];
}

[[nodiscard]] constexpr std::wstring_view roleOf(LookupField field) {
  return rowOf(field).role;
}

/// Whether an event of this kind ends the user's change of a control. A list that can be typed into has two: an entry
/// was chosen, or the typed text was left.
[[nodiscard]] constexpr bool raises(WireControlKind control, KvUiEventKind event) {
  switch (control) {
  case WireControlKind::edit:
    return event == KvUiEventKind::committed;
  case WireControlKind::list:
  case WireControlKind::tick:
    return event == KvUiEventKind::changed;
  case WireControlKind::editableList:
    return event == KvUiEventKind::changed || event == KvUiEventKind::committed;
  }
  return false;
}

/// The field that an event changed.
[[nodiscard]] constexpr std::optional<LookupField> changedField(const KvUiEvent& event) {
  for (const WireControlRow& row : wireControls)
    if (row.role == event.role && raises(row.kind, event.kind)) return row.field;
  return std::nullopt;
}

} // namespace brenvolt
