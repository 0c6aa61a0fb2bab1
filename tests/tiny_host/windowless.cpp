// The dialog classes that the module's flows derive from: they have to exist for the module to load, and never run.
#include "host/host_api_ui.h"

struct CKvUiDialog::State {};
CKvUiDialog::CKvUiDialog(const wchar_t*, KvWindow*) {}
CKvUiDialog::~CKvUiDialog() = default;
bool CKvUiDialog::OnInitDialog() {
  return false;
}
void CKvUiDialog::OnEvent(const KvUiEvent&) {}
void CKvUiDialog::OnOK() {}
void CKvUiDialog::OnCancel() {}
void CKvUiDialog::OnHelp() {}
void CKvUiDialog::OnTimer(int) {}
bool CKvUiDialog::OnValidateCell(std::wstring_view, int, int, std::wstring_view) {
  return false;
}
bool CKvUiDialog::OnCellChoices(std::wstring_view, int, int, std::vector<std::wstring>&) {
  return false;
}
CKvUiGroupChildDialog::~CKvUiGroupChildDialog() = default;

struct CKvUiFileDialog::State {};
CKvUiFileDialog::CKvUiFileDialog(
    bool, const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*, KvWindow*) {}
CKvUiFileDialog::~CKvUiFileDialog() = default;
bool CKvUiFileDialog::OnFileNameOK() {
  return false;
}
void CKvUiFileDialog::OnTypeChange() {}
