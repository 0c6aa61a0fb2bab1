// The kind of a file, recognised by its first bytes, since names can be wrong.
#pragma once

#include <string>

namespace brenvolt::tables {

enum class FileKind {
  absent,
  folder,
  unreadable,
  empty,
  sqlite,
  access,
  /// A compound file, as workbooks (.xls) are.
  compound,
  /// A zip archive, as newer workbooks are.
  archive,
  unknown,
};

[[nodiscard]] FileKind fileKind(const std::wstring& path);

/// Why a file of this kind cannot be opened as a database; empty for the kinds that can.
[[nodiscard]] std::wstring refusalOf(FileKind kind);

} // namespace brenvolt::tables
