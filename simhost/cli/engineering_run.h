// What the subcommands on engineering tables share: a host without the plug-in, whose LISP knows the code standard, and
// a connection to the site's database.
#pragma once

#include "platform/tables.h"
#include "simhost/cli/command_table.h"
#include "simhost/host/session.h"
#include "simhost/site/open_database.h"
#include "simhost/ui/scripted_windows.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace simhost {

/// The code standard that the tool assumes.
inline constexpr const char* assumedStandard = "NEC";

struct SiteOptions {
  std::string site;
  std::string standardCode = assumedStandard;

  [[nodiscard]] OptionRow siteRow();
  [[nodiscard]] OptionRow standardRow();
};

/// The database of a site, open for reading.
class SiteTables final {
public:
  /// Throws BadInput for a site that cannot be used.
  explicit SiteTables(const std::string& site);

  [[nodiscard]] brenvolt::ZanOleDbConnection& connection() { return connection_; }
  [[nodiscard]] const std::filesystem::path& database() const { return database_; }

private:
  std::filesystem::path database_;
  brenvolt::ZanOleDbConnection connection_;
};

/// A site's tables with a session around them, whose LISP knows the code standard.
class EngineeringRun final {
public:
  /// Throws BadInput for a site or a code standard that cannot be used.
  EngineeringRun(const std::string& site, const std::string& standardCode);

  [[nodiscard]] brenvolt::ZanOleDbConnection& connection() { return tables_.connection(); }
  [[nodiscard]] const std::filesystem::path& database() const { return tables_.database(); }
  [[nodiscard]] const std::wstring& standardCode() const { return standardCode_; }

private:
  ScriptedWindows windows_;
  std::unique_ptr<Session> session_;
  SiteTables tables_;
  std::wstring standardCode_;
};

} // namespace simhost
