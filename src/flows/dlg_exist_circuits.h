// The circuits that the project holds, in a grid with a row for each component; one row is picked.
#pragma once

#include "data/project_circuits.h"
#include "host/host_api_ui.h"

#include <vector>

namespace brenvolt {

class ZanDlgExistCircuits final : public CKvUiDialog {
public:
  /// `rows` are the circuits' rows, `display` their texts for the user; `selection` is the row picked before, or
  /// empty.
  ZanDlgExistCircuits(
      std::vector<TextRow> rows, std::vector<TextRow> display, TextRow selection, KvWindow* parent);

  /// The picked circuit's row once `DoModal` has returned kvui::ok; before, and after a cancel, the previous one.
  [[nodiscard]] const TextRow& GetSelection() const { return selection_; }

protected:
  bool OnInitDialog() override;
  void OnEvent(const KvUiEvent& event) override;
  void OnOK() override;

private:
  void fillGrid();
  [[nodiscard]] int rowOfSelection() const;
  void enableOk();

  TextRow selection_;
  const std::vector<TextRow> rows_;
  const std::vector<TextRow> display_;
};

} // namespace brenvolt
