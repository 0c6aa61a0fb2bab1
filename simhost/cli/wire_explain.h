// The proposed wire of a circuit, figure by figure: formula, numbers put in, and table, row and column of each number,
// so that a reviewer can follow it on paper.
#pragma once

#include "data/wire_lookup.h"
#include "simhost/site/wire_request.h"

#include <string>
#include <vector>

namespace simhost {

/// One figure with its arithmetic, line by line, and where its numbers come from.
struct ExplainedFigure {
  std::wstring heading;
  std::vector<std::wstring> arithmetic;
  std::vector<std::wstring> sources;
};

/// The figures of the row at `index` in the order in which they follow from each other.
[[nodiscard]] std::vector<ExplainedFigure> explainWire(
    const WireRequest& request, const brenvolt::WireLookupResult& result, std::size_t index,
    const brenvolt::WireSizeFacts& facts);

/// As text: a heading, the arithmetic indented, the sources below.
[[nodiscard]] std::string explanationText(const std::vector<ExplainedFigure>& figures);
/// As a JSON array.
[[nodiscard]] std::string explanationJson(const std::vector<ExplainedFigure>& figures);

} // namespace simhost
