// Shared by the table tests: a temporary folder, connections that must open, and results as lines of text.
#pragma once

#include "platform/tables.h"
#include "tests/support/golden.h"
#include "tests/support/temporary_folder.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brenvolt::testing {

using test::bytesOf;
using test::TemporaryFolder;

/// The foreign test files beside the project, where they are.
[[nodiscard]] std::optional<std::filesystem::path> foreignFile(std::string_view name);

/// Output of a shell command; nothing when it fails.
[[nodiscard]] std::optional<std::string> outputOf(const std::string& command);

[[nodiscard]] std::wstring connectString(std::wstring_view dataSource);

/// An open connection; a failure to open fails the test.
[[nodiscard]] std::unique_ptr<ZanOleDbConnection> opened(std::wstring_view dataSource);

/// The message of an opening that must fail.
[[nodiscard]] std::wstring openingError(std::wstring_view dataSource);

/// Each row as its cells with "|" between, NULL as "<null>"; a failure as the one line "error: ...".
[[nodiscard]] std::vector<std::wstring> rowsOf(ZanOleDbConnection& connection, std::wstring_view statement);

/// Runs a statement that must succeed.
void mustRun(ZanOleDbConnection& connection, std::wstring_view statement);

/// A database file that holds what the statements make.
void makeSqlite(const std::filesystem::path& path, const std::vector<std::string>& statements);

/// Lines of UTF-8 for a readable failure message.
[[nodiscard]] std::string shown(const std::vector<std::wstring>& lines);

} // namespace brenvolt::testing
