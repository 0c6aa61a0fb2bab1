// Chooses the engine for a data source.
#include "platform/file_kind.h"
#include "platform/loaded_engine.h"
#include "platform/odbc_engine.h"
#include "platform/sqlite_engine.h"
#include "platform/table_engine.h"
#include "platform/table_source.h"

#include "text/compare.h"

namespace brenvolt::tables {

namespace {

std::unique_ptr<Engine> openSqlite(const std::wstring& path, Access access, ZanOleDbErrorInfo& error) {
  auto engine = std::make_unique<SqliteEngine>();
  if (!engine->open(path, access, error)) return nullptr;
  return engine;
}

using SourceOpener = std::unique_ptr<TableSource> (*)(const std::wstring& path, std::wstring& error);

std::unique_ptr<Engine> openReadOnly(SourceOpener open, const std::wstring& path, ZanOleDbErrorInfo& error) {
  std::wstring reason;
  std::unique_ptr<TableSource> source = open(path, reason);
  if (source) return std::make_unique<LoadedEngine>(std::move(source), path);
  error.Set(reason);
  return nullptr;
}

} // namespace

std::unique_ptr<Engine> openEngine(
    const std::wstring& dataSource, Access access, bool delimitedText, ZanOleDbErrorInfo& error) {
  constexpr std::wstring_view server = L"odbc:";
  if (equalsOrdinalNoCase(std::wstring_view(dataSource).substr(0, server.size()), server)) {
    return openOdbcEngine(dataSource.substr(server.size()), access, error);
  }
  const FileKind kind = fileKind(dataSource);
  if (kind == FileKind::folder && delimitedText) return openReadOnly(openDelimitedSource, dataSource, error);
  if (kind == FileKind::sqlite) return openSqlite(dataSource, access, error);
  if (kind == FileKind::access) return openReadOnly(openAccessSource, dataSource, error);
  if (kind == FileKind::compound) return openReadOnly(openWorkbookSource, dataSource, error);
  error.Set(dataSource + L": " + refusalOf(kind));
  return nullptr;
}

} // namespace brenvolt::tables
