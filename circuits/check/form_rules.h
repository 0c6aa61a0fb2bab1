// What the forms of a worksheet can have wrong: how they are cut from a cell, what their words become, and whether the
// site's LISP has the function that they call.
#pragma once

#include "circuits/check/site_model.h"

#include <map>
#include <string>
#include <string_view>
#include <unordered_set>

namespace circuits {

class CheckSession;

class FormRules final {
public:
  FormRules(const SiteModel& site, CheckSession& session, Findings& findings)
      : site_(site), session_(session), findings_(findings) {}

  /// Looks at the forms of a sheet that a build would run.
  void check(const SheetModel& sheet);

private:
  const SiteModel& site_;
  CheckSession& session_;
  Findings& findings_;
  /// Circuits have most of their forms in common: one without a finding is looked at once for the variables it gets. The
  /// texts are those of the site.
  std::map<const std::wstring*, std::unordered_set<std::wstring_view>> cleanByVariables_;
};

} // namespace circuits
