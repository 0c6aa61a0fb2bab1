// Chains and LISP values, there and back, through the functions that a module uses.
#include "host/host_api_lisp.h"
#include "host_fixture.h"
#include "simhost/host/chain_values.h"
#include "text/numbers.h"

#include <doctest/doctest.h>

#include <string>

using simhost::Chain;
using simhost::HostFixture;

namespace {

/// The nodes as a line: type codes with their values.
std::wstring show(const KvResultBuffer* chain) {
  std::wstring line;
  for (; chain != nullptr; chain = chain->next) {
    if (!line.empty()) line += L' ';
    line += brenvolt::formatInt(chain->type);
    switch (simhost::storageOf(chain->type)) {
    case simhost::ChainStorage::real:
      line += L'=' + brenvolt::formatShortest(chain->value.real);
      break;
    case simhost::ChainStorage::point:
      line += L'=' + brenvolt::formatShortest(chain->value.point[0]) + L',' +
              brenvolt::formatShortest(chain->value.point[1]) + L',' +
              brenvolt::formatShortest(chain->value.point[2]);
      break;
    case simhost::ChainStorage::shortInteger:
      line += L'=' + brenvolt::formatInt(chain->value.shortInteger);
      break;
    case simhost::ChainStorage::longInteger:
      line += L'=' + brenvolt::formatInt(chain->value.longInteger);
      break;
    case simhost::ChainStorage::string:
      line += L'=' + std::wstring(chain->value.string);
      break;
    case simhost::ChainStorage::entityName:
    case simhost::ChainStorage::nothing:
    case simhost::ChainStorage::unknown:
      break;
    }
  }
  return line;
}

/// A symbol's chain after a LISP form has set it.
std::wstring chainOf(HostFixture& host, const std::wstring& form) {
  host.eval(L"(setq probe " + form + L")");
  KvResultBuffer* chain = nullptr;
  if (kvedGetSym(L"Probe", &chain) != kvstatus::normal) return L"refused";
  const Chain owner(chain);
  return show(chain);
}

} // namespace

TEST_CASE("a LISP value reaches native code as the chain that the host's face describes") {
  struct Row {
    const wchar_t* form;
    const wchar_t* chain;
  };
  constexpr Row rows[] = {
      {L"nil", L""},
      {L"T", L"5021"},
      {L"32767", L"5003=32767"},
      {L"32768", L"5010=32768"},
      {L"-32769", L"5010=-32769"},
      {L"1.5", L"5001=1.5"},
      {L"\"a\"", L"5005=a"},
      {L"'(1 \"a\" nil T)", L"5016 5003=1 5005=a 5019 5021 5017"},
      {L"'(1.0 2.0)", L"5002=1,2,0"},
      {L"'(1.0 2.0 3.0)", L"5009=1,2,3"},
      {L"'(\"n\" (1.0 2.0 3.0) 4.0)", L"5016 5005=n 5009=1,2,3 5001=4 5017"},
      {L"'(1.0)", L"5016 5001=1 5017"},
      {L"'(1.0 2.0 3.0 4.0)", L"5016 5001=1 5001=2 5001=3 5001=4 5017"},
      {L"'(1 2.0)", L"5016 5003=1 5001=2 5017"},
      {L"'((1) ((2)))", L"5016 5016 5003=1 5017 5016 5016 5003=2 5017 5017 5017"},
      {L"'((2 . \"w\") (90 . 7) (290 . 1))", L"5016 2=w 90=7 290=1 5017"},
      {L"'((290 . 70000))", L"refused"},
      {L"'((7 . 8))", L"refused"},
      {L"'(1 . 2)", L"refused"},
      {L"'(1 2 . 3)", L"refused"},
      {L"'(a)", L"refused"},
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

TEST_CASE("building keeps copies, links a spliced chain in, and gives nothing for an unknown type") {
  wchar_t text[] = L"abc";
  KvResultBuffer* inner = kvutBuildList(kvtype::shortInteger, 5, 0);
  const Chain list(kvutBuildList(
      kvtype::listBegin, kvtype::string, text, kvtype::splice, inner, kvtype::entityName, KvEntityName{9},
      kvtype::listEnd, 0));
  text[0] = L'x';
  CHECK(show(list.get()) == L"5016 5005=abc 5003=5 5006 5017");
  CHECK(list->next->next == inner);
  CHECK(inner->next->value.entityName == KvEntityName{9});
  CHECK(kvutBuildList(kvtype::shortInteger, 1, 4711, 0) == nullptr);
  CHECK(kvutNewRb(4711) == nullptr);
  CHECK(kvutNewRb(kvtype::splice) == nullptr);
  CHECK(kvutNewRb(65536 + kvtype::real) == nullptr);
  CHECK(kvutRelRb(nullptr) == kvstatus::normal);
  CHECK(kvutNewString(nullptr) == nullptr);
  wchar_t* copy = kvutNewString(L"a");
  kvutDelBuffer(copy);
  CHECK(copy == nullptr);
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
