// The circuit whose configuration dialog is open: a wire lookup that is opened out of it names it in its report.
#pragma once

#include <optional>
#include <string>

namespace brenvolt {

/// Nothing while no configuration dialog is open.
[[nodiscard]] const std::optional<std::wstring>& configuredCircuit();

/// Names the circuit while its dialog is open; dialogs nest.
class ConfiguredCircuit final {
public:
  explicit ConfiguredCircuit(std::wstring name);
  ConfiguredCircuit(const ConfiguredCircuit&) = delete;
  ConfiguredCircuit& operator=(const ConfiguredCircuit&) = delete;
  ~ConfiguredCircuit();

private:
  std::optional<std::wstring> outer_;
};

} // namespace brenvolt
