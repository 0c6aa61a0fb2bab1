#include "flows/config_names.h"

#include "text/compare.h"
#include "text/format.h"
#include "text/numbers.h"

#include <algorithm>
#include <array>

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
  const std::array<std::wstring_view, 7> ratings = {circuit.type,    circuit.load,  circuit.units,
                                                    circuit.voltage, circuit.phase, circuit.frequency,
                                                    circuit.speed};
  std::wstring text(name);
  // A circuit without motor or load: brackets around nothing would say nothing.
  if (std::all_of(ratings.begin(), ratings.end(), [](std::wstring_view each) { return each.empty(); }))
    return text;
  std::wstring brackets = L" [";
  for (std::size_t place = 0; place < ratings.size(); ++place) {
    if (place > 0) brackets += L' ';
    brackets += ratings[place];
  }
  brackets += L']';
  // OK is pressed again after a question, or the name is that of a saved configuration: it has them already.
  return text.ends_with(brackets) ? text : text + brackets;
}

} // namespace brenvolt
