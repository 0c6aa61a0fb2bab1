// The circuit selection's settings of the user: the last choice and the position of the divider.
#pragma once

#include "host/host_api_ui.h"

#include <optional>
#include <string>

namespace brenvolt {

struct LastCircuit {
  std::wstring circuit;
  std::wstring type;
};

/// Nothing unless both names are kept.
[[nodiscard]] std::optional<LastCircuit> readLastCircuit();
void keepLastCircuit(const LastCircuit& last);

/// The panes of the window.
struct ZanSplitterState {
  KvUiSplit split;
  bool showsPreview = false;
};

/// Nothing when the dialog has no settings yet. An invalid number is 0.
[[nodiscard]] std::optional<ZanSplitterState> readSplitterState();
void keepSplitterState(const ZanSplitterState& state);

/// The name under which the host keeps values and place of the dialog.
inline constexpr wchar_t circuitDialogName[] = L"ZanBrenvolt::ZanDlgCircuit";

} // namespace brenvolt
