// Tables of files and servers through one set of operations for all engines: the embedded database, Access files,
// workbooks, delimited text, an ODBC server. Every engine gives the same texts for the same cells.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

namespace tables {
class Engine;
class Statement;
} // namespace tables

/// The results of `Execute` and `FetchNext`: 1 is success, anything else is not.
enum class dbStatus : int {
  success = 1,
  noMoreRows = 2,
  failure = 0,
};

/// The provider's last message.
class ZanOleDbErrorInfo final {
public:
  [[nodiscard]] bool HasErrorInfo() const { return !message_.empty(); }
  /// The message text. `clear` empties it after the call.
  std::wstring GetErrorInfo(bool clear);
  [[nodiscard]] const std::wstring& Text() const { return message_; }
  /// Whether the connection to a server failed or was lost. Data read so far may be incomplete.
  [[nodiscard]] bool IsConnectionLost() const { return isConnectionLost_; }
  void Set(std::wstring message) {
    message_ = std::move(message);
    isConnectionLost_ = false;
  }
  void SetConnectionLost(std::wstring message) {
    message_ = std::move(message);
    isConnectionLost_ = true;
  }
  void Clear() { Set({}); }

private:
  std::wstring message_;
  bool isConnectionLost_ = false;
};

class ZanOleDbHelper final {
public:
  ZanOleDbHelper() = delete;
  /// The initialisation string for a data source: "Provider=...;Data Source=...;...". `dataSource` is a file path, or
  /// "odbc:" followed by an ODBC connection string. Credentials belong into that string: the unused arguments of the
  /// first library have no counterpart.
  static std::wstring FormatConnectString(
      std::wstring_view dataSource, std::wstring_view provider, std::wstring_view extendedProperties);
};

/// What went wrong with a statement, or with opening a data source.
struct StatementFailure {
  std::wstring source;    ///< data source of the connection, without a password; empty when it was not opened
  std::wstring reason;    ///< the provider's words
  std::wstring statement; ///< the first one that failed for this reason
  bool isConnectionLost = false; ///< whether the server was no longer reached
};

/// A table of the default code that replaces one of another code.
struct TableFallback {
  std::wstring wanted;
  std::wstring used;
};

/// Receives what the results of a connection do not show: its users continue with what they have, and whoever opened
/// the connection reports each problem once.
class TableObserver {
public:
  virtual void statementFailed(StatementFailure failure) = 0;
  virtual void defaultTableUsed(TableFallback fallback) = 0;

protected:
  ~TableObserver() = default;
};

/// A connection to one data source. The engine is chosen by the file's content, never by its name.
class ZanOleDbConnection final {
public:
  /// The observer must outlive the connection; without one nobody learns of its problems.
  explicit ZanOleDbConnection(TableObserver* observer = nullptr);
  ~ZanOleDbConnection();
  ZanOleDbConnection(const ZanOleDbConnection&) = delete;
  ZanOleDbConnection& operator=(const ZanOleDbConnection&) = delete;

  /// Opens the data source named in `init`; a result below zero is a failure, see `ErrorInfo`. A file that does not
  /// exist is a failure and never created. `prompt` has no effect; `shared` false requests exclusive writing.
  /// "Mode=Read" in `init` opens read-only.
  int OpenFromInitializationString(std::wstring_view init, bool prompt, bool shared);
  [[nodiscard]] bool IsConnected() const;
  void Close();
  /// The path of the database file (for a server: the connection string without its password). True when connected.
  bool GetDatasource(std::wstring& path) const;
  [[nodiscard]] ZanOleDbErrorInfo& ErrorInfo();
  /// Null when there is none.
  [[nodiscard]] TableObserver* observer() const { return observer_; }

  /// Runs a statement and returns its rows; nothing on a failure, with the reason in `error`. For the classes of this
  /// header.
  [[nodiscard]] std::unique_ptr<tables::Statement> run(
      const std::wstring& statement, ZanOleDbErrorInfo& error) const;
  /// The engine of the connection, null when closed; for the classes of this header.
  [[nodiscard]] tables::Engine* engine() const;

private:
  struct State;
  std::unique_ptr<State> state_;
  TableObserver* observer_;
};

/// One statement on a connection and the rows that it returns. Columns count from 1.
class ZanOleDbCommand {
public:
  ZanOleDbCommand();
  virtual ~ZanOleDbCommand();
  ZanOleDbCommand(const ZanOleDbCommand&) = delete;
  ZanOleDbCommand& operator=(const ZanOleDbCommand&) = delete;

  /// Not owned; must outlive the command's use.
  void SetConnection(ZanOleDbConnection* connection);
  [[nodiscard]] ZanOleDbConnection* GetConnection() const;
  void SetCommandText(std::wstring_view text);
  /// Runs the statement. The first row is reached by the first `FetchNext`.
  dbStatus Execute();
  dbStatus FetchNext();
  /// Ends the statement; the object may be used again with a new text.
  void Close();

  [[nodiscard]] int GetColumnCount() const;
  [[nodiscard]] std::wstring GetColumnName(int column) const;
  /// The column's text as usually written (28, never 28.0); empty for NULL.
  [[nodiscard]] std::wstring FieldAsString(int column) const;
  [[nodiscard]] std::wstring FieldAsStringEx(int column) const { return FieldAsString(column); }
  /// The column as a number with full precision; a text reads as its leading number, NULL as 0.
  [[nodiscard]] double FieldAsDouble(int column) const;
  /// The column as a number; nothing for NULL and for a text that is not one from its first character to its last.
  [[nodiscard]] std::optional<double> FieldAsFigure(int column) const;
  [[nodiscard]] bool IsNull(int column) const;
  /// Whether the cell is a number itself, and no text that reads as one.
  [[nodiscard]] bool IsNumber(int column) const;
  [[nodiscard]] bool IsBlob(int column) const;
  bool GetBlobData(int column, std::vector<std::byte>& buffer) const;
  [[nodiscard]] ZanOleDbErrorInfo& ErrorInfo() { return error_; }
  [[nodiscard]] const ZanOleDbErrorInfo& ErrorInfo() const { return error_; }

protected:
  ZanOleDbConnection* connection_ = nullptr;

private:
  [[nodiscard]] bool hasColumn(int column) const;

  std::wstring text_;
  ZanOleDbErrorInfo error_;
  std::unique_ptr<tables::Statement> statement_;
};

/// The catalogue of a connection: its tables, sorted by name without case, the same on every engine.
class ZanOleDbTables final {
public:
  /// True on success. `type` is "TABLE" (views included, system tables not).
  bool Open(ZanOleDbConnection& connection, std::wstring_view type);
  /// All names from the present position on.
  void GetTableList(std::vector<std::wstring>& names);
  bool FetchNext();
  bool GetName(std::wstring& name) const;
  void Close();

private:
  std::vector<std::wstring> names_;
  std::size_t next_ = 0;
};

/// The columns of one table, in ordinal order, ordinals from 1. The table is found without regard to case.
class ZanOleDbColumns final {
public:
  bool Open(ZanOleDbConnection& connection, std::wstring_view table);
  bool FetchNext();
  bool GetName(std::wstring& name) const;
  [[nodiscard]] int OrdinalPosition() const;
  void Close();

private:
  std::vector<std::wstring> names_;
  std::size_t next_ = 0;
};

/// What a file recordset opens: any file that the engines know.
enum class ConnectType : int { file = 1 };
enum class FileType : int { workbook = 1 };

/// A recordset over a file: a command with a connection of its own. For a workbook each sheet is a table, addressed
/// by its name with "$" appended; the first row is the header.
class ZanOleDbRecordset : public ZanOleDbCommand {
public:
  explicit ZanOleDbRecordset(TableObserver* observer) : own_(observer) {}
  void Close();

protected:
  ZanOleDbConnection own_;
};

class ZanOleDbFileRecordset final : public ZanOleDbRecordset {
public:
  ZanOleDbFileRecordset(ConnectType connectType, FileType fileType, TableObserver* observer = nullptr);
  /// Opens the file read-only; false when it cannot be opened, see `ErrorInfo`.
  bool Open(std::wstring_view filePath);
  [[nodiscard]] ZanOleDbConnection& connection() { return own_; }
};

/// Inserts and deletes records by column and value, each as one statement. Columns and conditions are gone after the
/// run; table and `EmptyAsNull` stay.
class ZanOleDbDDLCommand final {
public:
  explicit ZanOleDbDDLCommand(ZanOleDbConnection& connection);
  /// The table's name, with or without brackets.
  void SetTable(std::wstring_view name);
  /// Empty values are stored, and searched, as NULL.
  void EmptyAsNull(bool on);
  /// A condition of `Delete`: column (brackets optional), format "='%s'" or "=%d", value. Without any condition
  /// `Delete` empties the table.
  void AddSearchCol(std::wstring_view column, std::wstring_view format, std::wstring_view value);
  /// A value of `Insert`, with a format as above; the comparison in front of it is dropped.
  void AddColumn(std::wstring_view column, std::wstring_view format, std::wstring_view value);
  [[nodiscard]] bool Insert();
  [[nodiscard]] bool Delete();
  [[nodiscard]] ZanOleDbErrorInfo& ErrorInfo() { return error_; }

private:
  struct Column {
    std::wstring name;
    std::wstring format;
    std::wstring value;
  };
  bool run(const std::wstring& format, const std::vector<std::wstring>& parts);

  ZanOleDbConnection& connection_;
  std::wstring table_;
  bool emptyAsNull_ = false;
  std::vector<Column> search_;
  std::vector<Column> values_;
  ZanOleDbErrorInfo error_;
};

/// One transaction on a connection: rolled back unless committed.
class TableTransaction final {
public:
  explicit TableTransaction(ZanOleDbConnection& connection);
  ~TableTransaction();
  TableTransaction(const TableTransaction&) = delete;
  TableTransaction& operator=(const TableTransaction&) = delete;
  /// False when the engine could not begin (locked, read-only), see `connection.ErrorInfo()`.
  [[nodiscard]] bool isOpen() const { return open_; }
  [[nodiscard]] bool commit();

private:
  ZanOleDbConnection& connection_;
  bool open_ = false;
};

/// What is read while it lives comes from one state of the tables, where the engine can promise that; reading a file then
/// takes its lock once and not for each statement. Others cannot write meanwhile to a file without a write-ahead log.
class TableReading final {
public:
  explicit TableReading(ZanOleDbConnection& connection);
  ~TableReading();
  TableReading(const TableReading&) = delete;
  TableReading& operator=(const TableReading&) = delete;

private:
  ZanOleDbConnection& connection_;
};

} // namespace brenvolt
