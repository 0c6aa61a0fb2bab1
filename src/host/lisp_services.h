// Every exchange with the host's LISP uses these operations: symbols read and written, functions of the parent product
// called, workbook forms run. They return false or nothing when LISP has no usable result, never show a message, and
// hold no state across a call, because a called function may call the plug-in again.
#pragma once

#include "host/build_data.h"
#include "host/keyed_entries.h"
#include "host/lisp_calls.h"
#include "host/lisp_symbols.h"
#include "host/result_list.h"
#include "host/script_form.h"
