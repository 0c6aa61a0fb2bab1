// A list of numbers, each shown once and ascending, for any order and spelling of its source.
#pragma once

#include "host/host_api_ui.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

class ZanNumericList final {
public:
  /// The list must outlive this.
  explicit ZanNumericList(KvUiList& list) : list_(list) {}

  /// Shows each distinct number once, ascending, with up to six decimals and without trailing zeros. The selection is
  /// looked for exactly as text ("1.0" is not "1"); one that is absent is added at the top. An empty selection selects
  /// the first entry, if there is one.
  void fill(const std::vector<std::wstring>& numbers, std::wstring_view selection);

  /// What the user chose or typed, without blanks at the ends.
  [[nodiscard]] std::wstring text() const;
  /// The leading number of the text, 0.0 without one.
  [[nodiscard]] double value() const;
  /// Shows a number as if it had been typed.
  void setValue(double value);
  void enable(bool enabled) { list_.Enable(enabled); }

private:
  KvUiList& list_;
};

} // namespace brenvolt
