#include "table_test_support.h"

#include "text/encoding.h"

#include <doctest/doctest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <iterator>

namespace brenvolt::testing {

namespace fs = std::filesystem;

std::optional<fs::path> foreignFile(std::string_view name) {
  for (const char* root : {"../shared/testdata", "../../shared/testdata"}) {
    if (fs::exists(fs::path(root) / name)) return fs::path(root) / name;
  }
  return std::nullopt;
}

std::optional<std::string> outputOf(const std::string& command) {
  FILE* pipe = popen((command + " 2>/dev/null").c_str(), "r");
  if (pipe == nullptr) return std::nullopt;
  std::string text;
  std::array<char, 65536> buffer{};
  while (const std::size_t size = std::fread(buffer.data(), 1, buffer.size(), pipe))
    text.append(buffer.data(), size);
  if (pclose(pipe) != 0) return std::nullopt;
  return text;
}

std::wstring connectString(std::wstring_view dataSource) {
  return ZanOleDbHelper::FormatConnectString(
      dataSource, L"Microsoft.Jet.OLEDB.4.0", L"Jet OLEDB:Engine Type=5");
}

std::unique_ptr<ZanOleDbConnection> opened(std::wstring_view dataSource) {
  auto connection = std::make_unique<ZanOleDbConnection>();
  const int result = connection->OpenFromInitializationString(connectString(dataSource), false, true);
  INFO(toUtf8(connection->ErrorInfo().GetErrorInfo(false)));
  REQUIRE(result >= 0);
  return connection;
}

std::wstring openingError(std::wstring_view dataSource) {
  ZanOleDbConnection connection;
  const bool isOpen = connection.OpenFromInitializationString(connectString(dataSource), false, true) >= 0;
  CHECK_FALSE(isOpen);
  CHECK_FALSE(connection.IsConnected());
  return connection.ErrorInfo().GetErrorInfo(true);
}

std::vector<std::wstring> rowsOf(ZanOleDbConnection& connection, std::wstring_view statement) {
  ZanOleDbCommand command;
  command.SetConnection(&connection);
  command.SetCommandText(statement);
  if (command.Execute() != dbStatus::success) return {L"error: " + command.ErrorInfo().GetErrorInfo(false)};
  std::vector<std::wstring> lines;
  dbStatus status = dbStatus::success;
  while ((status = command.FetchNext()) == dbStatus::success) {
    std::wstring line;
    for (int column = 1; column <= command.GetColumnCount(); ++column) {
      if (column > 1) line += L'|';
      line += command.IsNull(column) ? std::wstring(L"<null>") : command.FieldAsString(column);
    }
    lines.push_back(std::move(line));
  }
  if (status == dbStatus::failure) lines.push_back(L"error: " + command.ErrorInfo().GetErrorInfo(false));
  return lines;
}

void mustRun(ZanOleDbConnection& connection, std::wstring_view statement) {
  const std::vector<std::wstring> answer = rowsOf(connection, statement);
  INFO(shown(answer));
  REQUIRE(answer.empty());
}

void makeSqlite(const fs::path& path, const std::vector<std::string>& statements) {
  sqlite3* database = nullptr;
  REQUIRE(sqlite3_open(path.c_str(), &database) == SQLITE_OK);
  for (const std::string& statement : statements) {
    INFO(statement);
    REQUIRE(sqlite3_exec(database, statement.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK);
  }
  sqlite3_close(database);
}

std::string shown(const std::vector<std::wstring>& lines) {
  std::string text;
  for (const std::wstring& line : lines)
    text += toUtf8(line) + "\n";
  return text;
}

} // namespace brenvolt::testing
