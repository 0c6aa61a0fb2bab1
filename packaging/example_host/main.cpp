// A host without LISP, drawings or windows. It loads the module as any host would and checks what the module
// registers: its functions in their order, again for each drawing, each served by the one bound function.
#include "host/host_api_documents.h"
#include "host/host_api_lisp.h"

#include <dlfcn.h>

#include <cstdio>
#include <cstring>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace {

struct {
  std::vector<std::wstring> names;
  std::map<int, int (*)()> functions;
  std::vector<std::wstring> boxes;
  CWinApp* application = nullptr;
  int calledCode = -1;
  int nilAnswers = 0;
  void* unlocked = nullptr;
} host;

class Linker final : public KvRxDynamicLinker {
public:
  void unlockApplication(void* applicationId) override { host.unlocked = applicationId; }
} linker;

class Services final : public KvRxDictionary {
public:
  [[nodiscard]] KvRxObject* at(const wchar_t* name) const override {
    return std::wstring_view(name) == L"DynamicLinker" ? &linker : nullptr;
  }
} services;

bool check(bool condition, const char* promise) {
  if (!condition) std::fprintf(stderr, "broken: %s\n", promise);
  return condition;
}

template <typename Function>
Function* find(void* module, const char* name) {
  void* symbol = dlsym(module, name);
  Function* function = nullptr;
  std::memcpy(&function, &symbol, sizeof function);
  return function;
}

const std::vector<std::wstring> expected = {
    L"zan_bv_select_circuit", L"zan_bv_build_circuit", L"zan_bv_motor_select",  L"zan_bv_power_feed_select",
    L"zan_bv_wire_select",    L"zan_bv_code_std_desc", L"zan_bv_edit_wiresize", L"zan_bv_pf_wire_select",
    L"zan_bv_build_and_save", L"zan_bv_wire_fields"};

} // namespace

KvRxObject::~KvRxObject() = default;
KvRxDictionary* kvrxSysRegistry() {
  return &services;
}
bool kvrxRegisterAppMDIAware(void* applicationId) {
  return applicationId != nullptr;
}
CWinApp::CWinApp() {
  host.application = this;
}
CWinApp::~CWinApp() = default;
bool CWinApp::InitInstance() {
  return true;
}
int CWinApp::ExitInstance() {
  return 0;
}
KvResourceModule* kvdsLoadResourceModule(const wchar_t*) {
  return nullptr;
}
void kvdsMessageBox(KvWindow*, const wchar_t* text) {
  host.boxes.emplace_back(text);
}
KvApDocManager* kvDocManagerPtr() {
  return nullptr;
}
int kvedDefun(const wchar_t* name, int code) {
  host.names.emplace_back(name);
  return code == 103 ? kvstatus::rejected : kvstatus::normal;
}
int kvedRegFunc(int (*function)(), int code) {
  host.functions[code] = function;
  return kvstatus::normal;
}
int kvedGetFunCode() {
  return host.calledCode;
}
KvResultBuffer* kvedGetArgs() {
  return nullptr;
}
KvWindow* kvedGetKorvoFrame() {
  return nullptr;
}
int kvedRetNil() {
  ++host.nilAnswers;
  return kvstatus::normal;
}

int main(int argc, char** argv) {
  if (!check(argc == 2, "the module's path is the argument")) return 1;
  void* module = dlopen(argv[1], RTLD_LAZY);
  if (!check(module != nullptr, "the module loads")) {
    std::fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  auto* entry = find<int(int, void*)>(module, "kvrxEntryPoint");
  auto* version = find<int()>(module, "kvrxGetApiVersion");
  bool ok = check(version != nullptr && version() == kvrxApiVersion, "the module names its version");
  ok &= check(find<void()>(module, "GetAllCodeStandards") != nullptr, "siblings find the code standards");
  if (!check(entry != nullptr && host.application != nullptr, "entry and application exist")) return 1;

  ok &= check(entry(kvmessage::moduleLoad, &services) == 0, "the entry answers 0");
  ok &= check(host.unlocked == &services, "the module may be unloaded");
  ok &= check(host.names == expected, "the functions in the order of the table");
  ok &= check(host.functions.size() == 9 && !host.functions.contains(103), "a refused name is not bound");
  host.names.clear();
  ok &= check(
      entry(kvmessage::drawingLoad, &services) == 0 && host.names == expected, "again for each drawing");
  host.names.clear();
  ok &= check(
      entry(kvmessage::drawingUnload, &services) == 0 && host.names.empty(), "nothing at other messages");

  ok &= check(host.application->InitInstance(), "the application starts without resources");
  ok &= check(host.boxes == std::vector<std::wstring>{L"ZanBrenvoltRes.dll not found"}, "and says so once");
  host.calledCode = 107;
  ok &=
      check(host.functions.at(107)() == 1 && host.nilAnswers == 1, "without a frame nothing is edited: nil");
  for (const int code : {99, 110, -1}) {
    host.calledCode = code;
    ok &= check(host.functions.at(100)() == 0, "an unknown code is not served");
  }
  host.application->ExitInstance();
  dlclose(module);
  return ok ? 0 : 1;
}
