// What services on engineering tables need around them: a host whose LISP knows the code standard, and a connection to
// the site's database.
#pragma once

#include "data/table_watch.h"
#include "platform/tables.h"
#include "simhost/host/session.h"
#include "simhost/site/open_database.h"
#include "simhost/ui/scripted_windows.h"

#include <memory>
#include <string>
#include <string_view>

namespace simhost {

/// The code standard that the tool assumes.
inline constexpr const char* assumedStandard = "NEC";

/// The tables of a site, open for reading.
class SiteTables final {
public:
  /// Throws BadInput for a site that cannot be used.
  explicit SiteTables(const std::string& site);
  /// Reports tables of the default code that stood in for those of another one, and statements that failed unless they
  /// have ended the run.
  ~SiteTables();
  SiteTables(const SiteTables&) = delete;
  SiteTables& operator=(const SiteTables&) = delete;

  /// Throws BadInput with the provider's words when a statement has failed.
  void needSuccess();
  [[nodiscard]] brenvolt::ZanOleDbConnection& connection() { return connection_; }
  /// The data source, for messages: a file, or a connection without its password.
  [[nodiscard]] const std::string& database() const { return database_; }

private:
  brenvolt::TableWatch watch_;
  bool isChecked_ = false;
  std::string database_;
  brenvolt::ZanOleDbConnection connection_{&watch_};
};

/// A site's tables with a session around them, whose LISP knows the code standard.
class EngineeringRun final {
public:
  /// A session of its own, without the plug-in. Throws BadInput for a site or a code standard that cannot be used.
  EngineeringRun(const std::string& site, const std::string& standardCode);
  /// The current document of a session that runs already: its LISP has its own code standard again afterwards.
  EngineeringRun(Session& running, const std::string& site, const std::string& standardCode);
  EngineeringRun(const EngineeringRun&) = delete;
  EngineeringRun& operator=(const EngineeringRun&) = delete;
  ~EngineeringRun();

  [[nodiscard]] brenvolt::ZanOleDbConnection& connection() { return tables_.connection(); }
  [[nodiscard]] const std::string& database() const { return tables_.database(); }
  /// As `SiteTables::needSuccess`.
  void needSuccess() { tables_.needSuccess(); }
  [[nodiscard]] const std::wstring& standardCode() const { return standardCode_; }

private:
  void needStandard();

  ScriptedWindows windows_;
  std::unique_ptr<Session> session_; ///< null in one that runs already
  SiteTables tables_;
  std::wstring standardCode_;
  Document* borrowed_ = nullptr; ///< of the running session
  lisp::Value former_{};         ///< its code standard
};

} // namespace simhost
