// Bringing configurations back: out of the journal, and out of a file that is damaged.
#pragma once

#include "project/history_change.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

/// Puts the former state of a record's configuration in place of the present one.
[[nodiscard]] HistoryOutcome restoreInHistory(
    const std::wstring& workbook, HistoryFile& file, const HistoryRecord& record);

/// What a damaged file still holds, piece by piece.
struct SalvagedHistory {
  struct Entry {
    HistoryKey key;
    std::string text; ///< the element
  };
  std::vector<Entry> entries;
  std::vector<HistoryKey> broken; ///< what begins and cannot be read; parts of the key may be missing
};

/// Returns every complete configuration, whatever surrounds it.
[[nodiscard]] SalvagedHistory salvageHistory(std::string_view bytes);

/// What became of the entries of a damaged file.
struct HistoryMerge {
  std::vector<HistoryKey> added;   ///< under the names that they have now
  std::vector<HistoryKey> present; ///< the same configuration was there already
};

/// Adds entries to the file. One whose name is taken by another configuration is added as "NAME (recovered)", or with
/// the next free number.
[[nodiscard]] HistoryOutcome mergeIntoHistory(
    const std::wstring& workbook, HistoryFile& file, const std::vector<SalvagedHistory::Entry>& entries,
    HistoryMerge& merge);

} // namespace brenvolt
