// The table itself and its registration.
#include "plugin/function_table.h"

#include "host/host_api_lisp.h"
#include "host/lisp_calls.h"
#include "plugin/dispatcher.h"
#include "plugin/handlers/build_circuit.h"
#include "plugin/handlers/code_standard_description.h"
#include "plugin/handlers/edit_wire_size.h"
#include "plugin/handlers/rating_select.h"
#include "plugin/handlers/select_circuit.h"
#include "plugin/handlers/wire_select.h"

#include <algorithm>

namespace brenvolt {

namespace {

constexpr LispFunction functions[] = {
    {L"zan_bv_select_circuit", 100, AnswerForm::list, ResourceUse::pushed, selectCircuit},
    {L"zan_bv_build_circuit", 101, AnswerForm::truth, ResourceUse::pushed, buildCircuit},
    {L"zan_bv_motor_select", 102, AnswerForm::list, ResourceUse::pushed, motorSelect},
    {L"zan_bv_power_feed_select", 106, AnswerForm::list, ResourceUse::pushed, powerFeedSelect},
    {L"zan_bv_wire_select", 103, AnswerForm::list, ResourceUse::pushed, wireSelect},
    {L"zan_bv_code_std_desc", 104, AnswerForm::list, ResourceUse::none, codeStandardDescription},
    {L"zan_bv_edit_wiresize", 107, AnswerForm::list, ResourceUse::pushed, editWireSize},
    {L"zan_bv_pf_wire_select", 105, AnswerForm::list, ResourceUse::pushed, powerFeedWireSelect},
    // Beside the eight that the parent product knows.
    {L"zan_bv_build_and_save", 108, AnswerForm::list, ResourceUse::pushed, buildAndSave},
    {L"zan_bv_wire_fields", 109, AnswerForm::list, ResourceUse::none, wireFields},
};

constexpr const wchar_t* exposedFunctions[] = {L"qn_mdb_proj_dbfnam", L"qn_bv_save_codehdl"};

} // namespace

std::span<const LispFunction> functionTable() {
  return functions;
}

const LispFunction* findFunction(int code) {
  const auto* found = std::ranges::find(functions, code, &LispFunction::code);
  return found == std::end(functions) ? nullptr : found;
}

void registerFunctions() {
  for (const LispFunction& function : functions) {
    if (kvedDefun(function.name, function.code) == kvstatus::normal)
      kvedRegFunc(dispatchFunction, function.code);
  }
  // If the parent product lacks these functions, only their callers get no result.
  for (const wchar_t* name : exposedFunctions)
    exposeFunction(name);
}

} // namespace brenvolt
