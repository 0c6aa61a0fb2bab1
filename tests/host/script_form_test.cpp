// Script forms: how a word is typed, how a form is cut, and which call comes out.
#include "host/script_form.h"

#include "tests/support/chain_text.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

#include <string>
#include <vector>

using namespace brenvolt;
using test::chainOf;
using test::textOf;

namespace {

std::vector<ZanScriptVariable> variables() {
  std::vector<ZanScriptVariable> all;
  all.push_back(ZanScriptVariable::ofPoint(L"#xyz", {1, 2, 3}));
  all.push_back(ZanScriptVariable::ofNil(L"#misc1"));
  all.push_back(ZanScriptVariable::ofReal(L"#scl", 2.5));
  all.push_back(ZanScriptVariable::ofList(L"#data", ResultList()));
  all.push_back(ZanScriptVariable::ofList(L"#data", chainOf("( ( \"M1\" nil ) )")));
  all.push_back(ZanScriptVariable::ofText(L"@mfg", L"A \"B\" (C)"));
  all.push_back({L"@space", kvtype::point3d, KvPoint3d{1, 2, 3}});
  all.push_back({L"@count", kvtype::longInteger, std::int32_t{70000}});
  all.push_back({L"@short", kvtype::shortInteger, std::int32_t{-4}});
  all.push_back({L"@yes", kvtype::t, std::monostate()});
  all.push_back({L"@broken", kvtype::real, std::wstring(L"no real")});
  all.push_back({L"@strange", kvtype::entityName, std::monostate()});
  all.push_back(ZanScriptVariable::ofText(L"12", L"twelve"));
  return all;
}

} // namespace

TEST_CASE("a word has the type that it looks like") {
  struct Row {
    std::int16_t type;
    std::vector<const wchar_t*> words;
  };
  const Row rows[] = {
      {kvtype::nil, {L"nil"}},
      {kvtype::t, {L"T"}},
      {kvtype::real, {L"1.5", L"5.", L"-0.25"}},
      {kvtype::shortInteger, {L"-2", L"99999", L"1.2.3"}},
      {kvtype::longInteger, {L"100000", L"-10000", L"1.2.3.4"}},
      {kvtype::string,
       {L"NIL", L"t", L"foo", L"#xyz", L".5", L"-", L"-a", L"-.5", L"+5", L"12a", L"1e5", L"--1", L"\x0661"}},
  };
  for (const Row& row : rows)
    for (const wchar_t* word : row.words) {
      CAPTURE(toUtf8(word));
      CHECK_EQ(typeOfWord(word), row.type);
    }
}

TEST_CASE("a form is the call that its text shows") {
  struct Row {
    const char* form;
    const char* call;
  };
  const Row rows[] = {
      {"(foo 1.5 -2 100000 \"a b\" nil T #xyz)", "\"foo\" 1.5 -2 100000L \"a b\" nil T <1,2>"},
      {"(foo (list 1 2))", "\"foo\" ( 1 2 )"},
      {"(foo (LIST 1 (a b)) c)", "\"foo\" ( 1 ( \"a\" \"b\" ) ) \"c\""},
      {"foo 1", "\"foo\" 1"},
      {"(foo\t1\r\n2)", "\"foo\" 1 2"},
      {"(foo \"open", "\"foo\" \"open\""},
      {"(foo \"\" \"list\" \"1\")", "\"foo\" \"\" \"list\" \"1\""},
      {"(foo 99999 1.2.3 9999999999)", "\"foo\" -31073 1 2147483647L"},
      {"(foo a\"b c)", "\"foo\" \"a\"b\" \"c\""},
      // Only the very first and the very last character count as the outer parentheses.
      {" (foo) ", "( \"foo\" )"},
      {"(foo (bar 1)", "\"foo\" ( \"bar\" 1"},
      {"()", ""},
      {"(list)", ""},
      {"", ""},
      {"  ", ""},
  };
  for (const Row& row : rows) {
    CAPTURE(row.form);
    CHECK_EQ(textOf(buildCall(fromUtf8(row.form), variables())), row.call);
  }
}

TEST_CASE("a variable replaces every equal token") {
  struct Row {
    const char* form;
    const char* call;
  };
  const Row rows[] = {
      {"(f #XYZ #Scl)", "\"f\" <1,2> 2.5"},
      {"(f #misc1 @yes)", "\"f\" nil T"},
      {"(f \"#scl\")", "\"f\" 2.5"},
      {"(f #scls)", "\"f\" \"#scls\""},
      // The first variable with the name has no list: the search continues with the second.
      {"(f #data 1)", "\"f\" ( ( \"M1\" nil ) ) 1"},
      {"(f (#data) #data)", "\"f\" ( ( ( \"M1\" nil ) ) ) ( ( \"M1\" nil ) )"},
      {"(f @mfg @space)", "\"f\" \"A \"B\" (C)\" <1,2,3>"},
      // A 32-bit variable arrives as 16 bits.
      {"(f @count @short)", "\"f\" 4464 -4"},
      {"(f @broken @strange)", "\"f\" \"@broken\" \"@strange\""},
      {"(f 12)", "\"f\" \"twelve\""},
      {"(#scl)", "2.5"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.form);
    CHECK_EQ(textOf(buildCall(fromUtf8(row.form), variables())), row.call);
  }
}
