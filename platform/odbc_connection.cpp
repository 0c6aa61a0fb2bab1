#include "platform/odbc_connection.h"

#include "platform/shared_library.h"
#include "text/encoding.h"

#include <sql.h>
#include <sqlext.h>
#include <sqlucode.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>

namespace brenvolt::tables {

namespace {

constexpr std::size_t chunkBytes = 8192;
constexpr SQLULEN connectSeconds = 15;

/// The driver manager.
class OdbcLibrary final : public SharedLibrary {
public:
  OdbcLibrary() : SharedLibrary(BRENVOLT_ODBC_LIBRARY) {}

  decltype(&::SQLAllocHandle) SQLAllocHandle = find("SQLAllocHandle");
  decltype(&::SQLColumns) SQLColumns = find("SQLColumns");
  decltype(&::SQLColumnsW) SQLColumnsW = find("SQLColumnsW");
  decltype(&::SQLDescribeCol) SQLDescribeCol = find("SQLDescribeCol");
  decltype(&::SQLDescribeColW) SQLDescribeColW = find("SQLDescribeColW");
  decltype(&::SQLDisconnect) SQLDisconnect = find("SQLDisconnect");
  decltype(&::SQLDriverConnect) SQLDriverConnect = find("SQLDriverConnect");
  decltype(&::SQLDriverConnectW) SQLDriverConnectW = find("SQLDriverConnectW");
  decltype(&::SQLEndTran) SQLEndTran = find("SQLEndTran");
  decltype(&::SQLExecDirect) SQLExecDirect = find("SQLExecDirect");
  decltype(&::SQLExecDirectW) SQLExecDirectW = find("SQLExecDirectW");
  decltype(&::SQLFetch) SQLFetch = find("SQLFetch");
  decltype(&::SQLFreeHandle) SQLFreeHandle = find("SQLFreeHandle");
  decltype(&::SQLGetConnectAttrW) SQLGetConnectAttrW = find("SQLGetConnectAttrW");
  decltype(&::SQLGetData) SQLGetData = find("SQLGetData");
  decltype(&::SQLGetDiagRecW) SQLGetDiagRecW = find("SQLGetDiagRecW");
  decltype(&::SQLGetInfoW) SQLGetInfoW = find("SQLGetInfoW");
  decltype(&::SQLNumResultCols) SQLNumResultCols = find("SQLNumResultCols");
  decltype(&::SQLSetConnectAttrW) SQLSetConnectAttrW = find("SQLSetConnectAttrW");
  decltype(&::SQLSetEnvAttr) SQLSetEnvAttr = find("SQLSetEnvAttr");
  decltype(&::SQLTables) SQLTables = find("SQLTables");
  decltype(&::SQLTablesW) SQLTablesW = find("SQLTablesW");
};

const OdbcLibrary& odbc() {
  static const OdbcLibrary library;
  return library;
}

bool succeeded(SQLRETURN code) {
  return code == SQL_SUCCESS || code == SQL_SUCCESS_WITH_INFO;
}

/// Attributes are numbers that pass as pointers: as the interface demands.
SQLPOINTER asPointer(SQLULEN number) {
  return reinterpret_cast<SQLPOINTER>(number); // NOLINT(performance-no-int-to-ptr)
}

/// A text in the form that the driver takes.
class ServerText final {
public:
  explicit ServerText(const std::wstring& text) : narrow_(toUtf8(text)) {
    const std::string bytes = toUtf16Le(text);
    wide_.resize(bytes.size() / sizeof(SQLWCHAR) + 1, 0);
    std::memcpy(wide_.data(), bytes.data(), bytes.size());
  }

  [[nodiscard]] SQLWCHAR* wide() { return wide_.data(); }
  [[nodiscard]] SQLCHAR* narrow() { return reinterpret_cast<SQLCHAR*>(narrow_.data()); }

private:
  std::vector<SQLWCHAR> wide_;
  std::string narrow_;
};

std::wstring wideText(const SQLWCHAR* units, std::size_t count) {
  return fromUtf16Le({reinterpret_cast<const char*>(units), count * sizeof(SQLWCHAR)});
}

struct Diagnosis {
  std::wstring text;
  /// The standard's code of five characters for what went wrong.
  std::wstring state;
};

/// Codes that begin with 08 are about the connection; the others are a PostgreSQL server's words for being shut down.
bool meansLost(const std::wstring& state) {
  constexpr std::array<std::wstring_view, 3> shutDown = {L"57P01", L"57P02", L"57P03"};
  return state.starts_with(L"08") || std::find(shutDown.begin(), shutDown.end(), state) != shutDown.end();
}

Diagnosis diagnosis(SQLSMALLINT kind, SQLHANDLE handle) {
  std::array<SQLWCHAR, 6> state{};
  std::array<SQLWCHAR, 2048> text{};
  SQLINTEGER number = 0;
  SQLSMALLINT length = 0;
  const SQLRETURN code = odbc().SQLGetDiagRecW(
      kind, handle, 1, state.data(), &number, text.data(), static_cast<SQLSMALLINT>(text.size()), &length);
  if (!succeeded(code)) return {L"the server gave no reason", {}};
  const auto count = static_cast<std::size_t>(length < 0 ? 0 : length);
  return {wideText(text.data(), std::min(count, text.size() - 1)), wideText(state.data(), state.size() - 1)};
}

bool isBlobType(SQLLEN type) {
  return type == SQL_BINARY || type == SQL_VARBINARY || type == SQL_LONGVARBINARY;
}

bool isNumberType(SQLLEN type) {
  switch (type) {
  case SQL_BIT:
  case SQL_TINYINT:
  case SQL_SMALLINT:
  case SQL_INTEGER:
  case SQL_BIGINT:
  case SQL_DECIMAL:
  case SQL_NUMERIC:
  case SQL_REAL:
  case SQL_FLOAT:
  case SQL_DOUBLE:
    return true;
  default:
    return false;
  }
}

/// Servers write numbers in many ways (18.0000, 1.5E1); as a number each is the same cell. A column that may hold any
/// kind of cell keeps texts that are not numbers.
TableValue numberCell(std::string text) {
  TableValue number = TableValue::ofNumber(text);
  return number.kind == TableValue::Kind::null ? TableValue::ofText(std::move(text)) : number;
}

class StatementHandle final {
public:
  explicit StatementHandle(SQLHDBC connection) {
    odbc().SQLAllocHandle(SQL_HANDLE_STMT, connection, &handle_);
  }
  StatementHandle(const StatementHandle&) = delete;
  StatementHandle& operator=(const StatementHandle&) = delete;
  ~StatementHandle() { odbc().SQLFreeHandle(SQL_HANDLE_STMT, handle_); }

  [[nodiscard]] SQLHSTMT get() const { return handle_; }

private:
  SQLHSTMT handle_ = SQL_NULL_HSTMT;
};

/// The bytes of a cell in the wanted form; nothing for NULL. False on a failure.
bool readCell(
    SQLHSTMT statement, SQLUSMALLINT column, SQLSMALLINT form, std::size_t terminator,
    std::optional<std::string>& bytes) {
  bytes.emplace();
  std::array<char, chunkBytes> chunk{};
  while (true) {
    SQLLEN length = 0;
    const SQLRETURN code = odbc().SQLGetData(statement, column, form, chunk.data(), chunk.size(), &length);
    if (code == SQL_NO_DATA) return true;
    if (!succeeded(code)) return false;
    if (length == SQL_NULL_DATA) {
      bytes.reset();
      return true;
    }
    const std::size_t room = chunk.size() - terminator;
    const bool isLast = code == SQL_SUCCESS && length >= 0 && static_cast<std::size_t>(length) <= room;
    bytes->append(chunk.data(), isLast ? static_cast<std::size_t>(length) : room);
    if (isLast) return true;
  }
}

bool readValue(SQLHSTMT statement, SQLUSMALLINT column, SQLLEN type, OdbcTexts texts, TableValue& value) {
  std::optional<std::string> bytes;
  if (isBlobType(type)) {
    if (!readCell(statement, column, SQL_C_BINARY, 0, bytes)) return false;
    value = bytes ? TableValue::ofBlob(std::move(*bytes)) : TableValue::null();
    return true;
  }
  const bool isWide = texts == OdbcTexts::wide;
  const SQLSMALLINT form = isWide ? SQL_C_WCHAR : SQL_C_CHAR;
  if (!readCell(statement, column, form, isWide ? sizeof(SQLWCHAR) : 1, bytes)) return false;
  if (!bytes) {
    value = TableValue::null();
    return true;
  }
  std::string text = isWide ? toUtf8(fromUtf16Le(*bytes)) : std::move(*bytes);
  value = isNumberType(type) ? numberCell(std::move(text)) : TableValue::ofText(std::move(text));
  return true;
}

bool describe(
    SQLHSTMT statement, SQLUSMALLINT column, OdbcTexts texts, std::wstring& name, SQLSMALLINT& type) {
  constexpr SQLSMALLINT room = 2048;
  SQLSMALLINT length = 0;
  if (texts == OdbcTexts::utf8) {
    std::array<SQLCHAR, room> text{};
    const SQLRETURN code = odbc().SQLDescribeCol(
        statement, column, text.data(), room, &length, &type, nullptr, nullptr, nullptr);
    name = fromUtf8(reinterpret_cast<const char*>(text.data()));
    return succeeded(code);
  }
  std::array<SQLWCHAR, room> text{};
  const SQLRETURN code =
      odbc().SQLDescribeColW(statement, column, text.data(), room, &length, &type, nullptr, nullptr, nullptr);
  name = wideText(
      text.data(), std::min(static_cast<std::size_t>(std::max<SQLSMALLINT>(length, 0)), text.size() - 1));
  return succeeded(code);
}

} // namespace

struct OdbcConnection::Native {
  SQLHENV environment = SQL_NULL_HENV;
  SQLHDBC connection = SQL_NULL_HDBC;
  bool isConnected = false;
  bool isLost = false;
  OdbcTexts texts = OdbcTexts::wide;

  [[nodiscard]] std::wstring info(SQLUSMALLINT item) const;
  [[nodiscard]] std::optional<OdbcAnswer> answer(
      const std::function<SQLRETURN(SQLHSTMT)>& run, std::wstring& error);
  /// The words of a failure; notes when it means that the connection is lost.
  std::wstring failure(SQLSMALLINT kind, SQLHANDLE handle);
};

OdbcConnection::OdbcConnection() : native_(std::make_unique<Native>()) {}

OdbcConnection::~OdbcConnection() {
  close();
}

void OdbcConnection::close() {
  if (native_->isConnected) odbc().SQLDisconnect(native_->connection);
  if (native_->connection != SQL_NULL_HDBC) odbc().SQLFreeHandle(SQL_HANDLE_DBC, native_->connection);
  if (native_->environment != SQL_NULL_HENV) odbc().SQLFreeHandle(SQL_HANDLE_ENV, native_->environment);
  *native_ = Native();
}

std::wstring OdbcConnection::Native::failure(SQLSMALLINT kind, SQLHANDLE handle) {
  Diagnosis found = diagnosis(kind, handle);
  SQLUINTEGER isDead = SQL_CD_FALSE;
  // Drivers that do not know the attribute leave the value alone.
  odbc().SQLGetConnectAttrW(connection, SQL_ATTR_CONNECTION_DEAD, &isDead, SQL_IS_UINTEGER, nullptr);
  isLost = isConnected && (isDead == SQL_CD_TRUE || meansLost(found.state));
  return std::move(found.text);
}

bool OdbcConnection::isLost() const {
  return native_->isLost;
}

bool OdbcConnection::open(const std::wstring& connectionString, OdbcTexts texts, std::wstring& error) {
  close();
  if (!odbc().fault().empty()) {
    error = odbc().fault();
    return false;
  }
  native_->texts = texts;
  odbc().SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &native_->environment);
  odbc().SQLSetEnvAttr(native_->environment, SQL_ATTR_ODBC_VERSION, asPointer(SQL_OV_ODBC3), 0);
  odbc().SQLAllocHandle(SQL_HANDLE_DBC, native_->environment, &native_->connection);
  odbc().SQLSetConnectAttrW(
      native_->connection, SQL_ATTR_LOGIN_TIMEOUT, asPointer(connectSeconds), SQL_IS_UINTEGER);
  ServerText text(connectionString);
  SQLSMALLINT length = 0;
  const SQLRETURN code = texts == OdbcTexts::wide ? odbc().SQLDriverConnectW(
                                                        native_->connection, nullptr, text.wide(), SQL_NTS,
                                                        nullptr, 0, &length, SQL_DRIVER_NOPROMPT)
                                                  : odbc().SQLDriverConnect(
                                                        native_->connection, nullptr, text.narrow(), SQL_NTS,
                                                        nullptr, 0, &length, SQL_DRIVER_NOPROMPT);
  native_->isConnected = succeeded(code);
  if (!native_->isConnected) error = native_->failure(SQL_HANDLE_DBC, native_->connection);
  return native_->isConnected;
}

std::wstring OdbcConnection::Native::info(SQLUSMALLINT item) const {
  std::array<SQLWCHAR, 256> text{};
  SQLSMALLINT bytes = 0;
  if (!succeeded(odbc().SQLGetInfoW(connection, item, text.data(), sizeof text, &bytes))) return {};
  return wideText(text.data(), std::min(static_cast<std::size_t>(bytes) / sizeof(SQLWCHAR), text.size()));
}

std::wstring OdbcConnection::productName() const {
  return native_->info(SQL_DBMS_NAME);
}

std::wstring OdbcConnection::identifierQuote() const {
  return native_->info(SQL_IDENTIFIER_QUOTE_CHAR);
}

std::optional<OdbcAnswer> OdbcConnection::Native::answer(
    const std::function<SQLRETURN(SQLHSTMT)>& run, std::wstring& error) {
  const StatementHandle statement(connection);
  const auto failed = [&]() -> std::optional<OdbcAnswer> {
    error = failure(SQL_HANDLE_STMT, statement.get());
    return std::nullopt;
  };
  OdbcAnswer result;
  // A change that touches no row is a success without data.
  const SQLRETURN code = run(statement.get());
  if (code == SQL_NO_DATA) return result;
  if (!succeeded(code)) return failed();
  SQLSMALLINT count = 0;
  odbc().SQLNumResultCols(statement.get(), &count);
  std::vector<SQLLEN> types;
  for (SQLUSMALLINT column = 1; column <= static_cast<SQLUSMALLINT>(count); ++column) {
    SQLSMALLINT type = 0;
    std::wstring name;
    if (!describe(statement.get(), column, texts, name, type)) return failed();
    result.columns.push_back({std::move(name), isTextType(type)});
    types.push_back(type);
  }
  while (count > 0) {
    const SQLRETURN fetched = odbc().SQLFetch(statement.get());
    if (fetched == SQL_NO_DATA) break;
    if (!succeeded(fetched)) return failed();
    TableRow row(types.size());
    for (std::size_t column = 0; column < row.size(); ++column) {
      const auto place = static_cast<SQLUSMALLINT>(column + 1);
      if (!readValue(statement.get(), place, types[column], texts, row[column])) return failed();
    }
    result.rows.push_back(std::move(row));
  }
  return result;
}

std::optional<OdbcAnswer> OdbcConnection::execute(const std::wstring& statement, std::wstring& error) {
  ServerText text(statement);
  return native_->answer(
      [&](SQLHSTMT handle) {
        return native_->texts == OdbcTexts::wide ? odbc().SQLExecDirectW(handle, text.wide(), SQL_NTS)
                                                 : odbc().SQLExecDirect(handle, text.narrow(), SQL_NTS);
      },
      error);
}

std::optional<OdbcAnswer> OdbcConnection::tables(std::wstring& error) {
  ServerText types(L"TABLE,VIEW");
  return native_->answer(
      [&](SQLHSTMT handle) {
        return native_->texts == OdbcTexts::wide
                   ? odbc().SQLTablesW(handle, nullptr, 0, nullptr, 0, nullptr, 0, types.wide(), SQL_NTS)
                   : odbc().SQLTables(handle, nullptr, 0, nullptr, 0, nullptr, 0, types.narrow(), SQL_NTS);
      },
      error);
}

std::optional<OdbcAnswer> OdbcConnection::columns(const std::wstring& table, std::wstring& error) {
  ServerText name(table);
  return native_->answer(
      [&](SQLHSTMT handle) {
        return native_->texts == OdbcTexts::wide
                   ? odbc().SQLColumnsW(handle, nullptr, 0, nullptr, 0, name.wide(), SQL_NTS, nullptr, 0)
                   : odbc().SQLColumns(handle, nullptr, 0, nullptr, 0, name.narrow(), SQL_NTS, nullptr, 0);
      },
      error);
}

bool OdbcConnection::isTextType(int type) {
  switch (type) {
  case SQL_CHAR:
  case SQL_VARCHAR:
  case SQL_LONGVARCHAR:
  case SQL_WCHAR:
  case SQL_WVARCHAR:
  case SQL_WLONGVARCHAR:
    return true;
  default:
    return false;
  }
}

bool OdbcConnection::setAutomaticCommit(bool on, std::wstring& error) {
  const SQLULEN mode = on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF;
  const SQLRETURN code =
      odbc().SQLSetConnectAttrW(native_->connection, SQL_ATTR_AUTOCOMMIT, asPointer(mode), SQL_IS_UINTEGER);
  if (!succeeded(code)) error = native_->failure(SQL_HANDLE_DBC, native_->connection);
  return succeeded(code);
}

bool OdbcConnection::endTransaction(bool commit, std::wstring& error) {
  const SQLRETURN code =
      odbc().SQLEndTran(SQL_HANDLE_DBC, native_->connection, commit ? SQL_COMMIT : SQL_ROLLBACK);
  if (!succeeded(code)) error = native_->failure(SQL_HANDLE_DBC, native_->connection);
  return succeeded(code);
}

} // namespace brenvolt::tables
