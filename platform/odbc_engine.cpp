#include "platform/odbc_engine.h"

#include "platform/buffered_statement.h"
#include "platform/connect_string.h"
#include "platform/file_kind.h"
#include "platform/odbc_connection.h"
#include "platform/server_statement.h"
#include "platform/statement_tokens.h"

#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"
#include "text/split.h"

#include <algorithm>
#include <array>
#include <map>
#include <string>
#include <unordered_set>
#include <utility>

namespace brenvolt::tables {

namespace {

int kindRank(TableValue::Kind kind) {
  switch (kind) {
  case TableValue::Kind::null:
    return 0;
  case TableValue::Kind::integer:
  case TableValue::Kind::real:
    return 1;
  case TableValue::Kind::text:
    return 2;
  case TableValue::Kind::blob:
    return 3;
  }
  return 0;
}

/// The order of cells on every engine: NULL, numbers, texts without case, blobs.
int compareCells(const TableValue& left, const TableValue& right) {
  const int rank = kindRank(left.kind) - kindRank(right.kind);
  if (rank != 0 || left.kind == TableValue::Kind::null) return rank;
  if (left.kind == TableValue::Kind::text) return compareOrdinalNoCase(widen(left.bytes), widen(right.bytes));
  if (left.kind == TableValue::Kind::blob) return left.bytes.compare(right.bytes);
  const double difference = valueNumber(left) - valueNumber(right);
  return difference < 0 ? -1 : difference > 0 ? 1 : 0;
}

bool isRowBefore(const TableRow& left, const TableRow& right) {
  for (std::size_t column = 0; column < left.size(); ++column) {
    const int order = compareCells(left[column], right[column]);
    if (order != 0) return order < 0;
  }
  return false;
}

/// A text that is the same for rows that are equal by the order above, and for no others.
std::string equalityKey(const TableRow& row) {
  std::string key;
  for (const TableValue& cell : row) {
    const bool isText = cell.kind == TableValue::Kind::text;
    const bool isBlob = cell.kind == TableValue::Kind::blob;
    std::string content = isText   ? toUtf8(toUpper(widen(cell.bytes)))
                          : isBlob ? cell.bytes
                                   : toUtf8(formatShortest(valueNumber(cell) + 0.0)); // -0 is 0
    key += static_cast<char>('0' + kindRank(cell.kind));
    key += std::to_string(content.size()) + ':' + content;
  }
  return key;
}

/// Of equal rows the first stays, as on the other engines.
void dropEqualRows(std::vector<TableRow>& rows) {
  std::unordered_set<std::string> seen;
  std::erase_if(rows, [&](const TableRow& row) { return !seen.insert(equalityKey(row)).second; });
}

bool isOneOf(const StatementToken& token, std::initializer_list<const wchar_t*> words) {
  return std::any_of(words.begin(), words.end(), [&](const wchar_t* word) { return token.isWord(word); });
}

/// The lock that all writers of the system take on a PostgreSQL server; the end of the transaction releases it. The
/// number is only a name, and readers do not wait for it.
constexpr const wchar_t* postgresTurn = L"SELECT pg_advisory_xact_lock(2026112201)";

class OdbcEngine final : public Engine {
public:
  bool open(const std::wstring& connectionString, OdbcTexts texts, Access access, std::wstring& error) {
    access_ = access;
    connectionString_ = connectionString;
    texts_ = texts;
    return connect(error);
  }

  bool tableNames(std::vector<std::wstring>& names, ZanOleDbErrorInfo& error) override {
    std::wstring reason;
    forgetNames();
    if (!isReachable(error)) return false;
    if (!readTables(reason)) {
      tell(error, reason);
      return false;
    }
    names = tables_;
    return true;
  }

  bool columnNames(
      const std::wstring& table, std::vector<std::wstring>& names, ZanOleDbErrorInfo& error) override {
    columns_.erase(table);
    for (const ServerColumn& column : columnsOf(table))
      names.push_back(column.name);
    if (names.empty()) error.Set(L"the columns of " + table + L" cannot be read");
    return !names.empty();
  }

  [[nodiscard]] std::unique_ptr<Statement> execute(
      const std::wstring& text, ZanOleDbErrorInfo& error) override {
    const std::vector<StatementToken> tokens = splitStatement(text);
    if (!isOneStatement(tokens)) {
      error.Set(severalStatements);
      return nullptr;
    }
    const StatementToken first = firstWord(tokens);
    const bool isReader = isOneOf(first, {L"SELECT", L"WITH", L"VALUES", L"EXPLAIN"});
    if (access_ == Access::read && !isReader) {
      error.Set(L"the connection is open for reading only");
      return nullptr;
    }
    const ServerTableList tableList{
        [this](std::wstring_view name) { return tableOf(name); },
        [this](const std::wstring& table) { return columnsOf(table); }};
    if (!isReachable(error)) return nullptr;
    const ServerStatement statement = translateStatement(text, dialect_, tableList);
    std::wstring reason;
    std::optional<OdbcAnswer> answer = connection_.execute(statement.text, reason);
    // Whatever a statement of this kind did, the names of before may be wrong now.
    if (isOneOf(first, {L"CREATE", L"DROP", L"ALTER"})) forgetNames();
    if (!answer) {
      tell(error, reason);
      return nullptr;
    }
    if (statement.isDistinct) dropEqualRows(answer->rows);
    if (statement.isSorted) std::stable_sort(answer->rows.begin(), answer->rows.end(), isRowBefore);
    std::vector<std::wstring> names;
    for (OdbcAnswer::Column& column : answer->columns)
      names.push_back(std::move(column.name));
    return std::make_unique<BufferedStatement>(std::move(names), std::move(answer->rows));
  }

  [[nodiscard]] std::wstring productName() const override { return connection_.productName(); }

  bool begin(ZanOleDbErrorInfo& error) override {
    if (access_ == Access::read) {
      error.Set(L"the connection is open for reading only");
      return false;
    }
    if (!isReachable(error)) return false;
    const bool hasBegun = told(error, [this](std::wstring& reason) {
      if (!connection_.setAutomaticCommit(false, reason)) return false;
      isInTransaction_ = true;
      // Two writers take turns from the beginning, as with the embedded database: of two that both looked for a row
      // before either has written it, the second would otherwise add it once more.
      return takeTurn_.empty() || connection_.execute(takeTurn_, reason).has_value();
    });
    if (!hasBegun && isInTransaction_) rollback();
    return hasBegun;
  }

  bool commit(ZanOleDbErrorInfo& error) override {
    const bool isDone = told(error, [this](std::wstring& reason) {
      return connection_.endTransaction(true, reason) && connection_.setAutomaticCommit(true, reason);
    });
    isInTransaction_ = isInTransaction_ && !isDone;
    return isDone;
  }

  void rollback() override {
    std::wstring ignored;
    static_cast<void>(connection_.endTransaction(false, ignored));
    static_cast<void>(connection_.setAutomaticCommit(true, ignored));
    isInTransaction_ = false;
    forgetNames();
  }

private:
  bool connect(std::wstring& error) {
    if (!connection_.open(connectionString_, texts_, error)) return false;
    const std::wstring product = connection_.productName();
    const std::wstring quote = connection_.identifierQuote();
    // A blank means that names cannot be quoted at all; then brackets could not be meant either.
    if (!quote.empty() && quote != L" ") dialect_.openQuote = dialect_.closeQuote = quote;
    if (findNoCase(product, L"SQLite") != std::wstring::npos) {
      // In double quotes a misspelt name would be taken for a text.
      dialect_.openQuote = L"[";
      dialect_.closeQuote = L"]";
    }
    std::wstring prepare;
    if (findNoCase(product, L"PostgreSQL") != std::wstring::npos) {
      dialect_.collation = L" COLLATE \"C\"";
      dialect_.sortsNullsLast = true;
      takeTurn_ = postgresTurn;
      // What a statement calls must not write either.
      if (access_ == Access::read) prepare = L"SET default_transaction_read_only = on";
    }
    return prepare.empty() || connection_.execute(prepare, error).has_value();
  }

  /// Opens a lost connection again. Not in the middle of a transaction: the server has rolled back what was done so
  /// far, and the rest alone must not be written.
  bool isReachable(ZanOleDbErrorInfo& error) {
    if (!isLost_) return true;
    std::wstring reason = L"the connection was lost in the middle of a transaction";
    if (isInTransaction_ || !connect(reason)) {
      error.SetConnectionLost(reason);
      return false;
    }
    isLost_ = false;
    forgetNames();
    return true;
  }

  void tell(ZanOleDbErrorInfo& error, const std::wstring& reason) {
    isLost_ = isLost_ || connection_.isLost();
    if (isLost_)
      error.SetConnectionLost(reason);
    else
      error.Set(reason);
  }

  template <typename Operation>
  bool told(ZanOleDbErrorInfo& error, Operation operation) {
    std::wstring reason;
    const bool done = operation(reason);
    if (!done) tell(error, reason);
    return done;
  }

  void forgetNames() {
    tables_.clear();
    columns_.clear();
  }

  bool readTables(std::wstring& reason) {
    constexpr std::size_t nameColumn = 2;
    const std::optional<OdbcAnswer> answer = connection_.tables(reason);
    if (!answer) return false;
    tables_.clear();
    for (const TableRow& row : answer->rows) {
      std::wstring name = row.size() > nameColumn ? valueText(row[nameColumn]) : std::wstring();
      if (name.empty() || equalsOrdinalNoCase(name.substr(0, 7), L"sqlite_")) continue;
      if (std::find(tables_.begin(), tables_.end(), name) == tables_.end())
        tables_.push_back(std::move(name));
    }
    return true;
  }

  [[nodiscard]] std::wstring findTable(std::wstring_view name) const {
    // The exact name is tried first, for servers with case-sensitive names.
    if (std::find(tables_.begin(), tables_.end(), name) != tables_.end()) return std::wstring(name);
    const auto found = std::find_if(tables_.begin(), tables_.end(), [&](const std::wstring& table) {
      return equalsOrdinalNoCase(table, name);
    });
    return found == tables_.end() ? std::wstring() : *found;
  }

  std::wstring tableOf(std::wstring_view name) {
    std::wstring ignored;
    if (tables_.empty()) readTables(ignored);
    return findTable(name);
  }

  const std::vector<ServerColumn>& columnsOf(const std::wstring& table) {
    constexpr std::size_t tableColumn = 2;
    constexpr std::size_t nameColumn = 3;
    constexpr std::size_t typeColumn = 4;
    const auto known = columns_.find(table);
    if (known != columns_.end()) return known->second;
    std::vector<ServerColumn>& columns = columns_[table];
    std::wstring ignored;
    const std::optional<OdbcAnswer> answer = connection_.columns(table, ignored);
    if (!answer) return columns;
    for (const TableRow& row : answer->rows) {
      // The driver takes "_" in the name for any character and lists the columns of other tables too.
      if (row.size() <= typeColumn || valueText(row[tableColumn]) != table) continue;
      const auto type = static_cast<int>(valueNumber(row[typeColumn]));
      columns.push_back({valueText(row[nameColumn]), OdbcConnection::isTextType(type)});
    }
    return columns;
  }

  OdbcConnection connection_;
  std::wstring connectionString_;
  OdbcTexts texts_ = OdbcTexts::wide;
  Access access_ = Access::readWrite;
  bool isLost_ = false;
  bool isInTransaction_ = false;
  /// The statement by which a transaction waits for the right to write; empty for a server without one.
  std::wstring takeTurn_;
  ServerDialect dialect_;
  /// As the server names them; read when first needed and again after a change of tables.
  std::vector<std::wstring> tables_;
  std::map<std::wstring, std::vector<ServerColumn>> columns_;
};

} // namespace

std::unique_ptr<Engine> openOdbcEngine(
    const std::wstring& connectionString, Access access, ZanOleDbErrorInfo& error) {
  std::wstring complete = connectionString;
  const std::wstring source = L"odbc:" + withoutPassword(connectionString);
  const std::wstring driver = connectValue(connectionString, L"Driver");
  const bool isFile = findNoCase(driver, L"SQLite") != std::wstring::npos;
  if (isFile) {
    const FileKind kind = fileKind(connectValue(connectionString, L"Database"));
    if (kind != FileKind::sqlite) {
      error.Set(
          source + L": the database file " +
          (refusalOf(kind).empty() ? L"is of another kind" : refusalOf(kind)));
      return nullptr;
    }
    // This driver makes a file that is missing, and gives up at once on one that another process writes to.
    complete += L";NoCreat=1;Timeout=10000";
  }
  auto engine = std::make_unique<OdbcEngine>();
  std::wstring reason;
  if (engine->open(complete, isFile ? OdbcTexts::utf8 : OdbcTexts::wide, access, reason)) return engine;
  error.Set(source + L": " + reason);
  return nullptr;
}

} // namespace brenvolt::tables
