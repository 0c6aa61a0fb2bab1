// Many programs on one history file, and programs that are killed at any moment: every save that was reported as good
// is in the file, and every reader sees a whole one. BRENVOLT_PROVE=1 runs it at full size and prints the seconds;
// BRENVOLT_PROVE_OTHER names a second mount of the folder for temporary files, through which every other program works.
#include "history_site.h"
#include "tests/support/processes.h"

#include <doctest/doctest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <set>
#include <thread>

#include <sys/mman.h>

using namespace brenvolt;
using namespace brenvolt::test;

namespace {

bool isFullSize() {
  return std::getenv("BRENVOLT_PROVE") != nullptr;
}

/// Each save takes longer there.
bool isOnNetwork() {
  return std::getenv("BRENVOLT_PROVE_OTHER") != nullptr;
}

std::wstring nameOf(int program, int save) {
  return L"P" + std::to_wstring(program) + L"-" + std::to_wstring(save);
}

/// Every fifth entry is deleted again, so that the next one finds it gone.
bool isDeleted(int save) {
  return save % 5 == 4;
}

/// The site through the second mount, where there is one.
void useOtherMount(HistorySite& site) {
  if (const char* other = std::getenv("BRENVOLT_PROVE_OTHER"))
    site.seen = std::filesystem::path(other) / site.folder.path().filename();
}

/// Saves and deletes; the exit code counts what was not reported as good.
int saveAll(const HistorySite& site, int program, int saves) {
  int failures = 0;
  const auto note = [&failures](const HistoryOutcome& outcome) {
    if (outcome.isDone()) return;
    ++failures;
    std::fprintf(stderr, "result %d: %s\n", static_cast<int>(outcome.result), toUtf8(outcome.reason).c_str());
  };
  for (int save = 0; save < saves; ++save) {
    note(site.save(nameOf(program, save)));
    if (isDeleted(save)) note(site.remove(nameOf(program, save)));
  }
  return failures;
}

/// Reads until the parent ends it; a file that is not whole ends it at once.
int readOn(const HistorySite& site) {
  for (;;) {
    HistoryFile present;
    if (present.read(site.path()) == HistoryFile::State::refused) return 1;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
}

void saveAtOnce(int programs, int saves) {
  CAPTURE(programs);
  HistorySite site;
  const auto begin = std::chrono::steady_clock::now();
  std::vector<pid_t> writers;
  std::vector<pid_t> readers;
  for (int reader = 0; reader < 2; ++reader)
    readers.push_back(startProcess([&] {
      if (reader == 1) useOtherMount(site);
      return readOn(site);
    }));
  for (int program = 0; program < programs; ++program)
    writers.push_back(startProcess([&] {
      if (program % 2 == 1) useOtherMount(site);
      return saveAll(site, program, saves);
    }));
  for (const pid_t writer : writers)
    CHECK(waitFor(writer) == 0);
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  for (const pid_t reader : readers) {
    ::kill(reader, SIGKILL);
    CHECK(waitFor(reader) == -1);
  }
  std::set<std::wstring> expected;
  for (int program = 0; program < programs; ++program)
    for (int save = 0; save < saves; ++save)
      if (!isDeleted(save)) expected.insert(nameOf(program, save));
  const Names names = site.names();
  CHECK(names.size() == expected.size());
  CHECK(std::set<std::wstring>(names.begin(), names.end()) == expected);
  CHECK(site.folder.names() == Files{"zan_brenvolt.journal", "zan_brenvolt.xml"});
  if (isFullSize())
    std::printf(
        "%d programs, %d saves each: %zu entries, %.1f s\n", programs, saves, names.size(), seconds.count());
}

} // namespace

TEST_CASE("programs that save and delete at the same moment lose nothing, and readers see whole files") {
  if (!isFullSize()) return saveAtOnce(6, 10);
  if (isOnNetwork()) {
    saveAtOnce(8, 20);
    return saveAtOnce(32, 10);
  }
  saveAtOnce(8, 100);
  saveAtOnce(32, 100);
}

TEST_CASE("a program that is killed at any moment loses no save that it reported, and stops nobody") {
  const int kills = isOnNetwork() ? 100 : isFullSize() ? 1000 : 40;
  std::minstd_rand numbers(7);
  HistorySite site;
  // What the killed program had reported, in memory that outlives it.
  void* const shared =
      ::mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  REQUIRE(shared != MAP_FAILED);
  auto* const reported = static_cast<volatile int*>(shared);
  int damaged = 0;
  int lost = 0;
  for (int kill = 0; kill < kills; ++kill) {
    *reported = -1;
    const pid_t writer = startProcess([&]() -> int {
      if (kill % 2 == 1) useOtherMount(site);
      for (int save = 0;; ++save)
        if (site.save(L"Loop", std::to_wstring(save)).isDone()) *reported = save;
    });
    std::this_thread::sleep_for(std::chrono::microseconds(500 + numbers() % 20'000));
    ::kill(writer, SIGKILL);
    waitFor(writer);
    HistoryFile present;
    if (present.read(site.path()) == HistoryFile::State::refused) ++damaged;
    if (*reported >= 0 && std::stoi(site.value(L"Loop")) < *reported) ++lost;
  }
  CHECK(damaged == 0);
  CHECK(lost == 0);
  CHECK(site.save(L"After").isDone());
  CHECK(site.folder.names() == Files{"zan_brenvolt.journal", "zan_brenvolt.xml"});
  ::munmap(shared, sizeof(int));
  if (isFullSize()) std::printf("%d kills: %d damaged files, %d lost saves\n", kills, damaged, lost);
}
