// What a worksheet says to whoever reads it in a window: the titles of its CODEs, and with which options a group is of use.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace circuits {

struct SheetTitles {
  std::map<std::wstring, std::wstring> byCode{}; ///< by upper-case CODE
  /// Options of groups above, of which one has to be chosen; by the titles of CODE and group. A group without a condition
  /// is not here.
  std::map<std::pair<std::wstring, std::wstring>, std::vector<std::wstring>> onlyWith{};
  /// The table of each group of parts, by upper-case CODE and the title of the group.
  std::map<std::pair<std::wstring, std::wstring>, std::wstring> partTables{};
};

/// Empty for a workbook or a sheet that cannot be read.
[[nodiscard]] SheetTitles readSheetTitles(const std::wstring& workbook, const std::wstring& worksheet);

} // namespace circuits
