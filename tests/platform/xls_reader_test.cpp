// Reading workbooks: every kind of cell record, files of other programs, and files that are damaged or not workbooks.
#include "workbook_test_support.h"

#include "platform/biff_number_formats.h"
#include "platform/workbook_append.h"
#include "platform/workbook_book.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <algorithm>
#include <cstdlib>
#include <random>

using namespace brenvolt;
using namespace brenvolt::biff;
using namespace brenvolt::testing;
using namespace workbook_test;
using namespace std::string_literals;

TEST_CASE("a number format that shows a date or a time is known as such") {
  const std::pair<NumberStyle, std::vector<const wchar_t*>> rows[] = {
      {NumberStyle::number,
       {L"General", L"0.00E+00", L"#,##0.00 [$EUR];[Red]-#,##0.00", L"0 \"days\"", L"0\\d",
        L"_-* #,##0_-;_-@_-", L"[Red]\"unclosed"}},
      {NumberStyle::date, {L"yyyy\\-mm\\-dd;@", L"[$-409]d-mmm-yy", L"mm"}},
      {NumberStyle::dateAndTime, {L"dd.mm.yyyy hh:mm"}},
      {NumberStyle::time, {L"hh:mm AM/PM", L"mm:ss.0"}},
      {NumberStyle::elapsedTime, {L"[h]:mm:ss"}}};
  for (const auto& [style, formats] : rows)
    for (const wchar_t* format : formats)
      CHECK_MESSAGE(numberStyleOf(format) == style, toUtf8(format));
  CHECK(builtInNumberStyle(14) == NumberStyle::date);
  CHECK(builtInNumberStyle(22) == NumberStyle::dateAndTime);
  CHECK(builtInNumberStyle(46) == NumberStyle::elapsedTime);
  CHECK(builtInNumberStyle(10) == NumberStyle::number);
}

TEST_CASE("dates and numbers read as a person reads them") {
  struct Row {
    double value;
    NumberStyle style;
    DateEpoch epoch;
    const wchar_t* text;
  };
  const auto from1900 = DateEpoch::year1900;
  const auto from1904 = DateEpoch::year1904;
  const Row rows[] = {
      {1.0, NumberStyle::date, from1900, L"1900-01-01"},
      {59.0, NumberStyle::date, from1900, L"1900-02-28"},
      {60.0, NumberStyle::date, from1900, L"1900-02-29"},
      {61.0, NumberStyle::date, from1900, L"1900-03-01"},
      {46347.75, NumberStyle::date, from1900, L"2026-11-21"},
      {46347.545138888889, NumberStyle::dateAndTime, from1900, L"2026-11-21 13:05:00"},
      {46347.0, NumberStyle::dateAndTime, from1900, L"2026-11-21 00:00:00"},
      {46347.9999999, NumberStyle::dateAndTime, from1900, L"2026-11-22 00:00:00"},
      {0.5451388888888888, NumberStyle::time, from1900, L"13:05:00"},
      {1.5, NumberStyle::elapsedTime, from1900, L"36:00:00"},
      {0.0, NumberStyle::date, from1904, L"1904-01-01"},
      {44885.0, NumberStyle::date, from1904, L"2026-11-21"},
      {2958465.0, NumberStyle::date, from1900, L"9999-12-31"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.value);
    const auto text = workbookDateText(row.value, row.style, row.epoch);
    REQUIRE(text);
    CHECK(toUtf8(*text) == toUtf8(row.text));
  }
  for (const double noDay : {-1.0, 2958466.0, 1e300}) {
    CHECK_FALSE(isWorkbookDate(noDay, NumberStyle::date, from1900));
  }
  CHECK(workbookNumberText(28.0) == L"28");
  CHECK(workbookNumberText(0.1 + 0.2) == L"0.3");
  CHECK(workbookNumberText(-0.0) == L"0");
  CHECK(workbookNumberText(-1234.5) == L"-1234.5");
}

namespace {

std::string cellHead(unsigned row, unsigned column, unsigned format = 0) {
  return words({row, column, format});
}

RecordStream& addFormulaText(RecordStream& stream, unsigned row, const std::string& text) {
  stream.record(idFormula, cellHead(row, 0) + "\0\0\0\0\0\0\xFF\xFF"s + words({0, 0, 0}));
  // A shared formula's own record is between the formula and its text.
  stream.record(idSharedFormula, std::string(10, '\0'));
  return stream.record(idString, text);
}

} // namespace

TEST_CASE("every kind of cell record gives its cell") {
  TemporaryFolder folder;
  RecordStream stream;
  const std::string general = words({0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
  const std::string dates = words({0, 164, 0, 0, 0, 0, 0, 0, 0, 0});
  stream.begin(5).record(idExtendedFormat, general).record(idExtendedFormat, dates);
  // The format follows the cell formats that name it.
  stream.record(idFormat, words({164}) + "\x0A\0\0yyyy-mm-dd"s).record(idDateMode, words({0}));
  stream.listSheet("\x01\x01\xA9\x03"s).end().startSheet();
  stream.record(idNumber, cellHead(0, 0) + doubleBytes(-12.25));
  stream.record(idRk, cellHead(0, 1) + words({(12345U << 2 | 3U) & 0xFFFFU, (12345U << 2) >> 16}));
  stream.record(idMulRk, words({0, 2}) + words({0, 0, 0x3FF0}) + words({0, 0xFFFE, 0xFFFF}) + words({3}));
  stream.record(idMulBlank, words({0, 4, 0, 0, 5})).record(idBlank, cellHead(0, 6));
  stream.record(idBoolError, cellHead(1, 0) + "\x01\0"s).record(idBoolError, cellHead(1, 1) + "\x2A\x01"s);
  stream.record(idLabel, cellHead(1, 2) + "\x03\0\0\xE9tx"s);
  stream.record(idRichString, cellHead(1, 3) + "\x01\0\x09\x01\0\x3D\xD8\0\0\0\0"s);
  stream.record(idNumber, cellHead(1, 4, 1) + doubleBytes(46347.0));
  addFormulaText(stream, 2, "\x02\0\0ok"s);
  // A chart inside the sheet has records of the same ids.
  stream.begin(0x20).record(idNumber, cellHead(0, 0) + doubleBytes(99)).end();
  stream.record(idFormula, cellHead(2, 1) + "\x01\0\x01\0\0\0\xFF\xFF"s + words({0, 0, 0}));
  stream.record(idFormula, cellHead(2, 2) + "\x02\0\x07\0\0\0\xFF\xFF"s + words({0, 0, 0}));
  stream.record(idFormula, cellHead(2, 3) + "\x03\0\0\0\0\0\xFF\xFF"s + words({0, 0, 0}));
  stream.record(idFormula, cellHead(2, 4) + doubleBytes(0.75) + words({0, 0, 0}));
  // Out of order, and a second value for one place: the later one holds.
  stream.record(idNumber, cellHead(0, 9) + doubleBytes(1))
      .record(idNumber, cellHead(0, 9) + doubleBytes(2))
      .end();
  folder.write("all.xls", stream.container());
  const Cells expected = {
      L"Ω!0,0 number -12.25", L"Ω!0,1 number 123.45",   L"Ω!0,2 number 1",    L"Ω!0,3 number -1",
      L"Ω!0,9 number 2",      L"Ω!1,0 boolean TRUE",    L"Ω!1,1 error #N/A",  L"Ω!1,2 text étx",
      L"Ω!1,3 text \uFFFD",   L"Ω!1,4 date 2026-11-21", L"Ω!2,0 text ok",     L"Ω!2,1 boolean TRUE",
      L"Ω!2,2 error #DIV/0!", L"Ω!2,3 text ",           L"Ω!2,4 number 0.75",
  };
  CHECK(cellsOfFile(folder.name("all.xls")) == expected);
}

TEST_CASE("shared strings run on over records, with runs, phonetic text and changing widths") {
  TemporaryFolder folder;
  RecordStream stream;
  stream.begin(5).listSheet("\x01\0S"s);
  stream.record(
      idSharedStrings, words({4, 0, 4, 0}) + "\x02\0\x0Cri"s.substr(0, 3) + words({1, 6, 0}) + "ri" +
                           std::string(4, 'r') + std::string(6, 'p') + "\x06\0\0abc"s);
  stream.record(idContinue, "\x01\xA9\x03\xA9\x03"s).record(idContinue, "\0d\0\0\0"s);
  stream.record(idContinue, "\x01\0\x01\x3A\x26"s).end().startSheet();
  for (unsigned i = 0; i < 4; ++i) {
    stream.record(idLabelShared, cellHead(i, 0) + words({3 - i, 0}));
  }
  folder.write("sst.xls", stream.end().container());
  const Cells expected = {L"S!0,0 text ☺", L"S!1,0 text ", L"S!2,0 text abcΩΩd", L"S!3,0 text ri"};
  CHECK(cellsOfFile(folder.name("sst.xls")) == expected);
}

TEST_CASE("the older version's byte strings are read in their code page") {
  TemporaryFolder folder;
  RecordStream stream;
  stream.begin(5, version5).record(idCodePage, words({1251})).listSheet("\x04\xCB\xE8\xF1\xF2"s).end();
  stream.startSheet(version5).record(idLabel, cellHead(0, 0) + "\x03\0\xC2\xE0\xF2"s);
  addFormulaText(stream, 1, "\x02\0ok"s).end();
  folder.write("old.xls", stream.container(L"Book"));
  CHECK(cellsOfFile(folder.name("old.xls")) == Cells{L"Лист!0,0 text Ват", L"Лист!1,0 text ok"});
}

TEST_CASE("workbooks of other programs read as those programs show them") {
  const auto folder = foreignFolder();
  if (!folder) return;
  const auto read = [&](const char* name) { return cellsOfFile(fromUtf8((*folder / name).string())); };
  const Cells common = {L"0,1 number 12",     L"1,1 number 12.5",          L"2,1 number -7",
                        L"3,5 text far",      L"4,1 number 123456789",     L"5,1 boolean TRUE",
                        L"6,1 boolean FALSE", L"7,1 date 2024-03-01",      L"8,1 date 2024-03-01 12:30:15",
                        L"9,1 date 12:30:00", L"10,1 number 0.25",         L"11,1 number 1234.5",
                        L"12,1 number 12",    L"14,1 text Größe Ω 日本 😀", L"15,1 text 0012",
                        L"20,1 number 0.3",   L"21,1 number 28",           L"22,1 number 536870911"};
  for (const char* name : {"own_gnumeric_types.xls", "own_libreoffice_types.xls", "own_xlwt_types.xls"}) {
    const Cells cells = read(name);
    for (const std::wstring& cell : common) {
      CAPTURE(name);
      CAPTURE(toUtf8(cell));
      CHECK(std::count(cells.begin(), cells.end(), L"Sheet One!" + cell) == 1);
    }
    for (const wchar_t* cell : {L"Größe Ω!0,0 text s2", L"Größe Ω!5,3 number 1"})
      CHECK(std::count(cells.begin(), cells.end(), cell) == 1);
  }
  const Cells bare = read("own_writer_emptystring.xls");
  for (const wchar_t* cell :
       {L"Report Ω!1,1 text Größe Ω µ 日本語 😀", L"Report Ω!2,0 text ", L"Report Ω!2,1 text line1\nline2",
        L"Report Ω!2,4 boolean TRUE", L"Report Ω!3,1 text inline latin é", L"Second!0,0 text s2"}) {
    CAPTURE(toUtf8(cell));
    CHECK(std::count(bare.begin(), bare.end(), cell) == 1);
  }
  CHECK(
      read("SimpleWithFormula.xls") ==
      Cells{
          L"Sheet1!0,0 text replaceme", L"Sheet1!1,0 text replaceme", L"Sheet1!2,0 text replacemereplaceme"});
  const Cells chart = read("SimpleChart.xls");
  CHECK(chart.size() == 30);
  CHECK(chart[29] == L"Sheet1!14,1 number 8");

  WorkbookReader hidden;
  REQUIRE(hidden.open(fromUtf8((*folder / "TwoSheetsOneHidden.xls").string())));
  CHECK(hidden.sheets()[0].isHidden);
  CHECK_FALSE(hidden.sheets()[1].isHidden);
  CHECK(hidden.readSheet(*hidden.findSheet(L"SHEET1"))->text(0, 0) == L"Sheet1A1");
  WorkbookReader names;
  REQUIRE(names.open(fromUtf8((*folder / "DBCSSheetName.xls").string())));
  CHECK(names.sheets()[0].name == L"जा");
  const Cells refusal = read("xor-encryption-abc.xls");
  CHECK(refusal[0].find(L"xor-encryption-abc.xls: is encrypted") != std::wstring::npos);
}

TEST_CASE("what is not a readable workbook is refused with file and reason") {
  TemporaryFolder folder;
  std::wstring error;
  const auto whole = buildWorkbook({{L"S", {{L"a", 1.0}}, BookSheet::Header::none, {}}}, error);
  RecordStream empty;
  RecordStream secret;
  secret.begin(5).record(idFilePassword, words({0, 0, 0})).listSheet("\x01\0S"s).end();
  RecordStream lost;
  lost.begin(5).listSheet("\x01\0S"s).end().startSheet();
  lost.record(idLabelShared, cellHead(0, 0) + words({7, 0})).end();
  struct Row {
    const char* name;
    std::string bytes;
    const wchar_t* reason;
  };
  const Row rows[] = {
      {"empty.xls", "", L"empty.xls: is empty"},
      {"text.xls", "TAG,DESC\nM1,motor\n", L"text.xls: is not a workbook"},
      {"head.xls", whole->substr(0, 300), L"damaged"},
      {"cut.xls", whole->substr(0, 2000), L"damaged"},
      {"letter.xls", empty.container(L"WordDocument"), L"contains no workbook"},
      {"secret.xls", secret.container(), L"is encrypted"},
      {"package.xls", empty.container(L"EncryptedPackage"), L"is encrypted"},
      {"lost.xls", lost.container(), L"damaged in sheet \"S\""},
  };
  for (const Row& row : rows) {
    CAPTURE(row.name);
    folder.write(row.name, row.bytes);
    const Cells cells = cellsOfFile(folder.name(row.name));
    REQUIRE(cells.size() == 1);
    CHECK(cells[0].find(row.reason) != std::wstring::npos);
    CHECK(cells[0].find(fromUtf8(row.name)) != std::wstring::npos);
  }
  CHECK(cellsOfFile(folder.name(""))[0].find(L"is a folder") != std::wstring::npos);
  CHECK(cellsOfFile(folder.name("none.xls"))[0].find(L"none.xls: ") != std::wstring::npos);
}

TEST_CASE("a sheet is read alone, and only as many rows as asked for") {
  TemporaryFolder folder;
  std::vector<BookSheet> sheets(3);
  for (std::size_t i = 0; i < sheets.size(); ++i) {
    sheets[i].name = L"S" + std::to_wstring(i);
    for (std::size_t row = 0; row < 200; ++row) {
      sheets[i].rows.push_back({sheets[i].name + L" row " + std::to_wstring(row)});
    }
  }
  REQUIRE_FALSE(saveWorkbook(folder.name("many.xls"), sheets));
  WorkbookReader reader;
  REQUIRE(reader.open(folder.name("many.xls")));
  // Later texts first, then earlier ones: the text table is entered from any place.
  for (const std::size_t i : {2U, 0U, 1U}) {
    const auto sheet = reader.readSheet(i);
    REQUIRE(sheet);
    CHECK(sheet->rowCount() == 200);
    CHECK(sheet->text(130, 0) == sheets[i].name + L" row 130");
  }
  CHECK(reader.readSheet(1, 2)->rowCount() == 2);
  CHECK_FALSE(reader.readSheet(3));
}

TEST_CASE("broken files neither crash nor hang the reader and the appender") {
  TemporaryFolder folder;
  std::vector<std::string> seeds;
  for (const auto& file : foreignFiles()) {
    seeds.push_back(bytesOf(file));
  }
  BookSheet sheet{L"S", {}, BookSheet::Header::boldAndFrozen, {}};
  for (std::size_t i = 0; i < 40; ++i) {
    sheet.rows.push_back({std::wstring(i * 13, L'Ω'), 1.5, L"x" + std::to_wstring(i)});
  }
  std::wstring error;
  seeds.push_back(*buildWorkbook({sheet}, error));

  // More rounds on demand; every round is the same in each run.
  const char* asked = std::getenv("BRENVOLT_FUZZ_ROUNDS");
  const int rounds = asked == nullptr ? 400 : std::atoi(asked);
  std::mt19937 random(20261121);
  const auto below = [&random](std::size_t bound) { return static_cast<std::size_t>(random() % bound); };
  std::size_t readable = 0;
  for (int round = 0; round < rounds; ++round) {
    std::string bytes = seeds[below(seeds.size())];
    if (below(8) == 0) bytes.resize(below(bytes.size()));
    constexpr unsigned char telling[] = {0x00, 0xFF, 0x7F, 0x80, 0xFE, 0x01};
    for (std::size_t i = 0; i <= below(12) && !bytes.empty(); ++i) {
      // Half of the changes go into header, sector table and the first records, where they do most harm.
      const std::size_t place =
          below(2) == 0 ? below(std::min<std::size_t>(bytes.size(), 1600)) : below(bytes.size());
      bytes[place] = static_cast<char>(below(2) == 0 ? telling[below(6)] : below(256));
    }
    const std::wstring path = folder.name("mutant.xls");
    folder.write("mutant.xls", bytes);
    const Cells cells = cellsOfFile(path);
    if (cells.size() != 1) ++readable;
    WorkbookAppend append;
    if (append.load(path)) continue;
    if (const auto target = append.findSheet(L"Sheet1")) {
      if (append.nextRow(*target) < maximumRows) append.addRow(*target, {L"more"});
    }
    append.addSheet({L"new", {{L"x"}}, BookSheet::Header::none, {}});
    folder.write("mutant.xls", append.build());
  }
  // Mutants that all died at the door would prove little.
  CHECK(readable > static_cast<std::size_t>(rounds) / 10);
}
