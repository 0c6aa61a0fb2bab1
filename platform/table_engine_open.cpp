// Chooses the engine for a data source.
#include "platform/connect_string.h"
#include "platform/file_kind.h"
#include "platform/loaded_engine.h"
#include "platform/odbc_engine.h"
#include "platform/sqlite_engine.h"
#include "platform/table_engine.h"
#include "platform/table_source.h"

#include "text/compare.h"

namespace brenvolt::tables {

namespace {

constexpr std::wstring_view serverPrefix = L"odbc:";

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

bool isServer(std::wstring_view dataSource) {
  return equalsOrdinalNoCase(dataSource.substr(0, serverPrefix.size()), serverPrefix);
}

std::wstring shownDataSource(std::wstring_view dataSource) {
  if (!isServer(dataSource)) return std::wstring(dataSource);
  return std::wstring(serverPrefix) + withoutPassword(dataSource.substr(serverPrefix.size()));
}

std::unique_ptr<Engine> openEngine(
    const std::wstring& dataSource, Access access, bool delimitedText, ZanOleDbErrorInfo& error) {
  if (isServer(dataSource)) return openOdbcEngine(dataSource.substr(serverPrefix.size()), access, error);
  const FileKind kind = fileKind(dataSource);
  if (kind == FileKind::folder && delimitedText) return openReadOnly(openDelimitedSource, dataSource, error);
  if (kind == FileKind::sqlite) return openSqlite(dataSource, access, error);
  if (kind == FileKind::access) return openReadOnly(openAccessSource, dataSource, error);
  if (kind == FileKind::compound) return openReadOnly(openWorkbookSource, dataSource, error);
  error.Set(dataSource + L": " + refusalOf(kind));
  return nullptr;
}

} // namespace brenvolt::tables
