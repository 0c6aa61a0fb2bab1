// Findings that a site accepts, each with its reason: in the file check.allow, or in a column CHECK of a sheet.
#pragma once

#include "circuits/check/site_model.h"

#include <set>
#include <string>
#include <vector>

namespace circuits {

inline constexpr std::string_view allowanceFile = "check.allow";

struct Allowance {
  FindingPlace at; ///< where it is written
  std::wstring text;
  std::wstring rule;
  std::wstring place; ///< "*" stands for any text; empty for one of a row
  std::wstring reason;
  bool isUsed = false;
};

class Allowances final {
public:
  /// Reads those of the site. One that cannot be read is a finding.
  /// @param languages  in which a place may be written, besides English
  Allowances(const SiteModel& site, std::vector<FindingWords> languages, Findings& findings);

  /// Takes the findings that are allowed out of the list, and returns them.
  [[nodiscard]] std::vector<Finding> takeAllowed(std::vector<Finding>& findings);
  /// Allowances that matched nothing, of the kinds that were looked at.
  void addUnused(const std::set<CheckKind>& kinds, Findings& findings) const;

private:
  void readFile(const SiteModel& site, Findings& findings);
  void readColumns(const SiteModel& site, Findings& findings);
  void add(Allowance allowance, Findings& findings);

  std::vector<FindingWords> languages_;
  std::vector<Allowance> all_;
};

} // namespace circuits
