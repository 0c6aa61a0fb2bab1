// Problems while reading the tables that the results do not show: a statement that an engine refused differs from one
// that finds nothing, and a figure of another code's table is not one of the requested code. The services continue in
// both cases; the caller that started the work reports each problem once.
#pragma once

#include "platform/tables.h"

#include <string>
#include <string_view>
#include <vector>

namespace brenvolt {

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

/// Keeps a failure until the outermost watch ends, one for each source and reason. Without a watch nothing is kept.
void noteStatementFailure(StatementFailure failure);
/// The same for a data source that could not be opened; one without a name is none.
void noteOpeningFailure(std::wstring_view dataSource, const ZanOleDbErrorInfo& error);
/// The same for a fallback, one for each requested table.
void noteTableFallback(TableFallback fallback);

/// Whether a server was lost since the outermost watch began. Whoever draws or writes from what was read since then would
/// work with missing figures.
[[nodiscard]] bool wasConnectionLost();

/// Collects what is noted in its lifetime. Watches nest, because a called function may call the plug-in again: the
/// outermost one owns what was collected.
class TableWatch final {
public:
  TableWatch();
  TableWatch(const TableWatch&) = delete;
  TableWatch& operator=(const TableWatch&) = delete;
  ~TableWatch();

  /// What was noted so far, in its order; empty for an inner watch.
  [[nodiscard]] std::vector<StatementFailure> failures() const;
  [[nodiscard]] std::vector<TableFallback> fallbacks() const;

private:
  bool isOutermost_;
};

} // namespace brenvolt
