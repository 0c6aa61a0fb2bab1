// Changes the history file without losing anyone's entries: under a lock the file is read again, one change is
// applied, the result is written.
#pragma once

#include "platform/file_lock.h"
#include "project/history_file.h"
#include "project/history_journal.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace brenvolt {

/// What became of a change.
struct HistoryOutcome {
  enum class Result {
    done,
    unchanged,   ///< there was nothing to change; nothing was written
    busy,        ///< another program did not end its turn
    openFailed,  ///< the file may not be written, or its folder takes no file
    writeFailed, ///< any later failure; the file is as it was
  };

  Result result = Result::done;
  std::wstring reason;            ///< of a failure
  std::optional<FileUser> holder; ///< the holder of the lock, if known
  std::wstring keptAs;            ///< where a file is kept that was not accepted

  [[nodiscard]] bool isDone() const { return result == Result::done; }
};

/// Changes the document and returns the changes for the journal; empty when there was nothing to change. `XmlError`
/// leaves the file unchanged and is passed on.
using HistoryChange = std::function<std::vector<HistoryRecord>(HistoryFile&)>;

/// Applies one change to the history file in the folder of `workbook`. A missing file begins empty; an unaccepted one
/// is replaced by a new one and kept next to it as `zan_brenvolt.damaged-1.xml`, or with the next free number.
[[nodiscard]] HistoryOutcome changeHistory(
    const std::wstring& workbook, HistoryFile& file, const HistoryChange& change);

/// Deletes configurations. One that differs from what the user has seen (its text in `seen`) was saved again by another
/// program meanwhile and stays; its key comes back.
struct HistoryDeletion {
  HistoryKey key;
  std::string seen; ///< empty: any content
};
[[nodiscard]] HistoryOutcome deleteFromHistory(
    const std::wstring& workbook, HistoryFile& file, const std::vector<HistoryDeletion>& deletions,
    std::vector<HistoryKey>& stayed);

/// A record for the journal with the element that `key` has now.
[[nodiscard]] HistoryRecord recordOf(HistoryAction action, const HistoryFile& file, const HistoryKey& key);

} // namespace brenvolt
