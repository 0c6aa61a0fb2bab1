// Damaged history files: nothing of them is lost, and their complete entries are restored.
#include "history_site.h"
#include "project/history_recovery.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using namespace brenvolt::test;
using Result = HistoryOutcome::Result;

namespace {

using namespace std::string_literals;

const std::string head =
    "<BrenvoltHistory Version=\"1.0\"><Circuit Name=\"Motor\"><CircuitType Name=\"Direct on line\">";
const std::string pump =
    "<History Name=\"P\xC3\xBCmp > 1\"><Marker><SelectOption UI_PROMPT=\"old\"/></Marker></History>";
const std::string fan = "<History Name=\"Fan\"/>";
const std::string tail = "</CircuitType></Circuit></BrenvoltHistory>";
const std::string whole = head + pump + fan + tail;

std::string utf16(const std::string& text) {
  return "\xFF\xFE" + toUtf16Le(fromUtf8(text));
}

std::string declared(const std::string& encoding, const std::string& text) {
  return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>" + text;
}

std::string replaced(std::string text, const std::string& part, const std::string& by) {
  return text.replace(text.find(part), part.size(), by);
}

std::string repeated(const std::string& text, int times) {
  std::string all;
  for (int time = 0; time < times; ++time)
    all += text;
  return all;
}

struct Damage {
  const char* promise;
  std::string bytes;
  Names salvaged;
  std::size_t broken = 0;
};

const Names both = {L"P\u00fcmp > 1", L"Fan"};

const std::vector<Damage>& damages() {
  static const std::vector<Damage> rows = {
      {"cut in the middle", utf16(whole).substr(0, utf16(head + pump).size() + 20), {L"P\u00fcmp > 1"}, 1},
      {"cut in a name", utf16(head + pump + "<History Na"), {L"P\u00fcmp > 1"}, 1},
      {"foreign root",
       utf16(replaced(replaced(whole, "BrenvoltHistory", "Other"), "BrenvoltHistory", "Other")), both},
      {"too old", utf16(replaced(whole, "1.0", "0.9")), both},
      {"two roots", whole + whole, {both[0], both[1], both[0], both[1]}},
      {"an entry in pieces", head + "<History Name=\"X\"><Marker>" + pump + fan + tail, both, 1},
      {"no name", head + "<History/>" + fan, {L"Fan"}, 1},
      {"a byte that is no UTF-8", replaced(whole, "\xC3\xBC", "\xFC"), both},
      {"declared as UTF-8, and is not", declared("UTF-8", replaced(whole, "\xC3\xBC", "\xFC")), both},
      {"declared as UTF-16, and is UTF-8", declared("UTF-16", whole), both},
      {"declared as UTF-8, and is UTF-16", utf16(declared("UTF-8", whole)), both},
      {"half a surrogate pair", utf16(head + pump + fan) + "\x00\xD8"s + toUtf16Le(fromUtf8(tail)), both},
      {"an odd byte", utf16(whole) + "x", both},
      {"an unknown encoding", declared("EBCDIC", whole), both},
      {"a control character", replaced(whole, "Fan", "Fan\x01"), {L"P\u00fcmp > 1", L"Fan\xFFFD"}},
      {"a million nested elements",
       head + pump + repeated("<a>", 1'000'000) + repeated("</a>", 1'000'000) + tail,
       {both[0]}},
      {"a million open elements", repeated("<a>", 1'000'000), {}},
      {"no bytes", "", {}},
      {"zero bytes", std::string(5000, '\0'), {}},
      {"no text at all", "PK\x03\x04 <picture", {}},
  };
  return rows;
}

} // namespace

TEST_CASE("a file that is not accepted is kept beside the new one, and its whole entries come back") {
  for (const Damage& row : damages()) {
    CAPTURE(row.promise);
    const HistorySite site;
    writeBytes(site.file(), row.bytes);
    HistoryFile present;
    CHECK(present.read(site.path()) == HistoryFile::State::refused);
    CHECK_FALSE(present.error().empty());
    const HistoryOutcome outcome = site.save(L"New");
    CHECK(outcome.isDone());
    CHECK(outcome.keptAs == fromUtf8((site.folder / "zan_brenvolt.damaged-1.xml").string()));
    CHECK((bytesOf(site.folder / "zan_brenvolt.damaged-1.xml") == row.bytes));

    const SalvagedHistory salvaged = salvageHistory(row.bytes);
    Names names;
    for (const SalvagedHistory::Entry& entry : salvaged.entries)
      names.push_back(entry.key.name);
    CHECK(names == row.salvaged);
    CHECK(salvaged.broken.size() == row.broken);
    HistoryMerge merge;
    static_cast<void>(mergeIntoHistory(site.workbook(), present, salvaged.entries, merge));
    CHECK(merge.added.size() + merge.present.size() == row.salvaged.size());
    Names all = {L"New"};
    for (const HistoryKey& key : merge.added)
      all.push_back(key.name);
    CHECK(site.names() == all);
  }
}

TEST_CASE("files of every encoding that is declared as it is are read") {
  const std::string latin = replaced(declared("ISO-8859-1", whole), "\xC3\xBC", "\xFC");
  std::string big = "\xFE\xFF";
  const std::string little = toUtf16Le(fromUtf8(declared("UTF-16", whole)));
  for (std::size_t unit = 0; unit + 1 < little.size(); unit += 2)
    big += {little[unit + 1], little[unit]};
  for (const std::string& bytes :
       {whole, "\xEF\xBB\xBF" + whole, declared("utf-8", whole), utf16(declared("UTF-16", whole)), little,
        big, latin}) {
    const HistorySite site;
    writeBytes(site.file(), bytes);
    CHECK(site.names() == both);
    CHECK(site.save(L"New").keptAs.empty());
    CHECK(site.names() == Names{both[0], both[1], L"New"});
  }
}

TEST_CASE("what is recovered never takes the place of a present entry, and a second time adds nothing") {
  const HistorySite site;
  CHECK(site.save(both[0], L"present").isDone());
  const std::vector<SalvagedHistory::Entry> entries = salvageHistory(whole).entries;
  HistoryFile present;
  HistoryMerge merge;
  CHECK(mergeIntoHistory(site.workbook(), present, entries, merge).isDone());
  const Names all = {both[0], both[0] + L" (recovered)", L"Fan"};
  CHECK(site.names() == all);
  CHECK(site.value(both[0]) == L"present");
  CHECK(site.value(all[1]) == L"old");
  CHECK(mergeIntoHistory(site.workbook(), present, entries, merge).result == Result::unchanged);
  CHECK(merge.added.empty());
  CHECK(site.names() == all);
}

TEST_CASE("a folder in the place of the file, or of the one to keep it, causes no loss and no crash") {
  const HistorySite site;
  std::filesystem::create_directory(site.file());
  HistoryFile present;
  CHECK(present.read(site.path()) == HistoryFile::State::refused);
  const HistoryOutcome refused = site.save(L"New");
  CHECK(refused.result == Result::openFailed);
  CHECK(refused.reason == L"is a folder");
  std::filesystem::remove(site.file());
  writeBytes(site.file(), "no history");
  std::filesystem::create_directory(site.folder / "zan_brenvolt.damaged-1.xml");
  CHECK(site.save(L"New").keptAs == fromUtf8((site.folder / "zan_brenvolt.damaged-2.xml").string()));
  CHECK(site.names() == Names{L"New"});
}
