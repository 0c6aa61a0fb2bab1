// Small engineering tables made by a test, in a database of their own, and a host whose LISP knows the code standard.
#pragma once

#include "data/engineering_columns.h"
#include "data/table_watch.h"
#include "platform/tables.h"
#include "tests/simhost/host_fixture.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace brenvolt {

/// Name of a table to its CSV text.
using TableTexts = std::map<std::string, std::string>;

class TableFixture final {
public:
  explicit TableFixture(const TableTexts& tables, const std::string& codeStandard = "NEC") {
    const std::filesystem::path source = folder_.path() / "tables";
    std::filesystem::create_directory(source);
    for (const auto& [name, text] : tables)
      std::ofstream(source / (name + ".csv"), std::ios::binary) << text;
    ImportOptions options = engineeringImport();
    // A test may hold what an import would refuse.
    options.badCells = BadCells::keep;
    const ImportReport report = importTables(fromUtf8(database()), {fromUtf8(source.string())}, options);
    for (const std::wstring& error : report.errors)
      FAIL(toUtf8(error));
    host_.eval(L"(setq GBL_qn_electcodestd \"" + fromUtf8(codeStandard) + L"\")");
    host_.eval(L"(defun c:zan_bv_figure_mccdb_fnam () \"" + fromUtf8(database()) + L"\")");
    const std::wstring init = ZanOleDbHelper::FormatConnectString(fromUtf8(database()), L"", L"");
    REQUIRE(connection_.OpenFromInitializationString(init, false, true) >= 0);
  }

  [[nodiscard]] std::string database() const { return (folder_.path() / "tables.db").string(); }
  [[nodiscard]] ZanOleDbConnection* connection() { return &connection_; }
  [[nodiscard]] const TableWatch& watch() const { return watch_; }
  [[nodiscard]] simhost::HostFixture& host() { return host_; }

private:
  test::TemporaryFolder folder_;
  simhost::HostFixture host_;
  TableWatch watch_;
  ZanOleDbConnection connection_{&watch_};
};

/// Texts with "|" between, for readable comparisons.
inline std::string joinedTexts(const std::vector<std::wstring>& texts) {
  std::string joined;
  for (std::size_t i = 0; i < texts.size(); ++i)
    joined += (i == 0 ? "" : "|") + toUtf8(texts[i]);
  return joined;
}

} // namespace brenvolt
