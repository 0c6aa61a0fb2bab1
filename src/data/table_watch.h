// Problems while reading the tables that the results do not show: a statement that an engine refused differs from one
// that finds nothing, and a figure of another code's table is not one of the requested code. The services continue in
// both cases; the caller that started the work reports each problem once.
#pragma once

#include "host/alerts.h"
#include "platform/tables.h"

#include <vector>

namespace brenvolt {

/// Collects the problems of all connections that are opened with it.
class TableWatch final : public TableObserver {
public:
  /// One for each source and reason.
  void statementFailed(StatementFailure failure) override;
  /// One for each requested table.
  void defaultTableUsed(TableFallback fallback) override;

  /// In their order.
  [[nodiscard]] const std::vector<StatementFailure>& failures() const { return failures_; }
  [[nodiscard]] const std::vector<TableFallback>& fallbacks() const { return fallbacks_; }
  /// Whether a server was lost. Whoever draws or writes from what was read since then would work with missing figures.
  [[nodiscard]] bool wasConnectionLost() const;

private:
  std::vector<StatementFailure> failures_;
  std::vector<TableFallback> fallbacks_;
};

/// What a handler lends to those who open tables.
struct LentTables {
  AcceptedTables& accepted; ///< missing tables that the user accepted
  TableObserver* observer;  ///< of each connection; null when nobody reports
};

} // namespace brenvolt
