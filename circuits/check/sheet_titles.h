// What a worksheet says to whoever reads it in a window: the titles of its CODEs, and with which options a group is of use.
#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace circuits {

struct SheetTitles {
  std::map<std::wstring, std::wstring> byCode{}; ///< by upper-case CODE
  /// Options of groups above, of which one has to be chosen; by the titles of CODE and group. A group without a condition
  /// is not here.
  std::map<std::pair<std::wstring, std::wstring>, std::vector<std::wstring>> onlyWith{};
  /// The tables of each group of parts in upper case, by upper-case CODE and the title of the group: option codes may
  /// have different tables below one title.
  std::map<std::pair<std::wstring, std::wstring>, std::set<std::wstring>> partTables{};
};

/// Empty for a workbook or a sheet that cannot be read.
[[nodiscard]] SheetTitles readSheetTitles(const std::wstring& workbook, const std::wstring& worksheet);

} // namespace circuits
