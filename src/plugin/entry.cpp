// The door of the module: what a host and sibling modules find in ZanBrenvolt.kvx by name.
#include "data/option_tables.h"
#include "host/host_api_documents.h"
#include "host/resources.h"
#include "plugin/application.h"
#include "plugin/function_table.h"

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

/// Called by the host with each message; answers 0 to every one.
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
/// in use when it has none. The map stays empty when the option tables cannot be read.
extern "C" [[gnu::visibility("default")]] void GetAllCodeStandards(
    std::map<std::wstring, std::wstring>& standards, bool withCurrentStandard) {
  standards.clear();
  // The caller is another module, whose texts may lie on top of ours.
  const brenvolt::ResourceScope resources;
  brenvolt::ZanOptTableReader reader;
  if (!reader.Open()) return;
  if (withCurrentStandard) {
    reader.SetMissingTableText(brenvolt::loadText(brenvolt::TextId::standardWithoutTable));
  }
  reader.ReadAllStandards(standards, withCurrentStandard);
}
