#include "circuits/provenance/load_data.h"

#include "text/split.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace circuits {

std::wstring setupText(std::wstring_view params, std::wstring_view name) {
  const std::vector<std::wstring> values = brenvolt::splitKeepingEmpty(std::wstring(params), L';');
  const auto place = std::find(loadSetupNames.begin(), loadSetupNames.end(), name);
  const auto at = static_cast<std::size_t>(place - loadSetupNames.begin());
  return at < values.size() ? brenvolt::trim(values[at]) : std::wstring();
}

std::vector<std::wstring> wireTexts(std::wstring_view wires) {
  std::vector<std::wstring> texts;
  std::optional<std::wstring> open;
  for (std::size_t at = 0; at < wires.size(); ++at) {
    if (wires[at] == L'"') {
      if (open) texts.push_back(std::move(*open));
      open = open ? std::optional<std::wstring>() : std::wstring();
    } else if (open) {
      if (wires[at] == L'\\' && at + 1 < wires.size()) ++at;
      *open += wires[at];
    }
  }
  return texts;
}

} // namespace circuits
