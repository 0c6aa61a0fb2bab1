// Statements on databases for a site's LISP: how a parent product keeps its project's records.
#pragma once

#include "simhost/lisp/evaluator.h"

namespace simhost {

/// `(sql-execute FILE STATEMENT)` runs a statement that changes a database and returns T. Failures are LISP errors.
void defineSqlFunctions(lisp::Interpreter& interpreter);

} // namespace simhost
