// The store of catalogue parts: the parts chosen for a unit next to a motor or load, so that the same motor gets the
// same parts in the next circuit.
#pragma once

#include "platform/tables.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// The motor or load that a selection belongs to.
struct CatalogMotor {
  std::wstring type;
  std::wstring load;
  std::wstring units;
  std::wstring voltage;
  std::wstring phase;
  std::wstring frequency;
  std::wstring speed; ///< empty for a load, and then no part of the key

  /// A selection is neither stored nor found under a motor that lacks a value other than the speed.
  [[nodiscard]] bool isComplete() const;
};

/// One group of one unit.
struct CatalogKey {
  std::wstring markerCode;
  std::int32_t optionCode = 0;
  std::wstring table; ///< of the group's parts
  CatalogMotor motor;
};

/// How many columns a selection has: manufacturer, catalog number, assembly code, count, catalog type, six ratings.
inline constexpr std::size_t catalogValueCount = 11;

/// Replaces the stored selection of the key, in one transaction; values beyond the columns are dropped, and values that
/// are all empty only delete the old record.
/// @return the engine's message when the new values could not be stored; the old record is then kept. Nothing when the
///   values were stored.
[[nodiscard]] std::optional<std::wstring> storeCatalogSelection(
    ZanOleDbConnection& connection, const CatalogKey& key, const std::vector<std::wstring>& values);

/// The stored values of the key in the order of `storeCatalogSelection`; nothing without a record.
[[nodiscard]] std::optional<std::vector<std::wstring>> loadCatalogSelection(
    ZanOleDbConnection& connection, const CatalogKey& key);

} // namespace brenvolt
