// Native functions called from LISP, LISP called from native code, and both nested.
#include "host/host_api_lisp.h"
#include "host_fixture.h"
#include "simhost/host/chain.h"

#include <doctest/doctest.h>

#include <stdexcept>
#include <string>

using simhost::Chain;
using simhost::HostFixture;

namespace {

/// The functions of a module that exists for these tests, by code.
int serve() {
  const Chain arguments(kvedGetArgs());
  switch (kvedGetFunCode()) {
  case 1: // returns its arguments
    kvedRetList(arguments.get());
    return 1;
  case 2: { // calls LISP "c:back" with its arguments and returns what comes back
    KvResultBuffer* call = kvutBuildList(kvtype::string, L"c:back", 0);
    call->next = kvedGetArgs();
    KvResultBuffer* result = nullptr;
    const int status = kvedInvoke(call, &result);
    kvutRelRb(call);
    const Chain answer(result);
    if (kvedGetFunCode() != 2) throw std::logic_error("the code of an outer call is lost");
    if (status == kvstatus::normal) kvedRetList(answer.get());
    return 1;
  }
  case 3:
    kvedRetT();
    return 1;
  case 4:
    throw std::runtime_error("module fault");
  case 5:
    kvedRetT();
    kvedRetNil();
    return 1; // the last answer wins
  case 6: {   // a list without its end is refused and leaves nil
    const Chain half(kvutBuildList(kvtype::listBegin, kvtype::shortInteger, 1, 0));
    kvedRetList(half.get());
    return 1;
  }
  default:
    return 0;
  }
}

void registerAll() {
  const wchar_t* names[] = {L"echo", L"through", L"yes", L"throwing", L"nilled", L"half", L"unserved"};
  int code = 0;
  for (const wchar_t* name : names) {
    REQUIRE(kvedDefun(name, ++code) == kvstatus::normal);
    REQUIRE(kvedRegFunc(serve, code) == kvstatus::normal);
  }
}

int invoke(const wchar_t* name, std::wstring* text = nullptr) {
  const Chain call(kvutBuildList(kvtype::string, name, kvtype::string, L"(* 6 7)", 0));
  KvResultBuffer* result = nullptr;
  const int status = kvedInvoke(call.get(), &result);
  const Chain owner(result);
  if (text != nullptr && result != nullptr) *text = std::to_wstring(result->value.shortInteger);
  return status;
}

} // namespace

TEST_CASE("a registered function is a LISP function and hands arguments and answers over unharmed") {
  HostFixture host;
  registerAll();
  struct Row {
    const wchar_t* form;
    const wchar_t* value;
  };
  constexpr Row rows[] = {
      {L"(ECHO)", L"nil"},
      {L"(echo 1)", L"1"},
      {L"(echo 1 \"a\" nil)", L"(1 \"a\" nil)"},
      {L"(echo '(1.0 2.0 3.0))", L"(1.0 2.0 3.0)"},
      {L"(yes)", L"T"},
      {L"(nilled)", L"nil"},
      {L"(half)", L"nil"},
      {L"(mapcar 'echo '(1 2))", L"(1 2)"},
  };
  for (const Row& row : rows)
    CHECK_MESSAGE(host.eval(row.form) == row.value, "row ", &row - rows);
  CHECK(kvedGetFunCode() < 0);
  CHECK(kvedGetArgs() == nullptr);
  CHECK(kvedRetT() == kvstatus::rejected);
}

TEST_CASE("what native code does wrong is a LISP error that names the function") {
  HostFixture host;
  registerAll();
  CHECK(
      host.eval(L"(throwing)").find(L"THROWING: native code let an exception out: module fault") !=
      std::wstring::npos);
  CHECK(host.eval(L"(unserved)").find(L"does not serve code 7") != std::wstring::npos);
  CHECK(
      host.eval(L"(echo 1 'name)").find(L"argument 2: no form for native code: NAME") != std::wstring::npos);
  CHECK(host.eval(L"(echo 5)") == L"5");
  host.session.functions().dropModule(0);
  CHECK(host.eval(L"(echo 5)").find(L"its module is gone") != std::wstring::npos);
}

TEST_CASE("a module cannot take a name from the host") {
  HostFixture host;
  for (const wchar_t* name : {L"car", L"if", L"nil", L"T", L"", L"a b"})
    CHECK(kvedDefun(name, 1) == kvstatus::rejected);
  CHECK(kvedDefun(L"mine", 1) == kvstatus::normal);
  CHECK(kvedDefun(L"mine", 2) == kvstatus::normal);
  CHECK(kvedRegFunc(nullptr, 1) == kvstatus::rejected);
}

TEST_CASE("native code reaches commands, exposed functions and the evaluator, and nothing else") {
  HostFixture host;
  host.eval(L"(defun c:answer (x) 1) (defun plain (x) 2) (defun shown (x) 3) (setq variable 4)");
  std::wstring value;
  CHECK(invoke(L"C:Answer", &value) == kvstatus::normal);
  CHECK(value == L"1");
  CHECK(invoke(L"plain") == kvstatus::rejected);
  CHECK(invoke(L"car") == kvstatus::rejected);
  CHECK(invoke(L"no-such") == kvstatus::rejected);
  CHECK(invoke(L"c:missing") == kvstatus::rejected);
  CHECK(invoke(L"veval-str+", &value) == kvstatus::normal);
  CHECK(value == L"42");
  host.eval(L"(vz-korvo-defun 'shown) (vz-korvo-defun 'later)");
  CHECK(invoke(L"shown", &value) == kvstatus::normal);
  CHECK(value == L"3");
  CHECK(invoke(L"later") == kvstatus::rejected);
  host.eval(L"(defun later (x) 5)");
  CHECK(invoke(L"later", &value) == kvstatus::normal);
  CHECK(value == L"5");
  host.session.documents().allowLisp(false);
  CHECK(invoke(L"shown") == kvstatus::lispNotReady);
}

TEST_CASE("a LISP error in a call is told on the command line and comes back as a failure") {
  HostFixture host;
  host.eval(L"(defun c:wrong (x) (car x)) (defun c:name (x) 'symbol) (defun c:deep (x) (c:deep x))");
  for (const wchar_t* name : {L"c:wrong", L"c:name", L"c:deep"}) {
    host.printed.clear();
    CHECK(invoke(name) == kvstatus::failed);
    CHECK(host.printed.starts_with(L"; error: "));
  }
}

TEST_CASE("calls nest through LISP, and nesting without end is an error") {
  HostFixture host;
  registerAll();
  host.eval(L"(defun c:back (n) (if (> n 0) (cons n (through (- n 1))) (echo nil)))");
  CHECK(host.eval(L"(through 3)") == L"(3 2 1)");
  host.eval(L"(defun c:back (n) (through n))");
  CHECK(host.eval(L"(through 1)") == L"nil");
  CHECK(host.printed.find(L"call each other without end") != std::wstring::npos);
}

TEST_CASE("a question that nobody answers ends the LISP run, also through native code") {
  HostFixture host;
  registerAll();
  host.session.documents().current()->interpreter().define(L"ask", 0, 0, [](simhost::lisp::Arguments&) {
    KvEntityName entity{};
    KvPoint3d point;
    CHECK(kvedEntSel(L"Select: ", entity, point) == kvstatus::cancel);
    simhost::Session::current()->endIfCancelled();
    return simhost::lisp::Value();
  });
  host.eval(L"(defun c:back (n) (ask))");
  CHECK(host.eval(L"(progn (through 1) (setq reached T))") == L"cancelled");
  CHECK(host.eval(L"reached") == L"nil");
  CHECK(host.windows.failure().find(L"\"pick\" has no answer") != std::wstring::npos);
}
