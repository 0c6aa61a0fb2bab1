#include "data/table_watch.h"

#include <algorithm>
#include <utility>

namespace brenvolt {

void TableWatch::statementFailed(StatementFailure failure) {
  const bool isKnown =
      std::any_of(failures_.begin(), failures_.end(), [&failure](const StatementFailure& each) {
        return each.source == failure.source && each.reason == failure.reason;
      });
  if (!isKnown) failures_.push_back(std::move(failure));
}

void TableWatch::defaultTableUsed(TableFallback fallback) {
  const bool isKnown =
      std::any_of(fallbacks_.begin(), fallbacks_.end(), [&fallback](const TableFallback& each) {
        return each.wanted == fallback.wanted;
      });
  if (!isKnown) fallbacks_.push_back(std::move(fallback));
}

bool TableWatch::wasConnectionLost() const {
  return std::any_of(failures_.begin(), failures_.end(), [](const StatementFailure& failure) {
    return failure.isConnectionLost;
  });
}

} // namespace brenvolt
