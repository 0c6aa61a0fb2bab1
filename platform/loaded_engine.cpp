#include "platform/loaded_engine.h"

#include "platform/buffered_statement.h"
#include "platform/statement_tokens.h"
#include "platform/table_writer.h"

#include "text/assertion.h"
#include "text/compare.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace brenvolt::tables {

namespace {

/// An empty sheet is a table without rows and with this one column.
constexpr const wchar_t* columnOfNothing = L"F1";

/// The rows of a table in their order, for the statement that needs all of them.
class RowCollector final : public TableReceiver {
public:
  bool columns(const std::vector<SourceColumn>& columns) override {
    for (const SourceColumn& column : columns)
      names_.push_back(column.name);
    if (columns.empty()) names_.push_back(columnOfNothing);
    return true;
  }
  bool row(TableRow row, std::int64_t) override {
    rows_.push_back(std::move(row));
    return true;
  }
  void note(const std::wstring&) override {}

  std::unique_ptr<Statement> statement() {
    return std::make_unique<BufferedStatement>(std::move(names_), std::move(rows_));
  }

private:
  std::vector<std::wstring> names_;
  std::vector<TableRow> rows_;
};

/// Passes a table on to the writer with what a table in memory needs: at least one column, as an empty sheet has none,
/// and no key, which would put the rows into another order than the file's.
class MemoryTable final : public TableReceiver {
public:
  explicit MemoryTable(TableWriter& writer) : writer_(writer) {}

  bool columns(const std::vector<SourceColumn>& columns) override {
    std::vector<SourceColumn> adapted = columns;
    if (adapted.empty()) adapted.push_back({columnOfNothing, ColumnType::text});
    for (SourceColumn& column : adapted) {
      if (column.type == ColumnType::key) column.type = ColumnType::integer;
    }
    return writer_.columns(adapted);
  }
  bool row(TableRow row, std::int64_t place) override { return writer_.row(std::move(row), place); }
  void note(const std::wstring&) override {}

private:
  TableWriter& writer_;
};

/// The table of a statement that is "SELECT * FROM table" and nothing more.
std::optional<std::wstring_view> wholeTableOf(const std::vector<StatementToken>& tokens) {
  std::vector<StatementToken> words;
  for (const StatementToken& token : tokens) {
    if (token.kind != StatementToken::Kind::blank) words.push_back(token);
  }
  const bool isWhole = words.size() == 4 && words[0].isWord(L"SELECT") && words[1].text == L"*" &&
                       words[2].isWord(L"FROM") && words[3].isName();
  if (!isWhole) return std::nullopt;
  return words[3].name();
}

} // namespace

LoadedEngine::LoadedEngine(std::unique_ptr<TableSource> source, const std::wstring& path)
    : source_(std::move(source)), refusal_(
                                      path + L": this kind of file is only read; \"brenvolt import OUT.db " +
                                      path + L"\" makes a database of it that can be written") {}

SqliteEngine& LoadedEngine::memory() {
  if (!memory_) {
    memory_.emplace();
    const bool isOpen = memory_->openInMemory();
    BRENVOLT_ASSERT(isOpen, "a database in memory can always be made");
    memory_->refuseWrites(refusal_);
  }
  return *memory_;
}

const std::wstring* LoadedEngine::find(std::wstring_view table) const {
  const std::vector<std::wstring>& names = source_->tableNames();
  const auto found = std::find_if(
      names.begin(), names.end(), [&](const std::wstring& name) { return equalsOrdinalNoCase(name, table); });
  return found == names.end() ? nullptr : &*found;
}

bool LoadedEngine::tableNames(std::vector<std::wstring>& names, ZanOleDbErrorInfo&) {
  names = source_->tableNames();
  return true;
}

bool LoadedEngine::columnNames(
    const std::wstring& table, std::vector<std::wstring>& names, ZanOleDbErrorInfo& error) {
  if (!loaded_.contains(table) && !load(table, error)) return false;
  return memory().columnNames(table, names, error);
}

std::unique_ptr<Statement> LoadedEngine::execute(const std::wstring& text, ZanOleDbErrorInfo& error) {
  const std::vector<StatementToken> tokens = splitStatement(text);
  const std::optional<std::wstring_view> whole = wholeTableOf(tokens);
  const std::wstring* wholeName = whole ? find(*whole) : nullptr;
  if (wholeName != nullptr && !loaded_.contains(*wholeName)) {
    RowCollector rows;
    std::wstring reason;
    if (source_->read(*wholeName, rows, reason)) return rows.statement();
    error.Set(reason);
    return nullptr;
  }
  if (!isOneStatement(tokens)) {
    error.Set(severalStatements);
    return nullptr;
  }
  // Whatever the statement names is loaded; a column that is named like a table costs time and nothing else.
  for (const StatementToken& token : tokens) {
    const std::wstring* table = token.isName() ? find(token.name()) : nullptr;
    if (table != nullptr && !loaded_.contains(*table) && !load(*table, error)) return nullptr;
  }
  return memory().execute(text, error);
}

bool LoadedEngine::load(const std::wstring& table, ZanOleDbErrorInfo& error) {
  memory().database().run("BEGIN");
  TableWriter writer(memory().database(), table);
  MemoryTable receiver(writer);
  std::wstring reason;
  const bool done = source_->read(table, receiver, reason);
  memory().database().run(done ? "COMMIT" : "ROLLBACK");
  if (done) {
    loaded_.insert(table);
  } else {
    error.Set(reason.empty() ? table + L": " + writer.error() : reason);
  }
  return done;
}

bool LoadedEngine::begin(ZanOleDbErrorInfo& error) {
  error.Set(refusal_);
  return false;
}

bool LoadedEngine::commit(ZanOleDbErrorInfo& error) {
  error.Set(refusal_);
  return false;
}

} // namespace brenvolt::tables
