// The door of the module: what a host and sibling modules find in ZanBrenvolt.kvx by name.
#include "host/host_api_documents.h"
#include "plugin/application.h"
#include "plugin/function_table.h"
#include "plugin/handlers/code_standard_description.h"

#include <map>
#include <string>

namespace {

brenvolt::CZanBrenvoltApp application;

void allowUnload(void* applicationId) {
  KvRxDictionary* services = kvrxSysRegistry();
  if (services == nullptr) return;
  // The name is the promise of the class, so the module need not know the host's type information.
  auto* linker = static_cast<KvRxDynamicLinker*>(services->at(L"DynamicLinker"));
  if (linker != nullptr) linker->unlockApplication(applicationId);
}

} // namespace

/// Called by the host with each message; always returns 0.
extern "C" [[gnu::visibility("default")]] int kvrxEntryPoint(int message, void* applicationId) {
  switch (message) {
  case kvmessage::moduleLoad:
    allowUnload(applicationId);
    kvrxRegisterAppMDIAware(applicationId);
    brenvolt::registerFunctions();
    break;
  case kvmessage::drawingLoad:
    brenvolt::registerFunctions();
    break;
  default:
    break;
  }
  return 0;
}

extern "C" [[gnu::visibility("default")]] int kvrxGetApiVersion() {
  return kvrxApiVersion;
}

/// For sibling modules: the code standards that have tables, full name to code; `withCurrentStandard` adds the standard
/// in use when it has none. Lets no exception out to a module that knows nothing of ours.
extern "C" [[gnu::visibility("default")]] void GetAllCodeStandards(
    std::map<std::wstring, std::wstring>& standards, bool withCurrentStandard) {
  try {
    brenvolt::readAllCodeStandards(standards, withCurrentStandard);
  } catch (...) {
    standards.clear();
  }
}
