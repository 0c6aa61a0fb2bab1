#include "flows/dlg_annotation.h"

#include "data/entity_records.h"
#include "data/project_values.h"
#include "flows/attr_sel_dlg.h"
#include "host/host_api_lisp.h"
#include "widgets/common_roles.h"
#include "widgets/roles_circuit.h"

#include <utility>

namespace brenvolt {

namespace {

constexpr wchar_t annotationForm[] = L"ZanDlgAnnotation";
constexpr wchar_t annotationDialog[] = L"ZanBrenvolt::ZanDlgAnnotation";
constexpr wchar_t annotationHelpTopic[] = L"annotation_presets_dialog";

} // namespace

ZanDlgAnnotation::ZanDlgAnnotation(
    ZanAnnotationExList::Presets& presets, std::wstring key, std::wstring workbookPath,
    TableObserver* observer, KvWindow* parent)
    : CKvUiDialog(annotationForm, parent), presets_(presets), key_(std::move(key)),
      workbookPath_(std::move(workbookPath)), observer_(observer) {}

bool ZanDlgAnnotation::OnInitDialog() {
  SetDialogName(annotationDialog);
  Text(role::presetKey).SetText(key_);
  Text(role::workbook).SetText(workbookPath_);
  Text(role::workbook).SetTooltip(workbookPath_);
  rows_.emplace(Grid(role::presetGrid), presets_);
  enableButtons();
  return true;
}

void ZanDlgAnnotation::enableButtons() {
  const bool isRowSelected = Grid(role::presetGrid).SelectedRow() > 0;
  Button(role::valuesFromDrawing).Enable(isRowSelected);
  Button(role::valuesFromProject).Enable(isRowSelected);
  Button(role::ok).Enable(rows_->isAnyTicked());
}

void ZanDlgAnnotation::OnEvent(const KvUiEvent& event) {
  if (event.role == role::presetGrid) {
    if (event.kind == KvUiEventKind::cellEdited) rows_->onCellEdited(event.row, event.column);
    enableButtons();
  }
  if (event.kind != KvUiEventKind::clicked) return;
  if (event.role == role::valuesFromDrawing) takeValue(TextId::valuesFromDrawing, readAttributeTexts);
  if (event.role == role::valuesFromProject)
    takeValue(TextId::valuesFromProject, [this](const std::wstring& attribute) {
      return readProjectValues(attribute, observer_);
    });
}

void ZanDlgAnnotation::takeValue(
    TextId title, const std::function<std::vector<std::wstring>(const std::wstring&)>& readValues) {
  const int row = Grid(role::presetGrid).SelectedRow();
  if (row == 0) return;
  const std::wstring attribute = rows_->attributeOf(row);
  ZanAttrSelDlg values(loadText(title), attribute, readValues(attribute), window());
  if (values.DoModal() != kvui::ok) return;
  rows_->setValue(row, values.chosenText());
  enableButtons();
}

void ZanDlgAnnotation::OnOK() {
  rows_->store();
  EndDialog(kvui::ok);
}

void ZanDlgAnnotation::OnHelp() {
  kvedHelp(annotationHelpTopic);
}

} // namespace brenvolt
