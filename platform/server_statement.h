// Puts a statement as the system writes it, with names in brackets and without case, into the words of a server.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt::tables {

struct ServerColumn {
  std::wstring name;
  bool isText = false;
};

/// What has to be known of a server.
struct ServerDialect {
  /// Around a name.
  std::wstring openQuote = L"\"";
  std::wstring closeQuote = L"\"";
  /// Follows a text that is compared or sorted, so that the code decides and not the server's language; may be empty.
  std::wstring collation;
  /// Whether the statement must order NULLs first explicitly, as the other engines do.
  bool sortsNullsLast = false;
};

/// The server's names, found without case.
struct ServerTableList {
  /// The table as the server names it; empty when it has none of this name.
  std::function<std::wstring(std::wstring_view)> table;
  /// The columns of such a table.
  std::function<std::vector<ServerColumn>(const std::wstring&)> columns;
};

struct ServerStatement {
  std::wstring text;
  /// DISTINCT was taken out: equal rows, compared without case, have to be dropped by the caller.
  bool isDistinct = false;
  /// The rows have to be sorted by the caller, by their columns from the first on.
  bool isSorted = false;
};

/// Names in brackets, and words that name a column of the statement's tables, become the server's own. A comparison of a text column with a text, and the order by a text column,
/// are put into capital letters on both sides; how far beyond ASCII that reaches is up to the server. A comparison of
/// two columns, IN and GROUP BY keep the server's own rule.
[[nodiscard]] ServerStatement translateStatement(
    std::wstring_view statement, const ServerDialect& dialect, const ServerTableList& tableList);

} // namespace brenvolt::tables
