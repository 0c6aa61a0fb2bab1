// From native code into LISP: symbols, and calls of what is exposed to native code.
#include "host/host_api_lisp.h"
#include "simhost/host/chain_values.h"
#include "simhost/host/session.h"
#include "text/compare.h"
#include "text/encoding.h"

#include <exception>
#include <utility>

using simhost::Document;
using simhost::Session;
using simhost::lisp::Value;

namespace {

/// The document whose LISP native code talks to, null when there is none that can take a call now.
Document* readyDocument() {
  Session* session = Session::current();
  if (session == nullptr || !session->documents().isLispReady()) return nullptr;
  return session->documents().current();
}

bool isConstant(std::wstring_view name) {
  return brenvolt::equalsOrdinalNoCase(name, L"nil") || brenvolt::equalsOrdinalNoCase(name, L"t");
}

int tellFailure(Session& session, const std::wstring& message) {
  session.commandLine().printLine(L"; error: " + message);
  session.setCallError(message);
  return kvstatus::failed;
}

/// The command line says nothing of it: some calls are only tried.
int reject(Session& session, std::wstring_view function, std::wstring_view reason) {
  session.setCallError(brenvolt::toUpper(function) + L": " + std::wstring(reason));
  return kvstatus::rejected;
}

} // namespace

int kvedGetSym(const wchar_t* name, KvResultBuffer** value) {
  if (value == nullptr || name == nullptr) return kvstatus::rejected;
  *value = nullptr;
  Document* document = readyDocument();
  if (document == nullptr) return kvstatus::lispNotReady;
  const simhost::lisp::Symbol* symbol = document->interpreter().symbols().find(name);
  if (symbol == nullptr || symbol->value.isNil()) return kvstatus::normal;
  simhost::ChainOfValue result = simhost::chainOfValue(symbol->value);
  if (!result.fault.empty()) return kvstatus::rejected;
  *value = result.chain.release();
  return kvstatus::normal;
}

int kvedPutSym(const wchar_t* name, const KvResultBuffer* value) {
  if (name == nullptr || *name == L'\0' || isConstant(name)) return kvstatus::rejected;
  Document* document = readyDocument();
  if (document == nullptr) return kvstatus::lispNotReady;
  simhost::ValueOfChain result = simhost::valueOfChain(value);
  if (!result.fault.empty()) return kvstatus::rejected;
  document->interpreter().setValue(name, std::move(result.value));
  return kvstatus::normal;
}

int kvedInvoke(const KvResultBuffer* call, KvResultBuffer** result) {
  if (result == nullptr) return kvstatus::rejected;
  *result = nullptr;
  Document* document = readyDocument();
  if (document == nullptr) return kvstatus::lispNotReady;
  Session& session = *Session::current();
  session.setCallError({});
  if (call == nullptr || call->type != kvtype::string || call->value.string == nullptr) {
    session.setCallError(L"the call does not begin with the name of a function");
    return kvstatus::rejected;
  }
  if (session.isCancelled()) return kvstatus::cancel;

  const simhost::lisp::Symbol* name = document->interpreter().symbols().find(call->value.string);
  if (name == nullptr || !name->function.isFunction())
    return reject(session, call->value.string, L"there is no such function");
  if (!document->isReachable(*name))
    return reject(session, call->value.string, L"the function is not exposed to native code");
  const simhost::ValuesOfChain arguments = simhost::valuesOfChain(call->next);
  if (!arguments.fault.empty()) return reject(session, call->value.string, arguments.fault);
  // Held here, since the call may redefine the function that is running.
  const Value function = name->function;
  const simhost::CircuitRecorder::Form form(session.circuits(), name->name, arguments.values);
  try {
    const Value answer = document->interpreter().call(function, arguments.values);
    if (answer.isNil()) return kvstatus::normal;
    simhost::ChainOfValue chain = simhost::chainOfValue(answer);
    if (!chain.fault.empty())
      return tellFailure(session, std::wstring(call->value.string) + L": " + chain.fault);
    *result = chain.chain.release();
    return kvstatus::normal;
  } catch (const simhost::lisp::LispError& error) {
    return tellFailure(session, error.text());
  } catch (const simhost::lisp::Cancelled&) {
    // It cannot pass through native code; the host raises it again as soon as that has returned.
    session.cancelRun();
    return kvstatus::cancel;
  } catch (const std::exception& error) {
    return tellFailure(session, brenvolt::fromUtf8(error.what()));
  }
}
