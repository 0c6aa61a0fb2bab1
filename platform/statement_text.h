// Composes all statement texts. Values and names are inserted by plain substitution, so anything that could end a
// quoted text or a bracketed name early is rejected here and never reaches an engine.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// A statement, or the reason why there is none.
struct StatementText {
  std::wstring text;
  std::wstring error;

  [[nodiscard]] bool isBuilt() const { return error.empty(); }
};

/// Fills the placeholders of `format` in order with `values`: "%s" and "%d" ("%%" is a percent sign). A value inside
/// '...' must not contain a single quote unless doubled, one inside [...] no bracket, a "%d" must be an integer; a
/// "%s" elsewhere is a part of the statement and inserted unchanged. The number of values must fit.
[[nodiscard]] StatementText buildStatement(std::wstring_view format, const std::vector<std::wstring>& values);

} // namespace brenvolt
