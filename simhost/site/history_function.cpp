#include "simhost/site/history_function.h"

#include "project/history_recovery.h"
#include "simhost/lisp/arguments.h"
#include "text/compare.h"

#include <algorithm>

namespace simhost {

namespace {

using brenvolt::HistoryOutcome;
using brenvolt::HistoryRecord;
using lisp::Arguments;
using lisp::Value;

/// (history-take-back workbook circuit type name): the configuration is again what it was before this user last saved it;
/// T, or nil when another user has changed it since or the journal has no record of it.
Value takeBack(Arguments& arguments) {
  const std::wstring workbook(arguments.text(0));
  const brenvolt::HistoryKey key{
      std::wstring(arguments.text(1)), std::wstring(arguments.text(2)), std::wstring(arguments.text(3))};
  const std::wstring path = brenvolt::historyPathOf(workbook);
  const std::vector<HistoryRecord> records = brenvolt::readJournal(path);
  const auto last = std::find_if(
      records.rbegin(), records.rend(), [&key](const HistoryRecord& record) { return record.key == key; });
  const brenvolt::FileUser user = brenvolt::thisFileUser();
  if (last == records.rend() || last->action != brenvolt::HistoryAction::saved || last->user != user.user ||
      last->machine != user.machine)
    return {};
  brenvolt::HistoryFile file;
  HistoryOutcome outcome;
  if (last->former.empty()) {
    file.read(path);
    const std::string seen = brenvolt::recordOf(brenvolt::HistoryAction::deleted, file, key).former;
    std::vector<brenvolt::HistoryKey> stayed;
    outcome = brenvolt::deleteFromHistory(workbook, file, {{key, seen}}, stayed);
  } else {
    outcome = brenvolt::restoreInHistory(workbook, file, *last);
  }
  if (!outcome.isDone() && outcome.result != HistoryOutcome::Result::unchanged)
    arguments.fail(L"the saved configuration \"" + key.name + L"\" cannot be taken back: " + outcome.reason);
  return Value::truth(true);
}

} // namespace

void defineHistoryFunctions(lisp::Interpreter& interpreter) {
  interpreter.define(L"history-take-back", 4, 4, takeBack);
}

} // namespace simhost
