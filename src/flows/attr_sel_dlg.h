// A list of values, one of which is taken for an attribute.
#pragma once

#include "host/host_api_ui.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

class ZanAttrSelDlg final : public CKvUiDialog {
public:
  /// The attribute's name directly follows the title.
  ZanAttrSelDlg(
      std::wstring_view title, std::wstring_view attribute, std::vector<std::wstring> choices,
      KvWindow* parent);

  /// Empty unless a choice was accepted.
  [[nodiscard]] const std::wstring& chosenText() const { return chosenText_; }

protected:
  bool OnInitDialog() override;
  void OnEvent(const KvUiEvent& event) override;
  void OnOK() override;

private:
  const std::wstring title_;
  const std::vector<std::wstring> choices_;
  std::wstring chosenText_;
};

} // namespace brenvolt
