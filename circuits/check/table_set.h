// The engineering tables of a site as texts, whatever keeps them: a folder of CSV files, a database, a server.
#pragma once

#include "circuits/check/finding.h"
#include "circuits/check/table_text.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace circuits {

class CheckSession;
struct SiteModel;

struct SiteTable {
  TableText text;
  std::wstring file;  ///< as findings show it
  std::wstring sheet; ///< the table within it; empty for a file of one table

  [[nodiscard]] FindingPlace place(int row = 0, int column = 0) const;
};

struct TableSet {
  std::vector<SiteTable> tables;
  bool isWhole = true; ///< false when a table could not be read: what is missing then says little

  [[nodiscard]] const SiteTable* find(std::wstring_view name) const;
  /// The table of a family for a code: its own, else the one without a code, else that of the default code.
  [[nodiscard]] const SiteTable* resolve(std::wstring_view family, std::wstring_view code) const;
  [[nodiscard]] const SiteTable* resolve(
      std::wstring_view family, std::wstring_view metal, std::wstring_view standard,
      std::wstring_view code) const;
  [[nodiscard]] std::vector<std::wstring> names() const;
};

/// Reads the tables that the site's LISP names; where it names none, or those of the site, the site's own.
/// What cannot be read is a finding.
[[nodiscard]] TableSet readTables(
    const SiteModel& site, CheckSession& session, CheckDepth depth, Findings& findings);

} // namespace circuits
