// The whole check of a site: everything is read and looked at, whatever else is wrong, and nothing is written.
#pragma once

#include "circuits/check/finding.h"

#include <filesystem>
#include <set>
#include <vector>

namespace circuits {

struct CheckOptions {
  std::filesystem::path site;     ///< folder
  std::filesystem::path workbook; ///< full path
  std::filesystem::path module;   ///< the plug-in, else the one beside the program
  std::set<CheckKind> kinds;      ///< those to look at; none is all
  CheckDepth depth = CheckDepth::whole;
  /// Languages in which the site may name the places of findings that it accepts, besides English.
  std::vector<FindingWords> languages{};
};

struct CheckReport {
  std::vector<Finding> findings; ///< in the order of file and place
  std::vector<Finding> allowed;  ///< accepted by the site
};

/// Throws BadInput when the plug-in's module cannot be loaded; everything else is a finding.
[[nodiscard]] CheckReport checkSite(const CheckOptions& options);

} // namespace circuits
