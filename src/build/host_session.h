// What a build needs of the host's session: the database that it works on, the active space, the last entity, and the
// handling of window messages that wait.
#pragma once

#include "host/host_api_database.h"

#include <string>

namespace brenvolt {

/// The database of the current document, else of the active one; null without either.
[[nodiscard]] KvDbDatabase* workingDatabase();

/// Makes a database the host's working one for a scope. Without a former one nothing is restored.
class WorkingDatabaseScope final {
public:
  explicit WorkingDatabaseScope(KvDbDatabase* database);
  ~WorkingDatabaseScope();
  WorkingDatabaseScope(const WorkingDatabaseScope&) = delete;
  WorkingDatabaseScope& operator=(const WorkingDatabaseScope&) = delete;

private:
  KvDbDatabase* former_;
};

/// The name of the block in which the user draws, "*Model_Space" or "*Paper_Space"; empty when unknown.
[[nodiscard]] std::wstring activeSpaceName();

/// The record of a block by name; null when the database has none.
[[nodiscard]] KvDbObjectId findBlock(KvDbDatabase& database, const std::wstring& name);

/// The last entity of a block; null when it holds none.
[[nodiscard]] KvDbHandle lastEntityHandle(KvDbObjectId block);
[[nodiscard]] KvDbHandle lastEntityHandle(KvDbDatabase& database, const std::wstring& spaceName);

/// Handles the window messages that wait. False when one of them was the request to quit, which is posted again for
/// the host.
[[nodiscard]] bool pumpMessages();

} // namespace brenvolt
