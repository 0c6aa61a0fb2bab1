// Cutting of texts: fields of table cells and the forms of worksheet cells.
#include "text/split.h"

#include <doctest/doctest.h>

using namespace brenvolt;

using Fields = std::vector<std::wstring>;

TEST_CASE("empty fields are kept, passed over, or end the list") {
  struct Row {
    const wchar_t* text;
    Fields keeping;
    Fields skipping;
    Fields untilEmpty;
  };
  const Row rows[] = {
      {L"", {L""}, {}, {}},
      {L"a", {L"a"}, {L"a"}, {L"a"}},
      {L"a;b;", {L"a", L"b", L""}, {L"a", L"b"}, {L"a", L"b"}},
      {L"a;;b", {L"a", L"", L"b"}, {L"a", L"b"}, {L"a"}},
      {L";a", {L"", L"a"}, {L"a"}, {}},
      {L"; ;", {L"", L" ", L""}, {L" "}, {}},
  };
  for (const Row& row : rows) {
    CHECK(splitKeepingEmpty(row.text, L';') == row.keeping);
    CHECK(splitSkippingEmpty(row.text, L';') == row.skipping);
    CHECK(splitUntilEmpty(row.text, L';') == row.untilEmpty);
  }
}

TEST_CASE("trimming takes off the named characters at both ends only") {
  CHECK(trim(L" \t a b\r\n") == L"a b");
  CHECK(trim(L" \t ") == L"");
  CHECK(trim(L"\"a\"b\"", L"\"") == L"a\"b");
  CHECK(trim(L"\u00A0a") == L"\u00A0a"); // a no-break space is a character like others
  CHECK(removeBlanks(L" 250 \tKCMIL ") == L"250\tKCMIL");
}

TEST_CASE("joining and replacing") {
  CHECK(join({L"a", L"", L"b"}, L"; ") == L"a; ; b");
  CHECK(join({}, L";").empty());
  CHECK(replaceAll(L"aXXbX", L"X", L"XY") == L"aXYXYbXY");
  CHECK(replaceAll(L"aaa", L"aa", L"") == L"a");
  CHECK(replaceAll(L"abc", L"", L"x") == L"abc");
}

TEST_CASE("a cell is cut into its leading balanced forms") {
  struct Row {
    const wchar_t* cell;
    Fields forms;
  };
  const Row rows[] = {
      {L"(a)(b) c", {L"(a)", L"(b)"}},
      {L" ( a (b c) ) \r\n\t(d) ", {L"( a (b c) )", L"(d)"}},
      {L"(a) (b", {L"(a)"}},
      {L"(a", {L"(a"}},
      {L"(a))(b)", {L"(a)"}},
      {L"  no form (a) ", {L"no form (a)"}},
      {L")(", {L")("}},
      {L"(princ \"(\") (b)",
       {L"(princ \"(\") (b)"}}, // parentheses inside quotes count, so this is unbalanced
      {L"(princ \":)\") x", {L"(princ \":)"}},
      {L"   ", {L""}},
  };
  for (const Row& row : rows)
    CHECK(splitForms(row.cell) == row.forms);
}
