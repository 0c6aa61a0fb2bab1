// The circuit selection: which type of which circuit, from which saved configuration, presets or existing circuit, and
// with which scales. It only chooses; nothing is drawn.
#pragma once

#include "data/project_circuits.h"
#include "drawing/history.h"
#include "flows/circuit_tree_ctrl.h"
#include "flows/existing_circuit.h"
#include "host/build_data.h"
#include "host/host_api_ui.h"
#include "project/annotation_presets.h"
#include "project/circuit_list.h"

#include <optional>
#include <string>
#include <vector>

namespace brenvolt {

/// What the user has chosen.
struct CircuitSelection {
  std::wstring workbookPath;
  CircuitChoice circuit;
  std::wstring historyName; ///< empty for a new configuration
  bool insertNow = false;   ///< without the configuration dialog
  bool useAnnotation = false;
  bool useExisting = false;
  bool useComponents = false; ///< of the existing circuit
};

class ZanDlgCircuit final : public CKvUiDialog {
public:
  /// Starts from the scales and the workbook's name in `data`. `existing` is the circuit of the project that was picked
  /// before, and takes what is picked here. Both must outlive the dialog; `observer`, of the project's tables, may be
  /// null.
  ZanDlgCircuit(BuildData data, ExistingCircuit& existing, TableObserver* observer, KvWindow* parent);

  /// @name Once `DoModal` has returned kvui::ok
  /// @{
  [[nodiscard]] const CircuitSelection& selection() const { return selection_; }
  /// With the scales as the user left them.
  [[nodiscard]] const BuildData& data() const { return data_; }
  /// The presets that are switched on, when presets were chosen.
  [[nodiscard]] std::vector<AnnotationRow> annotationRows();
  /// Installation and location of the existing circuit's components, when one was chosen.
  [[nodiscard]] std::vector<AnnotationRow> existingComponentRows() const;
  /// @}

protected:
  bool OnInitDialog() override;
  void OnEvent(const KvUiEvent& event) override;
  void OnOK() override;
  void OnCancel() override;
  void OnHelp() override;

private:
  enum class Insertion { now, configured };

  void OnCircuitChanged();
  void OnHistoryChanged();
  void OnDeleteHistory();
  void UpdateExistingButton();
  [[nodiscard]] bool Confirm(Insertion insertion);
  void close(Insertion insertion);

  void fillHistories();
  void showPreview();
  void restorePanes();
  void readProject();
  void onPreviewToggled();
  void onChoosePresets();
  void onChooseExisting();
  void enableControls();
  void showScales();
  void readScales();
  void saveHistories();
  [[nodiscard]] std::optional<std::wstring> selectedHistory() const;
  /// Of a saved configuration of the shown type.
  [[nodiscard]] HistoryKey keyOf(const std::wstring& historyName) const;
  [[nodiscard]] ZanAnnotationExList::Presets* presets();

  BuildData data_;
  ExistingCircuit& existing_;
  TableObserver* observer_;
  CircuitSelection selection_;
  ZanCircuitCatalog catalog_;
  ZanXmlHistory history_;
  std::optional<ZanCircuitTreeCtrl> tree_;
  std::optional<CircuitChoice> shown_; ///< the type whose histories are listed
  std::vector<TextRow> circuitRows_;
  std::vector<TextRow> circuitSummaries_;
  bool showsPreview_ = false;
  bool hasHistories_ = false; ///< the history file was accepted
  bool historyDirty_ = false; ///< a history was deleted, the file has to be written
};

} // namespace brenvolt
