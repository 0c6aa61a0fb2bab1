// Loading of numbered texts, and the plug-in's place on the host's resource stack.
#include "host/resources.h"

namespace brenvolt {

namespace {

KvResourceModule*& moduleSlot() {
  static KvResourceModule* module = nullptr;
  return module;
}

} // namespace

std::optional<std::wstring> findText(TextId id) {
  std::wstring text;
  if (!kvdsLoadString(static_cast<unsigned>(id), text)) return std::nullopt;
  return text;
}

std::wstring loadText(TextId id) {
  return findText(id).value_or(std::wstring());
}

KvResourceModule* resourceModule() {
  return moduleSlot();
}

void setResourceModule(KvResourceModule* module) {
  moduleSlot() = module;
}

ResourceScope::ResourceScope() : manager_(kvDocManagerPtr()) {
  if (manager_ != nullptr) manager_->pushResourceModule(resourceModule());
}

ResourceScope::~ResourceScope() {
  if (manager_ != nullptr) manager_->popResourceModule();
}

} // namespace brenvolt
