// An embedded database as a source of an import: its tables and views with the types that their columns declare.
#include "platform/sqlite_database.h"
#include "platform/table_source.h"

#include "text/compare.h"
#include "text/encoding.h"

#include <array>
#include <utility>

namespace brenvolt::tables {

namespace {

struct TypeWord {
  const wchar_t* word;
  ColumnType type;
};

/// The rules by which such a database takes a column's type from the words of its declaration, in their order.
constexpr std::array<TypeWord, 7> typeWords{{
    {L"INT", ColumnType::integer},
    {L"CHAR", ColumnType::text},
    {L"CLOB", ColumnType::text},
    {L"TEXT", ColumnType::text},
    {L"BLOB", ColumnType::blob},
    {L"REAL", ColumnType::real},
    {L"FLOA", ColumnType::real},
}};

ColumnType typeOf(const std::wstring& declaration, bool isKey) {
  if (isKey && equalsOrdinalNoCase(declaration, L"INTEGER")) return ColumnType::key;
  // A column without a type holds anything; texts compare as people expect only in a text column.
  if (declaration.empty()) return ColumnType::text;
  for (const TypeWord& entry : typeWords) {
    if (findNoCase(declaration, entry.word) != std::wstring::npos) return entry.type;
  }
  return findNoCase(declaration, L"DOUB") != std::wstring::npos ? ColumnType::real : ColumnType::numeric;
}

class SqliteSource final : public TableSource {
public:
  bool open(const std::wstring& path, std::wstring& error) {
    path_ = path;
    SqliteQuery query;
    if (database_.open(toUtf8(path), SqliteDatabase::Mode::read)) {
      query = database_.prepare("SELECT name FROM sqlite_master WHERE type IN ('table','view') AND "
                                "substr(name,1,7)<>'sqlite_' ORDER BY name");
    }
    while (query.isPrepared()) {
      const SqliteQuery::Step step = query.step();
      if (step == SqliteQuery::Step::row) names_.push_back(query.text(0));
      if (step == SqliteQuery::Step::done) return true;
      if (step == SqliteQuery::Step::failed) break;
    }
    error = path_ + L": " + database_.lastError();
    return false;
  }

  [[nodiscard]] const std::vector<std::wstring>& tableNames() const override { return names_; }

  bool read(const std::wstring& table, TableReceiver& receiver, std::wstring& error) override {
    if (!receiver.columns(columnsOf(table))) return false;
    noteExtras(table, receiver);
    SqliteQuery rows = database_.prepare("SELECT * FROM " + quotedIdentifier(toUtf8(table)));
    SqliteQuery::Step step = SqliteQuery::Step::failed;
    std::int64_t place = 0;
    while (rows.isPrepared() && (step = rows.step()) == SqliteQuery::Step::row) {
      if (!receiver.row(rows.row(), ++place)) return false;
    }
    if (step == SqliteQuery::Step::done) return true;
    error = path_ + L", table " + table + L": " + database_.lastError();
    return false;
  }

private:
  std::vector<SourceColumn> columnsOf(const std::wstring& table) {
    SqliteQuery query = database_.prepare(
        "SELECT name, type, pk, (SELECT count(*) FROM pragma_table_info(?1) WHERE pk>0) FROM "
        "pragma_table_info(?1) ORDER BY cid");
    const TableValue name = TableValue::ofText(toUtf8(table));
    std::vector<SourceColumn> columns;
    if (!query.isPrepared() || !query.bind(1, name)) return columns;
    while (query.step() == SqliteQuery::Step::row) {
      const bool isOnlyKey = query.text(2) == L"1" && query.text(3) == L"1";
      columns.push_back({query.text(0), typeOf(query.text(1), isOnlyKey)});
    }
    return columns;
  }

  void noteExtras(const std::wstring& table, TableReceiver& receiver) {
    SqliteQuery query = database_.prepare("SELECT type, name FROM sqlite_master WHERE (type IN "
                                          "('index','trigger') AND tbl_name=?1 AND sql IS NOT "
                                          "NULL) OR (type='view' AND name=?1) ORDER BY type, name");
    const TableValue name = TableValue::ofText(toUtf8(table));
    if (!query.isPrepared() || !query.bind(1, name)) return;
    while (query.step() == SqliteQuery::Step::row) {
      const bool isView = query.text(0) == L"view";
      receiver.note(
          isView ? std::wstring(L"the view became a table with its present rows")
                 : query.text(0) + L" " + query.text(1) + L" is not carried over");
    }
  }

  std::wstring path_;
  SqliteDatabase database_;
  std::vector<std::wstring> names_;
};

} // namespace

std::unique_ptr<TableSource> openSqliteSource(const std::wstring& path, std::wstring& error) {
  auto source = std::make_unique<SqliteSource>();
  if (!source->open(path, error)) return nullptr;
  return source;
}

} // namespace brenvolt::tables
