// The embedded database as an engine: the default of a site, and the workshop in which statements on foreign files run.
#pragma once

#include "platform/sqlite_database.h"
#include "platform/table_engine.h"

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace brenvolt::tables {

class SqliteStatement;
struct StatementToken;

/// A prepared statement that stays for its next use: preparing costs more than running a small query.
struct KeptStatement {
  SqliteQuery query;
  bool isInUse = false;
  bool isReader = true;
  /// Whether it opens or creates another file, which the library counts as reading.
  bool isForFiles = false;
  std::uint64_t lastUse = 0;
};

class SqliteEngine final : public Engine {
public:
  SqliteEngine() = default;
  ~SqliteEngine() override;

  [[nodiscard]] SqliteDatabase& database() { return database_; }

  bool open(const std::wstring& path, Access access, ZanOleDbErrorInfo& error);
  bool openInMemory();
  /// Statements that write fail with this message from now on.
  void refuseWrites(std::wstring message) { refusal_ = std::move(message); }

  bool tableNames(std::vector<std::wstring>& names, ZanOleDbErrorInfo& error) override;
  bool columnNames(
      const std::wstring& table, std::vector<std::wstring>& names, ZanOleDbErrorInfo& error) override;
  [[nodiscard]] std::unique_ptr<Statement> execute(
      const std::wstring& text, ZanOleDbErrorInfo& error) override;
  void beginReading() override;
  void endReading() override;
  bool begin(ZanOleDbErrorInfo& error) override;
  bool commit(ZanOleDbErrorInfo& error) override;
  void rollback() override;

private:
  friend class SqliteStatement;

  [[nodiscard]] std::shared_ptr<KeptStatement> keep(const std::wstring& text, ZanOleDbErrorInfo& error);
  [[nodiscard]] SqliteQuery prepare(
      const std::wstring& text, const std::vector<StatementToken>& tokens, ZanOleDbErrorInfo& error);
  bool collect(SqliteQuery& query, std::vector<std::wstring>& names, ZanOleDbErrorInfo& error);
  void dropOldest();
  /// Reads the open statements to their ends, so that their read locks do not block a write.
  void finishReaders();
  void useWriteAheadLog();
  bool runSimple(const char* statement, ZanOleDbErrorInfo& error);

  SqliteDatabase database_;
  /// A path for messages; empty in memory.
  std::wstring path_;
  std::wstring refusal_;
  bool triedWriteAheadLog_ = false;
  std::uint64_t uses_ = 0;
  std::unordered_map<std::wstring, std::shared_ptr<KeptStatement>> kept_;
  std::vector<SqliteStatement*> readers_;
};

} // namespace brenvolt::tables
