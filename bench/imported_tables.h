// A database of tables that a benchmark writes itself, open for its length and gone with it.
#pragma once

#include "data/engineering_columns.h"
#include "platform/tables.h"
#include "tests/support/temporary_folder.h"
#include "text/encoding.h"

#include <cstdlib>
#include <filesystem>
#include <string>

namespace brenvolt::bench {

enum class TableAccess { read, write };

class ImportedTables final {
public:
  /// `fill` writes the tables into the empty folder that it is given.
  template <typename Fill>
  explicit ImportedTables(const Fill& fill, TableAccess access = TableAccess::read) {
    const std::filesystem::path tables = folder_ / "tables";
    std::filesystem::create_directory(tables);
    fill(tables);
    if (!importTables(fromUtf8(path()), {fromUtf8(tables.string())}, engineeringImport()).isDone())
      std::abort();
    const std::wstring mode = access == TableAccess::read ? L"Mode=Read" : L"";
    const std::wstring init = ZanOleDbHelper::FormatConnectString(fromUtf8(path()), L"", mode);
    if (connection_.OpenFromInitializationString(init, false, true) < 0) std::abort();
  }
  ~ImportedTables() { connection_.Close(); }
  ImportedTables(const ImportedTables&) = delete;
  ImportedTables& operator=(const ImportedTables&) = delete;

  [[nodiscard]] std::string path() const { return (folder_ / "tables.db").string(); }
  [[nodiscard]] ZanOleDbConnection& connection() { return connection_; }

private:
  test::TemporaryFolder folder_;
  ZanOleDbConnection connection_; ///< is closed before the folder goes
};

} // namespace brenvolt::bench
