// Workbooks as files: the catalogue, the annotation codes, and sheets that cannot be used.
#include "project/circuit_list.h"

#include "tests/support/sheets.h"
#include "tests/support/temporary_folder.h"
#include "text/numbers.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using test::sheetOf;

namespace {

std::string describe(const ZanCircuitCatalog& catalog) {
  std::wstring text;
  for (const auto& [name, circuit] : catalog.circuits()) {
    text += L"[" + formatInt(circuit.id) + L" " + name + L"]";
    for (const ZanCircuitEntry& entry : circuit.entries)
      text += L" " + formatInt(entry.id) + L" " + entry.type + L"," + entry.drawingTemplate + L"," +
              entry.worksheet + L"," + entry.presetKey;
  }
  return toUtf8(text);
}

class Book final {
public:
  explicit Book(const std::vector<BookSheet>& sheets)
      : catalog(test::writeBook(folder_ / "book.xls", sheets)) {}

private:
  test::TemporaryFolder folder_;

public:
  ZanCircuitCatalog catalog;
};

} // namespace

TEST_CASE("the catalogue carries its circuit down and counts circuits and types together") {
  const std::vector<std::string> rows = {
      "circuit|type|drawing|sheet|presets",
      "Motor|Direct|m1.json|M_DOL|K1",
      "|Wye|m2.json|M_WYE",
      "||||",
      "Feed|Plain|f.json|FEED",
      "Motor|Reversing|m3.json|M_REV"};
  const char* expected =
      "[4 Feed] 5 Plain,f.json,FEED,"
      "[1 Motor] 2 Direct,m1.json,M_DOL,K1 3 Wye,m2.json,M_WYE, 6 Reversing,m3.json,M_REV,";
  Book named({sheetOf(L"OTHER", {"a|b|c|d|e"}), sheetOf(L"ZAN_CIRCS", rows)});
  REQUIRE(named.catalog.readCircuits());
  CHECK_EQ(describe(named.catalog), expected);
  Book firstSheet({sheetOf(L"Circuits", rows), sheetOf(L"OTHER", {"a"})});
  REQUIRE(firstSheet.catalog.readCircuits());
  CHECK_EQ(describe(firstSheet.catalog), expected);

  REQUIRE(named.catalog.findEntry(L"MOTOR", L"wye") != nullptr);
  CHECK_EQ(named.catalog.findEntry(L"MOTOR", L"wye")->id, 3);
  CHECK(named.catalog.findEntry(L"Feed", L"Wye") == nullptr);
}

TEST_CASE("four columns make a catalogue, three do not") {
  Book four({sheetOf(L"ZAN_CIRCS", {"circuit|type|drawing|sheet", "Motor|Direct|m.json|M"})});
  REQUIRE(four.catalog.readCircuits());
  CHECK_EQ(describe(four.catalog), "[1 Motor] 2 Direct,m.json,M,");

  Book three({sheetOf(L"ZAN_CIRCS", {"circuit|type|drawing", "Motor|Direct|m.json"})});
  CHECK_FALSE(three.catalog.readCircuits());
  CHECK(three.catalog.error().find(L"3 columns") != std::wstring::npos);
  Book empty({sheetOf(L"ZAN_CIRCS", {"circuit|type|drawing|sheet"})});
  CHECK_FALSE(empty.catalog.readCircuits());
}

TEST_CASE("a sheet that cannot be used says why, and a circuit's sheet has no stand-in") {
  Book book(
      {sheetOf(L"M", {"c|t|x|g|o|v|n|f|s", "M1|Motor||||||(a)|"}),
       sheetOf(L"NARROW", {"c|t|x|g|o|v|n|f", "M1|Motor||||||(a)"}),
       sheetOf(L"BLANK", {"c|t|x|g|o|v|n|f|s", "||||||||"})});
  struct Row {
    const wchar_t* sheet;
    bool isRead;
    const wchar_t* error;
  };
  const Row rows[] = {
      {L"M", true, L""},
      {L"m", true, L""},
      {L"MISSING", false, L"MISSING"},
      {L"NARROW", false, L"8 columns"},
      {L"BLANK", false, L"no CODE"},
      {L"", false, L""},
      {L"M]; DROP", false, L""}};
  for (const Row& row : rows) {
    CAPTURE(toUtf8(row.sheet));
    CHECK_EQ(book.catalog.readWorksheet(row.sheet), row.isRead);
    CHECK_EQ(book.catalog.findRecord(L"m1") != nullptr, row.isRead);
    if (!row.isRead) CHECK(book.catalog.error().find(row.error) != std::wstring::npos);
  }
}

TEST_CASE("annotation codes carry their key down; a value switches a preset on") {
  Book book({sheetOf(
      L"ANNO_CODE", {"key|label|tag|description|value|extra", "K1|Tag|TAG1|The tag||e1",
                     "|Place|LOC|Where|MCC|", "|tag|tag1|twice|x|", "|||||", "K2|Tag|TAG1|||"})});
  REQUIRE(book.catalog.readAnnotationCodes());
  const auto* first = book.catalog.annotationCodes().Find(L"K1");
  REQUIRE(first != nullptr);
  REQUIRE_EQ(first->size(), 2);
  CHECK_FALSE((*first)[0].enabled);
  CHECK_EQ((*first)[0].extra, L"e1");
  CHECK((*first)[1].enabled);
  CHECK_EQ((*first)[1].value, L"MCC");
  REQUIRE(book.catalog.annotationCodes().Find(L"K2") != nullptr);
  CHECK(book.catalog.annotationCodes().Find(L"k1") == nullptr);
  CHECK(book.catalog.annotationCodes().Find(L"") == nullptr);

  Book narrow({sheetOf(L"ANNO_CODE", {"key|label|tag|description|value", "K1|Tag|TAG1|The tag|x"})});
  CHECK_FALSE(narrow.catalog.readAnnotationCodes());
}
