// Files that are only read, as an engine: a table is loaded into a database in memory when a statement first names it,
// and statements run there, so that they mean the same as on the embedded database.
#pragma once

#include "platform/sqlite_engine.h"
#include "platform/table_source.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace brenvolt::tables {

class LoadedEngine final : public Engine {
public:
  /// `path` names the file in messages.
  LoadedEngine(std::unique_ptr<TableSource> source, const std::wstring& path);

  bool tableNames(std::vector<std::wstring>& names, ZanOleDbErrorInfo& error) override;
  bool columnNames(
      const std::wstring& table, std::vector<std::wstring>& names, ZanOleDbErrorInfo& error) override;
  [[nodiscard]] std::unique_ptr<Statement> execute(
      const std::wstring& text, ZanOleDbErrorInfo& error) override;
  bool begin(ZanOleDbErrorInfo& error) override;
  bool commit(ZanOleDbErrorInfo& error) override;
  void rollback() override {}

private:
  [[nodiscard]] const std::wstring* find(std::wstring_view table) const;
  bool load(const std::wstring& table, ZanOleDbErrorInfo& error);
  /// The database in memory, made when a statement first needs it: reading whole tables does not.
  [[nodiscard]] SqliteEngine& memory();

  std::unique_ptr<TableSource> source_;
  std::wstring refusal_;
  std::optional<SqliteEngine> memory_;
  std::set<std::wstring> loaded_;
};

} // namespace brenvolt::tables
