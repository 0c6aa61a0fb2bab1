#include "platform/shared_library.h"

#include "text/encoding.h"

#include <dlfcn.h>

namespace brenvolt {

SharedLibrary::SharedLibrary(const char* name) : handle_(::dlopen(name, RTLD_LAZY | RTLD_LOCAL)) {
  if (handle_ == nullptr)
    fault_ = fromUtf8(name) + L" cannot be loaded: install the package that has it (" +
             fromUtf8(::dlerror()) + L")";
}

SharedLibrary::Symbol SharedLibrary::find(const char* function) {
  void* const address = handle_ == nullptr ? nullptr : ::dlsym(handle_, function);
  if (address == nullptr && fault_.empty())
    fault_ =
        std::wstring(L"the library has no function ") + fromUtf8(function) + L": install a newer version";
  return Symbol(address);
}

} // namespace brenvolt
