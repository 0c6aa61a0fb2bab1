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

TEST_CASE("a list is built node by node, with other lists linked in") {
  ListBuilder builder;
  builder.beginList().addText(L"a b").addReal(1.5).addShort(-3).addLong(100000).addNil().addT();
  builder.addPoint2d({1, 2, 9}).addPoint3d({1, 2, 3}).addEntity({7});
  builder.splice(chainOf("( \"x\" )")).splice(ResultList()).addText(L"").endList();
  CHECK_EQ(textOf(builder.take()), "( \"a b\" 1.5 -3 100000L nil T <1,2> <1,2,3> #7 ( \"x\" ) \"\" )");
  CHECK(builder.take().isEmpty());
}

TEST_CASE("a handle owns its chain alone") {
  ResultList first = chainOf("( 1 \"a\" )");
  const ResultList copy = first.clone();
  ResultList second = std::move(first);
  CHECK(first.isEmpty()); // NOLINT(bugprone-use-after-move)
  second = chainOf("2");
  CHECK_EQ(textOf(copy), "( 1 \"a\" )");
  CHECK_EQ(textOf(second), "2");
  second = ResultList();
  CHECK(second.isEmpty());
  CHECK(ResultList().clone().isEmpty());
}

TEST_CASE("a value is read as its own type only") {
  struct Row {
    const char* node;
    bool text, real, integer, point, entity, nil, list;
  };
  const Row rows[] = {
      {"\"a\"", true, false, false, false, false, false, false},
      {"1.5", false, true, false, false, false, false, false},
      {"7", false, false, true, false, false, false, false},
      {"7L", false, false, true, false, false, false, false},
      {"<1,2>", false, false, false, true, false, false, false},
      {"<1,2,3>", false, false, false, true, false, false, false},
      {"#4", false, false, false, false, true, false, false},
      {"nil", false, false, false, false, false, true, false},
      {"T", false, false, false, false, false, false, false},
      {"( )", false, false, false, false, false, false, true},
      {"1:\"a\"", false, false, false, false, false, false, false},
      {"90:5", false, false, false, false, false, false, false},
      {"", false, false, false, false, false, false, false},
  };
  for (const Row& row : rows) {
    CAPTURE(row.node);
    const ResultList list = chainOf(row.node);
    const ListReader reader(list);
    CHECK_EQ(reader.text().has_value(), row.text);
    CHECK_EQ(reader.real().has_value(), row.real);
    CHECK_EQ(reader.integer().has_value(), row.integer);
    CHECK_EQ(reader.point().has_value(), row.point);
    CHECK_EQ(reader.entityName().has_value(), row.entity);
    CHECK_EQ(reader.isNil(), row.nil);
    CHECK_EQ(reader.isList(), row.list);
  }
}

TEST_CASE("group nodes give their text or their integer") {
  const ResultList list = chainOf("1:\"a\" 4:\"b\" 90:100000 290:1 1000:\"c\" 1001:\"d\" \"e\" 1.5");
  std::string seen;
  for (ListReader reader(list); !reader.atEnd(); reader.skipElement()) {
    if (const auto text = reader.groupText()) seen += static_cast<char>(text->front());
    if (const auto number = reader.groupInteger()) seen += std::to_string(*number);
    seen += ' ';
  }
  CHECK_EQ(seen, "a b 100000 1 c d e  ");
}

TEST_CASE("a 2D point lies at height 0") {
  const ResultList list = chainOf("<4,5> <4,5,6>");
  ListReader reader(list);
  CHECK(reader.point() == KvPoint3d{4, 5, 0});
  reader.skipElement();
  CHECK(reader.point() == KvPoint3d{4, 5, 6});
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
