// Owner, builder and reader of lists: nothing leaks, nothing is read as what it is not, and no chain, however
// malformed, leads the reader astray.
#include "host/result_list.h"

#include "tests/support/chain_text.h"

#include <doctest/doctest.h>

#include <string>
#include <utility>

using namespace brenvolt;
using test::chainOf;
using test::textOf;

namespace {

/// What a reader meets from the start of a chain to the end: the elements' kinds, entered lists in parentheses.
std::string walk(ListReader& reader) {
  std::string path;
  while (!reader.atEnd()) {
    if (reader.enterList()) {
      path += '(';
      path += walk(reader);
      path += reader.leaveList() ? ")" : "?";
      continue;
    }
    path += reader.text() ? 's' : reader.integer() ? 'i' : reader.real() ? 'r' : reader.isNil() ? 'n' : 'x';
    reader.skipElement();
  }
  return path;
}

} // namespace

TEST_CASE("a value is read as its own type only") {
  constexpr std::pair<const char*, char> rows[] = {
      {"\"a\"", 't'},   {"1.5", 'r'},  {"7", 'i'},   {"7L", 'i'}, {"<1,2>", 'p'},
      {"<1,2,3>", 'p'}, {"#4", 'e'},   {"nil", 'n'}, {"T", ' '},  {"( )", 'l'},
      {"1:\"a\"", ' '}, {"90:5", ' '}, {"", ' '}};
  for (const auto& [node, kind] : rows) {
    const ResultList list = chainOf(node);
    const ListReader reader(list);
    const std::string read = std::string(reader.text() ? "t" : "") + (reader.real() ? "r" : "") +
                             (reader.integer() ? "i" : "") + (reader.point() ? "p" : "") +
                             (reader.entityName() ? "e" : "") + (reader.isNil() ? "n" : "") +
                             (reader.isList() ? "l" : "");
    CHECK_MESSAGE(read == (kind == ' ' ? "" : std::string(1, kind)), node);
  }
}

TEST_CASE("any chain can be walked, also one whose list marks do not match") {
  struct Row {
    const char* chain;
    const char* path;
  };
  const Row rows[] = {
      {"", ""},
      {"\"a\" 1 2.0", "sir"},
      {"( \"a\" ( 1 ( ) ) nil )", "(s(i())n)"},
      {"( \"a\" ( 1", "(s(i??"},
      {"( 1 ) ) 2", "(i)"},
      {") 1", ""},
      {"( ( (", "(((???"},
  };
  for (const Row& row : rows) {
    CAPTURE(row.chain);
    const ResultList list = chainOf(row.chain);
    ListReader reader(list);
    CHECK_EQ(walk(reader), row.path);
  }
}

TEST_CASE("a nested list is one element until it is entered") {
  const ResultList list = chainOf("( \"a\" ( 1 ( 2 ) ) 3 ) 4");
  ListReader reader(list);
  CHECK_FALSE(reader.leaveList());
  CHECK(reader.enterList());
  CHECK_FALSE(reader.enterList());
  CHECK(reader.skipElement());
  CHECK_EQ(textOf(reader.copyElement()), "( 1 ( 2 ) )");
  CHECK(reader.integer() == 3);
  CHECK(reader.leaveList());
  CHECK_FALSE(reader.leaveList());
  CHECK_EQ(textOf(reader.copyElement()), "4");
  CHECK(reader.copyElement().isEmpty());
  CHECK_FALSE(reader.skipElement());

  const ResultList endless = chainOf("( 1");
  ListReader lost(endless);
  CHECK(lost.copyElement().isEmpty());
  CHECK(lost.atEnd());
}

TEST_CASE("a long chain of deeply nested lists costs no stack") {
  std::string text;
  for (int depth = 0; depth < 20000; ++depth)
    text += "( ";
  const ResultList list = chainOf(text);
  ListReader reader(list);
  CHECK_FALSE(reader.skipElement());
}
