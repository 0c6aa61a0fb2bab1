// One change at a time: what it applies to, what it reports, what the journal keeps of it.
#include "history_site.h"
#include "platform/file_lock.h"
#include "project/history_recovery.h"
#include "tests/support/file_faults.h"
#include "tests/support/processes.h"

#include <doctest/doctest.h>

#include <cstdlib>

using namespace brenvolt;
using namespace brenvolt::test;
using Result = HistoryOutcome::Result;

namespace {

/// The journal in short: "saved Pump 1 @5", with a star when there is something to restore.
std::vector<std::string> journalOf(const HistorySite& site) {
  std::vector<std::string> lines;
  for (const HistoryRecord& record : readJournal(site.path()))
    lines.push_back(
        toUtf8(std::wstring(actionWord(record.action)) + L" " + record.key.name) + " @" +
        std::to_string(record.time) + (record.former.empty() ? "" : "*"));
  return lines;
}

} // namespace

TEST_CASE("a dialog that was open for an hour loses nobody's entries, and deletes only what it has shown") {
  const HistorySite site;
  CHECK(site.save(L"Pump 1").isDone());
  CHECK(site.save(L"Pump 2").isDone());
  HistoryFile dialog;
  dialog.read(site.path());
  const auto seen = [&](const wchar_t* name) {
    return HistoryDeletion{keyOf(name), dialog.find(keyOf(name)).history.text()};
  };
  const std::vector<HistoryDeletion> deletions = {seen(L"Pump 1"), seen(L"PUMP 2")};
  CHECK(site.save(L"Fan").isDone());
  CHECK(site.save(L"Pump 2", L"changed").isDone());

  std::vector<HistoryKey> stayed;
  CHECK(deleteFromHistory(site.workbook(), dialog, deletions, stayed).isDone());
  CHECK(site.names() == Names{L"Fan", L"Pump 2"});
  CHECK(site.value(L"Pump 2") == L"changed");
  CHECK(stayed == std::vector<HistoryKey>{keyOf(L"PUMP 2")});
  const std::string before = bytesOf(site.file());
  CHECK(deleteFromHistory(site.workbook(), dialog, deletions, stayed).result == Result::unchanged);
  CHECK(bytesOf(site.file()) == before);
}

TEST_CASE("the journal lists who changed what, and brings back what was replaced or deleted") {
  const HistorySite site;
  ::setenv("SOURCE_DATE_EPOCH", "1000", 1);
  CHECK(site.save(L"Pump\t1 \\ \u00e4", L"first").isDone());
  const std::wstring name = site.names().at(0);
  ::setenv("SOURCE_DATE_EPOCH", "2000", 1);
  CHECK(site.save(name, L"second").isDone());
  CHECK(site.remove(name).isDone());
  CHECK(site.remove(name).result == Result::unchanged);
  const std::string named = toUtf8(name);
  CHECK(
      journalOf(site) ==
      Files{"saved " + named + " @1000", "saved " + named + " @2000*", "deleted " + named + " @2000*"});
  const std::vector<HistoryRecord> records = readJournal(site.path());
  CHECK(records[0].user == thisFileUser().user);
  CHECK(records[0].machine == thisFileUser().machine);
  CHECK(records[0].key == keyOf(name));

  HistoryFile present;
  CHECK(restoreInHistory(site.workbook(), present, records[2]).isDone());
  CHECK(site.value(name) == L"second");
  CHECK(restoreInHistory(site.workbook(), present, records[1]).isDone());
  CHECK(site.value(name) == L"first");
  CHECK(restoreInHistory(site.workbook(), present, records[1]).result == Result::unchanged);
  CHECK(restoreInHistory(site.workbook(), present, records[0]).result == Result::unchanged);
  CHECK(journalOf(site).size() == 5);
  ::unsetenv("SOURCE_DATE_EPOCH");
}

TEST_CASE("a journal that is full, broken or not to be written never stops a save") {
  const HistorySite site;
  const std::filesystem::path journal = site.folder / "zan_brenvolt.journal";
  CHECK(site.save(L"Pump 1", std::wstring(largestJournal / 4, L'x')).isDone());
  for (int save = 0; save < 5; ++save)
    CHECK(site.save(L"Pump 1", std::wstring(largestJournal / 4, L'x')).isDone());
  CHECK(std::filesystem::file_size(journal) <= largestJournal);
  CHECK_FALSE(readJournal(site.path()).empty());
  CHECK_FALSE(readJournal(site.path()).back().former.empty());

  writeBytes(journal, "a line of another program\nhalf a rec");
  CHECK(site.save(L"Pump 2").isDone());
  CHECK(readJournal(site.path()).size() == 1);
  std::filesystem::remove(journal);
  std::filesystem::create_directory(journal);
  CHECK(site.save(L"Pump 3").isDone());
  CHECK(readJournal(site.path()).empty());
  CHECK(site.names() == Names{L"Pump 1", L"Pump 2", L"Pump 3"});
}

TEST_CASE("a change that fails says why, names who is busy, and leaves file and journal as they were") {
  const HistorySite site;
  CHECK(site.save(L"Pump 1").isDone());
  const std::string before = bytesOf(site.file());
  const std::size_t records = readJournal(site.path()).size();
  int ready[2];
  REQUIRE(::pipe(ready) == 0);
  const pid_t holder = startProcess([&] {
    const FileLock turn(site.path());
    if (::write(ready[1], "!", 1) != 1) return 1;
    ::pause();
    return 0;
  });
  char byte = 0;
  REQUIRE(::read(ready[0], &byte, 1) == 1);
  const HistoryOutcome busy = site.save(L"Pump 2");
  CHECK(busy.result == Result::busy);
  REQUIRE(busy.holder);
  CHECK(busy.holder->process == std::to_wstring(holder));
  ::kill(holder, SIGKILL);
  waitFor(holder);

  std::filesystem::permissions(site.file(), std::filesystem::perms::owner_read);
  CHECK(site.save(L"Pump 2").result == Result::openFailed);
  std::filesystem::permissions(site.file(), std::filesystem::perms::owner_all);
  CHECK(bytesOf(site.file()) == before);
  CHECK(readJournal(site.path()).size() == records);

  HistoryFile present;
  const auto failing = [](HistoryFile& each) -> std::vector<HistoryRecord> {
    each.put(keyOf(L"Half"), each.find(keyOf(L"Pump 1")).history);
    throw XmlError("no");
  };
  CHECK_THROWS_AS(static_cast<void>(changeHistory(site.workbook(), present, failing)), XmlError);
  CHECK(site.names() == Names{L"Pump 1"});
  CHECK(changeHistory(L"zan_brenvolt.xls", present, failing).result == Result::openFailed);
  CHECK(site.folder.names() == Files{"zan_brenvolt.journal", "zan_brenvolt.xml"});
}

TEST_CASE("a full or read-only disk, a kill and a power failure at any call leave old or new") {
  using Kind = FileFaults::Kind;
  for (const Kind kind : {Kind::diskFull, Kind::readOnly, Kind::kill, Kind::powerLoss})
    for (const bool keepsRenaming : {true, false}) {
      bool goesOn = true;
      for (int call = 0; goesOn; ++call) {
        CAPTURE(static_cast<int>(kind));
        CAPTURE(call);
        const HistorySite site;
        REQUIRE(site.save(L"Pump 1", L"old").isDone());
        bool isDone = false;
        if (kind == Kind::kill) {
          goesOn = waitFor(startProcess([&] {
                     const FileFaults faults(kind, call);
                     static_cast<void>(site.save(L"Pump 1", L"new"));
                     return 1;
                   })) == 0;
        } else {
          FileFaults faults(kind, call);
          isDone = site.save(L"Pump 1", L"new").isDone();
          if (kind == Kind::powerLoss) faults.losePower(keepsRenaming);
          goesOn = faults.hasStruck();
        }
        if (!isDone && (kind == Kind::diskFull || kind == Kind::readOnly))
          CHECK(readJournal(site.path()).size() == 1);
        CHECK((site.value(L"Pump 1") == L"new" || (!isDone && site.value(L"Pump 1") == L"old")));
        CHECK(site.save(L"Pump 2").isDone());
        CHECK(site.names() == Names{L"Pump 1", L"Pump 2"});
        CHECK(site.folder.names() == Files{"zan_brenvolt.journal", "zan_brenvolt.xml"});
      }
    }
}
