// What the view of the wire lookup needs of its window: the controls by field, and what only a window can do.
#pragma once

#include "data/table_names.h"
#include "flows/wire_controls.h"
#include "host/host_api_ui.h"

#include <string_view>

namespace brenvolt {

class WireLookupForm {
public:
  WireLookupForm() = default;
  WireLookupForm(const WireLookupForm&) = delete;
  WireLookupForm& operator=(const WireLookupForm&) = delete;
  virtual ~WireLookupForm() = default;

  [[nodiscard]] virtual KvUiText& text(std::wstring_view role) const = 0;
  [[nodiscard]] virtual KvUiList& list(std::wstring_view role) const = 0;
  [[nodiscard]] virtual KvUiTick& tick(std::wstring_view role) const = 0;
  [[nodiscard]] virtual KvUiGrid& results() const = 0;

  /// Asks whether to continue without these tables.
  [[nodiscard]] virtual bool goesOnWithout(const MissingTables& missing) = 0;
  /// Requests `WireLookupView::showHeldBack` as soon as the present events are handled, and `markSeen` when the time
  /// of a double click is over.
  virtual void showHeldBackSoon() = 0;
};

} // namespace brenvolt
