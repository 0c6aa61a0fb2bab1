// Making, copying and releasing chains.
#include "simhost/host/chain.h"

#include "host/host_api_lisp.h"
#include "text/assertion.h"

#include <cstdarg>
#include <cwchar>
#include <utility>

namespace simhost {

namespace {

struct TypeRow {
  std::int16_t type;
  ChainStorage storage;
};

constexpr TypeRow types[] = {
    {kvtype::none, ChainStorage::nothing},
    {kvtype::real, ChainStorage::real},
    {kvtype::point2d, ChainStorage::point},
    {kvtype::shortInteger, ChainStorage::shortInteger},
    {kvtype::string, ChainStorage::string},
    {kvtype::entityName, ChainStorage::entityName},
    {kvtype::point3d, ChainStorage::point},
    {kvtype::longInteger, ChainStorage::longInteger},
    {kvtype::listBegin, ChainStorage::nothing},
    {kvtype::listEnd, ChainStorage::nothing},
    {kvtype::nil, ChainStorage::nothing},
    {kvtype::t, ChainStorage::nothing},
    {1, ChainStorage::string},
    {2, ChainStorage::string},
    {3, ChainStorage::string},
    {4, ChainStorage::string},
    {90, ChainStorage::longInteger},
    {290, ChainStorage::shortInteger},
    {kvtype::dataString, ChainStorage::string},
    {kvtype::applicationName, ChainStorage::string},
    {kvtype::controlString, ChainStorage::string},
};

} // namespace

ChainStorage storageOf(std::int16_t type) {
  for (const TypeRow& row : types)
    if (row.type == type) return row.storage;
  return ChainStorage::unknown;
}

void ChainRelease::operator()(KvResultBuffer* chain) const {
  while (chain != nullptr) {
    KvResultBuffer* next = chain->next;
    if (storageOf(chain->type) == ChainStorage::string) delete[] chain->value.string;
    delete chain;
    chain = next;
  }
}

wchar_t* newChainString(std::wstring_view text) {
  // What stands behind an embedded zero could never be read back.
  const std::size_t length = text.substr(0, text.find(L'\0')).size();
  wchar_t* copy = new wchar_t[length + 1];
  std::wmemcpy(copy, text.data(), length);
  copy[length] = L'\0';
  return copy;
}

KvResultBuffer& ChainBuilder::add(std::int16_t type) {
  BRENVOLT_ASSERT(storageOf(type) != ChainStorage::unknown, "a chain node is made of an unknown type");
  Chain node(new KvResultBuffer);
  node->type = type;
  splice(std::move(node));
  return *last_;
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
  auto* node = new KvResultBuffer;
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
