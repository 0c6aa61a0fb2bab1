// The classes that the module derives from or distinguishes: their type information has to exist for it to load. None
// of them does anything here.
#include "host/host_api.h"

KvDbObject::~KvDbObject() = default;
KvDbEntity::~KvDbEntity() = default;
KvDbBlockReference::~KvDbBlockReference() = default;
KvDbAttribute::~KvDbAttribute() = default;
KvDbAttributeDefinition::~KvDbAttributeDefinition() = default;
KvDbBlockTableRecordIterator::~KvDbBlockTableRecordIterator() = default;
KvDbBlockTableRecord::~KvDbBlockTableRecord() = default;
KvDbBlockTable::~KvDbBlockTable() = default;
KvDbUndoController::~KvDbUndoController() = default;
KvDbDatabase::~KvDbDatabase() = default;
KvApDocument::~KvApDocument() = default;
KvApDocManager::~KvApDocManager() = default;
CKdHideableDialogSettingsDictionary::~CKdHideableDialogSettingsDictionary() = default;
KvUiControl::~KvUiControl() = default;
KvUiText::~KvUiText() = default;
KvUiList::~KvUiList() = default;
KvUiTick::~KvUiTick() = default;
KvUiButton::~KvUiButton() = default;
KvUiTree::~KvUiTree() = default;
KvUiGrid::~KvUiGrid() = default;
KvUiGroup::~KvUiGroup() = default;
KvUiPages::~KvUiPages() = default;

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
