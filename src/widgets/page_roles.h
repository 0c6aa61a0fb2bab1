// Roles of controls that are made on pages while a dialog runs: "<pages>.<page>.<place>", the header buttons of a
// group "<pages>.<page>.<place>.button.<n>".
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace brenvolt {

struct PagePlace {
  std::uint32_t page = 0;
  std::size_t place = 0;
  std::optional<int> button; ///< from 0, of a group's header
};

/// The place that a role names; nothing when it is none of these pages'.
[[nodiscard]] std::optional<PagePlace> placeOfRole(std::wstring_view role, std::wstring_view pages);

} // namespace brenvolt
