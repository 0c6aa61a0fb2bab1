// What the forms of a worksheet can have wrong: how they are cut from a cell, what their words become, and whether the
// site's LISP has the function that they call.
#pragma once

#include "circuits/check/site_model.h"

namespace circuits {

class CheckSession;

/// Without a session, which is a site whose LISP was not loaded, functions are not looked at.
void checkForms(const SiteModel& site, CheckSession* session, Findings& findings);

} // namespace circuits
