// Chains as the host's services make them, for a test program that links the drawing alone.
#include "host/host_api_lisp.h"

#include <cwchar>

KvResultBuffer* kvutNewRb(int type) {
  auto* node = new KvResultBuffer;
  node->type = static_cast<std::int16_t>(type);
  node->value.string = nullptr;
  return node;
}

wchar_t* kvutNewString(const wchar_t* text) {
  return std::wcscpy(new wchar_t[std::wcslen(text) + 1], text);
}

int kvutRelRb(KvResultBuffer* chain) {
  while (chain != nullptr) {
    KvResultBuffer* next = chain->next;
    delete[] chain->value.string;
    delete chain;
    chain = next;
  }
  return kvstatus::normal;
}
