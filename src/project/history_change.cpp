#include "project/history_change.h"

#include "platform/file_replace.h"

namespace brenvolt {

namespace {

using Result = HistoryOutcome::Result;

constexpr std::wstring_view damagedWord = L"damaged";

HistoryOutcome failed(const FileFault& fault) {
  return {
      fault.step == FileFault::Step::open ? Result::openFailed : Result::writeFailed, fault.reason, {}, {}};
}

/// What cannot be written must be known before another program is waited for.
std::optional<FileFault> obstacle(const std::wstring& path) {
  if (std::optional<std::wstring> reason = writeObstacle(path))
    return FileFault{FileFault::Step::open, std::move(*reason)};
  return std::nullopt;
}

HistoryOutcome write(const std::wstring& path, const HistoryFile& file, bool keepsOld) {
  FileReplacement replacement(path);
  replacement.write(file.bytes());
  HistoryOutcome outcome;
  if (!replacement.fault() && keepsOld) {
    const KeptFile kept = keepBeside(path, damagedWord);
    if (kept.fault) return failed(*kept.fault);
    outcome.keptAs = kept.path;
  }
  const std::optional<FileFault> fault = replacement.commit();
  return fault ? failed(*fault) : outcome;
}

} // namespace

HistoryOutcome changeHistory(const std::wstring& workbook, HistoryFile& file, const HistoryChange& change) {
  const std::wstring path = historyPathOf(workbook);
  if (path.empty()) return {Result::openFailed, L"the workbook's path names no folder", {}, {}};
  if (const std::optional<FileFault> fault = obstacle(path)) return failed(*fault);
  const FileLock turn(path);
  if (turn.fault())
    return {turn.holder() ? Result::busy : Result::openFailed, *turn.fault(), turn.holder(), {}};

  const HistoryFile::State state = file.read(path);
  if (state != HistoryFile::State::accepted) file.startEmpty(workbook);
  std::vector<HistoryRecord> records = change(file);
  if (records.empty()) return {Result::unchanged, {}, {}, {}};
  // Recorded before it is done: what is replaced must not be lost by a stop between the two.
  JournalEntry entry(path, std::move(records));
  HistoryOutcome outcome = write(path, file, state == HistoryFile::State::refused);
  if (!outcome.isDone()) entry.takeBack();
  return outcome;
}

HistoryOutcome deleteFromHistory(
    const std::wstring& workbook, HistoryFile& file, const std::vector<HistoryDeletion>& deletions,
    std::vector<HistoryKey>& stayed) {
  return changeHistory(workbook, file, [&](HistoryFile& present) {
    std::vector<HistoryRecord> records;
    for (const HistoryDeletion& deletion : deletions) {
      HistoryRecord record = recordOf(HistoryAction::deleted, present, deletion.key);
      const bool isSeen = deletion.seen.empty() || record.former == deletion.seen;
      if (!isSeen && !record.former.empty()) stayed.push_back(deletion.key);
      if (isSeen && present.remove(deletion.key)) records.push_back(std::move(record));
    }
    return records;
  });
}

HistoryRecord recordOf(HistoryAction action, const HistoryFile& file, const HistoryKey& key) {
  HistoryRecord record;
  record.action = action;
  record.key = key;
  if (const XmlElement history = file.find(key).history; !history.isNull()) record.former = history.text();
  return record;
}

} // namespace brenvolt
