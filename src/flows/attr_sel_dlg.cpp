#include "flows/attr_sel_dlg.h"

#include "widgets/common_roles.h"
#include "widgets/roles_circuit.h"

#include <utility>

namespace brenvolt {

namespace {

constexpr wchar_t attributeForm[] = L"ZanAttrSelDlg";

} // namespace

ZanAttrSelDlg::ZanAttrSelDlg(
    std::wstring_view title, std::wstring_view attribute, std::vector<std::wstring> choices, KvWindow* parent)
    : CKvUiDialog(attributeForm, parent), title_(std::wstring(title) + std::wstring(attribute)),
      choices_(std::move(choices)) {}

bool ZanAttrSelDlg::OnInitDialog() {
  SetTitle(title_);
  for (const std::wstring& choice : choices_)
    List(role::valueList).Insert(-1, choice, 0);
  Button(role::ok).Enable(false);
  return true;
}

void ZanAttrSelDlg::OnEvent(const KvUiEvent& event) {
  if (event.role != role::valueList || event.kind != KvUiEventKind::changed) return;
  Button(role::ok).Enable(List(role::valueList).Selected() >= 0);
}

void ZanAttrSelDlg::OnOK() {
  chosenText_ = List(role::valueList).Text();
  EndDialog(kvui::ok);
}

} // namespace brenvolt
