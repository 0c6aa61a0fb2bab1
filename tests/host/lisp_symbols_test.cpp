// Symbols as values, and handles as texts.
#include "host/lisp_symbols.h"

#include "tests/support/chain_text.h"
#include "tests/support/lisp_session.h"
#include "text/encoding.h"

#include <doctest/doctest.h>

using namespace brenvolt;
using test::chainOf;
using test::LispSession;
using test::textOf;

TEST_CASE("the code standard is a text or nothing, a switch is the short integer 1") {
  struct Row {
    const char* value;
    const char* standard; ///< null: nothing
    bool isOn;
  };
  const Row rows[] = {{"\"NEC\"", "NEC", false}, {"\"\"", "", false},     {"nil", nullptr, false},
                      {"1", nullptr, true},      {"1.0", nullptr, false}, {"2", nullptr, false},
                      {"'(1)", nullptr, false},  {"T", nullptr, false}};
  LispSession lisp;
  for (const Row& row : rows) {
    CAPTURE(row.value);
    lisp.eval("(setq GBL_qn_electcodestd " + std::string(row.value) + ")");
    const auto standard = getCodeStandard();
    CHECK_EQ(standard.has_value(), row.standard != nullptr);
    if (standard && row.standard != nullptr) CHECK_EQ(toUtf8(*standard), row.standard);
    CHECK_EQ(isSwitchedOn(lispsymbol::codeStandard), row.isOn);
  }
}

TEST_CASE("code combos go there and back, an empty list does not go") {
  LispSession lisp;
  CHECK(getCodeCombos().isEmpty());
  CHECK(putCodeCombos(chainOf("( ( \"M1\" ) )")));
  CHECK_EQ(textOf(getCodeCombos()), "( ( \"M1\" ) )");
  CHECK_FALSE(putCodeCombos(ResultList()));
  CHECK_EQ(textOf(getCodeCombos()), "( ( \"M1\" ) )");
}

TEST_CASE("a handle is its hexadecimal text") {
  CHECK(handleToText(KvDbHandle(0x1aF)) == L"1AF");
  CHECK(handleToText(KvDbHandle(0xFFFFFFFFFFFFFFFF)) == L"FFFFFFFFFFFFFFFF");
  CHECK_FALSE(handleToText(KvDbHandle()));
  struct Row {
    const wchar_t* text;
    std::uint64_t value;
  };
  const Row rows[] = {
      {L"1af", 0x1AF},
      {L" 1AF ", 0x1AF},
      {L"", 0},
      {L"xyz", 0},
      {L"1AFg", 0x1AF},
      {L"-1", 0},
      {L"FFFFFFFFFFFFFFFF", 0xFFFFFFFFFFFFFFFF},
      {L"10000000000000000", 0}};
  for (const Row& row : rows) {
    CAPTURE(toUtf8(row.text));
    CHECK_EQ(handleFromText(row.text).value(), row.value);
  }
}
