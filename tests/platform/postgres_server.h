// A database server of its own for the tests, on a socket in a temporary folder, where one is installed.
#pragma once

#include "table_test_support.h"

#include <optional>
#include <string>

namespace brenvolt::testing {

class PostgresServer final {
public:
  /// Starts the server; takes some seconds.
  PostgresServer();
  ~PostgresServer();
  PostgresServer(const PostgresServer&) = delete;
  PostgresServer& operator=(const PostgresServer&) = delete;

  [[nodiscard]] bool isRunning() const { return isRunning_; }
  /// The data source for a connection.
  [[nodiscard]] std::wstring dataSource() const;

private:
  [[nodiscard]] std::optional<std::string> run(const std::string& command) const;

  TemporaryFolder folder_;
  std::string programs_;
  bool isRunning_ = false;
};

} // namespace brenvolt::testing
