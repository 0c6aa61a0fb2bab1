#include "platform/sqlite_database.h"

#include "text/compare.h"
#include "text/encoding.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>

namespace brenvolt::tables {

namespace {

unsigned char upperAscii(unsigned char c) {
  return c >= 'a' && c <= 'z' ? static_cast<unsigned char>(c - 'a' + 'A') : c;
}

/// Nearly all compared texts are ASCII; from the first other byte on, the rule for all scripts is used.
int compareNoCase(void*, int leftSize, const void* left, int rightSize, const void* right) {
  const auto* leftBytes = static_cast<const unsigned char*>(left);
  const auto* rightBytes = static_cast<const unsigned char*>(right);
  const int common = std::min(leftSize, rightSize);
  const auto wide = [&] {
    return compareOrdinalNoCase(
        fromUtf8({static_cast<const char*>(left), static_cast<std::size_t>(leftSize)}),
        fromUtf8({static_cast<const char*>(right), static_cast<std::size_t>(rightSize)}));
  };
  for (int at = 0; at < common; ++at) {
    if (leftBytes[at] >= 0x80 || rightBytes[at] >= 0x80) return wide();
    const int difference = upperAscii(leftBytes[at]) - upperAscii(rightBytes[at]);
    if (difference != 0) return difference;
  }
  return leftSize - rightSize;
}

/// The name of a file that is opened as it is, without locks: the only way to read a database with a write-ahead log
/// in a folder without write permission.
std::string immutableUri(std::string_view path) {
  std::string uri = "file:";
  for (const char c : path) {
    if (c == '?' || c == '#' || c == '%') {
      uri += '%';
      uri += hexadecimal({&c, 1});
    } else {
      uri += c;
    }
  }
  return uri + "?immutable=1";
}

bool isUnwritablePlace(int code) {
  return (code & 0xFF) == SQLITE_CANTOPEN || (code & 0xFF) == SQLITE_READONLY;
}

} // namespace

struct SqliteQuery::Native {
  sqlite3_stmt* handle = nullptr;

  explicit Native(sqlite3_stmt* statement) : handle(statement) {}
  Native(const Native&) = delete;
  Native& operator=(const Native&) = delete;
  ~Native() { sqlite3_finalize(handle); }
};

SqliteQuery::SqliteQuery() = default;
SqliteQuery::SqliteQuery(SqliteQuery&&) noexcept = default;
SqliteQuery& SqliteQuery::operator=(SqliteQuery&&) noexcept = default;
SqliteQuery::~SqliteQuery() = default;

bool SqliteQuery::isReader() const {
  return sqlite3_stmt_readonly(native_->handle) != 0;
}

int SqliteQuery::columnCount() const {
  return sqlite3_column_count(native_->handle);
}

std::wstring SqliteQuery::columnName(int column) const {
  const char* name = sqlite3_column_name(native_->handle, column);
  return name == nullptr ? std::wstring() : widen(name);
}

TableValue::Kind SqliteQuery::kind(int column) const {
  switch (sqlite3_column_type(native_->handle, column)) {
  case SQLITE_INTEGER:
    return TableValue::Kind::integer;
  case SQLITE_FLOAT:
    return TableValue::Kind::real;
  case SQLITE_TEXT:
    return TableValue::Kind::text;
  case SQLITE_BLOB:
    return TableValue::Kind::blob;
  default:
    return TableValue::Kind::null;
  }
}

TableValue SqliteQuery::value(int column) const {
  sqlite3_stmt* handle = native_->handle;
  switch (kind(column)) {
  case TableValue::Kind::null:
    return TableValue::null();
  case TableValue::Kind::integer:
    return TableValue::ofInteger(sqlite3_column_int64(handle, column));
  case TableValue::Kind::real:
    return TableValue::ofReal(sqlite3_column_double(handle, column));
  case TableValue::Kind::text: {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(handle, column));
    return TableValue::ofText({text, static_cast<std::size_t>(sqlite3_column_bytes(handle, column))});
  }
  case TableValue::Kind::blob: {
    const auto* data = static_cast<const char*>(sqlite3_column_blob(handle, column));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(handle, column));
    // An empty blob has no address.
    return TableValue::ofBlob(size == 0 ? std::string() : std::string(data, size));
  }
  }
  return TableValue::null();
}

TableRow SqliteQuery::row() const {
  TableRow cells;
  for (int column = 0; column < columnCount(); ++column)
    cells.push_back(value(column));
  return cells;
}

std::wstring SqliteQuery::text(int column) const {
  if (kind(column) != TableValue::Kind::text) return valueText(value(column));
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(native_->handle, column));
  return widen({text, static_cast<std::size_t>(sqlite3_column_bytes(native_->handle, column))});
}

bool SqliteQuery::bind(int parameter, const TableValue& value) {
  sqlite3_stmt* handle = native_->handle;
  const auto size = static_cast<sqlite3_uint64>(value.bytes.size());
  const char* bytes = value.bytes.data();
  switch (value.kind) {
  case TableValue::Kind::null:
    return sqlite3_bind_null(handle, parameter) == SQLITE_OK;
  case TableValue::Kind::integer:
    return sqlite3_bind_int64(handle, parameter, value.integer) == SQLITE_OK;
  case TableValue::Kind::real:
    return sqlite3_bind_double(handle, parameter, value.real) == SQLITE_OK;
  case TableValue::Kind::text:
    return sqlite3_bind_text64(handle, parameter, bytes, size, SQLITE_STATIC, SQLITE_UTF8) == SQLITE_OK;
  case TableValue::Kind::blob:
    return sqlite3_bind_blob64(handle, parameter, bytes, size, SQLITE_STATIC) == SQLITE_OK;
  }
  return false;
}

SqliteQuery::Step SqliteQuery::step() {
  switch (sqlite3_step(native_->handle)) {
  case SQLITE_ROW:
    return Step::row;
  case SQLITE_DONE:
    return Step::done;
  default:
    return Step::failed;
  }
}

void SqliteQuery::reset() {
  sqlite3_reset(native_->handle);
}

struct SqliteDatabase::Native {
  sqlite3* handle = nullptr;
};

SqliteDatabase::SqliteDatabase() : native_(std::make_unique<Native>()) {}

SqliteDatabase::~SqliteDatabase() {
  close();
}

void SqliteDatabase::close() {
  // Open queries keep what they need until they end.
  sqlite3_close_v2(native_->handle);
  native_->handle = nullptr;
}

std::wstring SqliteDatabase::lastError() const {
  if (native_->handle == nullptr) return openError_;
  // The library accepts a text without any statement in it, but there is nothing to run.
  if (sqlite3_errcode(native_->handle) == SQLITE_OK) return L"the statement is empty";
  return widen(sqlite3_errmsg(native_->handle));
}

bool SqliteDatabase::isReadOnly() const {
  return sqlite3_db_readonly(native_->handle, "main") == 1;
}

bool SqliteDatabase::isInTransaction() const {
  return sqlite3_get_autocommit(native_->handle) == 0;
}

bool SqliteDatabase::open(std::string_view utf8Path, Mode mode) {
  const int access = mode == Mode::read        ? SQLITE_OPEN_READONLY
                     : mode == Mode::readWrite ? SQLITE_OPEN_READWRITE
                                               : SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE;
  const std::string name = mode == Mode::memory ? ":memory:" : std::string(utf8Path);
  if (!openHandle(name, access)) return false;
  if (mode == Mode::memory || readCatalogue()) return true; // a new database has nothing to read
  const bool isFile = mode == Mode::read || mode == Mode::readWrite;
  if (isFile && isUnwritablePlace(sqlite3_errcode(native_->handle))) {
    close();
    if (openHandle(immutableUri(utf8Path), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI) && readCatalogue())
      return true;
  }
  openError_ = lastError();
  close();
  return false;
}

bool SqliteDatabase::openHandle(const std::string& name, int flags) {
  // Nobody asks how much memory the library has in use, and counting it takes a lock for each allocation. A program
  // that has already opened a database, with its own copy of this file, has made the choice.
  static const int choice = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
  static_cast<void>(choice);
  // One connection is used by one thread only, so the library's own locks are left out.
  const int code = sqlite3_open_v2(name.c_str(), &native_->handle, flags | SQLITE_OPEN_NOMUTEX, nullptr);
  sqlite3* handle = native_->handle;
  if (code != SQLITE_OK) {
    openError_ = widen(handle == nullptr ? sqlite3_errstr(code) : sqlite3_errmsg(handle));
    close();
    return false;
  }
  sqlite3_extended_result_codes(handle, 1);
  waitAtMost(busyMilliseconds);
  // A misspelt "name" is an error and not silently a text.
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DML, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DQS_DDL, 0, nullptr);
  sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_create_collation_v2(handle, textCollation, SQLITE_UTF8, nullptr, compareNoCase, nullptr);
  return true;
}

bool SqliteDatabase::readCatalogue() {
  return run("SELECT count(*) FROM sqlite_master");
}

void SqliteDatabase::waitAtMost(int milliseconds) {
  sqlite3_busy_timeout(native_->handle, milliseconds);
}

bool SqliteDatabase::run(const std::string& statements) {
  return sqlite3_exec(native_->handle, statements.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

SqliteQuery SqliteDatabase::prepare(std::string_view statement) {
  sqlite3_stmt* prepared = nullptr;
  sqlite3_prepare_v3(
      native_->handle, statement.data(), static_cast<int>(statement.size()), SQLITE_PREPARE_PERSISTENT,
      &prepared, nullptr);
  SqliteQuery query;
  if (prepared != nullptr) query.native_ = std::make_unique<SqliteQuery::Native>(prepared);
  return query;
}

std::string quotedIdentifier(std::string_view name) {
  const bool inBrackets = name.find(']') == std::string_view::npos;
  std::string quoted(1, inBrackets ? '[' : '"');
  for (const char c : name)
    quoted.append(c == '"' && !inBrackets ? 2 : 1, c);
  quoted += inBrackets ? ']' : '"';
  return quoted;
}

} // namespace brenvolt::tables
