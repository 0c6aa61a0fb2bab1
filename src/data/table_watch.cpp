#include "data/table_watch.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace brenvolt {

namespace {

struct Notes {
  std::vector<StatementFailure> failures;
  std::vector<TableFallback> fallbacks;
};

/// Null while nothing is watched.
std::optional<Notes>& notes() {
  static std::optional<Notes> collected;
  return collected;
}

} // namespace

void noteStatementFailure(StatementFailure failure) {
  if (!notes()) return;
  std::vector<StatementFailure>& known = notes()->failures;
  const bool isKnown = std::any_of(known.begin(), known.end(), [&failure](const StatementFailure& each) {
    return each.source == failure.source && each.reason == failure.reason;
  });
  if (!isKnown) known.push_back(std::move(failure));
}

void noteOpeningFailure(std::wstring_view dataSource, const ZanOleDbErrorInfo& error) {
  if (!dataSource.empty()) noteStatementFailure({{}, error.Text(), {}, error.IsConnectionLost()});
}

void noteTableFallback(TableFallback fallback) {
  if (!notes()) return;
  std::vector<TableFallback>& known = notes()->fallbacks;
  const bool isKnown = std::any_of(known.begin(), known.end(), [&fallback](const TableFallback& each) {
    return each.wanted == fallback.wanted;
  });
  if (!isKnown) known.push_back(std::move(fallback));
}

bool wasConnectionLost() {
  if (!notes()) return false;
  const std::vector<StatementFailure>& failures = notes()->failures;
  return std::any_of(failures.begin(), failures.end(), [](const StatementFailure& failure) {
    return failure.isConnectionLost;
  });
}

TableWatch::TableWatch() : isOutermost_(!notes()) {
  if (isOutermost_) notes().emplace();
}

TableWatch::~TableWatch() {
  if (isOutermost_) notes().reset();
}

std::vector<StatementFailure> TableWatch::failures() const {
  return isOutermost_ && notes() ? notes()->failures : std::vector<StatementFailure>();
}

std::vector<TableFallback> TableWatch::fallbacks() const {
  return isOutermost_ && notes() ? notes()->fallbacks : std::vector<TableFallback>();
}

} // namespace brenvolt
