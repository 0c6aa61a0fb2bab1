// From the host's function code to a handler and back.
#include "plugin/dispatcher.h"

#include "data/table_watch.h"
#include "host/host_api_lisp.h"
#include "host/lisp_symbols.h"
#include "host/resources.h"
#include "host/result_list.h"
#include "plugin/function_table.h"
#include "plugin/process_record.h"
#include "text/format.h"

#include <initializer_list>
#include <optional>
#include <string_view>
#include <vector>

namespace brenvolt {

namespace {

void printLine(TextId line, std::initializer_list<FormatArgument> arguments) {
  kvutPrintf(formatText(loadText(line), arguments).c_str());
}

/// Watches the tables of a call. A called form may call the module again: what the inner call finds is reported once,
/// by the outermost one.
class WatchScope final {
public:
  WatchScope() : outer_(processRecord().tableWatch) {
    if (outer_ == nullptr) processRecord().tableWatch = &watch_;
  }
  ~WatchScope() { processRecord().tableWatch = outer_; }
  WatchScope(const WatchScope&) = delete;
  WatchScope& operator=(const WatchScope&) = delete;

  /// What this call has to report.
  [[nodiscard]] const TableWatch& watch() const { return watch_; }

private:
  TableWatch* outer_;
  TableWatch watch_;
};

/// One line for each reason, however many statements failed for it, and for each table that another one stood in for.
void reportTables(const TableWatch& watch) {
  const std::vector<StatementFailure>& failures = watch.failures();
  const std::vector<TableFallback>& fallbacks = watch.fallbacks();
  if (failures.empty() && fallbacks.empty()) return;
  // A drawing that lacks a figure is not complete: whoever started the build must be able to see it.
  if (!failures.empty()) putReal(lispsymbol::tableProblems, static_cast<double>(failures.size()));
  const ResourceScope resources;
  for (const StatementFailure& failure : failures) {
    if (failure.source.empty()) {
      printLine(TextId::tablesNotOpened, {std::wstring_view(failure.reason)});
      continue;
    }
    printLine(
        TextId::statementFailed, {std::wstring_view(failure.source), std::wstring_view(failure.reason),
                                  std::wstring_view(failure.statement)});
  }
  for (const TableFallback& fallback : fallbacks)
    printLine(TextId::tableFallback, {std::wstring_view(fallback.wanted), std::wstring_view(fallback.used)});
}

ResultList runHandler(const LispFunction& function, const ResultList& arguments) {
  std::optional<ResourceScope> resources;
  if (function.resources == ResourceUse::pushed) resources.emplace();
  const WatchScope scope;
  ResultList answer;
  try {
    answer = function.handler(arguments);
  } catch (...) {
    answer = ResultList();
  }
  reportTables(scope.watch());
  return answer;
}

} // namespace

int dispatchFunction() {
  const LispFunction* function = findFunction(kvedGetFunCode());
  if (function == nullptr) return 0;
  serveCall(*function);
  return 1;
}

void serveCall(const LispFunction& function) {
  const ResultList arguments(kvedGetArgs());
  const ResultList answer = runHandler(function, arguments);
  if (answer.isEmpty()) {
    kvedRetNil();
  } else if (function.answer == AnswerForm::truth) {
    kvedRetT();
  } else {
    kvedRetList(answer.get());
  }
}

} // namespace brenvolt
