// What the plug-in and the tool need of a site's LISP: functions, variables, and results of the expected kind.
#pragma once

#include "circuits/check/check_session.h"

namespace circuits {

/// Does nothing for LISP that did not load whole: what it lacks then says nothing.
void checkLisp(const SiteModel& site, CheckSession& session, Findings& findings);

} // namespace circuits
