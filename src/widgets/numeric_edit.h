// A text field that holds a number: how a flow reads it, judges it and shows one.
#pragma once

#include "host/host_api_ui.h"

#include <string>
#include <string_view>

namespace brenvolt {

class ZanNumericEdit final {
public:
  /// The field must outlive the edit. `decimals` are shown at most; trailing zeros and a bare point are dropped.
  explicit ZanNumericEdit(KvUiText& field, int decimals = 6) : field_(field), decimals_(decimals) {}

  [[nodiscard]] std::wstring text() const;
  [[nodiscard]] bool isBlank() const { return text().empty(); }
  /// The leading number, 0.0 without one.
  [[nodiscard]] double value() const;
  /// Above the tolerance, and not above `highest` where one is given.
  [[nodiscard]] bool isValid() const;
  [[nodiscard]] bool isValid(double highest) const;

  void setValue(double value);
  void setText(std::wstring_view text) { field_.SetText(text); }
  void clear() { field_.SetText({}); }
  void enable(bool enabled) { field_.Enable(enabled); }
  [[nodiscard]] bool isEnabled() const { return field_.IsEnabled(); }

private:
  KvUiText& field_;
  int decimals_;
};

} // namespace brenvolt
