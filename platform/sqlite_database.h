// A handle on an embedded database and on its statements, closed on every way out. Used by the engine of that name,
// by the engines that load foreign tables into memory, and by the import.
#pragma once

#include "platform/table_value.h"

#include <memory>
#include <string>
#include <string_view>

namespace brenvolt::tables {

/// Text columns are declared with this collation: ordinal without case, for every script, as keys compare everywhere
/// in the system. It has a name of its own because the built-in NOCASE sorts otherwise, and an index written by one
/// rule and searched by the other misses rows. Programs that do not know it can read all rows of such a table, but must
/// name a collation of theirs to compare or sort a text column.
inline constexpr const char* textCollation = "KVNOCASE";

/// How long a statement waits for another process that holds the file.
inline constexpr int busyMilliseconds = 10000;

/// A prepared statement and its current row; columns count from 0, parameters from 1.
class SqliteQuery final {
public:
  enum class Step { row, done, failed };

  SqliteQuery();
  SqliteQuery(SqliteQuery&&) noexcept;
  SqliteQuery& operator=(SqliteQuery&&) noexcept;
  ~SqliteQuery();

  /// Whether there is a statement at all: the text could be prepared.
  [[nodiscard]] bool isPrepared() const { return native_ != nullptr; }
  [[nodiscard]] bool isReader() const;
  [[nodiscard]] int columnCount() const;
  [[nodiscard]] std::wstring columnName(int column) const;
  [[nodiscard]] TableValue value(int column) const;
  [[nodiscard]] TableRow row() const;
  /// The same as the text of `value`, without the copy in between.
  [[nodiscard]] std::wstring text(int column) const;
  [[nodiscard]] TableValue::Kind kind(int column) const;

  /// The value must live until the statement has run.
  bool bind(int parameter, const TableValue& value);
  Step step();
  void reset();

private:
  friend class SqliteDatabase;
  struct Native;
  std::unique_ptr<Native> native_;
};

class SqliteDatabase final {
public:
  enum class Mode { read, readWrite, create, memory };

  SqliteDatabase();
  SqliteDatabase(const SqliteDatabase&) = delete;
  SqliteDatabase& operator=(const SqliteDatabase&) = delete;
  ~SqliteDatabase();

  [[nodiscard]] std::wstring lastError() const;
  [[nodiscard]] bool isReadOnly() const;
  [[nodiscard]] bool isInTransaction() const;

  /// Opens the file and reads its catalogue once, so that a damaged or locked one is found here. False on a failure,
  /// see `lastError`.
  bool open(std::string_view utf8Path, Mode mode);
  void close();
  void waitAtMost(int milliseconds);
  /// Runs statements that return no rows.
  bool run(const std::string& statements);
  /// A statement that is kept; not prepared on a failure.
  [[nodiscard]] SqliteQuery prepare(std::string_view statement);

private:
  bool openHandle(const std::string& name, int flags);
  bool readCatalogue();

  struct Native;
  std::unique_ptr<Native> native_;
  std::wstring openError_;
};

/// "[name]" for generated statements; a name with "]" is put in double quotes instead.
[[nodiscard]] std::string quotedIdentifier(std::string_view name);

} // namespace brenvolt::tables
