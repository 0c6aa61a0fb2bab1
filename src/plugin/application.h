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

/// Loads the resource module. A missing module is reported in one message box; the plug-in then continues without
/// texts. After that, further calls do nothing.
void initialiseExtension(ExtensionModule& extension);
/// Gives back what `initialiseExtension` took.
void terminateExtension(ExtensionModule& extension);

class CZanBrenvoltApp final : public CWinApp {
public:
  bool InitInstance() override;
  int ExitInstance() override;
};

} // namespace brenvolt
