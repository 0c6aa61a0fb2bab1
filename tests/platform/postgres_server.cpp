#include "postgres_server.h"

#include <unistd.h>

#include <algorithm>

namespace brenvolt::testing {

namespace fs = std::filesystem;

namespace {

/// The newest installed version's programs; empty when there are none.
std::string findPrograms() {
  std::string newest;
  std::error_code none;
  for (const auto& version : fs::directory_iterator("/usr/lib/postgresql", none)) {
    const fs::path programs = version.path() / "bin";
    if (fs::exists(programs / "initdb")) newest = std::max(newest, programs.string());
  }
  return newest;
}

} // namespace

PostgresServer::PostgresServer() : programs_(findPrograms()) {
  if (programs_.empty()) return;
  // The server refuses to run as root; its own user must reach the folder.
  fs::permissions(folder_ / "", fs::perms::all);
  const std::string data = (folder_ / "data").string();
  const bool isMade =
      run("initdb -D " + data + " -A trust -U brenvolt -E UTF8 --locale=C.UTF-8 --no-sync").has_value();
  // The output is written to a file: the server keeps it open, and a pipe would never end.
  isRunning_ = isMade && run("pg_ctl -D " + data + " -w -l " + data + "/log -o \"-F -k " +
                             (folder_ / "").string() + " -h \\\"\\\"\" start >" + data + "/start.log")
                             .has_value();
}

PostgresServer::~PostgresServer() {
  if (isRunning_)
    static_cast<void>(run("pg_ctl -D " + (folder_ / "data").string() + " -m immediate -w stop"));
}

std::wstring PostgresServer::dataSource() const {
  return L"odbc:Driver=PostgreSQL Unicode;Server=" + folder_.name("") +
         L";Port=5432;Database=postgres;Uid=brenvolt;Pwd=none";
}

std::optional<std::string> PostgresServer::run(const std::string& command) const {
  const std::string whole = programs_ + "/" + command;
  if (geteuid() != 0) return outputOf(whole);
  return outputOf("cd / && su postgres -s /bin/sh -c '" + whole + "'");
}

} // namespace brenvolt::testing
