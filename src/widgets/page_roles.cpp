#include "widgets/page_roles.h"

#include "text/numbers.h"
#include "text/split.h"

#include <string>
#include <vector>

namespace brenvolt {

std::optional<PagePlace> placeOfRole(std::wstring_view role, std::wstring_view pages) {
  const std::vector<std::wstring> parts = splitKeepingEmpty(role, L'.');
  const bool namesButton = parts.size() == 5 && parts[3] == L"button";
  if ((parts.size() != 3 && !namesButton) || parts[0] != pages) return std::nullopt;
  PagePlace found{
      static_cast<std::uint32_t>(toInt(parts[1])), static_cast<std::size_t>(toInt(parts[2])), std::nullopt};
  if (namesButton) found.button = toInt(parts[4]);
  return found;
}

} // namespace brenvolt
