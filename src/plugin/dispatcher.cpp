// From the host's function code to a handler and back.
#include "plugin/dispatcher.h"

#include "host/host_api_lisp.h"
#include "host/resources.h"
#include "host/result_list.h"
#include "plugin/function_table.h"

#include <optional>

namespace brenvolt {

namespace {

ResultList runHandler(const LispFunction& function, const ResultList& arguments) {
  std::optional<ResourceScope> resources;
  if (function.resources == ResourceUse::pushed) resources.emplace();
  try {
    return function.handler(arguments);
  } catch (...) {
    return ResultList();
  }
}

} // namespace

int dispatchFunction() {
  const LispFunction* function = findFunction(kvedGetFunCode());
  if (function == nullptr) return 0;
  serveCall(*function);
  return 1;
}

void serveCall(const LispFunction& function) {
  const ResultList arguments(kvedGetArgs());
  const ResultList answer = runHandler(function, arguments);
  if (answer.isEmpty()) {
    kvedRetNil();
  } else if (function.answer == AnswerForm::truth) {
    kvedRetT();
  } else {
    kvedRetList(answer.get());
  }
}

} // namespace brenvolt
