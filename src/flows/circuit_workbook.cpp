#include "flows/circuit_workbook.h"

#include "host/alerts.h"
#include "host/host_api_documents.h"
#include "host/lisp_calls.h"
#include "platform/file_lock.h"

#include <optional>

namespace brenvolt {

namespace {

constexpr wchar_t fileInUse[] = L"ZanBrenvolt.ErrorReadingConfigurationFile";
constexpr wchar_t noCircuitList[] = L"ZanBrenvolt.ErrorReadingConfigurationFile2";
constexpr wchar_t fileNotFound[] = L"ZanBrenvolt.ErrorReadingConfigurationFile3";

std::optional<int> tell(const wchar_t* key, const std::wstring& file, KvWindow* parent) {
  return showTaskDialog(key, {{L"filename", file}}, parent);
}

} // namespace

std::wstring findWorkbook(const std::wstring& name, KvWindow* parent) {
  const std::wstring wanted = name.empty() ? std::wstring(defaultWorkbook) : name;
  if (std::optional<std::wstring> path = findFile(wanted)) return *path;
  static_cast<void>(tell(fileNotFound, wanted, parent));
  return {};
}

bool readCircuitList(ZanCircuitCatalog& catalog, KvWindow* parent) {
  const KvWaitCursor waiting;
  // It is only read here, but what is read may be half of what the other user is at.
  if (isFileInUse(catalog.workbook) && tell(fileInUse, catalog.workbook, parent) == kvui::no) return false;
  if (catalog.readCircuits()) return true;
  static_cast<void>(tell(noCircuitList, catalog.workbook, parent));
  return false;
}

} // namespace brenvolt
