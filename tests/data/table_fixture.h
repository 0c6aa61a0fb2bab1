// Small engineering tables made by a test, in a database of their own, and a host whose LISP knows the code standard.
#pragma once

#include "data/table_watch.h"
#include "platform/tables.h"
#include "tests/simhost/host_fixture.h"
#include "tests/support/engineering_tables.h"

#include <string>
#include <vector>

namespace brenvolt {

using test::TableTexts;

class TableFixture final {
public:
  /// A test may hold what an import would refuse.
  explicit TableFixture(const TableTexts& tables) : tables_(tables, BadCells::keep) { open(); }
  explicit TableFixture(const std::filesystem::path& source) : tables_(source) { open(); }

  [[nodiscard]] std::string database() const { return tables_.file(); }
  [[nodiscard]] ZanOleDbConnection* connection() { return &connection_; }
  [[nodiscard]] const TableWatch& watch() const { return watch_; }
  [[nodiscard]] simhost::HostFixture& host() { return host_; }

private:
  void open() {
    host_.eval(fromUtf8(tables_.lisp()));
    const std::wstring init = ZanOleDbHelper::FormatConnectString(fromUtf8(database()), L"", L"");
    REQUIRE(connection_.OpenFromInitializationString(init, false, true) >= 0);
  }

  test::EngineeringTables tables_;
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
