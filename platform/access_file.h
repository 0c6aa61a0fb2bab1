// Reads an Access file through its library. It may crash or loop on a damaged file, so it is run in a guarded child
// process only (access_source.cpp).
#pragma once

#include "platform/table_source.h"

#include <memory>
#include <string>
#include <vector>

namespace brenvolt::tables {

class AccessFile final {
public:
  AccessFile();
  ~AccessFile();
  AccessFile(const AccessFile&) = delete;
  AccessFile& operator=(const AccessFile&) = delete;

  /// Why the library cannot be used; empty when it can.
  [[nodiscard]] static const std::wstring& fault();

  /// False when the library does not read the file, or it has no catalogue.
  [[nodiscard]] bool open(const std::string& path);
  /// The user's tables, UTF-8, in the order of the catalogue.
  [[nodiscard]] std::vector<std::string> tableNames() const;
  /// False when the table cannot be read or the receiver stopped.
  bool read(const std::string& table, TableReceiver& receiver);

private:
  struct Native;
  std::unique_ptr<Native> native_;
};

} // namespace brenvolt::tables
