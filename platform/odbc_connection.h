// A server through its driver: a connection, the results of statements, and the driver's lists of tables and columns.
#pragma once

#include "platform/table_value.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brenvolt::tables {

/// How a driver takes texts: in wide functions, or as UTF-8 in the narrow ones when it has no others. The driver manager
/// would convert between the two by the process's locale and lose what that cannot write.
enum class OdbcTexts { wide, utf8 };

struct OdbcAnswer {
  struct Column {
    std::wstring name;
    bool isText = false;
  };
  std::vector<Column> columns;
  std::vector<TableRow> rows;
};

class OdbcConnection final {
public:
  OdbcConnection();
  OdbcConnection(const OdbcConnection&) = delete;
  OdbcConnection& operator=(const OdbcConnection&) = delete;
  ~OdbcConnection();

  /// Operations that fail return false or nothing and set `error`. An open connection is closed first.
  bool open(const std::wstring& connectionString, OdbcTexts texts, std::wstring& error);
  /// The driver's product, and the character that it puts around names.
  [[nodiscard]] std::wstring productName() const;
  [[nodiscard]] std::wstring identifierQuote() const;

  [[nodiscard]] std::optional<OdbcAnswer> execute(const std::wstring& statement, std::wstring& error);
  /// The driver's list of tables and views: catalogue, schema, name, type.
  [[nodiscard]] std::optional<OdbcAnswer> tables(std::wstring& error);
  /// The driver's list of the columns of a table: among others the table's name third, the column's name fourth and its
  /// type's number fifth.
  [[nodiscard]] std::optional<OdbcAnswer> columns(const std::wstring& table, std::wstring& error);
  /// Whether a type's number in that list is one of texts.
  [[nodiscard]] static bool isTextType(int type);

  /// Whether the last operation failed because the connection to the server is lost. Nothing works from then on until
  /// the connection is opened again.
  [[nodiscard]] bool isLost() const;

  bool setAutomaticCommit(bool on, std::wstring& error);
  bool endTransaction(bool commit, std::wstring& error);

private:
  void close();

  struct Native;
  std::unique_ptr<Native> native_;
};

} // namespace brenvolt::tables
