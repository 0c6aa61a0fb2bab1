// Files that users own: what a write keeps, what it refuses, and what is there after a failure at any of its calls.
#include "platform/file_cache.h"
#include "platform/file_lock.h"
#include "platform/file_replace.h"

#include "tests/support/file_faults.h"
#include "tests/support/golden.h"
#include "tests/support/processes.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <chrono>
#include <sys/stat.h>
#include <vector>

using namespace brenvolt;
using namespace brenvolt::test;
namespace fs = std::filesystem;

namespace {

const std::string oldText = "the old content\n";
const std::string newText = "the new content, which is longer\n";

} // namespace

TEST_CASE("a file keeps its mode, its group and the link that leads to it") {
  const TemporaryFolder folder;
  const fs::path file = folder / "file";
  const fs::path linked = folder / "linked";
  writeBytes(file, oldText);
  fs::create_symlink("file", linked);
  REQUIRE(::chmod(file.c_str(), 0460) == 0);
  const gid_t group = ::geteuid() == 0 ? 54321 : ::getegid();
  REQUIRE(::chown(file.c_str(), static_cast<uid_t>(-1), group) == 0);
  CHECK_FALSE(replaceFile(folder.name("linked"), newText));
  CHECK(fs::is_symlink(linked));
  CHECK(bytesOf(file) == newText);
  struct stat status {};
  REQUIRE(::stat(file.c_str(), &status) == 0);
  CHECK((status.st_mode & 07777) == 0460);
  CHECK(status.st_gid == group);

  // A link to a file that does not exist yet: the file comes, the link stays.
  fs::create_symlink("later", folder / "early");
  CHECK_FALSE(replaceFile(folder.name("early"), newText));
  CHECK(fs::is_symlink(folder / "early"));
  CHECK(bytesOf(folder / "later") == newText);
  CHECK(folder.names() == std::vector<std::string>{"early", "file", "later", "linked"});
}

TEST_CASE("what must not be written is refused before anything happens") {
  const TemporaryFolder folder;
  const fs::path file = folder / "file";
  writeBytes(file, oldText);
  REQUIRE(::chmod(file.c_str(), 0444) == 0);
  fs::create_directory(folder / "folder");
  REQUIRE(::mkfifo((folder / "pipe").c_str(), 0666) == 0);
  for (const char* name : {"file", "folder", "pipe", "none/file"}) {
    CAPTURE(name);
    CHECK(writeObstacle(folder.name(name)));
    const std::optional<FileFault> fault = writeWholeFile(folder.name(name), newText);
    REQUIRE(fault);
    CHECK(fault->step == FileFault::Step::open);
  }
  CHECK(bytesOf(file) == oldText);
  CHECK(folder.names() == std::vector<std::string>{"file", "folder", "pipe"});
}

TEST_CASE("a full or read-only disk, a kill and a power failure at any call leave old or new") {
  using Kind = FileFaults::Kind;
  for (const bool exists : {true, false})
    for (const Kind kind : {Kind::diskFull, Kind::readOnly, Kind::kill, Kind::powerLoss})
      for (const bool keepsRenaming : {true, false}) {
        bool goesOn = true;
        for (int call = 0; goesOn; ++call) {
          CAPTURE(static_cast<int>(kind));
          CAPTURE(call);
          CAPTURE(keepsRenaming);
          const TemporaryFolder folder;
          const fs::path file = folder / "file";
          if (exists) writeBytes(file, oldText);
          bool isDone = false;
          if (kind == Kind::kill) {
            goesOn = waitFor(startProcess([&] {
                       const FileFaults faults(kind, call);
                       static_cast<void>(replaceFile(folder.name("file"), newText));
                       return 1;
                     })) == 0;
          } else {
            FileFaults faults(kind, call);
            isDone = !replaceFile(folder.name("file"), newText);
            if (kind == Kind::powerLoss) faults.losePower(keepsRenaming);
            goesOn = faults.hasStruck();
          }
          const std::string found = bytesOf(file);
          const bool isOld = fs::exists(file) == exists && found == (exists ? oldText : "");
          CHECK((isOld || found == newText));
          if (isDone) CHECK(found == newText);
          // What is left over neither stops the next writer nor stays.
          CHECK_FALSE(replaceFile(folder.name("file"), newText + newText));
          CHECK(bytesOf(file) == newText + newText);
          CHECK(folder.names() == std::vector<std::string>{"file"});
        }
      }
}

TEST_CASE("cached files that were synced together survive a power failure") {
  for (const bool keepsRenaming : {true, false}) {
    bool goesOn = true;
    for (int call = 0; goesOn; ++call) {
      const TemporaryFolder folder;
      const std::string one = (folder / "1").string();
      const std::string two = (folder / "2").string();
      FileFaults faults(FileFaults::Kind::powerLoss, call);
      const bool isDone = !replaceCachedFile(one, one + ".new", newText) &&
                          !replaceCachedFile(two, two + ".new", newText) &&
                          !syncFiles(folder.path().string(), {one, two});
      faults.losePower(keepsRenaming);
      goesOn = faults.hasStruck();
      if (isDone) CHECK((bytesOf(one) == newText && bytesOf(two) == newText));
    }
  }
}

TEST_CASE("programs that write at the same moment each write a whole file, and only leftovers are cleared") {
  const TemporaryFolder folder;
  const fs::path file = folder / "file";
  std::vector<pid_t> children;
  for (char letter = 'a'; letter < 'f'; ++letter)
    children.push_back(startProcess([&] {
      int faults = 0;
      for (int round = 0; round < 40; ++round)
        if (replaceFile(folder.name("file"), std::string(100'000, letter))) ++faults;
      return faults;
    }));
  for (const pid_t child : children)
    CHECK(waitFor(child) == 0);
  const std::string found = bytesOf(file);
  CHECK(found == std::string(100'000, found.empty() ? ' ' : found[0]));
  CHECK(folder.names() == std::vector<std::string>{"file"});

  // Files of other names, and one that is being written.
  const std::vector<std::string> others = {"file.1-2.new.old", "file.a-1.new", "file.b.1-2.new", "file.new"};
  for (const std::string& name : others)
    writeBytes(folder / name, "kept");
  writeBytes(folder / "file.99-1.new", "left over");
  FileReplacement other(folder.name("file"));
  CHECK_FALSE(replaceFile(folder.name("file"), newText));
  CHECK_FALSE(fs::exists(folder / "file.99-1.new"));
  other.write(oldText);
  CHECK_FALSE(other.commit());
  CHECK(bytesOf(file) == oldText);
  for (const std::string& name : others)
    CHECK(bytesOf(folder / name) == "kept");
}

TEST_CASE("a turn is taken over from a dead program, and a living one is named to those who wait") {
  const TemporaryFolder folder;
  const fs::path file = folder / "file";
  int ready[2];
  REQUIRE(::pipe(ready) == 0);
  const pid_t child = startProcess([&] {
    const FileLock turn(folder.name("file"));
    const char isHeld = turn.fault() ? 'n' : 'y';
    if (::write(ready[1], &isHeld, 1) != 1) return 1;
    ::pause();
    return 0;
  });
  char isHeld = ' ';
  REQUIRE(::read(ready[0], &isHeld, 1) == 1);
  CHECK(isHeld == 'y');
  {
    const auto begin = std::chrono::steady_clock::now();
    const FileLock turn(folder.name("file"), std::chrono::milliseconds(200));
    CHECK(std::chrono::steady_clock::now() - begin >= std::chrono::milliseconds(200));
    REQUIRE(turn.fault());
    REQUIRE(turn.holder());
    CHECK(turn.holder()->process == std::to_wstring(child));
    CHECK(turn.holder()->user == thisFileUser().user);
    CHECK(turn.holder()->machine == thisFileUser().machine);
    CHECK(turn.fault()->find(fileUserText(*turn.holder())) != std::wstring::npos);
  }
  ::kill(child, SIGKILL);
  waitFor(child);
  CHECK(fs::exists(folder / "file.lock"));
  {
    const FileLock turn(folder.name("file"), std::chrono::milliseconds(0));
    CHECK_FALSE(turn.fault());
  }
  CHECK(folder.names().empty());
  CHECK(FileLock(folder.name("none/file")).fault());
}
