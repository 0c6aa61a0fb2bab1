// The application object of the module and the record of what it has loaded.
#pragma once

#include "host/host_api_documents.h"

namespace brenvolt {

/// What the module holds between its load and its unload.
struct ExtensionModule {
  bool initialised = false;
  KvResourceModule* resourceModule = nullptr;
  bool ownsResourceModule = false;
};

/// The one record of the module.
[[nodiscard]] ExtensionModule& extensionModule();

/// Loads the resource module. A module that is not found is reported in one message box; the plug-in then goes on without
/// texts. Once that is done, a further call does nothing.
void initialiseExtension(ExtensionModule& extension);
/// Gives back what `initialiseExtension` took.
void terminateExtension(ExtensionModule& extension);

class CZanBrenvoltApp final : public CWinApp {
public:
  bool InitInstance() override;
  int ExitInstance() override;
};

} // namespace brenvolt
