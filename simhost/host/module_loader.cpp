// Loading with the system's dynamic loader. What a module says of itself is checked before any of it is called.
#include "simhost/host/module_loader.h"

#include "host/host_api_documents.h"
#include "simhost/host/session.h"
#include "text/encoding.h"

#include <dlfcn.h>

#include <cstdint>
#include <exception>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace simhost {

namespace {

/// The application object that was made last: a module makes its one while it is being loaded.
CWinApp*& newestApplication() {
  static CWinApp* application = nullptr;
  return application;
}

/// The application objects of the libraries that are in memory. One that the system could not let go, or that never
/// allowed it, does not make its object again when it is loaded again.
std::map<void*, CWinApp*>& applications() {
  static std::map<void*, CWinApp*> byLibrary;
  return byLibrary;
}

struct LibraryClose {
  std::filesystem::path file;

  void operator()(void* library) const {
    dlclose(library);
    if (void* const stayed = dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD))
      dlclose(stayed);
    else
      applications().erase(library);
  }
};

/// An application id is the module's number: it means something to the host alone.
void* idOf(int number) {
  return reinterpret_cast<void*>(static_cast<std::intptr_t>(number)); // NOLINT(performance-no-int-to-ptr)
}

} // namespace

void ModuleLoader::load(const std::filesystem::path& file) {
  const auto fail = [&file](const std::string& reason) { throw BadInput(file.string() + ": " + reason); };
  std::error_code error;
  if (!std::filesystem::exists(file, error)) fail("no such module");
  newestApplication() = nullptr;
  // All symbols are bound now: a missing function of the host is reported here and not while drawing.
  const std::filesystem::path absolute = std::filesystem::absolute(file);
  std::unique_ptr<void, LibraryClose> library(
      dlopen(absolute.c_str(), RTLD_NOW | RTLD_LOCAL), LibraryClose{absolute});
  if (library == nullptr) {
    const char* reason = dlerror();
    fail(reason == nullptr ? "cannot be loaded" : reason);
  }
  if (CWinApp* const made = std::exchange(newestApplication(), nullptr)) applications()[library.get()] = made;
  const auto version = reinterpret_cast<int (*)()>(dlsym(library.get(), "kvrxGetApiVersion"));
  const auto entry = reinterpret_cast<EntryPoint>(dlsym(library.get(), "kvrxEntryPoint"));
  if (version == nullptr || entry == nullptr)
    fail("not a module: kvrxGetApiVersion or kvrxEntryPoint is missing");
  if (version() != kvrxApiVersion)
    fail(
        "is made for version " + std::to_string(version()) +
        " of the host's functions, this host has version " + std::to_string(kvrxApiVersion));

  Module module;
  module.number = ++lastNumber_;
  module.file = absolute;
  module.library = library.get();
  module.entry = entry;
  const auto application = applications().find(library.get());
  module.application = application == applications().end() ? nullptr : application->second;
  const FunctionRegistry::ModuleScope scope(session_.functions(), module.number);
  if (module.application != nullptr && !module.application->InitInstance()) fail("refused to start");
  static_cast<void>(library.release());
  modules_.push_back(module);
  tell(module, kvmessage::moduleLoad);
  Document* const current = session_.documents().current();
  for (const auto& document : session_.documents().all()) {
    session_.documents().setCurrent(document.get());
    tell(module, kvmessage::drawingLoad);
  }
  session_.documents().setCurrent(current);
}

void ModuleLoader::tell(const Module& module, int message) {
  const FunctionRegistry::ModuleScope scope(session_.functions(), module.number);
  try {
    module.entry(message, idOf(module.number));
  } catch (const std::exception& error) {
    session_.commandLine().printLine(L"a module let an exception out: " + brenvolt::fromUtf8(error.what()));
  }
}

void ModuleLoader::tellAll(int message) {
  for (const Module& module : modules_)
    tell(module, message);
}

void ModuleLoader::tellDrawingLoaded() {
  tellAll(kvmessage::drawingLoad);
}

void ModuleLoader::tellDrawingUnloading() {
  tellAll(kvmessage::drawingUnload);
}

void ModuleLoader::unloadAll() {
  while (!modules_.empty()) {
    Module module = modules_.back();
    modules_.pop_back();
    tell(module, kvmessage::moduleUnload);
    if (module.application != nullptr) module.application->ExitInstance();
    session_.functions().dropModule(module.number);
    // A module that never allowed it stays in memory until the process ends.
    if (module.isUnlocked) LibraryClose{module.file}(module.library);
  }
}

void ModuleLoader::unlock(void* applicationId) {
  for (Module& module : modules_)
    if (idOf(module.number) == applicationId) module.isUnlocked = true;
}

} // namespace simhost

KvRxObject::~KvRxObject() = default;

CWinApp::CWinApp() {
  simhost::newestApplication() = this;
}
CWinApp::~CWinApp() = default;

bool CWinApp::InitInstance() {
  return true;
}

int CWinApp::ExitInstance() {
  return 0;
}

namespace {

class DynamicLinker final : public KvRxDynamicLinker {
public:
  void unlockApplication(void* applicationId) override {
    if (simhost::Session* session = simhost::Session::current()) session->modules().unlock(applicationId);
  }
};

class SystemRegistry final : public KvRxDictionary {
public:
  [[nodiscard]] KvRxObject* at(const wchar_t* name) const override {
    static DynamicLinker linker;
    return name != nullptr && std::wstring_view(name) == L"DynamicLinker" ? &linker : nullptr;
  }
};

} // namespace

KvRxDictionary* kvrxSysRegistry() {
  static SystemRegistry registry;
  return &registry;
}

bool kvrxRegisterAppMDIAware(void* applicationId) {
  return applicationId != nullptr && simhost::Session::current() != nullptr;
}
