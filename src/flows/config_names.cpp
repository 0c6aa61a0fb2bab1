#include "flows/config_names.h"

#include "text/compare.h"
#include "text/format.h"
#include "text/numbers.h"

#include <algorithm>

namespace brenvolt {

namespace {

/// At least three digits, so that the names sort as they were made.
std::wstring numberText(int number) {
  constexpr std::size_t digits = 3;
  std::wstring text = formatInt(number);
  return text.size() < digits ? std::wstring(digits - text.size(), L'0') + text : text;
}

} // namespace

std::wstring proposeName(std::wstring_view circuit, const std::vector<std::wstring>& taken) {
  for (int number = 1;; ++number) {
    std::wstring candidate = formatText(L"%s (%s)", {circuit, std::wstring_view(numberText(number))});
    const bool isTaken = std::any_of(taken.begin(), taken.end(), [&candidate](const std::wstring& name) {
      return findNoCase(name, candidate) != std::wstring::npos;
    });
    if (!isTaken) return candidate;
  }
}

std::wstring longName(std::wstring_view name, const ZanCircuitData& circuit) {
  return formatText(
      L"%s [%s %s %s %s %s %s %s]",
      {name, std::wstring_view(circuit.type), std::wstring_view(circuit.load),
       std::wstring_view(circuit.units), std::wstring_view(circuit.voltage), std::wstring_view(circuit.phase),
       std::wstring_view(circuit.frequency), std::wstring_view(circuit.speed)});
}

} // namespace brenvolt
