#include "circuits/check/trial_build.h"

#include "simhost/drawing/drawing_database.h"
#include "simhost/lisp/list.h"
#include "text/encoding.h"

namespace circuits {

using simhost::lisp::Value;

TrialBuild::TrialBuild(
    CheckSession& session, const CircuitEntry& entry, const std::filesystem::path& workbook)
    : session_(session) {
  simhost::UndoLog& log = session.document().drawing().undoLog();
  log.closeGroup();
  undoCount_ = log.undoCount();
  const Value arguments[] = {
      Value::string(entry.drawing),
      Value::string(brenvolt::fromUtf8(workbook.string())),
      Value::string(entry.worksheet),
      Value::string(entry.circuit),
      Value::string(entry.type),
      Value::string(savedName),
      simhost::lisp::makePoint(0, 0, 0),
      Value::string(L""),
      Value::string(L""),
      Value::string(L"")};
  answer_ = session.call(L"site-build", arguments);
}

TrialBuild::~TrialBuild() {
  simhost::UndoLog& log = session_.document().drawing().undoLog();
  log.closeGroup();
  static_cast<void>(log.undo(log.undoCount() - undoCount_));
}

} // namespace circuits
