// One value in, one value out: each operation builds or reads a single chain.
#include "host/lisp_symbols.h"

#include "host/host_api_lisp.h"
#include "text/split.h"

#include <cstdint>

namespace brenvolt {

namespace {

constexpr std::size_t handleDigits = 16;

bool putChain(const wchar_t* name, const ResultList& value) {
  return !value.isEmpty() && kvedPutSym(name, value.get()) == kvstatus::normal;
}

/// -1 for a character that is not a hexadecimal digit.
int hexValue(wchar_t character) {
  if (character >= L'0' && character <= L'9') return static_cast<int>(character - L'0');
  if (character >= L'A' && character <= L'F') return static_cast<int>(character - L'A') + 10;
  if (character >= L'a' && character <= L'f') return static_cast<int>(character - L'a') + 10;
  return -1;
}

} // namespace

ResultList getSymbol(const wchar_t* name) {
  ResultList value;
  if (kvedGetSym(name, value.receive()) != kvstatus::normal) return ResultList();
  return value;
}

bool isSwitchedOn(const wchar_t* name) {
  const ResultList value = getSymbol(name);
  const ListReader reader(value);
  return reader.type() == kvtype::shortInteger && reader.integer() == 1;
}

std::optional<std::wstring> getCodeStandard() {
  const ResultList value = getSymbol(lispsymbol::codeStandard);
  return ListReader(value).text();
}

bool putPoint(const wchar_t* name, const KvPoint3d& point) {
  return putChain(name, ListBuilder().addPoint2d(point).take());
}

bool putReal(const wchar_t* name, double value) {
  return putChain(name, ListBuilder().addReal(value).take());
}

bool putList(const wchar_t* name, const ResultList& list) {
  return kvedPutSym(name, list.get()) == kvstatus::normal;
}

ResultList getCodeCombos() {
  return getSymbol(lispsymbol::codeCombos);
}

bool putCodeCombos(const ResultList& list) {
  return putChain(lispsymbol::codeCombos, list);
}

std::optional<std::wstring> handleToText(KvDbHandle handle) {
  if (handle.isNull()) return std::nullopt;
  std::wstring text;
  for (std::uint64_t rest = handle.value(); rest != 0; rest >>= 4U) {
    text.insert(text.begin(), L"0123456789ABCDEF"[rest & 0xFU]);
  }
  return text;
}

KvDbHandle handleFromText(std::wstring_view text) {
  std::uint64_t value = 0;
  std::size_t digits = 0;
  for (const wchar_t character : trimView(text)) {
    const int digit = hexValue(character);
    if (digit < 0) break;
    if (++digits > handleDigits) return KvDbHandle();
    value = value << 4U | static_cast<std::uint64_t>(digit);
  }
  return KvDbHandle(value);
}

} // namespace brenvolt
