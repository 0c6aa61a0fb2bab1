#include "platform/table_writer.h"

#include "text/encoding.h"
#include "text/numbers.h"

#include <utility>

namespace brenvolt::tables {

namespace {

std::string textDeclaration() {
  std::string text = "TEXT COLLATE ";
  text.append(textCollation);
  return text;
}

std::string declaration(ColumnType type) {
  switch (type) {
  case ColumnType::text:
    return textDeclaration();
  case ColumnType::integer:
    return "INTEGER";
  case ColumnType::key:
    return "INTEGER PRIMARY KEY";
  case ColumnType::real:
    return "REAL";
  case ColumnType::numeric:
    return "NUMERIC";
  case ColumnType::blob:
    return "BLOB";
  }
  return "TEXT";
}

} // namespace

TableWriter::TableWriter(SqliteDatabase& database, std::wstring table)
    : database_(database), table_(std::move(table)) {}

std::vector<std::wstring> TableWriter::notes() const {
  std::vector<std::wstring> notes = notes_;
  if (renumbered_ > 0) notes.push_back(formatInt(renumbered_) + L" rows with a repeated key got a new one");
  return notes;
}

bool TableWriter::columns(const std::vector<SourceColumn>& columns) {
  columns_ = columns;
  std::string definitions;
  std::string places;
  for (const SourceColumn& column : columns_) {
    if (!definitions.empty()) {
      definitions += ", ";
      places += ",";
    }
    definitions += quotedIdentifier(toUtf8(column.name)) + " " + declaration(column.type);
    places += "?";
  }
  const std::string name = quotedIdentifier(toUtf8(table_));
  if (!database_.run("CREATE TABLE " + name + " (" + definitions + ")")) return fail();
  insert_ = database_.prepare("INSERT INTO " + name + " VALUES (" + places + ")");
  return insert_.isPrepared() || fail();
}

bool TableWriter::row(TableRow row, std::int64_t) {
  if (insert(row)) return ++rowCount_, true;
  // A counter that repeats itself must not cost a row.
  bool hadKey = false;
  for (std::size_t column = 0; column < row.size(); ++column) {
    if (columns_[column].type != ColumnType::key || row[column].kind == TableValue::Kind::null) continue;
    row[column] = TableValue::null();
    hadKey = true;
  }
  if (!hadKey || !insert(row)) return fail();
  ++renumbered_;
  return ++rowCount_, true;
}

bool TableWriter::insert(const TableRow& row) {
  for (std::size_t column = 0; column < row.size(); ++column) {
    if (!insert_.bind(static_cast<int>(column) + 1, row[column])) return false;
  }
  const bool done = insert_.step() == SqliteQuery::Step::done;
  if (!done) error_ = database_.lastError();
  insert_.reset();
  if (done) error_.clear();
  return done;
}

bool TableWriter::fail() {
  if (error_.empty()) error_ = database_.lastError();
  return false;
}

} // namespace brenvolt::tables
