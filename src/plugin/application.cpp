// Load and unload of the module's resources.
#include "plugin/application.h"

#include "host/resources.h"
#include "text/format.h"

namespace brenvolt {

ExtensionModule& extensionModule() {
  static ExtensionModule extension;
  return extension;
}

void initialiseExtension(ExtensionModule& extension) {
  if (extension.initialised) return;
  extension.initialised = true;
  extension.resourceModule = kvdsLoadResourceModule(resourceModuleName);
  extension.ownsResourceModule = extension.resourceModule != nullptr;
  setResourceModule(extension.resourceModule);
  if (extension.resourceModule != nullptr) return;
  // The one message whose text cannot come from the resource module.
  kvdsMessageBox(nullptr, formatText(L"%s not found", {resourceModuleName}).c_str());
  extension.initialised = false;
}

void terminateExtension(ExtensionModule& extension) {
  if (!extension.initialised) return;
  setResourceModule(nullptr);
  if (extension.ownsResourceModule) kvdsFreeResourceModule(extension.resourceModule);
  extension = ExtensionModule();
}

bool CZanBrenvoltApp::InitInstance() {
  CWinApp::InitInstance();
  initialiseExtension(extensionModule());
  return true;
}

int CZanBrenvoltApp::ExitInstance() {
  terminateExtension(extensionModule());
  return CWinApp::ExitInstance();
}

} // namespace brenvolt
