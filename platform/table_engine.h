// The interface of all table engines. An engine handles one kind of file or server; the classes of tables.h know none
// of them.
#pragma once

#include "platform/tables.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt::tables {

/// The rows of a statement that ran. It may outlive its engine: it then reports a failure. Columns count from 1 and
/// are in range: the command has checked.
class Statement {
public:
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  virtual ~Statement() = default;

  [[nodiscard]] virtual int columnCount() const = 0;
  [[nodiscard]] virtual std::wstring columnName(int column) const = 0;
  [[nodiscard]] virtual std::wstring text(int column) const = 0;
  [[nodiscard]] virtual double number(int column) const = 0;
  [[nodiscard]] virtual bool isNull(int column) const = 0;
  [[nodiscard]] virtual bool isNumber(int column) const = 0;
  [[nodiscard]] virtual bool isBlob(int column) const = 0;
  [[nodiscard]] virtual std::vector<std::byte> blob(int column) const = 0;

  virtual dbStatus fetchNext(ZanOleDbErrorInfo& error) = 0;

protected:
  Statement() = default;
};

/// An open data source. Operations that return false, or no statement, have set `error`.
class Engine {
public:
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;
  virtual ~Engine() = default;

  /// Tables and views in no particular order, system tables left out.
  virtual bool tableNames(std::vector<std::wstring>& names, ZanOleDbErrorInfo& error) = 0;
  /// The columns in ordinal order of a table named as in the catalogue.
  virtual bool columnNames(
      const std::wstring& table, std::vector<std::wstring>& names, ZanOleDbErrorInfo& error) = 0;

  [[nodiscard]] virtual std::unique_ptr<Statement> execute(
      const std::wstring& text, ZanOleDbErrorInfo& error) = 0;
  /// The name that the engine's server reports; empty for a file.
  [[nodiscard]] virtual std::wstring productName() const { return {}; }
  /// What is read between the two comes from one state of the data source. An engine that cannot promise this reads what
  /// is there.
  virtual void beginReading() {}
  virtual void endReading() {}
  virtual bool begin(ZanOleDbErrorInfo& error) = 0;
  virtual bool commit(ZanOleDbErrorInfo& error) = 0;
  virtual void rollback() = 0;

protected:
  Engine() = default;
};

/// Whether a data source is a server: "odbc:" and a connection string.
[[nodiscard]] bool isServer(std::wstring_view dataSource);

/// A data source as messages show it: a server's connection string without its password.
[[nodiscard]] std::wstring shownDataSource(std::wstring_view dataSource);

enum class Access { read, readWrite, exclusive };

/// Opens the file or server that `dataSource` names, by the file's content; nothing when that fails.
/// `delimitedText` true takes a folder as a set of tables in delimited text.
[[nodiscard]] std::unique_ptr<Engine> openEngine(
    const std::wstring& dataSource, Access access, bool delimitedText, ZanOleDbErrorInfo& error);

} // namespace brenvolt::tables
