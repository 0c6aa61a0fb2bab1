#include "build/host_session.h"

#include "host/host_api_documents.h"
#include "host/host_api_lisp.h"
#include "host/open_object.h"
#include "host/result_list.h"

namespace brenvolt {

KvDbDatabase* workingDatabase() {
  KvApDocManager* documents = kvDocManagerPtr();
  if (!documents) return nullptr;
  KvApDocument* document = documents->currentDocument();
  if (!document) document = documents->activeDocument();
  return document ? document->database() : nullptr;
}

WorkingDatabaseScope::WorkingDatabaseScope(KvDbDatabase* database) : former_(kvdbWorkingDatabase()) {
  if (database) kvdbSetWorkingDatabase(database);
}

WorkingDatabaseScope::~WorkingDatabaseScope() {
  if (former_) kvdbSetWorkingDatabase(former_);
}

std::wstring activeSpaceName() {
  ResultList value;
  if (kvedGetVar(L"TILEMODE", value.receive()) != kvstatus::normal) return {};
  const std::optional<std::int32_t> tileMode = ListReader(value).integer();
  if (tileMode == 0) return L"*Paper_Space";
  if (tileMode == 1) return L"*Model_Space";
  return {};
}

KvDbObjectId findBlock(KvDbDatabase& database, const std::wstring& name) {
  const OpenObject<KvDbBlockTable> blocks(database.blockTableId(), KvOpenMode::forRead);
  KvDbObjectId record;
  if (!blocks || name.empty() || blocks->getAt(name.c_str(), record) != KvDbStatus::ok) return {};
  return record;
}

KvDbHandle lastEntityHandle(KvDbObjectId block) {
  const OpenObject<KvDbBlockTableRecord> space(block, KvOpenMode::forRead);
  if (!space) return {};
  const auto iterator = space->newIterator();
  iterator->start(false);
  if (iterator->done()) return {};
  const OpenObject<KvDbEntity> last(iterator->entityId(), KvOpenMode::forRead);
  return last ? last->handle() : KvDbHandle();
}

KvDbHandle lastEntityHandle(KvDbDatabase& database, const std::wstring& spaceName) {
  return lastEntityHandle(findBlock(database, spaceName));
}

bool pumpMessages() {
  while (kvdsMessageWaiting()) {
    if (kvdsPumpMessage()) continue;
    kvdsPostQuit();
    return false;
  }
  return true;
}

} // namespace brenvolt
