// Report files: their lines, the results of replacing and appending, and what a failure leaves unchanged.
#include "flows/wire_report_file.h"

#include "platform/xls_reader.h"
#include "tests/support/file_faults.h"
#include "tests/support/golden.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

using namespace brenvolt;

namespace {

std::wstring wide(const std::filesystem::path& path) {
  return fromUtf8(path.string());
}

const std::vector<ReportRow> first = {{L"Title", L"Pump \"A\" 5 Ω"}, {L"**END**"}};
const std::vector<ReportRow> second = {{L"Title", L"Fan"}, {L"**END**"}};

std::vector<std::string> cellsOf(const std::filesystem::path& path) {
  WorkbookReader reader;
  REQUIRE(reader.open(wide(path)));
  const auto sheet = reader.findSheet(L"SHEET1");
  REQUIRE(sheet.has_value());
  const auto cells = reader.readSheet(*sheet);
  REQUIRE(cells.has_value());
  std::vector<std::string> texts;
  for (std::size_t row = 1; row < cells->rowCount(); ++row)
    for (std::size_t column = 0; column < 2; ++column)
      texts.push_back(toUtf8(cells->text(row, column)));
  return texts;
}

} // namespace

TEST_CASE("a text line quotes as it stands, and ends without its last comma or tab") {
  CHECK_EQ(toUtf8(reportLine(first[0], ReportFormat::csv)), "\"Title\",\"Pump \"A\" 5 \xCE\xA9\"\n");
  CHECK_EQ(toUtf8(reportLine({L"a", L"b"}, ReportFormat::tabbed)), "a\t\t\tb\t\t\n");
  CHECK_EQ(toUtf8(reportLine({}, ReportFormat::csv)), "\n");
}

TEST_CASE("a text report is appended to a file whose last line has no end") {
  const test::TemporaryFolder folder;
  const auto path = folder / "wires.csv";
  test::writeBytes(path, "no line end");
  CHECK(!writeReport(wide(path), ReportMode::append, second));
  CHECK_EQ(test::bytesOf(path), "no line end\n\"Title\",\"Fan\"\n\"**END**\"\n");
}

TEST_CASE("a workbook is replaced or appended to") {
  const test::TemporaryFolder folder;
  const auto path = folder / "wires.xls";
  CHECK(!writeReport(wide(path), ReportMode::replace, second));
  CHECK(!writeReport(wide(path), ReportMode::replace, first));
  const std::vector<std::string> one = {"Title", "Pump \"A\" 5 \xCE\xA9", "**END**", ""};
  CHECK(cellsOf(path) == one);
  CHECK(!writeReport(wide(path), ReportMode::append, second));
  const std::vector<std::string> both = {
      "Title", "Pump \"A\" 5 \xCE\xA9", "**END**", "", "Title", "Fan", "**END**", ""};
  CHECK(cellsOf(path) == both);
}

TEST_CASE("a report that cannot be written tells why and leaves what is there") {
  const test::TemporaryFolder folder;
  for (const std::string extension : {".csv", ".xls"}) {
    CAPTURE(extension);
    const auto asFolder = folder / ("folder" + extension);
    std::filesystem::create_directory(asFolder);
    CHECK(writeReport(wide(asFolder), ReportMode::replace, first).has_value());
    CHECK(writeReport(wide(asFolder), ReportMode::append, first).has_value());
    CHECK(std::filesystem::is_directory(asFolder));
    const auto missing = folder / ("no/such" + extension);
    const auto reason = writeReport(wide(missing), ReportMode::replace, first);
    REQUIRE(reason.has_value());
    CHECK_MESSAGE(reason->find(wide(missing)) == std::wstring::npos, toUtf8(*reason)); // the caller names it
  }
  const auto foreign = folder / "text.xls";
  test::writeBytes(foreign, "no workbook");
  CHECK(writeReport(wide(foreign), ReportMode::append, first).has_value());
  CHECK_EQ(test::bytesOf(foreign), "no workbook");
  std::size_t left = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(folder.path()))
    ++left;
  CHECK_EQ(left, 3);
}

TEST_CASE("a report that the disk does not take leaves the old file") {
  const test::TemporaryFolder folder;
  for (const char* name : {"wires.csv", "wires.xls"}) {
    CAPTURE(name);
    test::writeBytes(folder / name, "old\n");
    {
      const test::FileFaults faults(test::FileFaults::Kind::readOnly, 0);
      CHECK(writeReport(wide(folder / name), ReportMode::replace, first).has_value());
    }
    CHECK_EQ(test::bytesOf(folder / name), "old\n");
  }
}
