// From LISP into native code.
#include "simhost/host/function_registry.h"

#include "host/host_api_lisp.h"
#include "simhost/host/chain_values.h"
#include "simhost/host/session.h"
#include "text/compare.h"
#include "text/encoding.h"
#include "text/numbers.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <string>

namespace simhost {

using lisp::Value;

namespace {

bool isSymbolName(std::wstring_view name) {
  return !name.empty() && name.find_first_of(L" \t\r\n()'\";") == std::wstring_view::npos &&
         !brenvolt::equalsOrdinalNoCase(name, L"nil") && !brenvolt::equalsOrdinalNoCase(name, L"t");
}

} // namespace

bool FunctionRegistry::define(std::wstring_view name, int code) {
  Document* document = session_.documents().current();
  if (document == nullptr || !isSymbolName(name)) return false;
  const std::wstring upperName = brenvolt::toUpper(name);
  lisp::Interpreter& interpreter = document->interpreter();
  const std::optional<Value> former = interpreter.findFunction(name);
  const bool isHosts = former && former->kind() == lisp::Kind::builtin && !names_.contains(upperName);
  if (isHosts || interpreter.symbols().intern(name).special != nullptr) return false;
  names_.insert(upperName);
  const int module = module_;
  interpreter.define(name, 0, lisp::anyNumber, [this, module, code](lisp::Arguments& arguments) {
    return call(module, code, arguments);
  });
  return true;
}

bool FunctionRegistry::bind(NativeFunction function, int code) {
  if (function == nullptr) return false;
  functions_[{module_, code}] = function;
  return true;
}

void FunctionRegistry::dropModule(int module) {
  std::erase_if(functions_, [module](const auto& row) { return row.first.first == module; });
}

Chain FunctionRegistry::arguments() const {
  ChainBuilder chain;
  if (frames_.empty()) return nullptr;
  // They were found to have a form as a chain when the call began.
  for (const Value& argument : frames_.back().arguments)
    static_cast<void>(appendValue(chain, argument));
  return chain.take();
}

bool FunctionRegistry::answer(Value value) {
  if (frames_.empty()) return false;
  frames_.back().answer = std::move(value);
  return true;
}

Value FunctionRegistry::call(int module, int code, lisp::Arguments& arguments) {
  session_.endIfCancelled();
  const auto function = functions_.find({module, code});
  if (function == functions_.end()) arguments.fail(L"its module is gone");
  if (frames_.size() >= nestingLimit)
    arguments.fail(L"native functions and LISP call each other without end");
  for (std::size_t position = 0; position < arguments.size(); ++position) {
    ChainBuilder trial;
    const std::wstring fault = appendValue(trial, arguments[position]);
    if (!fault.empty())
      arguments.fail(L"argument " + brenvolt::formatInt(static_cast<int>(position) + 1) + L": " + fault);
  }

  frames_.push_back({code, arguments.values(), Value()});
  struct FramePop {
    std::vector<Frame>& frames;
    ~FramePop() { frames.pop_back(); }
  } pop{frames_};
  std::optional<CircuitRecorder::Build> build;
  if (brenvolt::equalsOrdinalNoCase(arguments.functionName(), CircuitRecorder::buildFunction))
    build.emplace(session_.circuits(), arguments.values());
  const ModuleScope scope(*this, module);
  int isKnown = 0;
  bool hasThrown = false;
  std::string what = "an exception of unknown type";
  try {
    isKnown = function->second();
  } catch (const std::exception& error) {
    hasThrown = true;
    what = error.what();
  } catch (...) {
    hasThrown = true;
  }
  session_.endIfCancelled();
  if (hasThrown) arguments.fail(L"native code let an exception out: " + brenvolt::fromUtf8(what));
  if (isKnown == 0) arguments.fail(L"its module does not serve code " + brenvolt::formatInt(code));
  if (build && !frames_.back().answer.isNil()) build->succeed();
  return frames_.back().answer;
}

} // namespace simhost

using simhost::Session;

int kvedDefun(const wchar_t* name, int code) {
  Session* session = Session::current();
  if (session == nullptr || name == nullptr) return kvstatus::rejected;
  return session->functions().define(name, code) ? kvstatus::normal : kvstatus::rejected;
}

int kvedRegFunc(int (*function)(), int code) {
  Session* session = Session::current();
  if (session == nullptr) return kvstatus::rejected;
  return session->functions().bind(function, code) ? kvstatus::normal : kvstatus::rejected;
}

int kvedGetFunCode() {
  Session* session = Session::current();
  return session == nullptr ? -1 : session->functions().code();
}

KvResultBuffer* kvedGetArgs() {
  Session* session = Session::current();
  return session == nullptr ? nullptr : session->functions().arguments().release();
}

namespace {

int answerWith(simhost::lisp::Value value) {
  Session* session = Session::current();
  if (session == nullptr) return kvstatus::rejected;
  return session->functions().answer(std::move(value)) ? kvstatus::normal : kvstatus::rejected;
}

} // namespace

int kvedRetList(const KvResultBuffer* chain) {
  simhost::ValueOfChain result = simhost::valueOfChain(chain);
  if (!result.fault.empty()) return kvstatus::rejected;
  return answerWith(std::move(result.value));
}

int kvedRetT() {
  return answerWith(simhost::lisp::Value::truth(true));
}

int kvedRetNil() {
  return answerWith(simhost::lisp::Value());
}
