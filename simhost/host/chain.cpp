// Making, copying and releasing chains.
#include "simhost/host/chain.h"

#include "host/host_api_lisp.h"

#include <cstdarg>
#include <cwchar>
#include <utility>

namespace simhost {

namespace {

/// Released nodes, reused for new ones: a call between host and module creates and releases a dozen, and the general
/// allocator would cost more than the call. Checked builds do without, so that a stale node is noticed.
class NodePool final {
public:
  [[nodiscard]] KvResultBuffer* take() {
    if (first_ == nullptr) return new KvResultBuffer;
    KvResultBuffer* node = first_;
    first_ = node->next;
    --count_;
    *node = KvResultBuffer();
    return node;
  }
  void give(KvResultBuffer* node) {
    if (count_ == limit) {
      delete node;
      return;
    }
    node->next = first_;
    first_ = node;
    ++count_;
  }

private:
#ifdef __SANITIZE_ADDRESS__
  static constexpr int limit = 0;
#else
  static constexpr int limit = 1024;
#endif
  KvResultBuffer* first_ = nullptr;
  int count_ = 0;
};

NodePool& nodePool() {
  // Never destroyed: a module may release chains while the process ends.
  static NodePool& pool = *new NodePool;
  return pool;
}

} // namespace

void ChainRelease::operator()(KvResultBuffer* chain) const {
  while (chain != nullptr) {
    KvResultBuffer* next = chain->next;
    if (storageOf(chain->type) == ChainStorage::string) delete[] chain->value.string;
    nodePool().give(chain);
    chain = next;
  }
}

wchar_t* newChainString(std::wstring_view text) {
  // Text after an embedded zero could never be read back.
  const std::size_t length = ::wcsnlen(text.data(), text.size());
  wchar_t* copy = new wchar_t[length + 1];
  std::wmemcpy(copy, text.data(), length);
  copy[length] = L'\0';
  return copy;
}

KvResultBuffer& ChainBuilder::add(std::int16_t type) {
  KvResultBuffer* node = nodePool().take();
  node->type = type;
  if (last_ == nullptr) {
    head_.reset(node);
  } else {
    last_->next = node;
  }
  last_ = node;
  return *node;
}

void ChainBuilder::splice(Chain chain) {
  if (chain == nullptr) return;
  if (last_ == nullptr) {
    head_ = std::move(chain);
    last_ = head_.get();
  } else {
    last_->next = chain.release();
  }
  while (last_->next != nullptr)
    last_ = last_->next;
}

Chain ChainBuilder::take() {
  last_ = nullptr;
  return std::move(head_);
}

} // namespace simhost

using simhost::ChainBuilder;
using simhost::ChainStorage;

KvResultBuffer* kvutNewRb(int type) {
  const auto code = static_cast<std::int16_t>(type);
  if (code != type || simhost::storageOf(code) == ChainStorage::unknown) return nullptr;
  KvResultBuffer* node = simhost::nodePool().take();
  node->type = code;
  return node;
}

wchar_t* kvutNewString(const wchar_t* text) {
  return text == nullptr ? nullptr : simhost::newChainString(text);
}

int kvutRelRb(KvResultBuffer* chain) {
  simhost::ChainRelease()(chain);
  return kvstatus::normal;
}

void kvutDelBuffer(wchar_t*& buffer) {
  delete[] buffer;
  buffer = nullptr;
}

KvResultBuffer* kvutBuildList(int type, ...) {
  ChainBuilder list;
  bool isKnown = true;
  va_list values;
  va_start(values, type);
  for (int code = type; code != 0 && isKnown; code = va_arg(values, int)) {
    if (code == kvtype::splice) {
      list.splice(simhost::Chain(va_arg(values, KvResultBuffer*)));
      continue;
    }
    const auto narrow = static_cast<std::int16_t>(code);
    const ChainStorage storage = narrow == code ? simhost::storageOf(narrow) : ChainStorage::unknown;
    if (storage == ChainStorage::unknown) {
      isKnown = false;
      break;
    }
    KvResultBuffer::Value& value = list.add(narrow).value;
    switch (storage) {
    case ChainStorage::unknown:
    case ChainStorage::nothing:
      break;
    case ChainStorage::real:
      value.real = va_arg(values, double);
      break;
    case ChainStorage::point: {
      const auto* point = va_arg(values, const double*);
      const int count = narrow == kvtype::point2d ? 2 : 3;
      for (int axis = 0; point != nullptr && axis < count; ++axis)
        value.point[axis] = point[axis];
      break;
    }
    case ChainStorage::shortInteger:
      value.shortInteger = static_cast<std::int16_t>(va_arg(values, int));
      break;
    case ChainStorage::longInteger:
      value.longInteger = va_arg(values, int);
      break;
    case ChainStorage::string:
      value.string = kvutNewString(va_arg(values, const wchar_t*));
      break;
    case ChainStorage::entityName:
      value.entityName = va_arg(values, KvEntityName);
      break;
    }
  }
  va_end(values);
  return isKnown ? list.take().release() : nullptr;
}
