// Access files: cells compared with an independent reader of the same files, and damaged files.
#include "table_test_support.h"

#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <doctest/doctest.h>

#include <cmath>

using namespace brenvolt;
using namespace brenvolt::testing;

namespace {

using Lines = std::vector<std::wstring>;

/// The cells of delimited text as the independent reader writes it, rows at the line end given.
std::vector<std::vector<std::wstring>> parseRows(const std::string& text) {
  std::vector<std::vector<std::wstring>> rows;
  for (const std::wstring& row : splitSkippingEmpty(fromUtf8(text), L'\x1E')) {
    rows.push_back(splitKeepingEmpty(row, L'\x1F'));
  }
  return rows;
}

/// The same cell: equal texts, or two writings of one number, date or blob. The other reader cannot distinguish NULL
/// and
/// empty text, and dates before 1900 come out of it wrong.
bool isSameCell(const std::wstring& ours, std::wstring theirs) {
  if (theirs.starts_with(L"1900-01-00")) return ours < L"1900";
  if (theirs.ends_with(L" 00:00:00") && !ours.ends_with(L" 00:00:00")) theirs.resize(theirs.size() - 9);
  if (equalsOrdinalNoCase(ours, theirs) || (ours.empty() && theirs == L"<null>")) return true;
  const bool areNumbers = !ours.empty() && theirs.find_first_not_of(L"0123456789.e+-") == std::wstring::npos;
  const double left = toDouble(ours);
  return areNumbers && std::fabs(left - toDouble(theirs)) <= 1e-7 * std::fabs(left);
}

} // namespace

TEST_CASE("an Access file reads cell by cell as an independent reader reads it") {
  if (!outputOf("which mdb-export")) {
    MESSAGE("skipped: no independent reader of Access files");
    return;
  }
  for (const char* name : {"mdb/gen_jet4.mdb", "mdb/testV1997.mdb", "mdb/delColTestV2007.accdb"}) {
    const auto file = foreignFile(name);
    if (!file) {
      MESSAGE("skipped: no " << name);
      continue;
    }
    const auto connection = opened(fromUtf8(file->string()));
    ZanOleDbTables catalogue;
    REQUIRE(catalogue.Open(*connection, L"TABLE"));
    std::vector<std::wstring> tables;
    catalogue.GetTableList(tables);
    CHECK_FALSE(tables.empty());
    for (const std::wstring& table : tables) {
      CAPTURE(name);
      CAPTURE(toUtf8(table));
      const auto exported = outputOf(
          "mdb-export -Q -H -b hex -d '\x1F' -R '\x1E' -0 '<null>' -D '%Y-%m-%d' -T '%Y-%m-%d %H:%M:%S' '" +
          file->string() + "' '" + toUtf8(table) + "'");
      REQUIRE(exported.has_value());
      const auto theirs = parseRows(*exported);
      const auto ours = rowsOf(*connection, L"SELECT * FROM [" + table + L"]");
      REQUIRE(ours.size() == theirs.size());
      for (std::size_t row = 0; row < ours.size(); ++row) {
        const auto cells = splitKeepingEmpty(ours[row], L'|');
        REQUIRE(cells.size() == theirs[row].size());
        for (std::size_t column = 0; column < cells.size(); ++column) {
          CAPTURE(row);
          CAPTURE(column);
          CAPTURE(toUtf8(cells[column]).substr(0, 80));
          CAPTURE(toUtf8(theirs[row][column]).substr(0, 80));
          CHECK(isSameCell(cells[column], theirs[row][column]));
        }
      }
    }
  }
}

TEST_CASE("the cells that an independent reader gets wrong are right") {
  const auto file = foreignFile("mdb/gen_jet4.mdb");
  if (!file) {
    MESSAGE("skipped: no foreign Access file");
    return;
  }
  const auto connection = opened(fromUtf8(file->string()));
  const std::wstring from = L" FROM [types & more] WHERE [ID]=";
  // NULL and empty texts, a boolean that is never NULL, dates before the first day, single precision as typed.
  CHECK(
      rowsOf(*connection, L"SELECT [TEXT_COL],[MEMO_COL],[BOOL_COL],[MONEY_COL]" + from + L"3") ==
      Lines{L"||0|0"});
  CHECK(
      rowsOf(*connection, L"SELECT [TEXT_COL],[MEMO_COL],[BOOL_COL],[MONEY_COL]" + from + L"4") ==
      Lines{L"<null>|<null>|0|<null>"});
  CHECK(rowsOf(*connection, L"SELECT [DATE_COL]" + from + L"2") == Lines{L"1899-12-29 06:00:00"});
  CHECK(rowsOf(*connection, L"SELECT [FLA (A)],[Voltage (V)]" + from + L"6") == Lines{L"0.3|0.3"});
  CHECK(
      shown(rowsOf(
          *connection, L"SELECT max(length([MEMO_COL])), max(length([OLE_COL])) FROM [TYPES & MORE]")) ==
      "70000|9000\n");

  ZanOleDbCommand command;
  command.SetConnection(connection.get());
  command.SetCommandText(L"SELECT [OLE_COL]" + from + L"1");
  REQUIRE(command.Execute() == dbStatus::success);
  REQUIRE(command.FetchNext() == dbStatus::success);
  std::vector<std::byte> blob;
  CHECK(command.IsBlob(1));
  CHECK(command.GetBlobData(1, blob));
  CHECK(blob == std::vector<std::byte>{std::byte{1}, std::byte{2}, std::byte{3}});
}

TEST_CASE("writing to an Access file names the way out and leaves the file alone") {
  const auto file = foreignFile("mdb/gen_jet4.mdb");
  if (!file) {
    MESSAGE("skipped: no foreign Access file");
    return;
  }
  const TemporaryFolder folder;
  folder.write("copy.mdb", bytesOf(*file));
  const auto connection = opened(folder.name("copy.mdb"));
  for (const wchar_t* statement :
       {L"DELETE FROM [TYPES & MORE]", L"UPDATE [TYPES & MORE] SET [TEXT_COL]='x'",
        L"DROP TABLE [TYPES & MORE]", L"CREATE TABLE [N]([A] TEXT)"}) {
    CAPTURE(toUtf8(statement));
    const Lines answer = rowsOf(*connection, statement);
    CHECK(answer.front().find(L"brenvolt import") != std::wstring::npos);
  }
  CHECK_FALSE(TableTransaction(*connection).isOpen());
  CHECK(bytesOf(folder / "copy.mdb") == bytesOf(*file));
}

TEST_CASE("a damaged Access file gives rows or a message") {
  const auto file = foreignFile("mdb/testV1997.mdb");
  if (!file) {
    MESSAGE("skipped: no foreign Access file");
    return;
  }
  const TemporaryFolder folder;
  const std::string whole = bytesOf(*file);
  std::uint32_t random = 12345;
  const auto next = [&](std::size_t limit) {
    random = random * 1664525U + 1013904223U;
    return static_cast<std::size_t>(random >> 8U) % limit;
  };
  constexpr int mutations = 40;
  for (int mutation = 0; mutation < mutations; ++mutation) {
    std::string bytes = whole;
    // Every fourth file is truncated, the others have overwritten bytes, after the signature that names the kind.
    if (mutation % 4 == 0) bytes.resize(64 + next(bytes.size() - 64));
    for (std::size_t place = 0; place < 40; ++place)
      bytes[24 + next(bytes.size() - 24)] = static_cast<char>(next(256));
    folder.write("damaged.mdb", bytes);
    ZanOleDbConnection connection;
    if (connection.OpenFromInitializationString(connectString(folder.name("damaged.mdb")), false, true) < 0) {
      CHECK(connection.ErrorInfo().GetErrorInfo(false).starts_with(folder.name("damaged.mdb") + L": "));
      continue;
    }
    ZanOleDbTables catalogue;
    CHECK(catalogue.Open(connection, L"TABLE"));
    std::vector<std::wstring> tables;
    catalogue.GetTableList(tables);
    for (const std::wstring& table : tables) {
      const Lines rows = rowsOf(connection, L"SELECT * FROM [" + table + L"]");
      const bool failed = !rows.empty() && rows.front().starts_with(L"error: ");
      if (failed) CHECK(rows.front().find(L"damaged.mdb") != std::wstring::npos);
    }
  }
}
