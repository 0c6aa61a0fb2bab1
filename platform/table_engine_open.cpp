// Chooses the engine for a data source.
#include "platform/file_kind.h"
#include "platform/sqlite_engine.h"
#include "platform/table_engine.h"

namespace brenvolt::tables {

std::unique_ptr<Engine> openEngine(
    const std::wstring& dataSource, Access access, bool, ZanOleDbErrorInfo& error) {
  const FileKind kind = fileKind(dataSource);
  if (const std::wstring refusal = refusalOf(kind); !refusal.empty()) {
    error.Set(dataSource + L": " + refusal);
    return nullptr;
  }
  if (kind == FileKind::sqlite) {
    auto engine = std::make_unique<SqliteEngine>();
    if (!engine->open(dataSource, access, error)) return nullptr;
    return engine;
  }
  error.Set(dataSource + L": no engine reads this kind of file");
  return nullptr;
}

} // namespace brenvolt::tables
