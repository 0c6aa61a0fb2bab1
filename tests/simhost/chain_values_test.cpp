// Chains and LISP values, there and back, through the functions that a module uses.
#include "host/host_api_lisp.h"
#include "host_fixture.h"
#include "simhost/host/chain_values.h"
#include "tests/support/chain_text.h"

#include <doctest/doctest.h>

#include <string>

using simhost::Chain;
using simhost::HostFixture;

namespace {

/// A symbol's chain after a LISP form has set it.
std::string chainOf(HostFixture& host, const std::wstring& form) {
  host.eval(L"(setq probe " + form + L")");
  KvResultBuffer* chain = nullptr;
  if (kvedGetSym(L"Probe", &chain) != kvstatus::normal) return "refused";
  return brenvolt::test::textOf(brenvolt::ResultList(chain));
}

} // namespace

TEST_CASE("a LISP value reaches native code as the chain that the host's face describes") {
  struct Row {
    const wchar_t* form;
    const char* chain;
  };
  constexpr Row rows[] = {
      {L"nil", ""},
      {L"T", "T"},
      {L"32767", "32767"},
      {L"32768", "32768L"},
      {L"-32769", "-32769L"},
      {L"1.5", "1.5"},
      {L"\"a\"", "\"a\""},
      {L"'(1 \"a\" nil T)", "( 1 \"a\" nil T )"},
      {L"'(1.0 2.0)", "<1,2>"},
      {L"'(1.0 2.0 3.0)", "<1,2,3>"},
      {L"'(\"n\" (1.0 2.0 3.0) 4.0)", "( \"n\" <1,2,3> 4.0 )"},
      {L"'(1.0)", "( 1.0 )"},
      {L"'(1.0 2.0 3.0 4.0)", "( 1.0 2.0 3.0 4.0 )"},
      {L"'(1 2.0)", "( 1 2.0 )"},
      {L"'((1) ((2)))", "( ( 1 ) ( ( 2 ) ) )"},
      {L"'((2 . \"w\") (90 . 7) (290 . 1))", "( 2:\"w\" 90:7 290:1 )"},
      {L"'((290 . 70000))", "refused"},
      {L"'((7 . 8))", "refused"},
      {L"'(1 . 2)", "refused"},
      {L"'(1 2 . 3)", "refused"},
      {L"'(a)", "refused"},
  };
  HostFixture host;
  for (const Row& row : rows)
    CHECK_MESSAGE(chainOf(host, row.form) == row.chain, "row ", &row - rows);
}

TEST_CASE("a chain becomes the LISP value that it describes, a malformed one nothing") {
  HostFixture host;
  const double point[3] = {1.0, 2.0, 3.0};
  const auto put = [&host](KvResultBuffer* chain) -> std::wstring {
    const Chain owner(chain);
    host.eval(L"(setq probe 'former)");
    if (kvedPutSym(L"probe", chain) != kvstatus::normal) return L"refused " + host.eval(L"probe");
    return host.eval(L"probe");
  };
  CHECK(put(nullptr) == L"nil");
  CHECK(put(kvutBuildList(kvtype::listBegin, kvtype::listEnd, 0)) == L"nil");
  CHECK(put(kvutBuildList(kvtype::point2d, point, 0)) == L"(1.0 2.0)");
  CHECK(
      put(kvutBuildList(
          kvtype::listBegin, kvtype::string, L"n", kvtype::point3d, point, kvtype::nil, kvtype::t,
          kvtype::listBegin, kvtype::longInteger, 7, kvtype::listEnd, kvtype::listEnd, 0)) ==
      L"(\"n\" (1.0 2.0 3.0) nil T (7))");
  CHECK(put(kvutBuildList(kvtype::shortInteger, 1, kvtype::real, 2.0, 0)) == L"(1 2.0)");
  CHECK(put(kvutBuildList(kvtype::listBegin, kvtype::shortInteger, 1, 0)) == L"refused FORMER");
  CHECK(put(kvutBuildList(kvtype::listEnd, 0)) == L"refused FORMER");
  CHECK(kvedPutSym(L"nil", nullptr) == kvstatus::rejected);
  CHECK(kvedPutSym(L"T", nullptr) == kvstatus::rejected);
}

TEST_CASE("lists nested a hundred thousand deep are converted without recursion") {
  HostFixture host;
  host.eval(L"(setq deep nil) (dotimes (i 100000) (setq deep (cons deep nil)))");
  KvResultBuffer* chain = nullptr;
  REQUIRE(kvedGetSym(L"deep", &chain) == kvstatus::normal);
  const Chain owner(chain);
  CHECK(kvedPutSym(L"back", chain) == kvstatus::normal);
  CHECK(host.eval(L"(equal deep back)") == L"T");
}
