// The forms whose arguments are not simply evaluated: definitions, bindings, conditions and loops.
#pragma once

#include "simhost/lisp/symbol.h"

namespace simhost::lisp {

void defineSpecialForms(SymbolTable& symbols);

} // namespace simhost::lisp
