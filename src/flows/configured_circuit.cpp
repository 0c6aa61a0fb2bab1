#include "flows/configured_circuit.h"

#include <utility>

namespace brenvolt {

namespace {

std::optional<std::wstring>& current() {
  static std::optional<std::wstring> name;
  return name;
}

} // namespace

const std::optional<std::wstring>& configuredCircuit() {
  return current();
}

ConfiguredCircuit::ConfiguredCircuit(std::wstring name) : outer_(std::exchange(current(), std::move(name))) {}

ConfiguredCircuit::~ConfiguredCircuit() {
  current() = std::move(outer_);
}

} // namespace brenvolt
