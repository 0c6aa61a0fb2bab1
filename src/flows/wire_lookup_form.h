// What a control manager of the wire lookup sees of its form: the controls by role, the tables, and the way out.
#pragma once

#include "data/wire_tables.h"
#include "host/host_api_ui.h"
#include "widgets/roles_wire_lookup.h"

#include <optional>
#include <string>
#include <string_view>

namespace brenvolt {

class WireLookupForm {
public:
  WireLookupForm() = default;
  WireLookupForm(const WireLookupForm&) = delete;
  WireLookupForm& operator=(const WireLookupForm&) = delete;
  virtual ~WireLookupForm() = default;

  [[nodiscard]] virtual KvUiControl& control(WireControl control) const = 0;
  /// The control in its kind; a tick cannot be asked for as a list.
  [[nodiscard]] virtual KvUiText& edit(WireControl control) const = 0;
  [[nodiscard]] virtual KvUiList& list(WireControl control) const = 0;
  [[nodiscard]] virtual KvUiTick& tick(WireControl control) const = 0;
  [[nodiscard]] virtual KvUiText& text(std::wstring_view role) const = 0;
  [[nodiscard]] virtual KvUiGrid& results() const = 0;

  [[nodiscard]] virtual ZanWireTableReader& reader() = 0;
  /// The code standard in force.
  [[nodiscard]] virtual const std::wstring& code() const = 0;
  /// The name of the circuit when the lookup was opened out of a configuration.
  [[nodiscard]] virtual std::optional<std::wstring> circuitName() const = 0;
  /// The window that task dialogs and the file dialog stand over.
  [[nodiscard]] virtual KvWindow* parentWindow() const = 0;
  virtual void endCancelled() = 0;
  /// Asks for `ShowHeldBack` as soon as the events in hand are through, whether one of them is a click or not.
  virtual void showHeldBackSoon() = 0;
};

} // namespace brenvolt
