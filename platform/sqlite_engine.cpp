#include "platform/sqlite_engine.h"

#include "platform/buffered_statement.h"
#include "platform/statement_tokens.h"

#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <utility>

namespace brenvolt::tables {

namespace {

/// More than the different statements of one dialog: a wire lookup of 60 sizes has two a size. The oldest go.
constexpr std::size_t keptStatements = 256;

/// Switching the log needs exclusive access for a moment. While another process uses the file, the switch can wait for
/// the next connection.
constexpr int logSwitchMilliseconds = 100;

std::vector<std::wstring> columnNamesOf(const SqliteQuery& query) {
  std::vector<std::wstring> names;
  names.reserve(static_cast<std::size_t>(query.columnCount()));
  for (int column = 0; column < query.columnCount(); ++column)
    names.push_back(query.columnName(column));
  return names;
}

} // namespace

/// Rows directly from the prepared statement. It is on a row from the start, so that `Execute` already reports a
/// failure; the first `fetchNext` returns that row.
class SqliteStatement final : public Statement {
public:
  SqliteStatement(SqliteEngine& engine, std::shared_ptr<KeptStatement> kept)
      : engine_(&engine), kept_(std::move(kept)) {
    kept_->isInUse = true;
    engine_->readers_.push_back(this);
  }

  ~SqliteStatement() override { release(); }

  [[nodiscard]] int columnCount() const override {
    return stored_ ? stored_->columnCount() : query().columnCount();
  }

  [[nodiscard]] std::wstring columnName(int column) const override {
    return stored_ ? stored_->columnName(column) : query().columnName(column - 1);
  }

  [[nodiscard]] std::wstring text(int column) const override {
    return stored_ ? stored_->text(column) : query().text(column - 1);
  }

  [[nodiscard]] double number(int column) const override {
    return stored_ ? stored_->number(column) : valueNumber(query().value(column - 1));
  }

  [[nodiscard]] bool isNull(int column) const override {
    return stored_ ? stored_->isNull(column) : query().kind(column - 1) == TableValue::Kind::null;
  }

  [[nodiscard]] bool isNumber(int column) const override {
    return stored_ ? stored_->isNumber(column) : isNumberKind(query().kind(column - 1));
  }

  [[nodiscard]] bool isBlob(int column) const override {
    return stored_ ? stored_->isBlob(column) : query().kind(column - 1) == TableValue::Kind::blob;
  }

  [[nodiscard]] std::vector<std::byte> blob(int column) const override {
    return stored_ ? stored_->blob(column) : blobBytes(query().value(column - 1).bytes);
  }

  bool start(ZanOleDbErrorInfo& error) { return step(error) != dbStatus::failure; }

  dbStatus fetchNext(ZanOleDbErrorInfo& error) override {
    if (stored_) return stored_->fetchNext(error);
    if (std::exchange(isFirst_, false) || status_ != dbStatus::success) return status_;
    return step(error);
  }

  /// Reads the current row of the statement and all following ones into memory and releases the file.
  void store() {
    std::vector<std::wstring> names = columnNamesOf(query());
    std::vector<TableRow> rows;
    const std::size_t delivered = isFirst_ || status_ != dbStatus::success ? 0 : 1;
    ZanOleDbErrorInfo ignored;
    while (status_ == dbStatus::success) {
      rows.push_back(query().row());
      step(ignored);
    }
    release();
    stored_ = std::make_unique<BufferedStatement>(std::move(names), std::move(rows), delivered);
  }

private:
  [[nodiscard]] SqliteQuery& query() const { return kept_->query; }

  dbStatus step(ZanOleDbErrorInfo& error) {
    switch (query().step()) {
    case SqliteQuery::Step::row:
      return status_ = dbStatus::success;
    case SqliteQuery::Step::done:
      status_ = dbStatus::noMoreRows;
      break;
    case SqliteQuery::Step::failed:
      error.Set(engine_->database_.lastError());
      status_ = dbStatus::failure;
      break;
    }
    // The end gives the read lock back at once, not only when the command is closed.
    query().reset();
    return status_;
  }

  void release() {
    if (engine_ == nullptr) return;
    std::erase(engine_->readers_, this);
    query().reset();
    kept_->isInUse = false;
    kept_.reset();
    engine_ = nullptr;
  }

  /// Absent once the rows are stored.
  SqliteEngine* engine_;
  std::shared_ptr<KeptStatement> kept_;
  dbStatus status_ = dbStatus::success;
  bool isFirst_ = true;
  std::unique_ptr<BufferedStatement> stored_;
};

SqliteEngine::~SqliteEngine() {
  finishReaders();
}

bool SqliteEngine::open(const std::wstring& path, Access access, ZanOleDbErrorInfo& error) {
  path_ = path;
  if (access == Access::read) refusal_ = L"the connection is open for reading only";
  const auto mode = access == Access::read ? SqliteDatabase::Mode::read : SqliteDatabase::Mode::readWrite;
  bool isOpen = database_.open(toUtf8(path), mode);
  // The mode takes hold with the first lock, and from then on the file is ours alone.
  if (isOpen && access == Access::exclusive) {
    isOpen = database_.run("PRAGMA locking_mode=EXCLUSIVE; BEGIN EXCLUSIVE; COMMIT");
  }
  if (!isOpen) error.Set(path + L": " + database_.lastError());
  return isOpen;
}

bool SqliteEngine::openInMemory() {
  return database_.open({}, SqliteDatabase::Mode::memory);
}

bool SqliteEngine::tableNames(std::vector<std::wstring>& names, ZanOleDbErrorInfo& error) {
  SqliteQuery query = database_.prepare(
      "SELECT name FROM sqlite_master WHERE type IN ('table','view') AND substr(name,1,7)<>'sqlite_'");
  return collect(query, names, error);
}

bool SqliteEngine::columnNames(
    const std::wstring& table, std::vector<std::wstring>& names, ZanOleDbErrorInfo& error) {
  SqliteQuery query = database_.prepare("SELECT name FROM pragma_table_info(?1) ORDER BY cid");
  const TableValue name = TableValue::ofText(toUtf8(table));
  if (query.isPrepared()) query.bind(1, name);
  return collect(query, names, error);
}

bool SqliteEngine::collect(SqliteQuery& query, std::vector<std::wstring>& names, ZanOleDbErrorInfo& error) {
  SqliteQuery::Step step = SqliteQuery::Step::failed;
  while (query.isPrepared() && (step = query.step()) == SqliteQuery::Step::row)
    names.push_back(query.text(0));
  if (step != SqliteQuery::Step::done) error.Set(database_.lastError());
  return step == SqliteQuery::Step::done;
}

SqliteQuery SqliteEngine::prepare(
    const std::wstring& text, const std::vector<StatementToken>& tokens, ZanOleDbErrorInfo& error) {
  if (!isOneStatement(tokens)) {
    error.Set(severalStatements);
    return {};
  }
  SqliteQuery query = database_.prepare(toUtf8(text));
  if (!query.isPrepared()) {
    error.Set(database_.lastError());
    return query;
  }
  if (!isUnorderedDistinct(tokens)) return query;
  // Readers rely on distinct values coming sorted, which is an accident of how an engine finds them.
  std::wstring ordered(trimView(text, L" \t\r\n;"));
  for (int column = 1; column <= query.columnCount(); ++column) {
    ordered += (column == 1 ? L" ORDER BY " : L",") + formatInt(column);
  }
  SqliteQuery sorted = database_.prepare(toUtf8(ordered));
  return sorted.isPrepared() ? std::move(sorted) : std::move(query);
}

std::shared_ptr<KeptStatement> SqliteEngine::keep(const std::wstring& text, ZanOleDbErrorInfo& error) {
  const auto found = kept_.find(text);
  if (found != kept_.end() && !found->second->isInUse) {
    found->second->lastUse = ++uses_;
    return found->second;
  }
  auto statement = std::make_shared<KeptStatement>();
  const std::vector<StatementToken> tokens = splitStatement(text);
  statement->query = prepare(text, tokens, error);
  if (!statement->query.isPrepared()) return nullptr;
  statement->isReader = statement->query.isReader();
  const StatementToken first = firstWord(tokens);
  statement->isForFiles = first.isWord(L"ATTACH") || first.isWord(L"DETACH") || first.isWord(L"VACUUM");
  statement->lastUse = ++uses_;
  // A statement that runs twice at once gets a second copy, which ends with its use.
  if (found == kept_.end()) {
    if (kept_.size() == keptStatements) dropOldest();
    kept_.emplace(text, statement);
  }
  return statement;
}

void SqliteEngine::dropOldest() {
  const auto oldest = std::min_element(kept_.begin(), kept_.end(), [](const auto& left, const auto& right) {
    return left.second->lastUse < right.second->lastUse;
  });
  kept_.erase(oldest);
}

std::unique_ptr<Statement> SqliteEngine::execute(const std::wstring& text, ZanOleDbErrorInfo& error) {
  std::shared_ptr<KeptStatement> kept = keep(text, error);
  if (!kept) return nullptr;
  if (kept->isReader && !kept->isForFiles) {
    auto reader = std::make_unique<SqliteStatement>(*this, std::move(kept));
    if (!reader->start(error)) return nullptr;
    return reader;
  }
  if (!refusal_.empty()) {
    error.Set(refusal_);
    return nullptr;
  }
  finishReaders();
  useWriteAheadLog();
  SqliteQuery& query = kept->query;
  std::vector<TableRow> rows;
  SqliteQuery::Step step = SqliteQuery::Step::row;
  while ((step = query.step()) == SqliteQuery::Step::row)
    rows.push_back(query.row());
  if (step == SqliteQuery::Step::failed) error.Set(database_.lastError());
  query.reset();
  if (step == SqliteQuery::Step::failed) return nullptr;
  return std::make_unique<BufferedStatement>(columnNamesOf(query), std::move(rows));
}

void SqliteEngine::finishReaders() {
  // Each one takes itself off the list.
  while (!readers_.empty())
    readers_.back()->store();
}

void SqliteEngine::useWriteAheadLog() {
  if (path_.empty() || triedWriteAheadLog_ || database_.isInTransaction()) return;
  triedWriteAheadLog_ = true;
  // With this log readers continue with the old rows while another process writes. A file that is only read keeps its
  // present journal, and needs no files next to it. Failing to switch costs waiting, not correctness.
  database_.waitAtMost(logSwitchMilliseconds);
  database_.run("PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL");
  database_.waitAtMost(busyMilliseconds);
}

bool SqliteEngine::runSimple(const char* statement, ZanOleDbErrorInfo& error) {
  if (database_.run(statement)) return true;
  error.Set(database_.lastError());
  return false;
}

void SqliteEngine::beginReading() {
  if (!database_.isInTransaction()) database_.run("BEGIN");
}

void SqliteEngine::endReading() {
  finishReaders();
  rollback();
}

bool SqliteEngine::begin(ZanOleDbErrorInfo& error) {
  if (database_.isReadOnly()) {
    error.Set((path_.empty() ? std::wstring() : path_ + L": ") + L"is open for reading only");
    return false;
  }
  finishReaders();
  useWriteAheadLog();
  // Immediate: the wait for another writer happens here, where waiting helps, and never in the middle, where two
  // transactions that both read first would wait for each other.
  return runSimple("BEGIN IMMEDIATE", error);
}

bool SqliteEngine::commit(ZanOleDbErrorInfo& error) {
  return runSimple("COMMIT", error);
}

void SqliteEngine::rollback() {
  if (database_.isInTransaction()) database_.run("ROLLBACK");
}

} // namespace brenvolt::tables
