// The annotation presets of a circuit's type: which values go to attributes of its components. Values can be typed, or
// taken from the drawing or the project.
#pragma once

#include "data/table_watch.h"
#include "flows/annotation_grid_wnd.h"
#include "host/host_api_ui.h"
#include "host/resources.h"
#include "project/annotation_presets.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brenvolt {

class ZanDlgAnnotation final : public CKvUiDialog {
public:
  /// `presets` belongs to the workbook's circuit list; OK writes into it. `observer`, of the project's tables, may be
  /// null.
  ZanDlgAnnotation(
      ZanAnnotationExList::Presets& presets, std::wstring key, std::wstring workbookPath,
      TableObserver* observer, KvWindow* parent);

protected:
  bool OnInitDialog() override;
  void OnEvent(const KvUiEvent& event) override;
  void OnOK() override;
  void OnHelp() override;

private:
  void takeValue(
      TextId title, const std::function<std::vector<std::wstring>(const std::wstring&)>& readValues);
  void enableButtons();

  ZanAnnotationExList::Presets& presets_;
  const std::wstring key_;
  const std::wstring workbookPath_;
  TableObserver* const observer_;
  std::optional<ZanAnnotationGridWnd> rows_;
};

} // namespace brenvolt
