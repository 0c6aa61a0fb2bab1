// What a widget manager passes to the settings window for one group, and the events that it receives.
#pragma once

#include "host/host_api_ui.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

class ZanGroupCtrl;

/// A label with its choices, the current value first. With no or one choice the value is typed; with two or more it is
/// chosen from those that are not empty. So two empty texts make a drop-down without its own choices.
struct ZanGroupRow {
  std::wstring label;
  std::vector<std::wstring> choices;
  std::wstring tip = {}; ///< about the value that is shown; empty: it needs no words

  [[nodiscard]] std::wstring value() const { return choices.empty() ? std::wstring() : choices.front(); }
};

struct ZanGroupSpec {
  std::wstring title;
  std::vector<KvUiGroupButton> buttons; ///< the first looks up, the second picks from the drawing
  bool hasButtons = false;
  bool notifyChanges = false; ///< `OnCellChanged` is called for each edit
  bool liveChoices = false;   ///< drop-downs ask `GetChoices` each time their list opens
  std::vector<ZanGroupRow> rows;
  std::int32_t id = 0; ///< the group passes it back with each event
};

/// Receives the events of groups. Rows count from 1.
class ZanGroupEvents {
public:
  virtual ~ZanGroupEvents() = default;

  /// First header button, or a double click in the grid.
  virtual void OnLookup(ZanGroupCtrl* group) = 0;
  /// Second header button.
  virtual void OnPick(ZanGroupCtrl* group) = 0;
  virtual void OnTimer(std::uint32_t timerId) = 0;
  /// False rejects the edit: the cell keeps its old text.
  virtual bool OnCellChanged(std::int32_t groupId, std::uint32_t row, std::wstring_view text) = 0;
  /// The choices of a drop-down; `rows` are unchanged, but the value of `row` is empty. False leaves it empty.
  virtual bool GetChoices(
      std::int32_t groupId, std::uint32_t row, const std::vector<ZanGroupRow>& rows,
      std::vector<std::wstring>& list) = 0;
};

} // namespace brenvolt
