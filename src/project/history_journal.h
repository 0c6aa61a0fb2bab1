// What was changed in a history file, when and by whom: a journal next to it, from which a replaced or deleted
// configuration can be restored.
#pragma once

#include "project/history_file.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

enum class HistoryAction { saved, deleted, restored, recovered };

/// The word for lists and for the journal itself.
[[nodiscard]] std::wstring_view actionWord(HistoryAction action);

struct HistoryRecord {
  HistoryAction action = HistoryAction::saved;
  HistoryKey key;
  std::string former;    ///< the element that was replaced or deleted; empty when there was none
  std::int64_t time = 0; ///< seconds since 1970
  std::wstring user;
  std::wstring machine;
};

/// "zan_brenvolt.journal" in the folder of the history file.
[[nodiscard]] std::wstring journalPathOf(std::wstring_view historyPath);

/// Returns the records, oldest first. Invalid lines are skipped.
[[nodiscard]] std::vector<HistoryRecord> readJournal(std::wstring_view historyPath);

/// The journal gives up its oldest records when it grows beyond this.
inline constexpr std::size_t largestJournal = std::size_t{4} * 1024 * 1024;

/// Records a change, with this user and the present time, or that of the environment's SOURCE_DATE_EPOCH. A journal
/// that cannot be written never stops a change; the caller holds the turn at the history file.
class JournalEntry final {
public:
  JournalEntry(std::wstring_view historyPath, std::vector<HistoryRecord> records);
  JournalEntry(const JournalEntry&) = delete;
  JournalEntry& operator=(const JournalEntry&) = delete;
  ~JournalEntry() = default;

  /// The change did not come about.
  void takeBack();

private:
  std::wstring path_;
  std::string text_; ///< what was appended, empty when nothing was
};

} // namespace brenvolt
