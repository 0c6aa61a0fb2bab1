// Lists (chains of result buffers) inside the host: the value of each type code, a handle that owns a list, and
// building one node at a time. The functions `kvutNewRb` and the like are also implemented here.
#pragma once

#include "host/host_api_types.h"

#include <cstdint>
#include <memory>
#include <string_view>

namespace simhost {

/// Which member of a node's value its type code uses.
enum class ChainStorage { unknown, nothing, real, point, shortInteger, longInteger, string, entityName };

/// The storage of a type code. Codes of values first, then the group codes of entity data and of wire settings.
[[nodiscard]] constexpr ChainStorage storageOf(std::int16_t type) {
  switch (type) {
  case kvtype::none:
  case kvtype::listBegin:
  case kvtype::listEnd:
  case kvtype::nil:
  case kvtype::t:
    return ChainStorage::nothing;
  case kvtype::real:
    return ChainStorage::real;
  case kvtype::point2d:
  case kvtype::point3d:
    return ChainStorage::point;
  case kvtype::shortInteger:
  case 290:
    return ChainStorage::shortInteger;
  case kvtype::longInteger:
  case 90:
    return ChainStorage::longInteger;
  case kvtype::string:
  case 1:
  case 2:
  case 3:
  case 4:
  case kvtype::dataString:
  case kvtype::applicationName:
  case kvtype::controlString:
    return ChainStorage::string;
  case kvtype::entityName:
    return ChainStorage::entityName;
  default:
    return ChainStorage::unknown;
  }
}

/// Releases a chain with its strings.
struct ChainRelease {
  void operator()(KvResultBuffer* chain) const;
};
using Chain = std::unique_ptr<KvResultBuffer, ChainRelease>;

/// A copy of `text` as nodes own it.
[[nodiscard]] wchar_t* newChainString(std::wstring_view text);

/// Appends nodes to a chain that it owns.
class ChainBuilder final {
public:
  ChainBuilder() = default;
  ChainBuilder(const ChainBuilder&) = delete;
  ChainBuilder& operator=(const ChainBuilder&) = delete;

  /// A new last node of a known type, its value zero or null.
  KvResultBuffer& add(std::int16_t type);
  /// Links a list in after the last node.
  void splice(Chain chain);
  /// Hands the chain over; the builder is empty after.
  [[nodiscard]] Chain take();

private:
  Chain head_;
  KvResultBuffer* last_ = nullptr;
};

} // namespace simhost
