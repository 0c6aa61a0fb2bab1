// An embedded database as the place where an import puts its tables.
#include "platform/sqlite_database.h"
#include "platform/table_output.h"
#include "platform/table_writer.h"

#include "text/compare.h"
#include "text/encoding.h"

#include <utility>

namespace brenvolt::tables {

namespace {

class SqliteTarget final : public ImportTarget {
public:
  bool open(const std::string& path, TargetFile file, std::wstring& error) {
    const bool isNew = file == TargetFile::create;
    const auto mode = isNew ? SqliteDatabase::Mode::create : SqliteDatabase::Mode::readWrite;
    // A file that is discarded on any failure needs no journal; it is flushed to disk once, before it is renamed.
    const bool isOpen = database_.open(path, mode) &&
                        (!isNew || database_.run("PRAGMA journal_mode=MEMORY; PRAGMA synchronous=OFF")) &&
                        database_.run("BEGIN IMMEDIATE");
    if (!isOpen) error = database_.lastError();
    return isOpen;
  }

  bool tableNames(std::vector<std::wstring>& names, std::wstring& error) override {
    SqliteQuery query =
        database_.prepare("SELECT name, type FROM sqlite_master WHERE type IN ('table','view')");
    SqliteQuery::Step step = SqliteQuery::Step::failed;
    kinds_.clear();
    while (query.isPrepared() && (step = query.step()) == SqliteQuery::Step::row) {
      names.push_back(query.text(0));
      kinds_.emplace_back(query.text(0), query.text(1));
    }
    if (step != SqliteQuery::Step::done) error = database_.lastError();
    return step == SqliteQuery::Step::done;
  }

  bool drop(const std::wstring& table, std::wstring& error) override {
    for (const auto& [name, kind] : kinds_) {
      if (name != table) continue;
      if (database_.run("DROP " + toUtf8(kind) + " " + quotedIdentifier(toUtf8(name)))) continue;
      error = database_.lastError();
      return false;
    }
    return true;
  }

  [[nodiscard]] std::unique_ptr<TableOutput> output(const std::wstring& table) override {
    return std::make_unique<TableWriter>(database_, table);
  }

  bool run(const std::wstring& statement, std::wstring& error) override {
    const bool isDone = database_.run(toUtf8(statement));
    if (!isDone) error = database_.lastError();
    return isDone;
  }

  bool commit(std::wstring& error) override {
    const bool isDone = database_.run("COMMIT");
    if (!isDone) error = database_.lastError();
    return isDone;
  }

private:
  SqliteDatabase database_;
  /// "table" or "view" by name, as last listed.
  std::vector<std::pair<std::wstring, std::wstring>> kinds_;
};

} // namespace

std::unique_ptr<ImportTarget> openSqliteTarget(
    const std::string& utf8Path, TargetFile file, std::wstring& error) {
  auto target = std::make_unique<SqliteTarget>();
  if (!target->open(utf8Path, file, error)) return nullptr;
  return target;
}

} // namespace brenvolt::tables
